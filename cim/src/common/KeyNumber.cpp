#include "KeyNumber.h"
#include <limits>

PEGASUS_NAMESPACE_BEGIN

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool parseMagnitude(const std::string& text, std::size_t start, Uint64& value) {
    const std::size_t length = text.size() - start;
    if (start >= text.size())
        return false;
    const Uint64 max = std::numeric_limits<Uint64>::max();
    Uint64 result = 0;
    if (length > 2 && text[start] == '0' && (text[start + 1] == 'x' || text[start + 1] == 'X')) {
        for (std::size_t i = start + 2; i < text.size(); i++) {
            int digit = hexDigit(text[i]);
            if (digit < 0 || result > (max >> 4))
                return false;
            result = (result << 4) | Uint64(digit);
        }
    } else {
        if (text[start] == '0' && length > 1)
            return false;
        for (std::size_t i = start; i < text.size(); i++) {
            char c = text[i];
            if (c < '0' || c > '9')
                return false;
            Uint64 digit = Uint64(c - '0');
            if (result > (max - digit) / 10)
                return false;
            result = result * 10 + digit;
        }
    }
    value = result;
    return true;
}

} // namespace

bool parseUnsignedKeyNumber(const std::string& text, Uint64& value) {
    return parseMagnitude(text, 0, value);
}

bool parseSignedKeyNumber(const std::string& text, bool allowPlus, Sint64& value) {
    bool negative = !text.empty() && text[0] == '-';
    bool plus = !text.empty() && text[0] == '+';
    if (plus && !allowPlus)
        return false;
    Uint64 magnitude = 0;
    if (!parseMagnitude(text, (negative || plus) ? 1 : 0, magnitude))
        return false;
    const Uint64 limit = Uint64(std::numeric_limits<Sint64>::max());
    if (negative) {
        if (magnitude > limit + 1)
            return false;
        value = magnitude == limit + 1 ? std::numeric_limits<Sint64>::min() : -Sint64(magnitude);
    } else {
        if (magnitude > limit)
            return false;
        value = Sint64(magnitude);
    }
    return true;
}

std::string canonicalKeyNumber(const std::string& text) {
    Uint64 unsignedValue = 0;
    if (parseUnsignedKeyNumber(text, unsignedValue))
        return std::to_string(unsignedValue);
    Sint64 signedValue = 0;
    if (parseSignedKeyNumber(text, true, signedValue))
        return std::to_string(signedValue);
    return text;
}

PEGASUS_NAMESPACE_END
