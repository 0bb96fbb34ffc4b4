#include "ArrayImpl.h"
#include "CIMQualifierList.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMMethod>;

class PEGASUS_HIDDEN_LINKAGE CIMMethodRep : public SharedRep {
public:
    CIMMethodRep() = default;
    CIMMethodRep(const CIMMethodRep& x)
        : SharedRep(x), name(x.name), type(x.type), classOrigin(x.classOrigin),
          propagated(x.propagated), qualifiers(x.qualifiers.clone()) {
        parameters.reserve(x.parameters.size());
        for (const CIMParameter& parameter : x.parameters)
            parameters.push_back(parameter.clone());
    }

    Uint32 findParameter(const CIMName& parameterName) const {
        for (std::size_t i = 0; i < parameters.size(); i++) {
            if (parameters[i].getName().equal(parameterName))
                return Uint32(i);
        }
        return PEG_NOT_FOUND;
    }

    const CIMParameter& parameter(Uint32 index) const {
        if (index >= parameters.size())
            throw IndexOutOfBoundsException();
        return parameters[index];
    }

    CIMName name;
    CIMType type = CIMTYPE_BOOLEAN;
    CIMName classOrigin;
    Boolean propagated = false;
    CIMQualifierList qualifiers;
    std::vector<CIMParameter> parameters;
};

namespace {

CIMMethodRep* makeMethodRep(const CIMName& name, CIMType type, const CIMName& classOrigin,
                            Boolean propagated) {
    if (name.isNull())
        throw UninitializedObjectException();
    CIMMethodRep* rep = new CIMMethodRep();
    rep->name = name;
    rep->type = type;
    rep->classOrigin = classOrigin;
    rep->propagated = propagated;
    return rep;
}

Boolean identicalMethods(const CIMMethodRep* x, const CIMMethodRep* y) {
    checkedRep(x);
    checkedRep(y);
    if (x == y)
        return true;
    if (!x->name.equal(y->name) || x->type != y->type || !x->classOrigin.equal(y->classOrigin) ||
        x->propagated != y->propagated || !x->qualifiers.identical(y->qualifiers) ||
        x->parameters.size() != y->parameters.size())
        return false;
    // Parameters are positional: order matters.
    for (std::size_t i = 0; i < x->parameters.size(); i++) {
        if (!x->parameters[i].identical(y->parameters[i]))
            return false;
    }
    return true;
}

CIMMethod cloneMethod(const CIMMethodRep* rep) {
    return RepAccess::adopt<CIMMethod>(new CIMMethodRep(*checkedRep(rep)));
}

} // namespace

CIMMethod::CIMMethod() : _rep(nullptr) {}

CIMMethod::CIMMethod(const CIMMethod& x) : _rep(x._rep) { retainRep(_rep); }

CIMMethod::CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin,
                     Boolean propagated)
    : _rep(makeMethodRep(name, type, classOrigin, propagated)) {}

CIMMethod::~CIMMethod() { releaseRep(_rep); }

CIMMethod& CIMMethod::operator=(const CIMMethod& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMMethod::getName() const { return checkedRep(_rep)->name; }

void CIMMethod::setName(const CIMName& name) {
    if (name.isNull())
        throw UninitializedObjectException();
    checkedRep(_rep)->name = name;
}

CIMType CIMMethod::getType() const { return checkedRep(_rep)->type; }

void CIMMethod::setType(CIMType type) { checkedRep(_rep)->type = type; }

const CIMName& CIMMethod::getClassOrigin() const { return checkedRep(_rep)->classOrigin; }

void CIMMethod::setClassOrigin(const CIMName& classOrigin) {
    checkedRep(_rep)->classOrigin = classOrigin;
}

Boolean CIMMethod::getPropagated() const { return checkedRep(_rep)->propagated; }

void CIMMethod::setPropagated(Boolean propagated) { checkedRep(_rep)->propagated = propagated; }

CIMMethod& CIMMethod::addQualifier(const CIMQualifier& x) {
    checkedRep(_rep)->qualifiers.add(x);
    return *this;
}

Uint32 CIMMethod::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMQualifier CIMMethod::getQualifier(Uint32 index) {
    return checkedRep(_rep)->qualifiers.get(index);
}

CIMConstQualifier CIMMethod::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

void CIMMethod::removeQualifier(Uint32 index) { checkedRep(_rep)->qualifiers.remove(index); }

Uint32 CIMMethod::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

CIMMethod& CIMMethod::addParameter(const CIMParameter& x) {
    CIMMethodRep* rep = checkedRep(_rep);
    if (x.isUninitialized())
        throw UninitializedObjectException();
    if (rep->findParameter(x.getName()) != PEG_NOT_FOUND)
        throw AlreadyExistsException("parameter \"" + x.getName().getString() + "\"");
    rep->parameters.push_back(x);
    return *this;
}

Uint32 CIMMethod::findParameter(const CIMName& name) const {
    return checkedRep(_rep)->findParameter(name);
}

CIMParameter CIMMethod::getParameter(Uint32 index) { return checkedRep(_rep)->parameter(index); }

CIMConstParameter CIMMethod::getParameter(Uint32 index) const {
    return checkedRep(_rep)->parameter(index);
}

void CIMMethod::removeParameter(Uint32 index) {
    CIMMethodRep* rep = checkedRep(_rep);
    if (index >= rep->parameters.size())
        throw IndexOutOfBoundsException();
    rep->parameters.erase(rep->parameters.begin() + index);
}

Uint32 CIMMethod::getParameterCount() const { return Uint32(checkedRep(_rep)->parameters.size()); }

Boolean CIMMethod::isUninitialized() const { return _rep == nullptr; }

Boolean CIMMethod::identical(const CIMConstMethod& x) const {
    return identicalMethods(_rep, x._rep);
}

CIMMethod CIMMethod::clone() const { return cloneMethod(_rep); }

CIMConstMethod::CIMConstMethod() : _rep(nullptr) {}

CIMConstMethod::CIMConstMethod(const CIMConstMethod& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstMethod::CIMConstMethod(const CIMMethod& x) : _rep(x._rep) { retainRep(_rep); }

CIMConstMethod::CIMConstMethod(const CIMName& name, CIMType type, const CIMName& classOrigin,
                               Boolean propagated)
    : _rep(makeMethodRep(name, type, classOrigin, propagated)) {}

CIMConstMethod::~CIMConstMethod() { releaseRep(_rep); }

CIMConstMethod& CIMConstMethod::operator=(const CIMConstMethod& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstMethod& CIMConstMethod::operator=(const CIMMethod& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMConstMethod::getName() const { return checkedRep(_rep)->name; }

CIMType CIMConstMethod::getType() const { return checkedRep(_rep)->type; }

const CIMName& CIMConstMethod::getClassOrigin() const { return checkedRep(_rep)->classOrigin; }

Boolean CIMConstMethod::getPropagated() const { return checkedRep(_rep)->propagated; }

Uint32 CIMConstMethod::findQualifier(const CIMName& name) const {
    return checkedRep(_rep)->qualifiers.find(name);
}

CIMConstQualifier CIMConstMethod::getQualifier(Uint32 index) const {
    return checkedRep(_rep)->qualifiers.get(index);
}

Uint32 CIMConstMethod::getQualifierCount() const { return checkedRep(_rep)->qualifiers.size(); }

Uint32 CIMConstMethod::findParameter(const CIMName& name) const {
    return checkedRep(_rep)->findParameter(name);
}

CIMConstParameter CIMConstMethod::getParameter(Uint32 index) const {
    return checkedRep(_rep)->parameter(index);
}

Uint32 CIMConstMethod::getParameterCount() const {
    return Uint32(checkedRep(_rep)->parameters.size());
}

Boolean CIMConstMethod::isUninitialized() const { return _rep == nullptr; }

Boolean CIMConstMethod::identical(const CIMConstMethod& x) const {
    return identicalMethods(_rep, x._rep);
}

CIMMethod CIMConstMethod::clone() const { return cloneMethod(_rep); }

PEGASUS_NAMESPACE_END
