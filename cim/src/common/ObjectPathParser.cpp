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

    ObjectPathParts parse() {
        ObjectPathParts parts;
        Boolean hasHost = _parseHost(parts);
        _parseNamespace(parts, hasHost);
        _parseClassName(parts);
        if (_at < _text.size())
            _parseKeys(parts);
        return parts;
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
            _fail("missing namespace");
        String host = _string(_text.substr(2, slash - 2));
        if (!isValidHostName(host))
            _fail("invalid hostname");
        parts.host = host;
        // The slash stays: it reads as the optional leading slash of the namespace.
        _at = slash;
        return true;
    }

    void _parseNamespace(ObjectPathParts& parts, Boolean hasHost) {
        std::size_t colon = _text.find(':', _at);
        std::size_t dot = _text.find('.', _at);
        if (colon == std::string::npos || (dot != std::string::npos && dot < colon)) {
            if (hasHost)
                _fail("missing namespace");
            return;
        }
        std::string name = _text.substr(_at, colon - _at);
        if (!name.empty() && name[0] == '/')
            name.erase(0, 1);
        _at = colon + 1;
        // "//host/:Class" is how a path with a host but no namespace prints.
        if (name.empty() && hasHost)
            return;
        if (!CIMNamespaceName::legal(_string(name)))
            _fail("invalid namespace name");
        parts.nameSpace = CIMNamespaceName(_string(name));
    }

    void _parseClassName(ObjectPathParts& parts) {
        std::size_t dot = _text.find('.', _at);
        std::string name = _text.substr(_at, dot == std::string::npos ? dot : dot - _at);
        if (name.empty())
            _fail("missing class name");
        if (!CIMName::legal(_string(name)))
            _fail("invalid class name");
        parts.className = CIMName(_string(name));
        _at = dot == std::string::npos ? _text.size() : dot;
    }

    void _parseKeys(ObjectPathParts& parts) {
        _at++; // the '.'
        while (true) {
            std::size_t equals = _text.find('=', _at);
            if (equals == std::string::npos)
                _fail("invalid key-value pair, missing '='");
            std::string name = _text.substr(_at, equals - _at);
            if (!CIMName::legal(_string(name)))
                _fail("invalid key-value pair, invalid key name " + name);
            _at = equals + 1;
            parts.keyBindings.append(_parseValue(CIMName(_string(name))));
            if (_at == _text.size())
                return;
            if (_text[_at] != ',')
                _fail("invalid key-value pair, missing ',' after the value of " + name);
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
                _fail("invalid key-value pair, invalid boolean value " + value);
            return CIMKeyBinding(name, String(first == 'T' || first == 't' ? "TRUE" : "FALSE"),
                                 CIMKeyBinding::BOOLEAN);
        }
        Uint64 unsignedValue = 0;
        Sint64 signedValue = 0;
        if (!parseUnsignedKeyNumber(value, unsignedValue) &&
            !parseSignedKeyNumber(value, false, signedValue))
            _fail("invalid key-value pair, invalid number value " + value);
        return CIMKeyBinding(name, _string(value), CIMKeyBinding::NUMERIC);
    }

    CIMKeyBinding _parseQuotedValue(const CIMName& name) {
        std::string value;
        std::size_t i = _at + 1;
        for (;; i++) {
            if (i >= _text.size())
                _fail("invalid key-value pair, missing closing quote");
            char c = _text[i];
            if (c == '"')
                break;
            if (c == '\\') {
                char next = i + 1 < _text.size() ? _text[i + 1] : '\0';
                if (next != '\\' && next != '"')
                    _fail("invalid key-value pair, invalid escape sequence");
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
            return parseObjectPath(_string(value)).keyBindings.size() != 0;
        } catch (const Exception&) {
            return false;
        }
    }

    const String& _input;
    std::string _text;
    std::size_t _at = 0;
};

} // namespace

ObjectPathParts parseObjectPath(const String& objectName) {
    return ObjectPathParser(objectName).parse();
}

PEGASUS_NAMESPACE_END
