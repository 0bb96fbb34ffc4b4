// Internal: the integer syntax of NUMERIC key values. Decimal numbers have
// no leading zeros ("0" alone is fine); hexadecimal ones start with 0x or 0X.
// Values that do not fit 64 bits are not numbers.
#ifndef Pegasus_KeyNumber_h
#define Pegasus_KeyNumber_h

#include <Pegasus/Common/Config.h>
#include <string>

PEGASUS_NAMESPACE_BEGIN

// No sign allowed.
PEGASUS_HIDDEN_LINKAGE bool parseUnsignedKeyNumber(const std::string& text, Uint64& value);

// An optional leading '-' (and '+' when allowPlus) before the digits.
PEGASUS_HIDDEN_LINKAGE bool parseSignedKeyNumber(const std::string& text, bool allowPlus,
                                                 Sint64& value);

// The decimal spelling shared by every way of writing the same integer, or
// the text itself when it is not one.
PEGASUS_HIDDEN_LINKAGE std::string canonicalKeyNumber(const std::string& text);

PEGASUS_NAMESPACE_END

#endif
