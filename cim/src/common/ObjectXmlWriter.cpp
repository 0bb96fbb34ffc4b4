#include "ObjectXmlWriter.h"
#include "ValueElementText.h"
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <cstdio>
#include <string>

PEGASUS_NAMESPACE_BEGIN

namespace {

class ObjectXmlWriter {
public:
    std::string take() { return std::move(_out); }

    void object(const CIMObjectRep& object) {
        if (object.kind == CIMObjectRep::CLASS) {
            _out += "<CLASS NAME=\"";
            _attribute(object.className().getString());
            // The doubled spaces are how OpenPegasus spaces these attributes;
            // readers compare our text with its.
            _out += "\" ";
            if (!object.superClassName.isNull()) {
                _out += " SUPERCLASS=\"";
                _attribute(object.superClassName.getString());
                _out += "\" ";
            }
            _out += ">\n";
        } else {
            _out += "<INSTANCE CLASSNAME=\"";
            _attribute(object.className().getString());
            _out += "\" >\n";
        }
        for (Uint32 i = 0; i < object.qualifiers.size(); i++)
            qualifier(object.qualifiers.get(i));
        for (const CIMProperty& p : object.properties)
            property(p);
        for (const CIMMethod& m : object.methods)
            method(m);
        _out += object.kind == CIMObjectRep::CLASS ? "</CLASS>\n" : "</INSTANCE>\n";
    }

private:
    static std::string _utf8(const String& text) {
        return std::string(static_cast<const char*>(text.getCString()));
    }

    // Control characters, quotes, '&', '<', '>' and DEL become references,
    // and so does any space a reader would collapse: a leading or trailing
    // one and the second of a pair.
    void _escaped(const String& text) {
        std::string bytes = _utf8(text);
        bool previousWasSpace = false;
        for (std::size_t i = 0; i < bytes.size(); i++) {
            unsigned char c = static_cast<unsigned char>(bytes[i]);
            bool space = c == ' ';
            if (space && (i == 0 || i + 1 == bytes.size() || previousWasSpace)) {
                _out += "&#32;";
                previousWasSpace = false;
                continue;
            }
            previousWasSpace = space;
            switch (c) {
            case '"':
                _out += "&quot;";
                break;
            case '&':
                _out += "&amp;";
                break;
            case '\'':
                _out += "&apos;";
                break;
            case '<':
                _out += "&lt;";
                break;
            case '>':
                _out += "&gt;";
                break;
            default:
                if (c < 32 || c == 127)
                    _out += "&#" + std::to_string(c) + ';';
                else
                    _out += char(c);
            }
        }
    }

    void _attribute(const String& text) { _escaped(text); }

    void _namedAttribute(const char* name, const String& text) {
        _out += ' ';
        _out += name;
        _out += "=\"";
        _attribute(text);
        _out += '"';
    }

    void _typeAttribute(CIMType type) {
        if (type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE) {
            _out += " TYPE=\"string\"";
        } else {
            _out += " TYPE=\"";
            _out += cimTypeToString(type);
            _out += '"';
        }
    }

    // Embedded objects travel as strings, marked as such in both spellings
    // readers look for; only instances are marked (a class is not).
    void _embeddedAttributes(const CIMValue& v) {
        const char* kind = nullptr;
        if (v.getType() == CIMTYPE_INSTANCE && !v.isNull() && (!v.isArray() || v.getArraySize()))
            kind = "instance";
        if (v.getType() == CIMTYPE_OBJECT && !v.isNull()) {
            CIMObject first;
            if (v.isArray()) {
                Array<CIMObject> objects;
                v.get(objects);
                if (objects.size())
                    first = objects[0];
            } else {
                v.get(first);
            }
            if (!first.isUninitialized() && first.isInstance())
                kind = "object";
        }
        if (!kind)
            return;
        _out += std::string(" EmbeddedObject=\"") + kind + "\" EMBEDDEDOBJECT=\"" + kind + '"';
    }

    void _originAttributes(const CIMName& classOrigin, Boolean propagated) {
        if (!classOrigin.isNull())
            _namedAttribute("CLASSORIGIN", classOrigin.getString());
        if (propagated)
            _out += " PROPAGATED=\"true\"";
    }

    void _valueLine(const String& text) {
        _out += "<VALUE>";
        _escaped(text);
        _out += "</VALUE>\n";
    }

    void value(const CIMValue& v) {
        if (v.isNull())
            return;
        if (v.getType() == CIMTYPE_REFERENCE) {
            referenceValue(v);
            return;
        }
        std::vector<String> texts =
            v.getType() == CIMTYPE_REAL32 ? real32Texts(v) : valueElementTexts(v);
        if (!v.isArray()) {
            _valueLine(texts.front());
            return;
        }
        _out += "<VALUE.ARRAY>\n";
        for (const String& text : texts)
            _valueLine(text);
        _out += "</VALUE.ARRAY>\n";
    }

    // The XML gives a Real32 the digits it can hold; CIMValue::toString()
    // writes every real with Real64 precision.
    static std::vector<String> real32Texts(const CIMValue& v) {
        Array<Real32> reals;
        if (v.isArray()) {
            v.get(reals);
        } else {
            Real32 one = 0;
            v.get(one);
            reals.append(one);
        }
        std::vector<String> texts;
        for (Uint32 i = 0; i < reals.size(); i++) {
            char text[32];
            std::snprintf(text, sizeof(text), "%.7e", static_cast<double>(reals[i]));
            texts.push_back(String(text));
        }
        return texts;
    }

    void referenceValue(const CIMValue& v) {
        if (!v.isArray()) {
            CIMObjectPath path;
            v.get(path);
            valueReference(path);
            return;
        }
        Array<CIMObjectPath> paths;
        v.get(paths);
        _out += "<VALUE.REFARRAY>\n";
        for (Uint32 i = 0; i < paths.size(); i++)
            valueReference(paths[i]);
        _out += "</VALUE.REFARRAY>\n";
    }

    void localNamespacePath(const CIMNamespaceName& nameSpace) {
        _out += "<LOCALNAMESPACEPATH>\n";
        std::string name = _utf8(nameSpace.getString());
        std::size_t start = 0;
        while (!name.empty()) {
            std::size_t slash = name.find('/', start);
            std::string segment =
                name.substr(start, slash == std::string::npos ? slash : slash - start);
            _out += "<NAMESPACE NAME=\"";
            _attribute(String(segment.c_str()));
            _out += "\"/>\n";
            if (slash == std::string::npos)
                break;
            start = slash + 1;
        }
        _out += "</LOCALNAMESPACEPATH>\n";
    }

    void instanceName(const CIMObjectPath& path) {
        _out += "<INSTANCENAME";
        _namedAttribute("CLASSNAME", path.getClassName().getString());
        _out += ">\n";
        const Array<CIMKeyBinding>& keys = path.getKeyBindings();
        for (Uint32 i = 0; i < keys.size(); i++) {
            _out += "<KEYBINDING";
            _namedAttribute("NAME", keys[i].getName().getString());
            _out += ">\n";
            keyValue(keys[i]);
            _out += "</KEYBINDING>\n";
        }
        _out += "</INSTANCENAME>\n";
    }

    void keyValue(const CIMKeyBinding& key) {
        if (key.getType() == CIMKeyBinding::REFERENCE) {
            try {
                valueReference(CIMObjectPath(key.getValue()));
                return;
            } catch (const Exception&) {
                // Not a readable path after all: keep its text as a string key.
            }
        }
        static const char* const valueTypes[] = {"boolean", "string", "numeric", "string"};
        _out += "<KEYVALUE VALUETYPE=\"";
        _out += valueTypes[key.getType()];
        _out += "\">";
        _escaped(key.getValue());
        _out += "</KEYVALUE>\n";
    }

    void valueReference(const CIMObjectPath& path) {
        const bool isInstance = path.getKeyBindings().size() != 0;
        const bool hasHost = path.getHost().size() != 0;
        const bool hasNamespace = hasHost || !path.getNameSpace().isNull();
        const char* wrapper = nullptr;
        if (hasHost)
            wrapper = isInstance ? "INSTANCEPATH" : "CLASSPATH";
        else if (hasNamespace)
            wrapper = isInstance ? "LOCALINSTANCEPATH" : "LOCALCLASSPATH";

        _out += "<VALUE.REFERENCE>\n";
        if (wrapper) {
            _out += '<';
            _out += wrapper;
            _out += ">\n";
        }
        if (hasHost) {
            _out += "<NAMESPACEPATH>\n<HOST>";
            _escaped(path.getHost());
            _out += "</HOST>\n";
            localNamespacePath(path.getNameSpace());
            _out += "</NAMESPACEPATH>\n";
        } else if (hasNamespace) {
            localNamespacePath(path.getNameSpace());
        }
        if (isInstance) {
            instanceName(path);
        } else {
            _out += "<CLASSNAME";
            _namedAttribute("NAME", path.getClassName().getString());
            _out += "/>\n";
        }
        if (wrapper) {
            _out += "</";
            _out += wrapper;
            _out += ">\n";
        }
        _out += "</VALUE.REFERENCE>\n";
    }

    void qualifier(const CIMConstQualifier& q) {
        _out += "<QUALIFIER";
        _namedAttribute("NAME", q.getName().getString());
        _typeAttribute(q.getType());
        if (q.getPropagated())
            _out += " PROPAGATED=\"true\"";
        const CIMFlavor flavor = q.getFlavor();
        if (!flavor.hasFlavor(CIMFlavor::OVERRIDABLE))
            _out += " OVERRIDABLE=\"false\"";
        if (!flavor.hasFlavor(CIMFlavor::TOSUBCLASS))
            _out += " TOSUBCLASS=\"false\"";
        if (flavor.hasFlavor(CIMFlavor::TRANSLATABLE))
            _out += " TRANSLATABLE=\"true\"";
        _out += ">\n";
        value(q.getValue());
        _out += "</QUALIFIER>\n";
    }

    void property(const CIMConstProperty& p) {
        const CIMValue& v = p.getValue();
        const char* element = v.getType() == CIMTYPE_REFERENCE
                                  ? "PROPERTY.REFERENCE"
                                  : (v.isArray() ? "PROPERTY.ARRAY" : "PROPERTY");
        _out += '<';
        _out += element;
        _namedAttribute("NAME", p.getName().getString());
        // A second space after the name, as OpenPegasus writes it.
        _out += ' ';
        if (v.getType() == CIMTYPE_REFERENCE) {
            if (!p.getReferenceClassName().isNull())
                _namedAttribute("REFERENCECLASS", p.getReferenceClassName().getString());
            _originAttributes(p.getClassOrigin(), p.getPropagated());
        } else if (v.isArray()) {
            _typeAttribute(v.getType());
            _embeddedAttributes(v);
            if (p.getArraySize())
                _out += " ARRAYSIZE=\"" + std::to_string(p.getArraySize()) + '"';
            _originAttributes(p.getClassOrigin(), p.getPropagated());
        } else {
            // A single value names its origin before its type.
            _originAttributes(p.getClassOrigin(), p.getPropagated());
            _typeAttribute(v.getType());
            _embeddedAttributes(v);
        }
        _out += ">\n";
        for (Uint32 i = 0; i < p.getQualifierCount(); i++)
            qualifier(p.getQualifier(i));
        value(v);
        _out += "</";
        _out += element;
        _out += ">\n";
    }

    void method(const CIMConstMethod& m) {
        _out += "<METHOD";
        _namedAttribute("NAME", m.getName().getString());
        _typeAttribute(m.getType());
        _originAttributes(m.getClassOrigin(), m.getPropagated());
        _out += ">\n";
        for (Uint32 i = 0; i < m.getQualifierCount(); i++)
            qualifier(m.getQualifier(i));
        for (Uint32 i = 0; i < m.getParameterCount(); i++)
            parameter(m.getParameter(i));
        _out += "</METHOD>\n";
    }

    void parameter(const CIMConstParameter& p) {
        const bool isReference = p.getType() == CIMTYPE_REFERENCE;
        const char* element = isReference
                                  ? (p.isArray() ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
                                  : (p.isArray() ? "PARAMETER.ARRAY" : "PARAMETER");
        _out += '<';
        _out += element;
        _namedAttribute("NAME", p.getName().getString());
        if (isReference) {
            if (!p.getReferenceClassName().isNull())
                _namedAttribute("REFERENCECLASS", p.getReferenceClassName().getString());
        } else {
            _typeAttribute(p.getType());
        }
        if (p.isArray() && p.getArraySize())
            _out += " ARRAYSIZE=\"" + std::to_string(p.getArraySize()) + '"';
        _out += ">\n";
        for (Uint32 i = 0; i < p.getQualifierCount(); i++)
            qualifier(p.getQualifier(i));
        _out += "</";
        _out += element;
        _out += ">\n";
    }

    std::string _out;
};

} // namespace

String objectToXml(const CIMObjectRep& object) {
    ObjectXmlWriter writer;
    writer.object(object);
    std::string text = writer.take();
    return String(text.c_str(), Uint32(text.size()));
}

PEGASUS_NAMESPACE_END
