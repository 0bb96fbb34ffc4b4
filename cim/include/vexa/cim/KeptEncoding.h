// Encoded forms kept with the objects they were made from. An encoder that
// writes the same unchanged object again and again (a cached instance, in
// every enumeration of its class) keeps the bytes it wrote the first time
// and copies them from then on: one read of contiguous memory instead of a
// walk over the object's scattered parts.
//
// A kept form is dropped as soon as the object changes in a way any encoding
// of an instance shows: its path, the properties it holds, or the value of
// one of them. Class origins, propagated flags and qualifiers do not count,
// so forms that show them must not be kept. Nor can the instances inside
// embedded-object values be watched: an encoder keeps no form of an instance
// that has such a property.
//
// Lookups and keeps may run on many threads at once; a change to an object
// may not run beside them (the rule for every object here). Kept bytes are
// counted against one budget for the process, zero until the program sets
// it, so that nothing is kept where nobody asked.
//
// This is the bundled CIM layer's own extension, absent from OpenPegasus.
#ifndef VEXA_CIM_KEPTENCODING_H
#define VEXA_CIM_KEPTENCODING_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vexa::cim {

// The bytes kept for `form` (a number of the encoder's choosing), or empty
// when none are kept, another form is, or the object changed since.
std::string_view keptEncoding(const Pegasus::CIMConstInstance& instance, std::uint32_t form);
std::string_view keptEncoding(const Pegasus::CIMObjectPath& path, std::uint32_t form);

// Keeps a copy of `bytes` as the object's `form`. False, and nothing kept,
// when the object already keeps a form, the bytes are empty, or the budget
// has no room for them.
bool keepEncoding(const Pegasus::CIMConstInstance& instance, std::uint32_t form,
                  std::string_view bytes);
bool keepEncoding(const Pegasus::CIMObjectPath& path, std::uint32_t form, std::string_view bytes);

// The most bytes kept at once, by all objects together; kept forms are given
// back when their objects change or go. Lowering it drops nothing already
// kept.
void setKeptEncodingBudget(std::size_t bytes);
std::size_t keptEncodingBytes();

} // namespace vexa::cim

#endif
