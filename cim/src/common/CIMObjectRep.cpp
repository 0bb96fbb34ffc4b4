#include "CIMObjectRep.h"
#include "CIMPropertyRep.h"
#include "RepAccess.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

void holdProperty(const CIMProperty& property) {
    RepAccess::rep(property)->containers.fetch_add(1);
}

void letGoOfProperty(const CIMProperty& property) {
    RepAccess::rep(property)->containers.fetch_sub(1);
}

} // namespace

CIMObjectRep::CIMObjectRep(Kind objectKind, const CIMName& className, const CIMName& superClass)
    : kind(objectKind), superClassName(superClass) {
    if (className.isNull())
        throw UninitializedObjectException();
    path.setClassName(className);
}

CIMObjectRep::CIMObjectRep(const CIMObjectRep& x)
    : SharedRep(x), kind(x.kind), path(x.path), superClassName(x.superClassName),
      qualifiers(x.qualifiers.clone()) {
    properties.reserve(x.properties.size());
    for (const CIMProperty& property : x.properties) {
        properties.push_back(property.clone());
        holdProperty(properties.back());
    }
    methods.reserve(x.methods.size());
    for (const CIMMethod& m : x.methods)
        methods.push_back(m.clone());
}

CIMObjectRep::~CIMObjectRep() {
    for (const CIMProperty& property : properties)
        letGoOfProperty(property);
}

void CIMObjectRep::setPath(const CIMObjectPath& newPath) {
    if (newPath.getClassName().isNull())
        throw UninitializedObjectException();
    if (!newPath.getClassName().equal(className()))
        throw TypeMismatchException();
    encoding.drop();
    path = newPath;
    shareKeyTexts();
}

// Keys are properties, so an instance's path usually repeats the texts of
// its key properties. Where a string key equals its property's value, the
// key takes the property's text, and the copy the builder made is freed with
// the builder's temporaries. Nothing a caller can see changes: texts are
// values, and the caller's path is left as it was.
void CIMObjectRep::shareKeyTexts() {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    Array<CIMKeyBinding> shared;
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (keys[i].getType() != CIMKeyBinding::STRING)
            continue;
        Uint32 index = findProperty(keys[i].getName());
        if (index == PEG_NOT_FOUND)
            continue;
        const CIMValue& value = properties[index].getValue();
        if (value.getType() != CIMTYPE_STRING || value.isArray() || value.isNull())
            continue;
        String text;
        value.get(text);
        if (text.getChar16Data() == keys[i].getValue().getChar16Data() ||
            !String::equal(text, keys[i].getValue()))
            continue;
        if (shared.size() == 0)
            shared = keys;
        shared[i].setValue(text);
    }
    if (shared.size() != 0)
        path.setKeyBindings(shared);
}

void CIMObjectRep::addProperty(const CIMProperty& property) {
    if (property.isUninitialized())
        throw UninitializedObjectException();
    if (findProperty(property.getName()) != PEG_NOT_FOUND)
        throw AlreadyExistsException("property \"" + property.getName().getString() + "\"");
    // Grown by half rather than doubled: cached instances never shrink, and
    // a doubled list leaves up to half of its room unused for their life.
    if (properties.size() == properties.capacity())
        properties.reserve(properties.size() + properties.size() / 2 + 2);
    encoding.drop();
    properties.push_back(property);
    holdProperty(property);
}

Uint32 CIMObjectRep::findProperty(const CIMName& name) const {
    const String& wanted = name.getString();
    for (std::size_t i = 0; i < properties.size(); i++) {
        if (String::equalNoCase(RepAccess::rep(properties[i])->name.getString(), wanted))
            return Uint32(i);
    }
    return PEG_NOT_FOUND;
}

CIMProperty& CIMObjectRep::property(Uint32 index) {
    if (index >= properties.size())
        throw IndexOutOfBoundsException();
    return properties[index];
}

const CIMProperty& CIMObjectRep::property(Uint32 index) const {
    if (index >= properties.size())
        throw IndexOutOfBoundsException();
    return properties[index];
}

void CIMObjectRep::removeProperty(Uint32 index) {
    if (index >= properties.size())
        throw IndexOutOfBoundsException();
    encoding.drop();
    letGoOfProperty(properties[index]);
    properties.erase(properties.begin() + index);
}

void CIMObjectRep::addMethod(const CIMMethod& m) {
    if (m.isUninitialized())
        throw UninitializedObjectException();
    if (findMethod(m.getName()) != PEG_NOT_FOUND)
        throw AlreadyExistsException("method \"" + m.getName().getString() + "\"");
    methods.push_back(m);
}

Uint32 CIMObjectRep::findMethod(const CIMName& name) const {
    for (std::size_t i = 0; i < methods.size(); i++) {
        if (methods[i].getName().equal(name))
            return Uint32(i);
    }
    return PEG_NOT_FOUND;
}

CIMMethod& CIMObjectRep::method(Uint32 index) {
    if (index >= methods.size())
        throw IndexOutOfBoundsException();
    return methods[index];
}

const CIMMethod& CIMObjectRep::method(Uint32 index) const {
    if (index >= methods.size())
        throw IndexOutOfBoundsException();
    return methods[index];
}

void CIMObjectRep::removeMethod(Uint32 index) {
    if (index >= methods.size())
        throw IndexOutOfBoundsException();
    methods.erase(methods.begin() + index);
}

Array<CIMName> CIMObjectRep::keyNames() const {
    Array<CIMName> names;
    for (const CIMProperty& property : properties) {
        if (RepAccess::rep(property)->qualifiers().isTrue(CIMName("Key")))
            names.append(property.getName());
    }
    return names;
}

// Properties, methods and qualifiers are compared position by position, and
// the whole path (keys and namespace too) must match: OpenPegasus compares
// them so, and two objects built in different orders are not identical.
Boolean CIMObjectRep::identical(const CIMObjectRep& x) const {
    if (this == &x)
        return true;
    if (kind != x.kind || !path.identical(x.path) || !superClassName.equal(x.superClassName) ||
        !qualifiers.identical(x.qualifiers) || properties.size() != x.properties.size() ||
        methods.size() != x.methods.size())
        return false;
    for (std::size_t i = 0; i < properties.size(); i++) {
        if (!properties[i].identical(x.properties[i]))
            return false;
    }
    for (std::size_t i = 0; i < methods.size(); i++) {
        if (!methods[i].identical(x.methods[i]))
            return false;
    }
    return true;
}

PEGASUS_NAMESPACE_END
