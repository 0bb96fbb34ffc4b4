// UTF-8 checks shared by the decoder (requests must be valid UTF-8) and the
// writer (answers must stay well-formed whatever the provider put in them).
#ifndef VEXA_CIMXML_UTF8_H
#define VEXA_CIMXML_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexa::cimxml::detail {

// Length of the well-formed UTF-8 sequence at text[pos] (1-4), or 0 when
// it is malformed (overlong forms, surrogates and truncations included).
size_t utf8SequenceLength(std::string_view text, size_t pos);

// Offset of the first malformed sequence, or npos when the text is valid.
size_t findInvalidUtf8(std::string_view text);

// Decodes exactly one code point; false when the text is not exactly one.
bool decodeSingleCodePoint(std::string_view text, uint32_t& codePoint);

void appendUtf8(std::string& out, uint32_t codePoint);
// Writes the code point's 1-4 bytes to `bytes`; returns how many.
size_t encodeUtf8(uint32_t codePoint, char* bytes);

} // namespace vexa::cimxml::detail

#endif
