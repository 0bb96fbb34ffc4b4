#include "ArrayImpl.h"
#include "CIMObjectRep.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMObject.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMClass>;

namespace {

CIMObjectRep* classRepOf(CIMObjectRep* rep) {
    if (!rep || rep->kind != CIMObjectRep::CLASS)
        throw DynamicCastFailedException();
    retainRep(rep);
    return rep;
}

CIMClass cloneClass(const CIMObjectRep* rep) {
    return RepAccess::adopt<CIMClass>(new CIMObjectRep(*checkedRep(rep)));
}

Boolean identicalClasses(const CIMObjectRep* x, const CIMObjectRep* y) {
    return checkedRep(x)->identical(*checkedRep(y));
}

void copyKeyNames(const CIMObjectRep* rep, Array<CIMName>& keyNames) {
    keyNames = checkedRep(rep)->keyNames();
}

} // namespace

CIMClass::CIMClass() : _rep(nullptr) {}

CIMClass::CIMClass(const CIMClass& x) : _rep(x._rep) { retainRep(_rep); }

CIMClass::CIMClass(const CIMObject& x) : _rep(classRepOf(x._rep)) {}

CIMClass::CIMClass(const CIMName& className, const CIMName& superClassName)
    : _rep(new CIMObjectRep(CIMObjectRep::CLASS, className, superClassName)) {}

CIMClass& CIMClass::operator=(const CIMClass& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMClass::~CIMClass() { releaseRep(_rep); }

Boolean CIMClass::isAssociation() const {
    return checkedRep(_rep)->qualifiers.isTrue(CIMName("Association"));
}

Boolean CIMClass::isAbstract() const {
    return checkedRep(_rep)->qualifiers.isTrue(CIMName("Abstract"));
}

const CIMName& CIMClass::getClassName() const { return checkedRep(_rep)->className(); }

const CIMObjectPath& CIMClass::getPath() const { return checkedRep(_rep)->path; }

void CIMClass::setPath(const CIMObjectPath& path) { checkedRep(_rep)->setPath(path); }

const CIMName& CIMClass::getSuperClassName() const { return checkedRep(_rep)->superClassName; }

void CIMClass::setSuperClassName(const CIMName& superClassName) {
    checkedRep(_rep)->superClassName = superClassName;
}

CIMClass& CIMClass::addQualifier(const CIMQualifier& qualifier) {
    checkedRep(_rep)->qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMClass::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMQualifier CIMClass::getQualifier(Uint32 index) {
    return checkedRep(_rep)->qualifiers.get(index);
}

CIMConstQualifier CIMClass::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

void CIMClass::removeQualifier(Uint32 index) { checkedRep(_rep)->qualifiers.remove(index); }

Uint32 CIMClass::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

CIMClass& CIMClass::addProperty(const CIMProperty& x) {
    checkedRep(_rep)->addProperty(x);
    return *this;
}

Uint32 CIMClass::findProperty(const CIMName& name) const {
    return checkedRep(_rep)->findProperty(name);
}

CIMProperty CIMClass::getProperty(Uint32 index) { return checkedRep(_rep)->property(index); }

CIMConstProperty CIMClass::getProperty(Uint32 index) const {
    return checkedRep(_rep)->property(index);
}

void CIMClass::removeProperty(Uint32 index) { checkedRep(_rep)->removeProperty(index); }

Uint32 CIMClass::getPropertyCount() const { return checkedRep(_rep)->propertyCount(); }

CIMClass& CIMClass::addMethod(const CIMMethod& x) {
    checkedRep(_rep)->addMethod(x);
    return *this;
}

Uint32 CIMClass::findMethod(const CIMName& name) const {
    return checkedRep(_rep)->findMethod(name);
}

CIMMethod CIMClass::getMethod(Uint32 index) { return checkedRep(_rep)->method(index); }

CIMConstMethod CIMClass::getMethod(Uint32 index) const { return checkedRep(_rep)->method(index); }

void CIMClass::removeMethod(Uint32 index) { checkedRep(_rep)->removeMethod(index); }

Uint32 CIMClass::getMethodCount() const { return checkedRep(_rep)->methodCount(); }

void CIMClass::getKeyNames(Array<CIMName>& keyNames) const { copyKeyNames(_rep, keyNames); }

Boolean CIMClass::hasKeys() const { return checkedRep(_rep)->keyNames().size() != 0; }

CIMClass CIMClass::clone() const { return cloneClass(_rep); }

Boolean CIMClass::identical(const CIMConstClass& x) const { return identicalClasses(_rep, x._rep); }

Boolean CIMClass::isUninitialized() const { return _rep == nullptr; }

CIMConstClass::CIMConstClass() : _rep(nullptr) {}

CIMConstClass::CIMConstClass(const CIMConstClass& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstClass::CIMConstClass(const CIMClass& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstClass::CIMConstClass(const CIMObject& x) : _rep(classRepOf(x._rep)) {}

CIMConstClass::CIMConstClass(const CIMConstObject& x) : _rep(classRepOf(x._rep)) {}

CIMConstClass::CIMConstClass(const CIMName& className, const CIMName& superClassName)
    : _rep(new CIMObjectRep(CIMObjectRep::CLASS, className, superClassName)) {}

CIMConstClass& CIMConstClass::operator=(const CIMConstClass& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstClass& CIMConstClass::operator=(const CIMClass& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstClass::~CIMConstClass() { releaseRep(_rep); }

Boolean CIMConstClass::isAssociation() const {
    return checkedRep(_rep)->qualifiers.isTrue(CIMName("Association"));
}

Boolean CIMConstClass::isAbstract() const {
    return checkedRep(_rep)->qualifiers.isTrue(CIMName("Abstract"));
}

const CIMName& CIMConstClass::getClassName() const { return checkedRep(_rep)->className(); }

const CIMObjectPath& CIMConstClass::getPath() const { return checkedRep(_rep)->path; }

const CIMName& CIMConstClass::getSuperClassName() const { return checkedRep(_rep)->superClassName; }

Uint32 CIMConstClass::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMConstQualifier CIMConstClass::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

Uint32 CIMConstClass::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

Uint32 CIMConstClass::findProperty(const CIMName& name) const {
    return checkedRep(_rep)->findProperty(name);
}

CIMConstProperty CIMConstClass::getProperty(Uint32 index) const {
    return checkedRep(_rep)->property(index);
}

Uint32 CIMConstClass::getPropertyCount() const { return checkedRep(_rep)->propertyCount(); }

Uint32 CIMConstClass::findMethod(const CIMName& name) const {
    return checkedRep(_rep)->findMethod(name);
}

CIMConstMethod CIMConstClass::getMethod(Uint32 index) const {
    return checkedRep(_rep)->method(index);
}

Uint32 CIMConstClass::getMethodCount() const { return checkedRep(_rep)->methodCount(); }

void CIMConstClass::getKeyNames(Array<CIMName>& keyNames) const { copyKeyNames(_rep, keyNames); }

Boolean CIMConstClass::hasKeys() const { return checkedRep(_rep)->keyNames().size() != 0; }

CIMClass CIMConstClass::clone() const { return cloneClass(_rep); }

Boolean CIMConstClass::identical(const CIMConstClass& x) const {
    return identicalClasses(_rep, x._rep);
}

Boolean CIMConstClass::isUninitialized() const { return _rep == nullptr; }

PEGASUS_NAMESPACE_END
