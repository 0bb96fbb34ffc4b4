#include <Pegasus/Common/CIMScope.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

enum ScopeBits : Uint32 {
    SCOPE_NONE = 0,
    SCOPE_CLASS = 1,
    SCOPE_ASSOCIATION = 2,
    SCOPE_INDICATION = 4,
    SCOPE_PROPERTY = 8,
    SCOPE_REFERENCE = 16,
    SCOPE_METHOD = 32,
    SCOPE_PARAMETER = 64,
    SCOPE_ANY = 127,
};

} // namespace

const CIMScope CIMScope::NONE = CIMScope(Uint32(SCOPE_NONE));
const CIMScope CIMScope::CLASS = CIMScope(Uint32(SCOPE_CLASS));
const CIMScope CIMScope::ASSOCIATION = CIMScope(Uint32(SCOPE_ASSOCIATION));
const CIMScope CIMScope::INDICATION = CIMScope(Uint32(SCOPE_INDICATION));
const CIMScope CIMScope::PROPERTY = CIMScope(Uint32(SCOPE_PROPERTY));
const CIMScope CIMScope::REFERENCE = CIMScope(Uint32(SCOPE_REFERENCE));
const CIMScope CIMScope::METHOD = CIMScope(Uint32(SCOPE_METHOD));
const CIMScope CIMScope::PARAMETER = CIMScope(Uint32(SCOPE_PARAMETER));
const CIMScope CIMScope::ANY = CIMScope(Uint32(SCOPE_ANY));

CIMScope::CIMScope() : cimScope(SCOPE_NONE) {}

CIMScope::CIMScope(const CIMScope& scope) : cimScope(scope.cimScope) {}

CIMScope::CIMScope(const Uint32 scope) : cimScope(scope) {}

CIMScope& CIMScope::operator=(const CIMScope& scope) {
    cimScope = scope.cimScope;
    return *this;
}

void CIMScope::addScope(const CIMScope& scope) { cimScope |= scope.cimScope; }

void CIMScope::removeScope(const CIMScope& scope) { cimScope &= ~scope.cimScope; }

Boolean CIMScope::hasScope(const CIMScope& scope) const {
    return (cimScope & scope.cimScope) == scope.cimScope;
}

Boolean CIMScope::equal(const CIMScope& scope) const { return cimScope == scope.cimScope; }

CIMScope CIMScope::operator+(const CIMScope& scope) const {
    return CIMScope(Uint32(cimScope | scope.cimScope));
}

String CIMScope::toString() const {
    static const struct {
        Uint32 bit;
        const char* name;
    } names[] = {{SCOPE_CLASS, "CLASS"},           {SCOPE_ASSOCIATION, "ASSOCIATION"},
                 {SCOPE_INDICATION, "INDICATION"}, {SCOPE_PROPERTY, "PROPERTY"},
                 {SCOPE_REFERENCE, "REFERENCE"},   {SCOPE_METHOD, "METHOD"},
                 {SCOPE_PARAMETER, "PARAMETER"}};
    String text;
    for (const auto& entry : names) {
        if (cimScope & entry.bit) {
            if (text.size())
                text.append(Char16(' '));
            text.append(String(entry.name));
        }
    }
    return text;
}

PEGASUS_NAMESPACE_END
