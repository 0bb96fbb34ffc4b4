#include "ObjectWriter.h"

#include "ValueText.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Exception.h>

namespace vexa::cimxml::detail {

using namespace Pegasus;

namespace {

std::string nameText(const CIMName& name) { return utf8(name.getString()); }

std::string embeddedMarkup(const CIMObject& object) {
    XmlWriter inner;
    if (object.isClass())
        writeClass(inner, CIMClass(object));
    else
        writeInstance(inner, CIMInstance(object), false);
    return inner.take();
}

// Embedded objects are the INSTANCE (or CLASS) markup as one text value,
// escaped once more on the way out.
std::vector<std::string> embeddedTexts(const CIMValue& value) {
    std::vector<std::string> texts;
    if (value.getType() == CIMTYPE_OBJECT) {
        if (value.isArray()) {
            Array<CIMObject> objects;
            value.get(objects);
            for (Uint32 i = 0; i < objects.size(); i++)
                texts.push_back(embeddedMarkup(objects[i]));
        } else {
            CIMObject object;
            value.get(object);
            texts.push_back(embeddedMarkup(object));
        }
    } else {
        if (value.isArray()) {
            Array<CIMInstance> instances;
            value.get(instances);
            for (Uint32 i = 0; i < instances.size(); i++)
                texts.push_back(embeddedMarkup(CIMObject(instances[i])));
        } else {
            CIMInstance instance;
            value.get(instance);
            texts.push_back(embeddedMarkup(CIMObject(instance)));
        }
    }
    return texts;
}

std::vector<std::string> textsOf(const CIMValue& value) {
    if (value.getType() == CIMTYPE_OBJECT || value.getType() == CIMTYPE_INSTANCE)
        return embeddedTexts(value);
    return valueTexts(value);
}

void writeNamespacePath(XmlWriter& out, const std::string& host, const std::string& nameSpace) {
    out.open("NAMESPACEPATH");
    out.open("HOST").text(host).close();
    writeLocalNamespacePath(out, nameSpace);
    out.close();
}

// Reference values keep the form their path has: with host and namespace
// an INSTANCEPATH, with a namespace only a LOCALINSTANCEPATH (which wbemcli
// prints best), else a bare INSTANCENAME.
void writeReferencePath(XmlWriter& out, const CIMObjectPath& path) {
    const std::string nameSpace = utf8(path.getNameSpace().getString());
    const std::string host = utf8(path.getHost());
    out.open("VALUE.REFERENCE");
    if (!nameSpace.empty() && !host.empty()) {
        writeInstancePath(out, path, host, nameSpace);
    } else if (!nameSpace.empty()) {
        out.open("LOCALINSTANCEPATH");
        writeLocalNamespacePath(out, nameSpace);
        writeInstanceName(out, path);
        out.close();
    } else {
        writeInstanceName(out, path);
    }
    out.close();
}

void writeKeyBinding(XmlWriter& out, const CIMKeyBinding& key) {
    out.open("KEYBINDING").attribute("NAME", nameText(key.getName()));
    if (key.getType() == CIMKeyBinding::REFERENCE) {
        try {
            writeReferencePath(out, CIMObjectPath(key.getValue()));
            out.close();
            return;
        } catch (const Exception&) {
            // A reference key that is not a path can still be shown as text.
        }
    }
    const char* valueType = key.getType() == CIMKeyBinding::BOOLEAN   ? "boolean"
                            : key.getType() == CIMKeyBinding::NUMERIC ? "numeric"
                                                                      : "string";
    out.open("KEYVALUE").attribute("VALUETYPE", valueType).text(utf8(key.getValue())).close();
    out.close();
}

void writeClassOrigin(XmlWriter& out, const CIMName& classOrigin, bool propagated) {
    if (!classOrigin.isNull())
        out.attribute("CLASSORIGIN", nameText(classOrigin));
    if (propagated)
        out.attribute("PROPAGATED", "true");
}

void writeQualifier(XmlWriter& out, const CIMConstQualifier& qualifier) {
    const CIMValue& value = qualifier.getValue();
    out.open("QUALIFIER")
        .attribute("NAME", nameText(qualifier.getName()))
        .attribute("TYPE", wireTypeName(qualifier.getType()));
    // Only the flavors that differ from the defaults, as wbemcli accepts them.
    const CIMFlavor& flavor = qualifier.getFlavor();
    if (flavor.hasFlavor(CIMFlavor::DISABLEOVERRIDE))
        out.attribute("OVERRIDABLE", "false");
    if (flavor.hasFlavor(CIMFlavor::RESTRICTED))
        out.attribute("TOSUBCLASS", "false");
    if (flavor.hasFlavor(CIMFlavor::TRANSLATABLE))
        out.attribute("TRANSLATABLE", "true");
    if (!value.isNull())
        writeValue(out, value);
    out.close();
}

template <class Element>
void writeQualifiers(XmlWriter& out, const Element& element) {
    for (Uint32 i = 0; i < element.getQualifierCount(); i++)
        writeQualifier(out, element.getQualifier(i));
}

void writeProperty(XmlWriter& out, const CIMConstProperty& property, bool includeClassOrigin,
                   bool withQualifiers) {
    const CIMValue& value = property.getValue();
    const CIMName classOrigin = includeClassOrigin ? property.getClassOrigin() : CIMName();
    const bool propagated = includeClassOrigin && property.getPropagated();
    if (property.getType() == CIMTYPE_REFERENCE) {
        out.open("PROPERTY.REFERENCE").attribute("NAME", nameText(property.getName()));
        if (!property.getReferenceClassName().isNull())
            out.attribute("REFERENCECLASS", nameText(property.getReferenceClassName()));
        writeClassOrigin(out, classOrigin, propagated);
    } else if (property.isArray()) {
        // wbemcli refuses EmbeddedObject on PROPERTY.ARRAY, so embedded
        // arrays go out as plain strings.
        out.open("PROPERTY.ARRAY")
            .attribute("NAME", nameText(property.getName()))
            .attribute("TYPE", wireTypeName(property.getType()));
        writeClassOrigin(out, classOrigin, propagated);
    } else {
        out.open("PROPERTY")
            .attribute("NAME", nameText(property.getName()))
            .attribute("TYPE", wireTypeName(property.getType()));
        writeClassOrigin(out, classOrigin, propagated);
        if (const char* kind = embeddedObjectKind(property.getType()))
            out.attribute("EmbeddedObject", kind);
    }
    if (withQualifiers)
        writeQualifiers(out, property);
    if (!value.isNull())
        writeValue(out, value);
    out.close();
}

void writeParameter(XmlWriter& out, const CIMConstParameter& parameter) {
    if (parameter.getType() == CIMTYPE_REFERENCE) {
        out.open(parameter.isArray() ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
            .attribute("NAME", nameText(parameter.getName()));
        if (!parameter.getReferenceClassName().isNull())
            out.attribute("REFERENCECLASS", nameText(parameter.getReferenceClassName()));
    } else if (parameter.isArray()) {
        out.open("PARAMETER.ARRAY")
            .attribute("NAME", nameText(parameter.getName()))
            .attribute("TYPE", wireTypeName(parameter.getType()));
        if (parameter.getArraySize() != 0)
            out.attribute("ARRAYSIZE", std::to_string(parameter.getArraySize()));
    } else {
        out.open("PARAMETER")
            .attribute("NAME", nameText(parameter.getName()))
            .attribute("TYPE", wireTypeName(parameter.getType()));
    }
    writeQualifiers(out, parameter);
    out.close();
}

void writeMethod(XmlWriter& out, const CIMConstMethod& method) {
    // cimcli refuses a METHOD without TYPE.
    out.open("METHOD")
        .attribute("NAME", nameText(method.getName()))
        .attribute("TYPE", wireTypeName(method.getType()));
    writeClassOrigin(out, method.getClassOrigin(), method.getPropagated());
    writeQualifiers(out, method);
    for (Uint32 i = 0; i < method.getParameterCount(); i++)
        writeParameter(out, method.getParameter(i));
    out.close();
}

} // namespace

const char* wireTypeName(CIMType type) {
    if (type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE)
        return "string";
    return cimTypeToString(type);
}

const char* embeddedObjectKind(CIMType type) {
    if (type == CIMTYPE_OBJECT)
        return "object";
    if (type == CIMTYPE_INSTANCE)
        return "instance";
    return nullptr;
}

void writeInstance(XmlWriter& out, const CIMConstInstance& instance, bool includeClassOrigin) {
    // Instances carry no qualifiers on the wire, and no xml:lang: wbemcli
    // refuses both.
    out.open("INSTANCE").attribute("CLASSNAME", nameText(instance.getClassName()));
    for (Uint32 i = 0; i < instance.getPropertyCount(); i++)
        writeProperty(out, instance.getProperty(i), includeClassOrigin, false);
    out.close();
}

void writeClass(XmlWriter& out, const CIMConstClass& cimClass) {
    out.open("CLASS").attribute("NAME", nameText(cimClass.getClassName()));
    if (!cimClass.getSuperClassName().isNull())
        out.attribute("SUPERCLASS", nameText(cimClass.getSuperClassName()));
    writeQualifiers(out, cimClass);
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); i++)
        writeProperty(out, cimClass.getProperty(i), true, true);
    for (Uint32 i = 0; i < cimClass.getMethodCount(); i++)
        writeMethod(out, cimClass.getMethod(i));
    out.close();
}

void writeValue(XmlWriter& out, const CIMValue& value) {
    if (value.getType() == CIMTYPE_REFERENCE) {
        if (value.isArray()) {
            Array<CIMObjectPath> paths;
            value.get(paths);
            out.open("VALUE.REFARRAY");
            for (Uint32 i = 0; i < paths.size(); i++)
                writeReferencePath(out, paths[i]);
            out.close();
        } else {
            CIMObjectPath path;
            value.get(path);
            writeReferencePath(out, path);
        }
        return;
    }
    const std::vector<std::string> texts = textsOf(value);
    if (value.isArray()) {
        out.open("VALUE.ARRAY");
        for (const std::string& text : texts)
            out.open("VALUE").text(text).close();
        out.close();
    } else {
        out.open("VALUE").text(texts.front()).close();
    }
}

void writeLocalNamespacePath(XmlWriter& out, const std::string& nameSpace) {
    out.open("LOCALNAMESPACEPATH");
    size_t start = 0;
    while (start <= nameSpace.size()) {
        const size_t slash = nameSpace.find('/', start);
        const size_t end = slash == std::string::npos ? nameSpace.size() : slash;
        if (end > start)
            out.open("NAMESPACE")
                .attribute("NAME", nameSpace.substr(start, end - start))
                .closeEmpty();
        if (slash == std::string::npos)
            break;
        start = slash + 1;
    }
    out.close();
}

void writeInstanceName(XmlWriter& out, const CIMObjectPath& path) {
    out.open("INSTANCENAME").attribute("CLASSNAME", nameText(path.getClassName()));
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++)
        writeKeyBinding(out, keys[i]);
    out.close();
}

void writeInstancePath(XmlWriter& out, const CIMObjectPath& path, const std::string& host,
                       const std::string& nameSpace) {
    out.open("INSTANCEPATH");
    writeNamespacePath(out, host, nameSpace);
    writeInstanceName(out, path);
    out.close();
}

void writeClassPath(XmlWriter& out, const CIMObjectPath& path, const std::string& host,
                    const std::string& nameSpace) {
    out.open("CLASSPATH");
    writeNamespacePath(out, host, nameSpace);
    out.open("CLASSNAME").attribute("NAME", nameText(path.getClassName())).closeEmpty();
    out.close();
}

} // namespace vexa::cimxml::detail
