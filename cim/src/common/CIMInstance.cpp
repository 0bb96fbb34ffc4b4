#include "ArrayImpl.h"
#include "CIMObjectRep.h"
#include "CIMPropertyRep.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMInstance>;

namespace {

CIMObjectRep* instanceRepOf(CIMObjectRep* rep) {
    if (!rep || rep->kind != CIMObjectRep::INSTANCE)
        throw DynamicCastFailedException();
    retainRep(rep);
    return rep;
}

CIMObjectPath buildInstancePath(const CIMObjectRep* instance, const CIMObjectRep* cimClass) {
    checkedRep(instance);
    checkedRep(cimClass);
    Array<CIMName> keyNames = cimClass->keyNames();
    Array<CIMKeyBinding> keys;
    for (Uint32 i = 0; i < keyNames.size(); i++) {
        Uint32 index = instance->findProperty(keyNames[i]);
        if (index != PEG_NOT_FOUND)
            keys.append(CIMKeyBinding(keyNames[i], instance->properties[index].getValue()));
    }
    return CIMObjectPath(String(), CIMNamespaceName(), instance->className(), keys);
}

Boolean identicalObjects(const CIMObjectRep* x, const CIMObjectRep* y) {
    return checkedRep(x)->identical(*checkedRep(y));
}

CIMInstance cloneInstance(const CIMObjectRep* rep) {
    return RepAccess::adopt<CIMInstance>(new CIMObjectRep(*checkedRep(rep)));
}

} // namespace

CIMInstance::CIMInstance() : _rep(nullptr) {}

CIMInstance::CIMInstance(const CIMInstance& x) : _rep(x._rep) { retainRep(_rep); }

CIMInstance::CIMInstance(const CIMObject& x) : _rep(instanceRepOf(x._rep)) {}

CIMInstance::CIMInstance(const CIMName& className)
    : _rep(new CIMObjectRep(CIMObjectRep::INSTANCE, className, CIMName())) {}

CIMInstance& CIMInstance::operator=(const CIMInstance& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMInstance::~CIMInstance() { releaseRep(_rep); }

const CIMName& CIMInstance::getClassName() const { return checkedRep(_rep)->className(); }

const CIMObjectPath& CIMInstance::getPath() const { return checkedRep(_rep)->path; }

void CIMInstance::setPath(const CIMObjectPath& path) { checkedRep(_rep)->setPath(path); }

CIMInstance& CIMInstance::addQualifier(const CIMQualifier& qualifier) {
    checkedRep(_rep)->qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMInstance::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMQualifier CIMInstance::getQualifier(Uint32 index) {
    return checkedRep(_rep)->qualifiers.get(index);
}

CIMConstQualifier CIMInstance::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

void CIMInstance::removeQualifier(Uint32 index) { checkedRep(_rep)->qualifiers.remove(index); }

Uint32 CIMInstance::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

CIMInstance& CIMInstance::addProperty(const CIMProperty& x) {
    checkedRep(_rep)->addProperty(x);
    return *this;
}

Uint32 CIMInstance::findProperty(const CIMName& name) const {
    return checkedRep(_rep)->findProperty(name);
}

CIMProperty CIMInstance::getProperty(Uint32 index) { return checkedRep(_rep)->property(index); }

CIMConstProperty CIMInstance::getProperty(Uint32 index) const {
    return checkedRep(_rep)->property(index);
}

void CIMInstance::removeProperty(Uint32 index) { checkedRep(_rep)->removeProperty(index); }

Uint32 CIMInstance::getPropertyCount() const { return checkedRep(_rep)->propertyCount(); }

CIMObjectPath CIMInstance::buildPath(const CIMConstClass& cimClass) const {
    return buildInstancePath(_rep, RepAccess::rep(cimClass));
}

CIMInstance CIMInstance::clone() const { return cloneInstance(_rep); }

Boolean CIMInstance::identical(const CIMConstInstance& x) const {
    return identicalObjects(_rep, x._rep);
}

Boolean CIMInstance::isUninitialized() const { return _rep == nullptr; }

void CIMInstance::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                                 const CIMPropertyList& propertyList) {
    CIMObjectRep* rep = checkedRep(_rep);
    if (!includeQualifiers)
        rep->qualifiers.clear();
    for (Uint32 i = rep->propertyCount(); i-- > 0;) {
        CIMProperty& property = rep->properties[i];
        if (!propertyList.useThisProperty(property.getName())) {
            rep->removeProperty(i);
            continue;
        }
        if (!includeQualifiers)
            RepAccess::rep(property)->clearQualifiers();
        if (!includeClassOrigin)
            property.setClassOrigin(CIMName());
    }
}

CIMConstInstance::CIMConstInstance() : _rep(nullptr) {}

CIMConstInstance::CIMConstInstance(const CIMConstInstance& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstInstance::CIMConstInstance(const CIMInstance& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstInstance::CIMConstInstance(const CIMObject& x) : _rep(instanceRepOf(x._rep)) {}

CIMConstInstance::CIMConstInstance(const CIMConstObject& x) : _rep(instanceRepOf(x._rep)) {}

CIMConstInstance::CIMConstInstance(const CIMName& className)
    : _rep(new CIMObjectRep(CIMObjectRep::INSTANCE, className, CIMName())) {}

CIMConstInstance& CIMConstInstance::operator=(const CIMConstInstance& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstInstance& CIMConstInstance::operator=(const CIMInstance& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstInstance::~CIMConstInstance() { releaseRep(_rep); }

const CIMName& CIMConstInstance::getClassName() const { return checkedRep(_rep)->className(); }

const CIMObjectPath& CIMConstInstance::getPath() const { return checkedRep(_rep)->path; }

Uint32 CIMConstInstance::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMConstQualifier CIMConstInstance::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

Uint32 CIMConstInstance::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

Uint32 CIMConstInstance::findProperty(const CIMName& name) const {
    return checkedRep(_rep)->findProperty(name);
}

CIMConstProperty CIMConstInstance::getProperty(Uint32 index) const {
    return checkedRep(_rep)->property(index);
}

Uint32 CIMConstInstance::getPropertyCount() const { return checkedRep(_rep)->propertyCount(); }

CIMObjectPath CIMConstInstance::buildPath(const CIMConstClass& cimClass) const {
    return buildInstancePath(_rep, RepAccess::rep(cimClass));
}

CIMInstance CIMConstInstance::clone() const { return cloneInstance(_rep); }

Boolean CIMConstInstance::identical(const CIMConstInstance& x) const {
    return identicalObjects(_rep, x._rep);
}

Boolean CIMConstInstance::isUninitialized() const { return _rep == nullptr; }

PEGASUS_NAMESPACE_END
