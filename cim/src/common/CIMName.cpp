#include "NameTable.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

bool isNameStart(Uint16 unit) {
    return (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') || unit == '_' ||
           (unit >= 0x0080 && unit <= 0xFFEF);
}

bool isNamePart(Uint16 unit) { return isNameStart(unit) || (unit >= '0' && unit <= '9'); }

bool legalName(const Char16* units, Uint32 n) {
    if (n == 0 || !isNameStart(units[0]))
        return false;
    for (Uint32 i = 1; i < n; i++) {
        if (!isNamePart(units[i]))
            return false;
    }
    return true;
}

// Length of `text` when every byte is ASCII, otherwise PEG_NOT_FOUND.
Uint32 asciiLength(const char* text) {
    Uint32 n = 0;
    for (; text[n]; n++) {
        if (static_cast<unsigned char>(text[n]) >= 0x80)
            return PEG_NOT_FOUND;
    }
    return n;
}

bool legalAsciiName(const char* text, Uint32 n) {
    if (n == 0 || !isNameStart(static_cast<unsigned char>(text[0])))
        return false;
    for (Uint32 i = 1; i < n; i++) {
        if (!isNamePart(static_cast<unsigned char>(text[i])))
            return false;
    }
    return true;
}

// Every '/'-separated element must be a legal name; one leading '/' is
// tolerated. Returns the offset where the stored form starts, or
// PEG_NOT_FOUND when the text is no namespace name.
Uint32 namespaceStart(const String& name) {
    const Char16* units = name.getChar16Data();
    Uint32 n = name.size();
    Uint32 start = (n > 0 && units[0] == '/') ? 1 : 0;
    if (start == n)
        return PEG_NOT_FOUND;
    Uint32 elementStart = start;
    for (Uint32 i = start; i <= n; i++) {
        if (i == n || units[i] == '/') {
            if (!legalName(units + elementStart, i - elementStart))
                return PEG_NOT_FOUND;
            elementStart = i + 1;
        }
    }
    return start;
}

} // namespace

CIMName::CIMName() {}

CIMName::CIMName(const String& name) {
    if (!legal(name))
        throw InvalidNameException(name);
    cimName = internName(name);
}

// Providers name every property with a literal: those are ASCII and need no
// decoding to be found in the name table.
CIMName::CIMName(const char* name) {
    Uint32 n = name ? asciiLength(name) : PEG_NOT_FOUND;
    if (n != PEG_NOT_FOUND) {
        if (!legalAsciiName(name, n))
            throw InvalidNameException(String(name, n));
        cimName = internAsciiName(name, n);
        return;
    }
    String text(name);
    if (!legal(text))
        throw InvalidNameException(text);
    cimName = internName(text);
}

CIMName::CIMName(const CIMName& name) : cimName(name.cimName) {}

CIMName& CIMName::operator=(const CIMName& name) {
    cimName = name.cimName;
    return *this;
}

CIMName& CIMName::operator=(const String& name) {
    if (!legal(name))
        throw InvalidNameException(name);
    cimName = internName(name);
    return *this;
}

const String& CIMName::getString() const { return cimName; }

Boolean CIMName::isNull() const { return cimName.size() == 0; }

void CIMName::clear() { cimName.clear(); }

Boolean CIMName::equal(const CIMName& name) const {
    return String::equalNoCase(cimName, name.cimName);
}

Boolean CIMName::legal(const String& name) { return legalName(name.getChar16Data(), name.size()); }

Boolean operator==(const CIMName& name1, const CIMName& name2) { return name1.equal(name2); }

Boolean operator!=(const CIMName& name1, const CIMName& name2) { return !name1.equal(name2); }

CIMNamespaceName::CIMNamespaceName() {}

CIMNamespaceName::CIMNamespaceName(const String& name) { *this = name; }

CIMNamespaceName::CIMNamespaceName(const char* name) { *this = String(name); }

CIMNamespaceName::CIMNamespaceName(const CIMNamespaceName& name)
    : cimNamespaceName(name.cimNamespaceName) {}

CIMNamespaceName& CIMNamespaceName::operator=(const CIMNamespaceName& name) {
    cimNamespaceName = name.cimNamespaceName;
    return *this;
}

CIMNamespaceName& CIMNamespaceName::operator=(const String& name) {
    Uint32 start = namespaceStart(name);
    if (start == PEG_NOT_FOUND)
        throw InvalidNamespaceNameException(name);
    cimNamespaceName = start == 0 ? name : name.subString(start);
    return *this;
}

const String& CIMNamespaceName::getString() const { return cimNamespaceName; }

Boolean CIMNamespaceName::isNull() const { return cimNamespaceName.size() == 0; }

void CIMNamespaceName::clear() { cimNamespaceName.clear(); }

Boolean CIMNamespaceName::equal(const CIMNamespaceName& name) const {
    return String::equalNoCase(cimNamespaceName, name.cimNamespaceName);
}

Boolean CIMNamespaceName::legal(const String& name) {
    return namespaceStart(name) != PEG_NOT_FOUND;
}

Boolean operator==(const CIMNamespaceName& name1, const CIMNamespaceName& name2) {
    return name1.equal(name2);
}

Boolean operator!=(const CIMNamespaceName& name1, const CIMNamespaceName& name2) {
    return !name1.equal(name2);
}

PEGASUS_NAMESPACE_END
