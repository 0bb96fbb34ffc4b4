#include "ArrayImpl.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMQualifierDecl>;

class CIMQualifierDeclRep : public SharedRep {
public:
    CIMName name;
    CIMValue value;
    CIMScope scope;
    CIMFlavor flavor;
    Uint32 arraySize = 0;
};

namespace {

CIMQualifierDeclRep* makeQualifierDeclRep(const CIMName& name, const CIMValue& value,
                                          const CIMScope& scope, const CIMFlavor& flavor,
                                          Uint32 arraySize) {
    if (name.isNull())
        throw UninitializedObjectException();
    CIMQualifierDeclRep* rep = new CIMQualifierDeclRep();
    rep->name = name;
    rep->value = value;
    rep->scope = scope;
    // A declaration always states both propagation and overriding: the
    // default of each holds unless its opposite is set, as in OpenPegasus.
    CIMFlavor stated = flavor;
    if (stated.hasFlavor(CIMFlavor::RESTRICTED))
        stated.removeFlavor(CIMFlavor::TOSUBCLASS);
    else
        stated.addFlavor(CIMFlavor::TOSUBCLASS);
    if (stated.hasFlavor(CIMFlavor::DISABLEOVERRIDE))
        stated.removeFlavor(CIMFlavor::OVERRIDABLE);
    else
        stated.addFlavor(CIMFlavor::OVERRIDABLE);
    rep->flavor = stated;
    rep->arraySize = arraySize;
    return rep;
}

Boolean identicalDecls(const CIMQualifierDeclRep* x, const CIMQualifierDeclRep* y) {
    checkedRep(x);
    checkedRep(y);
    return x == y ||
           (x->name.equal(y->name) && x->value.equal(y->value) && x->scope.equal(y->scope) &&
            x->flavor.equal(y->flavor) && x->arraySize == y->arraySize);
}

CIMQualifierDecl cloneDecl(const CIMQualifierDeclRep* rep) {
    return RepAccess::adopt<CIMQualifierDecl>(new CIMQualifierDeclRep(*checkedRep(rep)));
}

} // namespace

CIMQualifierDecl::CIMQualifierDecl() : _rep(nullptr) {}

CIMQualifierDecl::CIMQualifierDecl(const CIMQualifierDecl& x) : _rep(x._rep) { retainRep(_rep); }

CIMQualifierDecl::CIMQualifierDecl(const CIMName& name, const CIMValue& value,
                                   const CIMScope& scope, const CIMFlavor& flavor, Uint32 arraySize)
    : _rep(makeQualifierDeclRep(name, value, scope, flavor, arraySize)) {}

CIMQualifierDecl::~CIMQualifierDecl() { releaseRep(_rep); }

CIMQualifierDecl& CIMQualifierDecl::operator=(const CIMQualifierDecl& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMQualifierDecl::getName() const { return checkedRep(_rep)->name; }

void CIMQualifierDecl::setName(const CIMName& name) {
    if (name.isNull())
        throw UninitializedObjectException();
    checkedRep(_rep)->name = name;
}

CIMType CIMQualifierDecl::getType() const { return checkedRep(_rep)->value.getType(); }

Boolean CIMQualifierDecl::isArray() const { return checkedRep(_rep)->value.isArray(); }

const CIMValue& CIMQualifierDecl::getValue() const { return checkedRep(_rep)->value; }

void CIMQualifierDecl::setValue(const CIMValue& value) { checkedRep(_rep)->value = value; }

const CIMScope& CIMQualifierDecl::getScope() const { return checkedRep(_rep)->scope; }

const CIMFlavor& CIMQualifierDecl::getFlavor() const { return checkedRep(_rep)->flavor; }

Uint32 CIMQualifierDecl::getArraySize() const { return checkedRep(_rep)->arraySize; }

Boolean CIMQualifierDecl::isUninitialized() const { return _rep == nullptr; }

Boolean CIMQualifierDecl::identical(const CIMConstQualifierDecl& x) const {
    return identicalDecls(_rep, x._rep);
}

CIMQualifierDecl CIMQualifierDecl::clone() const { return cloneDecl(_rep); }

CIMConstQualifierDecl::CIMConstQualifierDecl() : _rep(nullptr) {}

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMConstQualifierDecl& x) : _rep(x._rep) {
    retainRep(_rep);
}

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMQualifierDecl& x) : _rep(x._rep) {
    retainRep(_rep);
}

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMName& name, const CIMValue& value,
                                             const CIMScope& scope, const CIMFlavor& flavor,
                                             Uint32 arraySize)
    : _rep(makeQualifierDeclRep(name, value, scope, flavor, arraySize)) {}

CIMConstQualifierDecl::~CIMConstQualifierDecl() { releaseRep(_rep); }

CIMConstQualifierDecl& CIMConstQualifierDecl::operator=(const CIMConstQualifierDecl& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMConstQualifierDecl& CIMConstQualifierDecl::operator=(const CIMQualifierDecl& x) {
    assignRep(_rep, x._rep);
    return *this;
}

const CIMName& CIMConstQualifierDecl::getName() const { return checkedRep(_rep)->name; }

CIMType CIMConstQualifierDecl::getType() const { return checkedRep(_rep)->value.getType(); }

Boolean CIMConstQualifierDecl::isArray() const { return checkedRep(_rep)->value.isArray(); }

const CIMValue& CIMConstQualifierDecl::getValue() const { return checkedRep(_rep)->value; }

const CIMScope& CIMConstQualifierDecl::getScope() const { return checkedRep(_rep)->scope; }

const CIMFlavor& CIMConstQualifierDecl::getFlavor() const { return checkedRep(_rep)->flavor; }

Uint32 CIMConstQualifierDecl::getArraySize() const { return checkedRep(_rep)->arraySize; }

Boolean CIMConstQualifierDecl::isUninitialized() const { return _rep == nullptr; }

Boolean CIMConstQualifierDecl::identical(const CIMConstQualifierDecl& x) const {
    return identicalDecls(_rep, x._rep);
}

CIMQualifierDecl CIMConstQualifierDecl::clone() const { return cloneDecl(_rep); }

PEGASUS_NAMESPACE_END
