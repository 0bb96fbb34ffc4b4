#include "Utf8.h"

namespace vexa::cimxml::detail {

namespace {

bool isContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

} // namespace

size_t utf8SequenceLength(std::string_view text, size_t pos) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[pos + i]); };
    const size_t left = text.size() - pos;
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (left < length)
        return 0;
    for (size_t i = 1; i < length; i++)
        if (!isContinuation(byte(i)))
            return 0;
    // The second byte's range rules out overlong forms, surrogates and code
    // points above U+10FFFF.
    if (lead == 0xE0 && byte(1) < 0xA0)
        return 0;
    if (lead == 0xED && byte(1) > 0x9F)
        return 0;
    if (lead == 0xF0 && byte(1) < 0x90)
        return 0;
    if (lead == 0xF4 && byte(1) > 0x8F)
        return 0;
    return length;
}

size_t findInvalidUtf8(std::string_view text) {
    for (size_t pos = 0; pos < text.size();) {
        const size_t length = utf8SequenceLength(text, pos);
        if (length == 0)
            return pos;
        pos += length;
    }
    return std::string_view::npos;
}

bool decodeSingleCodePoint(std::string_view text, uint32_t& codePoint) {
    if (text.empty())
        return false;
    const size_t length = utf8SequenceLength(text, 0);
    if (length == 0 || length != text.size())
        return false;
    static constexpr unsigned char leadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    codePoint = static_cast<unsigned char>(text[0]) & leadMask[length];
    for (size_t i = 1; i < length; i++)
        codePoint = (codePoint << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
    return true;
}

size_t encodeUtf8(uint32_t codePoint, char* bytes) {
    if (codePoint < 0x80) {
        bytes[0] = static_cast<char>(codePoint);
        return 1;
    }
    if (codePoint < 0x800) {
        bytes[0] = static_cast<char>(0xC0 | (codePoint >> 6));
        bytes[1] = static_cast<char>(0x80 | (codePoint & 0x3F));
        return 2;
    }
    if (codePoint < 0x10000) {
        bytes[0] = static_cast<char>(0xE0 | (codePoint >> 12));
        bytes[1] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        bytes[2] = static_cast<char>(0x80 | (codePoint & 0x3F));
        return 3;
    }
    bytes[0] = static_cast<char>(0xF0 | (codePoint >> 18));
    bytes[1] = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
    bytes[2] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
    bytes[3] = static_cast<char>(0x80 | (codePoint & 0x3F));
    return 4;
}

void appendUtf8(std::string& out, uint32_t codePoint) {
    char bytes[4];
    out.append(bytes, encodeUtf8(codePoint, bytes));
}

} // namespace vexa::cimxml::detail
