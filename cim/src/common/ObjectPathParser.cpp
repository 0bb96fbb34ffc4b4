#include "ObjectPathParser.h"
#include "HostName.h"
#include "KeyNumber.h"
#include <string>

PEGASUS_NAMESPACE_BEGIN

namespace {

class ObjectPathParser {
public:
    explicit ObjectPathParser(const String& objectName)
        : _input(objectName), _text(static_cast<const char*>(objectName.getCString())) {}

    void parse(ObjectPathParts& parts) {
        Boolean hasHost = _parseHost(parts);
        Boolean hasNamespace = _parseNamespace(parts);
        if (hasHost && !hasNamespace)
            _fail("host specified, missing namespace");
        if (_parseClassName(parts))
            _parseKeys(parts);
    }

private:
    [[noreturn]] void _fail(const std::string& reason) const {
        throw MalformedObjectNameException(_input + ", reason:\"" + String(reason.c_str()) + "\"");
    }

    static String _string(const std::string& bytes) {
        return String(bytes.c_str(), Uint32(bytes.size()));
    }

    Boolean _parseHost(ObjectPathParts& parts) {
        if (_text.compare(0, 2, "//") != 0)
            return false;
        std::size_t slash = _text.find('/', 2);
        if (slash == std::string::npos)
            _fail("missing slash after hostname");
        String host = _string(_text.substr(2, slash - 2));
        if (!isValidHostName(host))
            _fail("invalid hostname");
        parts.host = host;
        // The slash stays: it reads as the optional leading slash of the namespace.
        _at = slash;
        return true;
    }

    Boolean _parseNamespace(ObjectPathParts& parts) {
        std::size_t colon = _text.find(':', _at);
        std::size_t dot = _text.find('.', _at);
        // A colon inside the key values is no namespace separator.
        if (colon == std::string::npos || (dot != std::string::npos && dot < colon))
            return false;
        String name = _string(_text.substr(_at, colon - _at));
        if (!CIMNamespaceName::legal(name))
            _fail("invalid namespace name");
        parts.nameSpace = CIMNamespaceName(name);
        _at = colon + 1;
        return true;
    }

    // True when a '.' follows the class name, even with no key after it.
    Boolean _parseClassName(ObjectPathParts& parts) {
        std::size_t dot = _text.find('.', _at);
        std::string name = _text.substr(_at, dot == std::string::npos ? dot : dot - _at);
        if (!CIMName::legal(_string(name)))
            _fail("class name " + name + " not a legal CIM name");
        parts.className = CIMName(_string(name));
        _at = dot == std::string::npos ? _text.size() : dot + 1;
        return dot != std::string::npos;
    }

    // A trailing ',' ends the list like the end of the text does.
    void _parseKeys(ObjectPathParts& parts) {
        while (_at < _text.size()) {
            std::size_t equals = _text.find('=', _at);
            if (equals == std::string::npos)
                _fail("invalid key-value pair, missing equal sign");
            std::string name = _text.substr(_at, equals - _at);
            if (!CIMName::legal(_string(name)))
                _fail("invalid key-value pair, invalid key name:" + name);
            _at = equals + 1;
            parts.keyBindings.append(_parseValue(CIMName(_string(name))));
            if (_at == _text.size())
                return;
            if (_text[_at] != ',')
                _fail("invalid key-value pair, next key-value pair has to start with comma");
            _at++;
        }
    }

    CIMKeyBinding _parseValue(const CIMName& name) {
        if (_at < _text.size() && _text[_at] == '"')
            return _parseQuotedValue(name);
        std::size_t comma = _text.find(',', _at);
        std::string value = _text.substr(_at, comma == std::string::npos ? comma : comma - _at);
        _at = comma == std::string::npos ? _text.size() : comma;
        char first = value.empty() ? '\0' : value[0];
        if (first == 'T' || first == 't' || first == 'F' || first == 'f') {
            String upper = _string(value);
            if (!String::equalNoCase(upper, "TRUE") && !String::equalNoCase(upper, "FALSE"))
                _fail("invalid key-value pair, value should be TRUE or FALSE");
            return CIMKeyBinding(name, String(first == 'T' || first == 't' ? "TRUE" : "FALSE"),
                                 CIMKeyBinding::BOOLEAN);
        }
        if (first == '-') {
            Sint64 signedValue = 0;
            if (!parseSignedKeyNumber(value, false, signedValue))
                _fail("invalid key-value pair, invalid negative number value " + value);
        } else {
            Uint64 unsignedValue = 0;
            if (!parseUnsignedKeyNumber(value, unsignedValue))
                _fail("invalid key-value pair, invalid number value " + value);
        }
        return CIMKeyBinding(name, _string(value), CIMKeyBinding::NUMERIC);
    }

    CIMKeyBinding _parseQuotedValue(const CIMName& name) {
        std::string value;
        std::size_t i = _at + 1;
        for (;; i++) {
            if (i >= _text.size())
                _fail("invalid key-value pair, missing quote in key value");
            char c = _text[i];
            if (c == '"')
                break;
            if (c == '\\') {
                char next = i + 1 < _text.size() ? _text[i + 1] : '\0';
                if (next != '\\' && next != '"')
                    _fail("invalid key-value pair, malformed value");
                value += next;
                i++;
                continue;
            }
            value += c;
        }
        _at = i + 1;
        String text = _string(value);
        return CIMKeyBinding(
            name, text, _isReference(value) ? CIMKeyBinding::REFERENCE : CIMKeyBinding::STRING);
    }

    // A quoted value that is itself an instance name is a reference key.
    static Boolean _isReference(const std::string& value) {
        if (value.find('=') == std::string::npos)
            return false;
        try {
            ObjectPathParts parts;
            parseObjectPath(_string(value), parts);
            return parts.keyBindings.size() != 0;
        } catch (const Exception&) {
            return false;
        }
    }

    const String& _input;
    std::string _text;
    std::size_t _at = 0;
};

} // namespace

void parseObjectPath(const String& objectName, ObjectPathParts& parts) {
    ObjectPathParser(objectName).parse(parts);
}

PEGASUS_NAMESPACE_END
