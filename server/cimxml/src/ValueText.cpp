#include "ValueText.h"

#include "Utf8.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Exception.h>

#include <charconv>
#include <cmath>
#include <limits>

namespace vexa::cimxml::detail {

using namespace Pegasus;

namespace {

std::string formatReal(double value, int precision) {
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-INF" : "INF";
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value,
                                      std::chars_format::scientific, precision);
    return std::string(buffer, result.ptr);
}

std::string formatChar16(Uint16 unit) {
    // A lone surrogate or NUL has no place in an XML document.
    if (unit == 0 || (unit >= 0xD800 && unit <= 0xDFFF))
        return "\xEF\xBF\xBD";
    std::string out;
    appendUtf8(out, unit);
    return out;
}

std::string scalarText(const Boolean& x) { return x ? "TRUE" : "FALSE"; }
std::string scalarText(const Uint8& x) { return std::to_string(unsigned(x)); }
std::string scalarText(const Sint8& x) { return std::to_string(int(x)); }
std::string scalarText(const Uint16& x) { return std::to_string(x); }
std::string scalarText(const Sint16& x) { return std::to_string(x); }
std::string scalarText(const Uint32& x) { return std::to_string(x); }
std::string scalarText(const Sint32& x) { return std::to_string(x); }
std::string scalarText(const Uint64& x) { return std::to_string(x); }
std::string scalarText(const Sint64& x) { return std::to_string(x); }
// Nine significant digits bring every real32 back unchanged, seventeen
// every real64.
std::string scalarText(const Real32& x) { return formatReal(x, 8); }
std::string scalarText(const Real64& x) { return formatReal(x, 16); }
std::string scalarText(const Char16& x) { return formatChar16(x); }
std::string scalarText(const String& x) { return utf8(x); }
std::string scalarText(const CIMDateTime& x) { return utf8(x.toString()); }

template <class T>
std::vector<std::string> textsOf(const CIMValue& value) {
    std::vector<std::string> texts;
    if (value.isArray()) {
        Array<T> items;
        value.get(items);
        texts.reserve(items.size());
        for (Uint32 i = 0; i < items.size(); i++)
            texts.push_back(scalarText(items[i]));
    } else {
        T item{};
        value.get(item);
        texts.push_back(scalarText(item));
    }
    return texts;
}

template <class T>
T parseUnsignedAs(std::string_view text, CIMType type) {
    unsigned long long value = 0;
    if (!parseUnsignedInteger(text, value) || value > std::numeric_limits<T>::max())
        throw ValueTextError(std::string(text), describeExpected(type));
    return static_cast<T>(value);
}

template <class T>
T parseSignedAs(std::string_view text, CIMType type) {
    long long value = 0;
    if (!parseSignedInteger(text, value) || value < std::numeric_limits<T>::min() ||
        value > std::numeric_limits<T>::max())
        throw ValueTextError(std::string(text), describeExpected(type));
    return static_cast<T>(value);
}

// One parser per element type, so that scalars and arrays share them.
struct ScalarParser {
    CIMType type;

    void operator()(std::string_view text, Boolean& out) const {
        bool value = false;
        if (!parseBoolean(text, value))
            throw ValueTextError(std::string(text), describeExpected(type));
        out = value;
    }
    void operator()(std::string_view text, Uint8& out) const {
        out = parseUnsignedAs<Uint8>(text, type);
    }
    void operator()(std::string_view text, Uint16& out) const {
        out = parseUnsignedAs<Uint16>(text, type);
    }
    void operator()(std::string_view text, Uint32& out) const {
        out = parseUnsignedAs<Uint32>(text, type);
    }
    void operator()(std::string_view text, Uint64& out) const {
        out = parseUnsignedAs<Uint64>(text, type);
    }
    void operator()(std::string_view text, Sint8& out) const {
        out = parseSignedAs<Sint8>(text, type);
    }
    void operator()(std::string_view text, Sint16& out) const {
        out = parseSignedAs<Sint16>(text, type);
    }
    void operator()(std::string_view text, Sint32& out) const {
        out = parseSignedAs<Sint32>(text, type);
    }
    void operator()(std::string_view text, Sint64& out) const {
        out = parseSignedAs<Sint64>(text, type);
    }
    void operator()(std::string_view text, Real64& out) const {
        if (!parseReal(text, out))
            throw ValueTextError(std::string(text), describeExpected(type));
    }
    void operator()(std::string_view text, Real32& out) const {
        double value = 0;
        if (!parseReal(text, value) ||
            (std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max()))
            throw ValueTextError(std::string(text), describeExpected(type));
        out = static_cast<Real32>(value);
    }
    void operator()(std::string_view text, Char16& out) const {
        uint32_t codePoint = 0;
        if (!decodeSingleCodePoint(text, codePoint) || codePoint == 0 || codePoint > 0xFFFF)
            throw ValueTextError(std::string(text), describeExpected(type));
        out = Char16(static_cast<Uint16>(codePoint));
    }
    void operator()(std::string_view text, String& out) const { out = pegasusString(text); }
    void operator()(std::string_view text, CIMDateTime& out) const {
        try {
            out = CIMDateTime(pegasusString(trimmed(text)));
        } catch (const Exception&) {
            throw ValueTextError(std::string(text), describeExpected(type));
        }
    }
    void operator()(std::string_view text, CIMObjectPath& out) const {
        try {
            out = CIMObjectPath(pegasusString(trimmed(text)));
        } catch (const Exception&) {
            throw ValueTextError(std::string(text), describeExpected(type));
        }
    }
};

template <class T>
CIMValue valueOf(CIMType type, bool isArray, const std::vector<std::string>& texts) {
    const ScalarParser parse{type};
    if (!isArray) {
        T item{};
        parse(texts.empty() ? std::string_view() : std::string_view(texts[0]), item);
        return CIMValue(item);
    }
    Array<T> items;
    items.reserveCapacity(static_cast<Uint32>(texts.size()));
    for (const std::string& text : texts) {
        T item{};
        parse(text, item);
        items.append(item);
    }
    return CIMValue(items);
}

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool parseMagnitude(std::string_view digits, unsigned long long& value) {
    int base = 10;
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        base = 16;
        digits.remove_prefix(2);
    }
    if (digits.empty())
        return false;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    return result.ec == std::errc() && result.ptr == digits.data() + digits.size();
}

} // namespace

std::string utf8(const String& text) {
    const CString bytes = text.getCString();
    return std::string(static_cast<const char*>(bytes));
}

String pegasusString(std::string_view text) {
    if (findInvalidUtf8(text) != std::string_view::npos)
        throw ValueTextError(std::string(text), "UTF-8 text");
    return String(text.data(), static_cast<Uint32>(text.size()));
}

ValueTextError::ValueTextError(std::string text, std::string expected)
    : std::runtime_error("\"" + text + "\" is not " + expected), text_(std::move(text)),
      expected_(std::move(expected)) {}

std::string describeExpected(CIMType type) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return "a boolean (TRUE or FALSE)";
    case CIMTYPE_UINT8:
        return "a uint8 (a whole number from 0 to 255)";
    case CIMTYPE_SINT8:
        return "a sint8 (a whole number from -128 to 127)";
    case CIMTYPE_UINT16:
        return "a uint16 (a whole number from 0 to 65535)";
    case CIMTYPE_SINT16:
        return "a sint16 (a whole number from -32768 to 32767)";
    case CIMTYPE_UINT32:
        return "a uint32 (a whole number from 0 to 4294967295)";
    case CIMTYPE_SINT32:
        return "a sint32 (a whole number from -2147483648 to 2147483647)";
    case CIMTYPE_UINT64:
        return "a uint64 (a whole number from 0 to 18446744073709551615)";
    case CIMTYPE_SINT64:
        return "a sint64 (a whole number from -9223372036854775808 to 9223372036854775807)";
    case CIMTYPE_REAL32:
        return "a real32 (a number such as 1.5 or 2.5e-3, within +-3.4e38)";
    case CIMTYPE_REAL64:
        return "a real64 (a number such as 1.5 or 2.5e-3)";
    case CIMTYPE_CHAR16:
        return "a char16 (exactly one character)";
    case CIMTYPE_STRING:
        return "a string";
    case CIMTYPE_DATETIME:
        return "a datetime (yyyymmddhhmmss.mmmmmmsutc such as 20240102030405.123456+060, or an "
               "interval ddddddddhhmmss.mmmmmm:000)";
    case CIMTYPE_REFERENCE:
        return "a reference (an object path such as Class.Key=\"value\")";
    case CIMTYPE_OBJECT:
        return "an embedded object (an escaped INSTANCE element)";
    case CIMTYPE_INSTANCE:
        return "an embedded instance (an escaped INSTANCE element)";
    }
    return "a CIM value";
}

std::vector<std::string> valueTexts(const CIMValue& value) {
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        return textsOf<Boolean>(value);
    case CIMTYPE_UINT8:
        return textsOf<Uint8>(value);
    case CIMTYPE_SINT8:
        return textsOf<Sint8>(value);
    case CIMTYPE_UINT16:
        return textsOf<Uint16>(value);
    case CIMTYPE_SINT16:
        return textsOf<Sint16>(value);
    case CIMTYPE_UINT32:
        return textsOf<Uint32>(value);
    case CIMTYPE_SINT32:
        return textsOf<Sint32>(value);
    case CIMTYPE_UINT64:
        return textsOf<Uint64>(value);
    case CIMTYPE_SINT64:
        return textsOf<Sint64>(value);
    case CIMTYPE_REAL32:
        return textsOf<Real32>(value);
    case CIMTYPE_REAL64:
        return textsOf<Real64>(value);
    case CIMTYPE_CHAR16:
        return textsOf<Char16>(value);
    case CIMTYPE_STRING:
        return textsOf<String>(value);
    case CIMTYPE_DATETIME:
        return textsOf<CIMDateTime>(value);
    case CIMTYPE_REFERENCE:
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        break;
    }
    throw std::logic_error("valueTexts() called for a reference or embedded object");
}

CIMValue valueFromTexts(CIMType type, bool isArray, const std::vector<std::string>& texts) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return valueOf<Boolean>(type, isArray, texts);
    case CIMTYPE_UINT8:
        return valueOf<Uint8>(type, isArray, texts);
    case CIMTYPE_SINT8:
        return valueOf<Sint8>(type, isArray, texts);
    case CIMTYPE_UINT16:
        return valueOf<Uint16>(type, isArray, texts);
    case CIMTYPE_SINT16:
        return valueOf<Sint16>(type, isArray, texts);
    case CIMTYPE_UINT32:
        return valueOf<Uint32>(type, isArray, texts);
    case CIMTYPE_SINT32:
        return valueOf<Sint32>(type, isArray, texts);
    case CIMTYPE_UINT64:
        return valueOf<Uint64>(type, isArray, texts);
    case CIMTYPE_SINT64:
        return valueOf<Sint64>(type, isArray, texts);
    case CIMTYPE_REAL32:
        return valueOf<Real32>(type, isArray, texts);
    case CIMTYPE_REAL64:
        return valueOf<Real64>(type, isArray, texts);
    case CIMTYPE_CHAR16:
        return valueOf<Char16>(type, isArray, texts);
    case CIMTYPE_STRING:
        return valueOf<String>(type, isArray, texts);
    case CIMTYPE_DATETIME:
        return valueOf<CIMDateTime>(type, isArray, texts);
    case CIMTYPE_REFERENCE:
        return valueOf<CIMObjectPath>(type, isArray, texts);
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        break;
    }
    throw std::logic_error("valueFromTexts() called for an embedded object");
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool equalNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); i++) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z')
            x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z')
            y = static_cast<char>(y - 'A' + 'a');
        if (x != y)
            return false;
    }
    return true;
}

bool parseUnsignedInteger(std::string_view text, unsigned long long& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    return parseMagnitude(text, value);
}

bool parseSignedInteger(std::string_view text, long long& value) {
    text = trimmed(text);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    unsigned long long magnitude = 0;
    if (!parseMagnitude(text, magnitude))
        return false;
    constexpr unsigned long long maxPositive = std::numeric_limits<long long>::max();
    if (negative) {
        if (magnitude > maxPositive + 1)
            return false;
        value = magnitude == maxPositive + 1 ? std::numeric_limits<long long>::min()
                                             : -static_cast<long long>(magnitude);
    } else {
        if (magnitude > maxPositive)
            return false;
        value = static_cast<long long>(magnitude);
    }
    return true;
}

bool parseReal(std::string_view text, double& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    if (text.empty() || text.front() == '+')
        return false;
    const auto result =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::general);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool parseBoolean(std::string_view text, bool& value) {
    text = trimmed(text);
    if (equalNoCase(text, "true"))
        value = true;
    else if (equalNoCase(text, "false"))
        value = false;
    else
        return false;
    return true;
}

bool cimTypeFromName(std::string_view name, CIMType& type) {
    static constexpr CIMType all[] = {
        CIMTYPE_BOOLEAN, CIMTYPE_UINT8,   CIMTYPE_SINT8,  CIMTYPE_UINT16,   CIMTYPE_SINT16,
        CIMTYPE_UINT32,  CIMTYPE_SINT32,  CIMTYPE_UINT64, CIMTYPE_SINT64,   CIMTYPE_REAL32,
        CIMTYPE_REAL64,  CIMTYPE_CHAR16,  CIMTYPE_STRING, CIMTYPE_DATETIME, CIMTYPE_REFERENCE,
        CIMTYPE_OBJECT,  CIMTYPE_INSTANCE};
    for (CIMType candidate : all) {
        if (name == cimTypeToString(candidate)) {
            type = candidate;
            return true;
        }
    }
    return false;
}

} // namespace vexa::cimxml::detail
