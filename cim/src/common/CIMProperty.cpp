#include "ArrayImpl.h"
#include "CIMPropertyRep.h"
#include "EncodingSlot.h"
#include "RepAccess.h"

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMProperty>;

namespace {

CIMPropertyRep* makePropertyRep(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                                const CIMName& referenceClassName, const CIMName& classOrigin,
                                Boolean propagated) {
    if (name.isNull())
        throw UninitializedObjectException();
    if (arraySize && (!value.isArray() || value.getArraySize() != arraySize))
        throw TypeMismatchException();
    if (value.isArray() && value.getType() == CIMTYPE_REFERENCE)
        throw TypeMismatchException();
    if (!referenceClassName.isNull() && value.getType() != CIMTYPE_REFERENCE)
        throw TypeMismatchException();
    CIMPropertyRep* rep = new CIMPropertyRep();
    rep->name = name;
    rep->value = value;
    rep->setArraySize(arraySize);
    rep->setReferenceClassName(referenceClassName);
    rep->setClassOrigin(classOrigin);
    rep->setPropagated(propagated);
    return rep;
}

Boolean identicalProperties(const CIMPropertyRep* x, const CIMPropertyRep* y) {
    checkedRep(x);
    checkedRep(y);
    if (x == y)
        return true;
    return x->name.equal(y->name) && x->value.equal(y->value) && x->arraySize() == y->arraySize() &&
           x->referenceClassName().equal(y->referenceClassName()) &&
           x->classOrigin().equal(y->classOrigin()) && x->propagated() == y->propagated() &&
           x->qualifiers().identical(y->qualifiers());
}

CIMProperty cloneProperty(const CIMPropertyRep* rep) {
    checkedRep(rep);
    return RepAccess::adopt<CIMProperty>(new CIMPropertyRep(*rep));
}

} // namespace

CIMProperty::CIMProperty() : _rep(nullptr) {}

CIMProperty::CIMProperty(const CIMProperty& x) : _rep(x._rep) { retainRep(_rep); }

CIMProperty::CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                         const CIMName& referenceClassName, const CIMName& classOrigin,
                         Boolean propagated)
    : _rep(makePropertyRep(name, value, arraySize, referenceClassName, classOrigin, propagated)) {}

CIMProperty::~CIMProperty() { releaseRep(_rep); }

CIMProperty& CIMProperty::operator=(const CIMProperty& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMProperty::getName() const { return checkedRep(_rep)->name; }

void CIMProperty::setName(const CIMName& name) {
    CIMPropertyRep* rep = checkedRep(_rep);
    if (rep->containers.load() != 0)
        throw Exception("cannot rename property \"" + rep->name.getString() +
                        "\" while it belongs to a class or instance");
    if (name.isNull())
        throw UninitializedObjectException();
    rep->name = name;
}

const CIMValue& CIMProperty::getValue() const { return checkedRep(_rep)->value; }

CIMType CIMProperty::getType() const { return checkedRep(_rep)->value.getType(); }

Boolean CIMProperty::isArray() const { return checkedRep(_rep)->value.isArray(); }

void CIMProperty::setValue(const CIMValue& value) {
    CIMPropertyRep* rep = checkedRep(_rep);
    if (!rep->value.typeCompatible(value))
        throw TypeMismatchException();
    rep->value = value;
    if (rep->containers.load(std::memory_order_relaxed) != 0)
        heldValueChanged();
}

Uint32 CIMProperty::getArraySize() const { return checkedRep(_rep)->arraySize(); }

const CIMName& CIMProperty::getReferenceClassName() const {
    return checkedRep(_rep)->referenceClassName();
}

const CIMName& CIMProperty::getClassOrigin() const { return checkedRep(_rep)->classOrigin(); }

void CIMProperty::setClassOrigin(const CIMName& classOrigin) {
    checkedRep(_rep)->setClassOrigin(classOrigin);
}

Boolean CIMProperty::getPropagated() const { return checkedRep(_rep)->propagated(); }

void CIMProperty::setPropagated(Boolean propagated) { checkedRep(_rep)->setPropagated(propagated); }

CIMProperty& CIMProperty::addQualifier(const CIMQualifier& x) {
    checkedRep(_rep)->qualifiersToChange().add(x);
    return *this;
}

Uint32 CIMProperty::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers().find(name);
}

CIMQualifier CIMProperty::getQualifier(Uint32 index) {
    return checkedRep(_rep)->qualifiers().get(index);
}

CIMConstQualifier CIMProperty::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers().get(index);
}

void CIMProperty::removeQualifier(Uint32 index) {
    checkedRep(_rep)->qualifiersToChange().remove(index);
}

Uint32 CIMProperty::getQualifierCount() const { return checkedRep(_rep)->qualifiers().size(); }

Boolean CIMProperty::identical(const CIMConstProperty& x) const {
    return identicalProperties(_rep, x._rep);
}

CIMProperty CIMProperty::clone() const { return cloneProperty(_rep); }

Boolean CIMProperty::isUninitialized() const { return _rep == nullptr; }

CIMConstProperty::CIMConstProperty() : _rep(nullptr) {}

CIMConstProperty::CIMConstProperty(const CIMConstProperty& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstProperty::CIMConstProperty(const CIMProperty& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstProperty::CIMConstProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                                   const CIMName& referenceClassName, const CIMName& classOrigin,
                                   Boolean propagated)
    : _rep(makePropertyRep(name, value, arraySize, referenceClassName, classOrigin, propagated)) {}

CIMConstProperty::~CIMConstProperty() { releaseRep(_rep); }

CIMConstProperty& CIMConstProperty::operator=(const CIMConstProperty& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstProperty& CIMConstProperty::operator=(const CIMProperty& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMConstProperty::getName() const { return checkedRep(_rep)->name; }

const CIMValue& CIMConstProperty::getValue() const { return checkedRep(_rep)->value; }

CIMType CIMConstProperty::getType() const { return checkedRep(_rep)->value.getType(); }

Boolean CIMConstProperty::isArray() const { return checkedRep(_rep)->value.isArray(); }

Uint32 CIMConstProperty::getArraySize() const { return checkedRep(_rep)->arraySize(); }

const CIMName& CIMConstProperty::getReferenceClassName() const {
    return checkedRep(_rep)->referenceClassName();
}

const CIMName& CIMConstProperty::getClassOrigin() const { return checkedRep(_rep)->classOrigin(); }

Boolean CIMConstProperty::getPropagated() const { return checkedRep(_rep)->propagated(); }

Uint32 CIMConstProperty::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers().find(name);
}

CIMConstQualifier CIMConstProperty::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers().get(index);
}

Uint32 CIMConstProperty::getQualifierCount() const { return checkedRep(_rep)->qualifiers().size(); }

Boolean CIMConstProperty::identical(const CIMConstProperty& x) const {
    return identicalProperties(_rep, x._rep);
}

CIMProperty CIMConstProperty::clone() const { return cloneProperty(_rep); }

Boolean CIMConstProperty::isUninitialized() const { return _rep == nullptr; }

PEGASUS_NAMESPACE_END
