#include "ArrayImpl.h"
#include "CIMObjectRep.h"
#include "ObjectXmlWriter.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMObject>;

namespace {

CIMObjectRep* sharedRep(CIMObjectRep* rep) {
    retainRep(rep);
    return rep;
}

CIMObject cloneObject(const CIMObjectRep* rep) {
    return RepAccess::adopt<CIMObject>(new CIMObjectRep(*checkedRep(rep)));
}

Boolean identicalObjects(const CIMObjectRep* x, const CIMObjectRep* y) {
    return checkedRep(x)->identical(*checkedRep(y));
}

} // namespace

CIMObject::CIMObject() : _rep(nullptr) {}

CIMObject::CIMObject(const CIMObject& x) : _rep(sharedRep(x._rep)) {}

CIMObject::CIMObject(const CIMClass& x) : _rep(sharedRep(x._rep)) {}

CIMObject::CIMObject(const CIMInstance& x) : _rep(sharedRep(x._rep)) {}

CIMObject& CIMObject::operator=(const CIMObject& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMObject::~CIMObject() { releaseRep(_rep); }

const CIMName& CIMObject::getClassName() const { return checkedRep(_rep)->className(); }

const CIMObjectPath& CIMObject::getPath() const { return checkedRep(_rep)->path; }

void CIMObject::setPath(const CIMObjectPath& path) { checkedRep(_rep)->setPath(path); }

CIMObject& CIMObject::addQualifier(const CIMQualifier& qualifier) {
    checkedRep(_rep)->qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMObject::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMQualifier CIMObject::getQualifier(Uint32 index) {
    return checkedRep(_rep)->qualifiers.get(index);
}

CIMConstQualifier CIMObject::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

void CIMObject::removeQualifier(Uint32 index) { checkedRep(_rep)->qualifiers.remove(index); }

Uint32 CIMObject::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

CIMObject& CIMObject::addProperty(const CIMProperty& x) {
    checkedRep(_rep)->addProperty(x);
    return *this;
}

Uint32 CIMObject::findProperty(const CIMName& name) const {
    return checkedRep(_rep)->findProperty(name);
}

CIMProperty CIMObject::getProperty(Uint32 index) { return checkedRep(_rep)->property(index); }

CIMConstProperty CIMObject::getProperty(Uint32 index) const {
    return checkedRep(_rep)->property(index);
}

void CIMObject::removeProperty(Uint32 index) { checkedRep(_rep)->removeProperty(index); }

Uint32 CIMObject::getPropertyCount() const { return checkedRep(_rep)->propertyCount(); }

CIMObject CIMObject::clone() const { return cloneObject(_rep); }

Boolean CIMObject::identical(const CIMConstObject& x) const {
    return identicalObjects(_rep, x._rep);
}

Boolean CIMObject::isUninitialized() const { return _rep == nullptr; }

String CIMObject::toString() const { return objectToXml(*checkedRep(_rep)); }

Boolean CIMObject::isClass() const { return checkedRep(_rep)->kind == CIMObjectRep::CLASS; }

Boolean CIMObject::isInstance() const { return checkedRep(_rep)->kind == CIMObjectRep::INSTANCE; }

CIMConstObject::CIMConstObject() : _rep(nullptr) {}

CIMConstObject::CIMConstObject(const CIMConstObject& x) : _rep(sharedRep(x._rep)) {}

CIMConstObject::CIMConstObject(const CIMObject& x) : _rep(sharedRep(x._rep)) {}

CIMConstObject::CIMConstObject(const CIMClass& x) : _rep(sharedRep(x._rep)) {}

CIMConstObject::CIMConstObject(const CIMConstClass& x) : _rep(sharedRep(x._rep)) {}

CIMConstObject::CIMConstObject(const CIMInstance& x) : _rep(sharedRep(x._rep)) {}

CIMConstObject::CIMConstObject(const CIMConstInstance& x) : _rep(sharedRep(x._rep)) {}

CIMConstObject& CIMConstObject::operator=(const CIMConstObject& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstObject::~CIMConstObject() { releaseRep(_rep); }

const CIMName& CIMConstObject::getClassName() const { return checkedRep(_rep)->className(); }

const CIMObjectPath& CIMConstObject::getPath() const { return checkedRep(_rep)->path; }

Uint32 CIMConstObject::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMConstQualifier CIMConstObject::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

Uint32 CIMConstObject::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

Uint32 CIMConstObject::findProperty(const CIMName& name) const {
    return checkedRep(_rep)->findProperty(name);
}

CIMConstProperty CIMConstObject::getProperty(Uint32 index) const {
    return checkedRep(_rep)->property(index);
}

Uint32 CIMConstObject::getPropertyCount() const { return checkedRep(_rep)->propertyCount(); }

CIMObject CIMConstObject::clone() const { return cloneObject(_rep); }

Boolean CIMConstObject::identical(const CIMConstObject& x) const {
    return identicalObjects(_rep, x._rep);
}

Boolean CIMConstObject::isUninitialized() const { return _rep == nullptr; }

String CIMConstObject::toString() const { return objectToXml(*checkedRep(_rep)); }

Boolean CIMConstObject::isClass() const { return checkedRep(_rep)->kind == CIMObjectRep::CLASS; }

Boolean CIMConstObject::isInstance() const {
    return checkedRep(_rep)->kind == CIMObjectRep::INSTANCE;
}

PEGASUS_NAMESPACE_END
