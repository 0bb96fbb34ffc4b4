#include "SizeText.h"

#include <cctype>
#include <limits>

namespace qzsim {

bool parseUnsigned(const std::string& text, unsigned long long* value) {
    if (text.empty()) {
        return false;
    }
    unsigned long long result = 0;
    for (char c : text) {
        if (!std::isdigit(static_cast<unsigned char>(c))) {
            return false;
        }
        unsigned digit = static_cast<unsigned>(c - '0');
        if (result > (std::numeric_limits<unsigned long long>::max() - digit) / 10) {
            return false;
        }
        result = result * 10 + digit;
    }
    *value = result;
    return true;
}

bool parseSize(const std::string& text, unsigned long long* bytes) {
    if (text.empty()) {
        return false;
    }
    unsigned shift = 0;
    std::string digits = text;
    switch (std::toupper(static_cast<unsigned char>(text.back()))) {
    case 'K':
        shift = 10;
        break;
    case 'M':
        shift = 20;
        break;
    case 'G':
        shift = 30;
        break;
    case 'T':
        shift = 40;
        break;
    default:
        break;
    }
    if (shift != 0) {
        digits.pop_back();
    }
    unsigned long long value = 0;
    if (!parseUnsigned(digits, &value)) {
        return false;
    }
    if (shift != 0 && value > (std::numeric_limits<unsigned long long>::max() >> shift)) {
        return false;
    }
    *bytes = value << shift;
    return true;
}

} // namespace qzsim
