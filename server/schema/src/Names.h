// Conversions between the CIM layer's text types and std::string, and the
// case folding under which CIM names are compared.
#ifndef VEXA_SCHEMA_NAMES_H
#define VEXA_SCHEMA_NAMES_H

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

#include <string>

namespace vexa::schema::detail {

inline std::string toStd(const Pegasus::String& text) {
    return std::string(static_cast<const char*>(text.getCString()));
}

inline std::string toStd(const Pegasus::CIMName& name) { return toStd(name.getString()); }

// ASCII lower case: CIM names compare so.
std::string foldCase(const std::string& name);

inline std::string foldCase(const Pegasus::CIMName& name) { return foldCase(toStd(name)); }

} // namespace vexa::schema::detail

#endif
