#include <Pegasus/Common/CIMFlavor.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

enum FlavorBits : Uint32 {
    FLAVOR_NONE = 0,
    FLAVOR_OVERRIDABLE = 1,
    FLAVOR_TOSUBCLASS = 2,
    FLAVOR_TOINSTANCE = 4,
    FLAVOR_TRANSLATABLE = 8,
    FLAVOR_DISABLEOVERRIDE = 16,
    FLAVOR_RESTRICTED = 32,
};

} // namespace

const CIMFlavor CIMFlavor::NONE = CIMFlavor(Uint32(FLAVOR_NONE));
const CIMFlavor CIMFlavor::OVERRIDABLE = CIMFlavor(Uint32(FLAVOR_OVERRIDABLE));
const CIMFlavor CIMFlavor::ENABLEOVERRIDE = CIMFlavor(Uint32(FLAVOR_OVERRIDABLE));
const CIMFlavor CIMFlavor::DISABLEOVERRIDE = CIMFlavor(Uint32(FLAVOR_DISABLEOVERRIDE));
const CIMFlavor CIMFlavor::TOSUBCLASS = CIMFlavor(Uint32(FLAVOR_TOSUBCLASS));
const CIMFlavor CIMFlavor::RESTRICTED = CIMFlavor(Uint32(FLAVOR_RESTRICTED));
const CIMFlavor CIMFlavor::TOINSTANCE = CIMFlavor(Uint32(FLAVOR_TOINSTANCE));
const CIMFlavor CIMFlavor::TRANSLATABLE = CIMFlavor(Uint32(FLAVOR_TRANSLATABLE));
// The same bit as TOSUBCLASS, as in OpenPegasus: instances are no sub-elements.
const CIMFlavor CIMFlavor::TOSUBELEMENTS = CIMFlavor(Uint32(FLAVOR_TOSUBCLASS));
const CIMFlavor CIMFlavor::DEFAULTS = CIMFlavor(Uint32(FLAVOR_OVERRIDABLE | FLAVOR_TOSUBCLASS));

CIMFlavor::CIMFlavor() : cimFlavor(FLAVOR_NONE) {}

CIMFlavor::CIMFlavor(const CIMFlavor& flavor) : cimFlavor(flavor.cimFlavor) {}

CIMFlavor::CIMFlavor(const Uint32 flavor) : cimFlavor(flavor) {}

CIMFlavor& CIMFlavor::operator=(const CIMFlavor& flavor) {
    cimFlavor = flavor.cimFlavor;
    return *this;
}

void CIMFlavor::addFlavor(const CIMFlavor& flavor) { cimFlavor |= flavor.cimFlavor; }

void CIMFlavor::removeFlavor(const CIMFlavor& flavor) { cimFlavor &= ~flavor.cimFlavor; }

Boolean CIMFlavor::hasFlavor(const CIMFlavor& flavor) const {
    return (cimFlavor & flavor.cimFlavor) == flavor.cimFlavor;
}

Boolean CIMFlavor::equal(const CIMFlavor& flavor) const { return cimFlavor == flavor.cimFlavor; }

CIMFlavor CIMFlavor::operator+(const CIMFlavor& flavor) const {
    return CIMFlavor(Uint32(cimFlavor | flavor.cimFlavor));
}

String CIMFlavor::toString() const {
    static const struct {
        Uint32 bit;
        const char* name;
    } names[] = {{FLAVOR_OVERRIDABLE, "OVERRIDABLE"},         {FLAVOR_TOSUBCLASS, "TOSUBCLASS"},
                 {FLAVOR_TOINSTANCE, "TOINSTANCE"},           {FLAVOR_TRANSLATABLE, "TRANSLATABLE"},
                 {FLAVOR_DISABLEOVERRIDE, "DISABLEOVERRIDE"}, {FLAVOR_RESTRICTED, "RESTRICTED"}};
    String text;
    for (const auto& entry : names) {
        if (cimFlavor & entry.bit) {
            if (text.size())
                text.append(Char16(' '));
            text.append(String(entry.name));
        }
    }
    return text;
}

PEGASUS_NAMESPACE_END
