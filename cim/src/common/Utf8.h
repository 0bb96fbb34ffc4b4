// Internal: conversion between UTF-8 bytes and UTF-16 code units, the two
// forms a String crosses between.
#ifndef Pegasus_Utf8_h
#define Pegasus_Utf8_h

#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>
#include <string>

PEGASUS_NAMESPACE_BEGIN

// Decodes `n` bytes into `out`, which must have room for `n` units (UTF-16
// never needs more units than UTF-8 needs bytes). Returns the number of
// units written. Throws Exception naming the offset of the first invalid
// sequence: overlong forms, encoded surrogates and code points above
// U+10FFFF are all rejected.
Uint32 decodeUtf8(const char* bytes, Uint32 n, Char16* out);

// Encodes `n` units. Surrogate pairs become one four-byte sequence; a lone
// surrogate is written as a three-byte sequence so that nothing is lost.
std::string encodeUtf8(const Char16* units, Uint32 n);

PEGASUS_NAMESPACE_END

#endif
