#include "ObjectReader.h"

#include "ValueText.h"
#include "XmlInput.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/Exception.h>

#include <initializer_list>

namespace vexa::cimxml::detail {

using namespace Pegasus;

namespace {

std::string message(const Exception& e) { return utf8(e.getMessage()); }

// The children of `node`, which must be exactly the named elements in order.
std::vector<pugi::xml_node> exactChildren(pugi::xml_node node,
                                          std::initializer_list<const char*> names) {
    std::vector<pugi::xml_node> children = childElements(node);
    bool matches = children.size() == names.size();
    size_t i = 0;
    for (const char* name : names) {
        if (!matches)
            break;
        matches = named(children[i++], name);
    }
    if (!matches) {
        std::string expected;
        for (const char* name : names)
            expected += std::string(expected.empty() ? "" : ", ") + name;
        throw StructureError(where(node) + " must hold " + expected);
    }
    return children;
}

std::string normalisedNumericKey(const std::string& keyName, const std::string& text) {
    long long sint = 0;
    unsigned long long uint = 0;
    double real = 0;
    if (parseSignedInteger(text, sint))
        return std::to_string(sint);
    if (parseUnsignedInteger(text, uint))
        return std::to_string(uint);
    if (parseReal(text, real))
        return std::string(trimmed(text));
    throw ValueError("key " + keyName + ": \"" + text + "\" is not a number");
}

CIMKeyBinding readKeyValue(const CIMName& name, pugi::xml_node keyValue) {
    const std::string keyName = utf8(name.getString());
    const pugi::xml_attribute typeAttribute = attribute(keyValue, "VALUETYPE");
    const std::string valueType = typeAttribute ? typeAttribute.value() : "string";
    const std::string text = textOf(keyValue);
    if (valueType == "string")
        return CIMKeyBinding(name, pegasusString(text), CIMKeyBinding::STRING);
    if (valueType == "boolean") {
        bool value = false;
        if (!parseBoolean(text, value))
            throw ValueError("key " + keyName + ": \"" + text +
                             "\" is not a boolean (TRUE or FALSE)");
        return CIMKeyBinding(name, value ? "TRUE" : "FALSE", CIMKeyBinding::BOOLEAN);
    }
    if (valueType == "numeric")
        return CIMKeyBinding(name, pegasusString(normalisedNumericKey(keyName, text)),
                             CIMKeyBinding::NUMERIC);
    throw StructureError(where(keyValue) + " VALUETYPE must be string, boolean or numeric, not \"" +
                         valueType + "\"");
}

struct PathParts {
    std::string host;
    std::string nameSpace;
    bool hasNamespace = false;
};

PathParts readNamespacePath(pugi::xml_node namespacePath) {
    const std::vector<pugi::xml_node> parts =
        exactChildren(namespacePath, {"HOST", "LOCALNAMESPACEPATH"});
    return {std::string(trimmed(textOf(parts[0]))), readLocalNamespace(parts[1]), true};
}

CIMObjectPath assemble(const PathParts& parts, CIMObjectPath path, const ReadOptions& options) {
    try {
        if (parts.hasNamespace)
            path.setNameSpace(CIMNamespaceName(pegasusString(parts.nameSpace)));
        else if (!options.referenceNamespace.isNull())
            path.setNameSpace(options.referenceNamespace);
        if (options.keepReferenceHost && !parts.host.empty())
            path.setHost(pegasusString(parts.host));
    } catch (const Exception& e) {
        throw ValueError("reference " + utf8(path.toString()) + ": " + message(e));
    }
    return path;
}

CIMValue readEmbeddedValue(pugi::xml_node valueNode, CIMType type, const ReadOptions& options) {
    const CIMInstance instance =
        readEmbeddedInstance(textOf(valueNode), depthOf(valueNode), options);
    if (type == CIMTYPE_OBJECT)
        return CIMValue(CIMObject(instance));
    return CIMValue(instance);
}

// The type a PROPERTY or PROPERTY.ARRAY declares, embedded objects included.
CIMType propertyType(pugi::xml_node property) {
    const std::string typeName = requiredAttribute(property, "TYPE");
    CIMType type = CIMTYPE_STRING;
    if (!cimTypeFromName(typeName, type) || type == CIMTYPE_REFERENCE)
        throw StructureError(where(property) + " TYPE \"" + typeName + "\" is not a CIM type");
    const pugi::xml_attribute embedded = attributeNoCase(property, "EmbeddedObject");
    if (!embedded)
        return type;
    if (equalNoCase(embedded.value(), "object"))
        return CIMTYPE_OBJECT;
    if (equalNoCase(embedded.value(), "instance"))
        return CIMTYPE_INSTANCE;
    throw StructureError(where(property) + " EmbeddedObject must be \"object\" or \"instance\"");
}

// The one child that is not a QUALIFIER, if any.
pugi::xml_node valueChild(pugi::xml_node property, const char* valueName) {
    pugi::xml_node value;
    for (pugi::xml_node child : childElements(property)) {
        if (named(child, "QUALIFIER"))
            continue;
        if (!named(child, valueName) || value)
            throw StructureError(where(property) + " may hold QUALIFIERs and one " + valueName);
        value = child;
    }
    return value;
}

CIMValue readScalarPropertyValue(pugi::xml_node property, CIMType type,
                                 const ReadOptions& options) {
    const pugi::xml_node value = valueChild(property, "VALUE");
    if (!value)
        return CIMValue(type, false);
    if (type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE)
        return readEmbeddedValue(value, type, options);
    return valueFromTexts(type, false, {textOf(value)});
}

CIMValue readArrayPropertyValue(pugi::xml_node property, CIMType type, const ReadOptions& options) {
    const pugi::xml_node valueArray = valueChild(property, "VALUE.ARRAY");
    if (!valueArray)
        return CIMValue(type, true);
    std::vector<pugi::xml_node> items = childElements(valueArray);
    for (pugi::xml_node item : items) {
        if (named(item, "VALUE.NULL"))
            throw ValueError(where(item) + ": null array elements are not supported");
        if (!named(item, "VALUE"))
            throw StructureError(where(valueArray) + " may hold only VALUE elements");
    }
    if (type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE) {
        Array<CIMObject> objects;
        Array<CIMInstance> instances;
        for (pugi::xml_node item : items) {
            CIMInstance instance = readEmbeddedInstance(textOf(item), depthOf(item), options);
            objects.append(CIMObject(instance));
            instances.append(instance);
        }
        return type == CIMTYPE_OBJECT ? CIMValue(objects) : CIMValue(instances);
    }
    std::vector<std::string> texts;
    texts.reserve(items.size());
    for (pugi::xml_node item : items)
        texts.push_back(textOf(item));
    return valueFromTexts(type, true, texts);
}

CIMProperty readProperty(pugi::xml_node property, const ReadOptions& options) {
    const CIMName name = nameAttribute(property, "NAME");
    try {
        if (named(property, "PROPERTY.REFERENCE")) {
            CIMName referenceClass;
            if (attribute(property, "REFERENCECLASS"))
                referenceClass = nameAttribute(property, "REFERENCECLASS");
            const pugi::xml_node reference = valueChild(property, "VALUE.REFERENCE");
            const CIMValue value = reference ? CIMValue(readReference(reference, options))
                                             : CIMValue(CIMTYPE_REFERENCE, false);
            return CIMProperty(name, value, 0, referenceClass);
        }
        const CIMType type = propertyType(property);
        if (named(property, "PROPERTY.ARRAY"))
            return CIMProperty(name, readArrayPropertyValue(property, type, options));
        return CIMProperty(name, readScalarPropertyValue(property, type, options));
    } catch (const ValueTextError& e) {
        throw ValueError("property " + utf8(name.getString()) + ": " + e.what());
    } catch (const Exception& e) {
        throw ValueError("property " + utf8(name.getString()) + ": " + message(e));
    }
}

} // namespace

CIMName nameAttribute(pugi::xml_node node, const char* attributeName) {
    const std::string text = requiredAttribute(node, attributeName);
    if (!text.empty()) {
        try {
            const String name = pegasusString(text);
            if (CIMName::legal(name))
                return CIMName(name);
        } catch (const ValueTextError&) {
        }
    }
    throw ValueError(where(node) + " " + attributeName + "=\"" + text +
                     "\" is not a valid CIM name");
}

std::string readLocalNamespace(pugi::xml_node localNamespacePath) {
    if (!named(localNamespacePath, "LOCALNAMESPACEPATH"))
        throw StructureError(where(localNamespacePath) + " where LOCALNAMESPACEPATH belongs");
    std::string nameSpace;
    for (pugi::xml_node part : childElements(localNamespacePath)) {
        if (!named(part, "NAMESPACE"))
            throw StructureError(where(localNamespacePath) + " may hold only NAMESPACE elements");
        if (!nameSpace.empty())
            nameSpace += '/';
        nameSpace += requiredAttribute(part, "NAME");
    }
    if (nameSpace.empty())
        throw StructureError(where(localNamespacePath) + " needs at least one NAMESPACE");
    bool legal = false;
    try {
        legal = CIMNamespaceName::legal(pegasusString(nameSpace));
    } catch (const ValueTextError&) {
    }
    if (!legal)
        throw ValueError("namespace \"" + nameSpace + "\" is not a valid namespace name");
    return nameSpace;
}

CIMObjectPath readInstanceName(pugi::xml_node instanceName, const ReadOptions& options) {
    if (!named(instanceName, "INSTANCENAME"))
        throw StructureError(where(instanceName) + " where INSTANCENAME belongs");
    const CIMName className = nameAttribute(instanceName, "CLASSNAME");
    Array<CIMKeyBinding> keys;
    for (pugi::xml_node child : childElements(instanceName)) {
        if (named(child, "KEYVALUE") || named(child, "VALUE.REFERENCE"))
            throw ValueError(where(child) + ": a key value needs a KEYBINDING that names the key");
        if (!named(child, "KEYBINDING"))
            throw StructureError(where(instanceName) + " may hold only KEYBINDING elements");
        const CIMName keyName = nameAttribute(child, "NAME");
        for (Uint32 i = 0; i < keys.size(); i++)
            if (keys[i].getName().equal(keyName))
                throw ValueError("key " + utf8(keyName.getString()) + " appears twice in " +
                                 utf8(className.getString()));
        const std::vector<pugi::xml_node> content = childElements(child);
        if (content.size() != 1)
            throw StructureError(where(child) + " must hold one KEYVALUE or VALUE.REFERENCE");
        if (named(content[0], "KEYVALUE")) {
            keys.append(readKeyValue(keyName, content[0]));
        } else if (named(content[0], "VALUE.REFERENCE")) {
            const CIMObjectPath reference = readReference(content[0], options);
            keys.append(CIMKeyBinding(keyName, reference.toString(), CIMKeyBinding::REFERENCE));
        } else {
            throw StructureError(where(child) + " must hold one KEYVALUE or VALUE.REFERENCE");
        }
    }
    try {
        return CIMObjectPath(String(), CIMNamespaceName(), className, keys);
    } catch (const Exception& e) {
        throw ValueError("instance name of " + utf8(className.getString()) + ": " + message(e));
    }
}

CIMObjectPath readReference(pugi::xml_node valueReference, const ReadOptions& options) {
    const std::vector<pugi::xml_node> content = childElements(valueReference);
    if (content.size() != 1)
        throw StructureError(where(valueReference) + " must hold exactly one path element");
    return readPathElement(content[0], options);
}

CIMObjectPath readPathElement(pugi::xml_node element, const ReadOptions& options) {
    PathParts parts;
    if (named(element, "INSTANCENAME"))
        return assemble(parts, readInstanceName(element, options), options);
    if (named(element, "CLASSNAME")) {
        const CIMObjectPath path(String(), CIMNamespaceName(), nameAttribute(element, "NAME"));
        return assemble(parts, path, options);
    }
    if (named(element, "LOCALINSTANCEPATH")) {
        const auto children = exactChildren(element, {"LOCALNAMESPACEPATH", "INSTANCENAME"});
        parts.nameSpace = readLocalNamespace(children[0]);
        parts.hasNamespace = true;
        return assemble(parts, readInstanceName(children[1], options), options);
    }
    if (named(element, "INSTANCEPATH")) {
        const auto children = exactChildren(element, {"NAMESPACEPATH", "INSTANCENAME"});
        parts = readNamespacePath(children[0]);
        return assemble(parts, readInstanceName(children[1], options), options);
    }
    if (named(element, "LOCALCLASSPATH") || named(element, "CLASSPATH")) {
        const bool local = named(element, "LOCALCLASSPATH");
        const auto children =
            exactChildren(element, {local ? "LOCALNAMESPACEPATH" : "NAMESPACEPATH", "CLASSNAME"});
        if (local) {
            parts.nameSpace = readLocalNamespace(children[0]);
            parts.hasNamespace = true;
        } else {
            parts = readNamespacePath(children[0]);
        }
        const CIMObjectPath path(String(), CIMNamespaceName(), nameAttribute(children[1], "NAME"));
        return assemble(parts, path, options);
    }
    throw StructureError(where(element) + " is not an object path element");
}

CIMInstance readInstance(pugi::xml_node instance, const ReadOptions& options) {
    if (!named(instance, "INSTANCE"))
        throw StructureError(where(instance) + " where INSTANCE belongs");
    CIMInstance result(nameAttribute(instance, "CLASSNAME"));
    for (pugi::xml_node child : childElements(instance)) {
        if (named(child, "QUALIFIER"))
            continue;
        if (!named(child, "PROPERTY") && !named(child, "PROPERTY.ARRAY") &&
            !named(child, "PROPERTY.REFERENCE"))
            throw StructureError(where(instance) +
                                 " may hold only QUALIFIER and PROPERTY elements");
        const CIMProperty property = readProperty(child, options);
        if (result.findProperty(property.getName()) != PEG_NOT_FOUND)
            throw ValueError("property " + utf8(property.getName().getString()) +
                             " appears twice in an instance of " +
                             utf8(result.getClassName().getString()));
        result.addProperty(property);
    }
    return result;
}

CIMInstance readEmbeddedInstance(const std::string& markup, size_t depthUsed,
                                 const ReadOptions& options) {
    const size_t depthLeft = options.maxDepth > depthUsed ? options.maxDepth - depthUsed : 0;
    pugi::xml_document document;
    const ParseResult parsed = parseXml(document, markup, options.maxBytes, depthLeft);
    if (parsed.fault != ParseFault::None)
        throw ValueError("embedded instance: " + parsed.description);
    const pugi::xml_node root = document.document_element();
    if (!named(root, "INSTANCE"))
        throw ValueError("an embedded object must be an INSTANCE element, not <" +
                         std::string(root.name()) + ">");
    ReadOptions inner = options;
    inner.maxDepth = depthLeft;
    try {
        return readInstance(root, inner);
    } catch (const StructureError& e) {
        throw ValueError(std::string("embedded instance: ") + e.what());
    }
}

} // namespace vexa::cimxml::detail
