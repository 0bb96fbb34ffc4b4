// The text form of CIM values in CIM-XML: how each type is written into a
// VALUE element, and how a text is read back as a value of a known type.
// Decoding method parameters, reading embedded instances and writing
// answers all go through here, so the two directions agree.
#ifndef VEXA_CIMXML_VALUETEXT_H
#define VEXA_CIMXML_VALUETEXT_H

#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::cimxml::detail {

std::string utf8(const Pegasus::String& text);
// Throws ValueTextError for text that is not UTF-8.
Pegasus::String pegasusString(std::string_view text);

// A text that is not a value of the wanted type. `expected` describes the
// form that would have been accepted, for the error the client sees.
class ValueTextError : public std::runtime_error {
public:
    ValueTextError(std::string text, std::string expected);
    const std::string& text() const { return text_; }
    const std::string& expected() const { return expected_; }

private:
    std::string text_;
    std::string expected_;
};

// "a uint8 (a whole number from 0 to 255)" and the like.
std::string describeExpected(Pegasus::CIMType type);

// The VALUE texts of a non-null value, one per array element. Only for the
// types written as plain text: not references, objects or instances.
std::vector<std::string> valueTexts(const Pegasus::CIMValue& value);

// Reads texts as a value of `type` (not object or instance; references are
// read in the path syntax "ns:Class.key=value"). A scalar takes texts[0].
// Leading and trailing white space is ignored except in strings and char16.
Pegasus::CIMValue valueFromTexts(Pegasus::CIMType type, bool isArray,
                                 const std::vector<std::string>& texts);

// Integer syntax shared with key values: optional sign, decimal or 0x hex.
bool parseUnsignedInteger(std::string_view text, unsigned long long& value);
bool parseSignedInteger(std::string_view text, long long& value);
bool parseReal(std::string_view text, double& value);
// TRUE/FALSE in any case.
bool parseBoolean(std::string_view text, bool& value);

std::string_view trimmed(std::string_view text);
bool equalNoCase(std::string_view a, std::string_view b);

// Maps PARAMTYPE/TYPE texts ("uint32", "reference", ...) to a type.
bool cimTypeFromName(std::string_view name, Pegasus::CIMType& type);

} // namespace vexa::cimxml::detail

#endif
