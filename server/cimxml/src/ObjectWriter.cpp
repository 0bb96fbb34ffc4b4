#include "ObjectWriter.h"

#include "ValueText.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Exception.h>

#include <charconv>
#include <cmath>

namespace vexa::cimxml::detail {

using namespace Pegasus;

namespace {

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
void writeEmbedded(XmlWriter& out, const CIMObject& object) {
    out.open("VALUE").text(embeddedMarkup(object)).close();
}

void writeEmbeddedValue(XmlWriter& out, const CIMValue& value) {
    if (value.getType() == CIMTYPE_OBJECT) {
        if (value.isArray()) {
            Array<CIMObject> objects;
            value.get(objects);
            out.open("VALUE.ARRAY");
            for (Uint32 i = 0; i < objects.size(); i++)
                writeEmbedded(out, objects[i]);
            out.close();
        } else {
            CIMObject object;
            value.get(object);
            writeEmbedded(out, object);
        }
    } else if (value.isArray()) {
        Array<CIMInstance> instances;
        value.get(instances);
        out.open("VALUE.ARRAY");
        for (Uint32 i = 0; i < instances.size(); i++)
            writeEmbedded(out, CIMObject(instances[i]));
        out.close();
    } else {
        CIMInstance instance;
        value.get(instance);
        writeEmbedded(out, CIMObject(instance));
    }
}

// Scalars go straight into the answer: numbers through a buffer on the
// stack, text converted and escaped in one pass.
template <class Number>
void writeNumber(XmlWriter& out, Number x) {
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, x);
    out.raw(std::string_view(buffer, static_cast<size_t>(result.ptr - buffer)));
}

// Nine significant digits bring every real32 back unchanged, seventeen
// every real64.
void writeReal(XmlWriter& out, double x, int precision) {
    if (std::isnan(x)) {
        out.raw("NaN");
    } else if (std::isinf(x)) {
        out.raw(x < 0 ? "-INF" : "INF");
    } else {
        char buffer[64];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, x,
                                          std::chars_format::scientific, precision);
        out.raw(std::string_view(buffer, static_cast<size_t>(result.ptr - buffer)));
    }
}

void writeScalar(XmlWriter& out, const Boolean& x) { out.raw(x ? "TRUE" : "FALSE"); }
void writeScalar(XmlWriter& out, const Uint8& x) { writeNumber(out, unsigned(x)); }
void writeScalar(XmlWriter& out, const Sint8& x) { writeNumber(out, int(x)); }
void writeScalar(XmlWriter& out, const Uint16& x) { writeNumber(out, x); }
void writeScalar(XmlWriter& out, const Sint16& x) { writeNumber(out, x); }
void writeScalar(XmlWriter& out, const Uint32& x) { writeNumber(out, x); }
void writeScalar(XmlWriter& out, const Sint32& x) { writeNumber(out, x); }
void writeScalar(XmlWriter& out, const Uint64& x) { writeNumber(out, x); }
void writeScalar(XmlWriter& out, const Sint64& x) { writeNumber(out, x); }
void writeScalar(XmlWriter& out, const Real32& x) { writeReal(out, x, 8); }
void writeScalar(XmlWriter& out, const Real64& x) { writeReal(out, x, 16); }
void writeScalar(XmlWriter& out, const String& x) { out.text(x); }
void writeScalar(XmlWriter& out, const CIMDateTime& x) { out.text(x.toString()); }
// A lone surrogate or NUL has no place in an XML document; the escaping
// turns both into U+FFFD.
void writeScalar(XmlWriter& out, const Char16& x) { out.text(String(&x, 1)); }

template <class T>
void writeTyped(XmlWriter& out, const CIMValue& value) {
    if (value.isArray()) {
        Array<T> items;
        value.get(items);
        out.open("VALUE.ARRAY");
        for (Uint32 i = 0; i < items.size(); i++) {
            out.open("VALUE");
            writeScalar(out, items[i]);
            out.close();
        }
        out.close();
    } else {
        T item{};
        value.get(item);
        out.open("VALUE");
        writeScalar(out, item);
        out.close();
    }
}

void writeNamespacePath(XmlWriter& out, const String& host, const String& nameSpace) {
    out.open("NAMESPACEPATH");
    out.open("HOST").text(host).close();
    writeLocalNamespacePath(out, nameSpace);
    out.close();
}

// Reference values keep the form their path has: with host and namespace
// an INSTANCEPATH, with a namespace only a LOCALINSTANCEPATH (which wbemcli
// prints best), else a bare INSTANCENAME.
void writeReferencePath(XmlWriter& out, const CIMObjectPath& path) {
    const String& nameSpace = path.getNameSpace().getString();
    const String& host = path.getHost();
    out.open("VALUE.REFERENCE");
    if (nameSpace.size() != 0 && host.size() != 0) {
        writeInstancePath(out, path, host, nameSpace);
    } else if (nameSpace.size() != 0) {
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
    out.open("KEYBINDING").attribute("NAME", key.getName());
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
    out.open("KEYVALUE").attribute("VALUETYPE", valueType).text(key.getValue()).close();
    out.close();
}

void writeClassOrigin(XmlWriter& out, const CIMName& classOrigin, bool propagated) {
    if (!classOrigin.isNull())
        out.attribute("CLASSORIGIN", classOrigin);
    if (propagated)
        out.attribute("PROPAGATED", "true");
}

void writeQualifier(XmlWriter& out, const CIMConstQualifier& qualifier) {
    const CIMValue& value = qualifier.getValue();
    out.open("QUALIFIER")
        .attribute("NAME", qualifier.getName())
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
        out.open("PROPERTY.REFERENCE").attribute("NAME", property.getName());
        if (!property.getReferenceClassName().isNull())
            out.attribute("REFERENCECLASS", property.getReferenceClassName());
        writeClassOrigin(out, classOrigin, propagated);
    } else if (property.isArray()) {
        // wbemcli refuses EmbeddedObject on PROPERTY.ARRAY, so embedded
        // arrays go out as plain strings.
        out.open("PROPERTY.ARRAY")
            .attribute("NAME", property.getName())
            .attribute("TYPE", wireTypeName(property.getType()));
        writeClassOrigin(out, classOrigin, propagated);
    } else {
        out.open("PROPERTY")
            .attribute("NAME", property.getName())
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
            .attribute("NAME", parameter.getName());
        if (!parameter.getReferenceClassName().isNull())
            out.attribute("REFERENCECLASS", parameter.getReferenceClassName());
    } else if (parameter.isArray()) {
        out.open("PARAMETER.ARRAY")
            .attribute("NAME", parameter.getName())
            .attribute("TYPE", wireTypeName(parameter.getType()));
        if (parameter.getArraySize() != 0)
            out.attribute("ARRAYSIZE", std::to_string(parameter.getArraySize()));
    } else {
        out.open("PARAMETER")
            .attribute("NAME", parameter.getName())
            .attribute("TYPE", wireTypeName(parameter.getType()));
    }
    writeQualifiers(out, parameter);
    out.close();
}

void writeMethod(XmlWriter& out, const CIMConstMethod& method) {
    // cimcli refuses a METHOD without TYPE.
    out.open("METHOD")
        .attribute("NAME", method.getName())
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

void writeInstance(XmlWriter& out, const CIMConstInstance& instance, bool includeClassOrigin,
                   const PropertySelection& selection) {
    // Instances carry no qualifiers on the wire, and no xml:lang: wbemcli
    // refuses both.
    out.open("INSTANCE").attribute("CLASSNAME", instance.getClassName());
    for (Uint32 i = 0; i < instance.getPropertyCount(); i++) {
        const CIMConstProperty property = instance.getProperty(i);
        if (selection.includes(property.getName()))
            writeProperty(out, property, includeClassOrigin, false);
    }
    out.close();
}

void writeClass(XmlWriter& out, const CIMConstClass& cimClass) {
    out.open("CLASS").attribute("NAME", cimClass.getClassName());
    if (!cimClass.getSuperClassName().isNull())
        out.attribute("SUPERCLASS", cimClass.getSuperClassName());
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
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        return writeTyped<Boolean>(out, value);
    case CIMTYPE_UINT8:
        return writeTyped<Uint8>(out, value);
    case CIMTYPE_SINT8:
        return writeTyped<Sint8>(out, value);
    case CIMTYPE_UINT16:
        return writeTyped<Uint16>(out, value);
    case CIMTYPE_SINT16:
        return writeTyped<Sint16>(out, value);
    case CIMTYPE_UINT32:
        return writeTyped<Uint32>(out, value);
    case CIMTYPE_SINT32:
        return writeTyped<Sint32>(out, value);
    case CIMTYPE_UINT64:
        return writeTyped<Uint64>(out, value);
    case CIMTYPE_SINT64:
        return writeTyped<Sint64>(out, value);
    case CIMTYPE_REAL32:
        return writeTyped<Real32>(out, value);
    case CIMTYPE_REAL64:
        return writeTyped<Real64>(out, value);
    case CIMTYPE_CHAR16:
        return writeTyped<Char16>(out, value);
    case CIMTYPE_STRING:
        return writeTyped<String>(out, value);
    case CIMTYPE_DATETIME:
        return writeTyped<CIMDateTime>(out, value);
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        return writeEmbeddedValue(out, value);
    case CIMTYPE_REFERENCE:
        break;
    }
}

void writeLocalNamespacePath(XmlWriter& out, const String& nameSpace) {
    out.open("LOCALNAMESPACEPATH");
    const Char16* text = nameSpace.getChar16Data();
    const size_t length = nameSpace.size();
    for (size_t start = 0; start <= length;) {
        size_t end = start;
        while (end < length && text[end] != '/')
            end++;
        if (end > start)
            out.open("NAMESPACE").attribute("NAME", text + start, end - start).closeEmpty();
        start = end + 1;
    }
    out.close();
}

void writeInstanceName(XmlWriter& out, const CIMObjectPath& path) {
    out.open("INSTANCENAME").attribute("CLASSNAME", path.getClassName());
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++)
        writeKeyBinding(out, keys[i]);
    out.close();
}

void writeInstancePath(XmlWriter& out, const CIMObjectPath& path, const String& host,
                       const String& nameSpace) {
    out.open("INSTANCEPATH");
    writeNamespacePath(out, host, nameSpace);
    writeInstanceName(out, path);
    out.close();
}

void writeClassPath(XmlWriter& out, const CIMObjectPath& path, const String& host,
                    const String& nameSpace) {
    out.open("CLASSPATH");
    writeNamespacePath(out, host, nameSpace);
    out.open("CLASSNAME").attribute("NAME", path.getClassName()).closeEmpty();
    out.close();
}

} // namespace vexa::cimxml::detail

namespace vexa::cimxml {

bool PropertySelection::includes(const Pegasus::CIMName& name) const {
    if (propertyList != nullptr && !propertyList->isNull() && !propertyList->contains(name))
        return false;
    return declaredIn == nullptr || declaredIn->findProperty(name) != Pegasus::PEG_NOT_FOUND;
}

} // namespace vexa::cimxml
