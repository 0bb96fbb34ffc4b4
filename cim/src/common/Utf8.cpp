#include "Utf8.h"

#include <Pegasus/Common/Exception.h>
#include <cstdio>

PEGASUS_NAMESPACE_BEGIN

namespace {

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

[[noreturn]] void throwInvalid(const unsigned char* bytes, Uint32 n, Uint32 index,
                               Uint32 sequenceLength) {
    char text[96];
    std::snprintf(text, sizeof(text),
                  "The byte sequence starting at index %u is not valid UTF-8 encoding:", index);
    String message(text);
    Uint32 end = index + sequenceLength;
    if (end > n || end <= index)
        end = n;
    for (Uint32 i = index; i < end; i++) {
        char byteText[8];
        std::snprintf(byteText, sizeof(byteText), " 0x%02X", static_cast<unsigned>(bytes[i]));
        message.append(String(byteText));
    }
    throw Exception(message);
}

// Length of the sequence a lead byte announces, or 0 for a byte that cannot
// start one.
Uint32 sequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

// The second byte has a narrower range after some lead bytes; that is what
// rules out overlong forms and values beyond U+10FFFF. Encoded surrogates
// (ED A0..BF) pass, as OpenPegasus lets them through; decodeUtf8 turns them
// into U+FFFD.
bool validSecondByte(unsigned char lead, unsigned char second) {
    switch (lead) {
    case 0xE0:
        return second >= 0xA0 && second <= 0xBF;
    case 0xF0:
        return second >= 0x90 && second <= 0xBF;
    case 0xF4:
        return second >= 0x80 && second <= 0x8F;
    default:
        return isContinuation(second);
    }
}

void appendUtf8(std::string& out, Uint32 code) {
    if (code < 0x80) {
        out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (code >> 6)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (code >> 12)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (code >> 18)));
        out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

} // namespace

Uint32 decodeUtf8(const char* text, Uint32 n, Char16* out) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text);
    Uint32 written = 0;
    Uint32 i = 0;
    while (i < n) {
        unsigned char lead = bytes[i];
        if (lead < 0x80) {
            out[written++] = Char16(lead);
            i++;
            continue;
        }
        Uint32 length = sequenceLength(lead);
        if (length == 0 || n - i < length)
            throwInvalid(bytes, n, i, length == 0 ? 1 : length);
        if (!validSecondByte(lead, bytes[i + 1]))
            throwInvalid(bytes, n, i, length);
        for (Uint32 k = 2; k < length; k++) {
            if (!isContinuation(bytes[i + k]))
                throwInvalid(bytes, n, i, length);
        }
        Uint32 code;
        if (length == 2) {
            code = (Uint32(lead & 0x1F) << 6) | (bytes[i + 1] & 0x3F);
        } else if (length == 3) {
            code = (Uint32(lead & 0x0F) << 12) | (Uint32(bytes[i + 1] & 0x3F) << 6) |
                   (bytes[i + 2] & 0x3F);
        } else {
            code = (Uint32(lead & 0x07) << 18) | (Uint32(bytes[i + 1] & 0x3F) << 12) |
                   (Uint32(bytes[i + 2] & 0x3F) << 6) | (bytes[i + 3] & 0x3F);
        }
        if (code >= 0x10000) {
            code -= 0x10000;
            out[written++] = Char16(Uint16(0xD800 | (code >> 10)));
            out[written++] = Char16(Uint16(0xDC00 | (code & 0x3FF)));
        } else if ((code >= 0xD800 && code <= 0xDFFF) || code == 0xFFFE || code == 0xFFFF) {
            // Accepted but not kept: OpenPegasus stores a replacement character.
            out[written++] = Char16(Uint16(0xFFFD));
        } else {
            out[written++] = Char16(Uint16(code));
        }
        i += length;
    }
    return written;
}

std::string encodeUtf8(const Char16* units, Uint32 n) {
    std::string out;
    out.reserve(n);
    for (Uint32 i = 0; i < n; i++) {
        Uint32 code = Uint16(units[i]);
        if (code >= 0xD800 && code <= 0xDBFF && i + 1 < n) {
            Uint32 low = Uint16(units[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                i++;
            }
        }
        appendUtf8(out, code);
    }
    return out;
}

PEGASUS_NAMESPACE_END
