#include "ArrayImpl.h"
#include "CIMQualifierList.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMParameter.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMParameter>;

class PEGASUS_HIDDEN_LINKAGE CIMParameterRep : public SharedRep {
public:
    CIMParameterRep() = default;
    CIMParameterRep(const CIMParameterRep& x)
        : SharedRep(x), name(x.name), type(x.type), isArray(x.isArray), arraySize(x.arraySize),
          referenceClassName(x.referenceClassName), qualifiers(x.qualifiers.clone()) {}

    CIMName name;
    CIMType type = CIMTYPE_BOOLEAN;
    Boolean isArray = false;
    Uint32 arraySize = 0;
    CIMName referenceClassName;
    CIMQualifierList qualifiers;
};

namespace {

CIMParameterRep* makeParameterRep(const CIMName& name, CIMType type, Boolean isArray,
                                  Uint32 arraySize, const CIMName& referenceClassName) {
    if (name.isNull())
        throw UninitializedObjectException();
    if (arraySize && !isArray)
        throw TypeMismatchException();
    if (!referenceClassName.isNull() && type != CIMTYPE_REFERENCE)
        throw TypeMismatchException();
    CIMParameterRep* rep = new CIMParameterRep();
    rep->name = name;
    rep->type = type;
    rep->isArray = isArray;
    rep->arraySize = arraySize;
    rep->referenceClassName = referenceClassName;
    return rep;
}

Boolean identicalParameters(const CIMParameterRep* x, const CIMParameterRep* y) {
    checkedRep(x);
    checkedRep(y);
    return x == y ||
           (x->name.equal(y->name) && x->type == y->type && x->isArray == y->isArray &&
            x->arraySize == y->arraySize && x->referenceClassName.equal(y->referenceClassName) &&
            x->qualifiers.identical(y->qualifiers));
}

CIMParameter cloneParameter(const CIMParameterRep* rep) {
    return RepAccess::adopt<CIMParameter>(new CIMParameterRep(*checkedRep(rep)));
}

} // namespace

CIMParameter::CIMParameter() : _rep(nullptr) {}

CIMParameter::CIMParameter(const CIMParameter& x) : _rep(x._rep) { retainRep(_rep); }

CIMParameter::CIMParameter(const CIMName& name, CIMType type, Boolean isArray, Uint32 arraySize,
                           const CIMName& referenceClassName)
    : _rep(makeParameterRep(name, type, isArray, arraySize, referenceClassName)) {}

CIMParameter::~CIMParameter() { releaseRep(_rep); }

CIMParameter& CIMParameter::operator=(const CIMParameter& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMParameter::getName() const { return checkedRep(_rep)->name; }

void CIMParameter::setName(const CIMName& name) {
    if (name.isNull())
        throw UninitializedObjectException();
    checkedRep(_rep)->name = name;
}

Boolean CIMParameter::isArray() const { return checkedRep(_rep)->isArray; }

Uint32 CIMParameter::getArraySize() const { return checkedRep(_rep)->arraySize; }

const CIMName& CIMParameter::getReferenceClassName() const {
    return checkedRep(_rep)->referenceClassName;
}

CIMType CIMParameter::getType() const { return checkedRep(_rep)->type; }

CIMParameter& CIMParameter::addQualifier(const CIMQualifier& x) {
    checkedRep(_rep)->qualifiers.add(x);
    return *this;
}

Uint32 CIMParameter::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMQualifier CIMParameter::getQualifier(Uint32 index) {
    return checkedRep(_rep)->qualifiers.get(index);
}

CIMConstQualifier CIMParameter::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

void CIMParameter::removeQualifier(Uint32 index) { checkedRep(_rep)->qualifiers.remove(index); }

Uint32 CIMParameter::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

Boolean CIMParameter::isUninitialized() const { return _rep == nullptr; }

Boolean CIMParameter::identical(const CIMConstParameter& x) const {
    return identicalParameters(_rep, x._rep);
}

CIMParameter CIMParameter::clone() const { return cloneParameter(_rep); }

CIMConstParameter::CIMConstParameter() : _rep(nullptr) {}

CIMConstParameter::CIMConstParameter(const CIMConstParameter& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstParameter::CIMConstParameter(const CIMParameter& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstParameter::CIMConstParameter(const CIMName& name, CIMType type, Boolean isArray,
                                     Uint32 arraySize, const CIMName& referenceClassName)
    : _rep(makeParameterRep(name, type, isArray, arraySize, referenceClassName)) {}

CIMConstParameter::~CIMConstParameter() { releaseRep(_rep); }

CIMConstParameter& CIMConstParameter::operator=(const CIMConstParameter& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstParameter& CIMConstParameter::operator=(const CIMParameter& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMConstParameter::getName() const { return checkedRep(_rep)->name; }

Boolean CIMConstParameter::isArray() const { return checkedRep(_rep)->isArray; }

Uint32 CIMConstParameter::getArraySize() const { return checkedRep(_rep)->arraySize; }

const CIMName& CIMConstParameter::getReferenceClassName() const {
    return checkedRep(_rep)->referenceClassName;
}

CIMType CIMConstParameter::getType() const { return checkedRep(_rep)->type; }

Uint32 CIMConstParameter::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMConstQualifier CIMConstParameter::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

Uint32 CIMConstParameter::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

Boolean CIMConstParameter::isUninitialized() const { return _rep == nullptr; }

Boolean CIMConstParameter::identical(const CIMConstParameter& x) const {
    return identicalParameters(_rep, x._rep);
}

CIMParameter CIMConstParameter::clone() const { return cloneParameter(_rep); }

PEGASUS_NAMESPACE_END
