// An indication as `vexa-tool listen` prints it: the class on one line, then
// one "  name = value" line per property, then an empty line.
#ifndef VEXA_TOOL_INDICATIONTEXT_H
#define VEXA_TOOL_INDICATIONTEXT_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMValue.h>

#include <string>

namespace vexa::tool {

std::string indicationText(const Pegasus::CIMInstance& indication);

// NULL for a null value; arrays as {a, b}; strings unquoted.
std::string valueText(const Pegasus::CIMValue& value);

} // namespace vexa::tool

#endif
