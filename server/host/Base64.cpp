#include "vexa/host/Base64.h"

namespace vexa::host {

namespace {

const char ALPHABET[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int digitValue(char c) {
    if (c >= 'A' && c <= 'Z') {
        return c - 'A';
    }
    if (c >= 'a' && c <= 'z') {
        return c - 'a' + 26;
    }
    if (c >= '0' && c <= '9') {
        return c - '0' + 52;
    }
    if (c == '+') {
        return 62;
    }
    if (c == '/') {
        return 63;
    }
    return -1;
}

} // namespace

std::string base64Encode(const std::string& bytes) {
    std::string text;
    size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        unsigned v = (static_cast<unsigned char>(bytes[i]) << 16) |
                     (static_cast<unsigned char>(bytes[i + 1]) << 8) |
                     static_cast<unsigned char>(bytes[i + 2]);
        text += ALPHABET[(v >> 18) & 63];
        text += ALPHABET[(v >> 12) & 63];
        text += ALPHABET[(v >> 6) & 63];
        text += ALPHABET[v & 63];
    }
    size_t rest = bytes.size() - i;
    if (rest > 0) {
        unsigned v = static_cast<unsigned char>(bytes[i]) << 16;
        if (rest == 2) {
            v |= static_cast<unsigned char>(bytes[i + 1]) << 8;
        }
        text += ALPHABET[(v >> 18) & 63];
        text += ALPHABET[(v >> 12) & 63];
        text += rest == 2 ? ALPHABET[(v >> 6) & 63] : '=';
        text += '=';
    }
    return text;
}

std::optional<std::string> base64Decode(const std::string& text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::string bytes;
    for (size_t i = 0; i < text.size(); i += 4) {
        int d[4];
        int padding = 0;
        for (int k = 0; k < 4; ++k) {
            char c = text[i + k];
            if (c == '=' && i + 4 == text.size() && k >= 2) {
                d[k] = 0;
                ++padding;
                continue;
            }
            if (padding > 0) {
                return std::nullopt; // data after padding
            }
            d[k] = digitValue(c);
            if (d[k] < 0) {
                return std::nullopt;
            }
        }
        unsigned v = (d[0] << 18) | (d[1] << 12) | (d[2] << 6) | d[3];
        bytes += static_cast<char>((v >> 16) & 0xFF);
        if (padding < 2) {
            bytes += static_cast<char>((v >> 8) & 0xFF);
        }
        if (padding < 1) {
            bytes += static_cast<char>(v & 0xFF);
        }
    }
    return bytes;
}

} // namespace vexa::host
