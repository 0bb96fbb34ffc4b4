#include "ArrayImpl.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMValue.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMQualifier>;

class CIMQualifierRep : public SharedRep {
public:
    CIMName name;
    CIMValue value;
    CIMFlavor flavor;
    Boolean propagated = false;
};

namespace {

CIMQualifierRep* makeQualifierRep(const CIMName& name, const CIMValue& value,
                                  const CIMFlavor& flavor, Boolean propagated) {
    if (name.isNull())
        throw UninitializedObjectException();
    CIMQualifierRep* rep = new CIMQualifierRep();
    rep->name = name;
    rep->value = value;
    rep->flavor = flavor;
    rep->propagated = propagated;
    return rep;
}

Boolean identicalQualifiers(const CIMQualifierRep* x, const CIMQualifierRep* y) {
    checkedRep(x);
    checkedRep(y);
    return x == y || (x->name.equal(y->name) && x->value.equal(y->value) &&
                      x->flavor.equal(y->flavor) && x->propagated == y->propagated);
}

CIMQualifier cloneQualifier(const CIMQualifierRep* rep) {
    checkedRep(rep);
    return RepAccess::adopt<CIMQualifier>(new CIMQualifierRep(*rep));
}

} // namespace

CIMQualifier::CIMQualifier() : _rep(nullptr) {}

CIMQualifier::CIMQualifier(const CIMQualifier& x) : _rep(x._rep) { retainRep(_rep); }

CIMQualifier::CIMQualifier(const CIMName& name, const CIMValue& value, const CIMFlavor& flavor,
                           Boolean propagated)
    : _rep(makeQualifierRep(name, value, flavor, propagated)) {}

CIMQualifier::~CIMQualifier() { releaseRep(_rep); }

CIMQualifier& CIMQualifier::operator=(const CIMQualifier& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMQualifier::getName() const { return checkedRep(_rep)->name; }

void CIMQualifier::setName(const CIMName& name) {
    if (name.isNull())
        throw UninitializedObjectException();
    checkedRep(_rep)->name = name;
}

CIMType CIMQualifier::getType() const { return checkedRep(_rep)->value.getType(); }

Boolean CIMQualifier::isArray() const { return checkedRep(_rep)->value.isArray(); }

const CIMValue& CIMQualifier::getValue() const { return checkedRep(_rep)->value; }

void CIMQualifier::setValue(const CIMValue& value) { checkedRep(_rep)->value = value; }

void CIMQualifier::setFlavor(const CIMFlavor& flavor) {
    checkedRep(_rep)->flavor.addFlavor(flavor);
}

void CIMQualifier::unsetFlavor(const CIMFlavor& flavor) {
    checkedRep(_rep)->flavor.removeFlavor(flavor);
}

const CIMFlavor& CIMQualifier::getFlavor() const { return checkedRep(_rep)->flavor; }

Boolean CIMQualifier::getPropagated() const { return checkedRep(_rep)->propagated; }

void CIMQualifier::setPropagated(Boolean propagated) { checkedRep(_rep)->propagated = propagated; }

Boolean CIMQualifier::isUninitialized() const { return _rep == nullptr; }

Boolean CIMQualifier::identical(const CIMConstQualifier& x) const {
    return identicalQualifiers(_rep, x._rep);
}

CIMQualifier CIMQualifier::clone() const { return cloneQualifier(_rep); }

CIMConstQualifier::CIMConstQualifier() : _rep(nullptr) {}

CIMConstQualifier::CIMConstQualifier(const CIMConstQualifier& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstQualifier::CIMConstQualifier(const CIMQualifier& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstQualifier::CIMConstQualifier(const CIMName& name, const CIMValue& value,
                                     const CIMFlavor& flavor, Boolean propagated)
    : _rep(makeQualifierRep(name, value, flavor, propagated)) {}

CIMConstQualifier::~CIMConstQualifier() { releaseRep(_rep); }

CIMConstQualifier& CIMConstQualifier::operator=(const CIMConstQualifier& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstQualifier& CIMConstQualifier::operator=(const CIMQualifier& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMConstQualifier::getName() const { return checkedRep(_rep)->name; }

CIMType CIMConstQualifier::getType() const { return checkedRep(_rep)->value.getType(); }

Boolean CIMConstQualifier::isArray() const { return checkedRep(_rep)->value.isArray(); }

const CIMValue& CIMConstQualifier::getValue() const { return checkedRep(_rep)->value; }

const CIMFlavor& CIMConstQualifier::getFlavor() const { return checkedRep(_rep)->flavor; }

Boolean CIMConstQualifier::getPropagated() const { return checkedRep(_rep)->propagated; }

Boolean CIMConstQualifier::isUninitialized() const { return _rep == nullptr; }

Boolean CIMConstQualifier::identical(const CIMConstQualifier& x) const {
    return identicalQualifiers(_rep, x._rep);
}

CIMQualifier CIMConstQualifier::clone() const { return cloneQualifier(_rep); }

PEGASUS_NAMESPACE_END
