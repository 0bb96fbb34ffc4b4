// The project's MOF files as the build embedded them (BuiltInMof.cpp is
// generated from mof/ at configure time), so that the built-in schema needs
// no files on disk.
#ifndef VEXA_SCHEMA_BUILTINMOF_H
#define VEXA_SCHEMA_BUILTINMOF_H

#include <cstddef>

namespace vexa::schema::detail {

struct EmbeddedMof {
    const char* path; // "mof/..." as in the source tree
    const char* text;
};

extern const EmbeddedMof embeddedMofFiles[];
extern const size_t embeddedMofFileCount;

// The files the built-in schema loads, in order.
constexpr const char* builtInSuperclassFile = "mof/server/CIM_Superclasses.mof";
constexpr const char* builtInSchemaFile = "mof/VexaProvider.mof";

} // namespace vexa::schema::detail

#endif
