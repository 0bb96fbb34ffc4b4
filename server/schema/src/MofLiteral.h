// A value written in MOF (a number, string, character, TRUE, FALSE, NULL or
// a {...} list) and its conversion to a CIMValue of the declared type.
#ifndef VEXA_SCHEMA_MOFLITERAL_H
#define VEXA_SCHEMA_MOFLITERAL_H

#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

#include <string>
#include <vector>

namespace vexa::schema::detail {

struct MofLiteral {
    enum Kind { Null, Integer, Real, String, Char, Boolean, List };
    Kind kind = Null;
    std::string text; // number as written, string or character text
    bool boolean = false;
    std::vector<MofLiteral> elements; // of a List
    unsigned line = 0;
};

// The literal as a value of `type`. `what` names the element in errors
// ("property vexaNodeName"). Throws MofError.
Pegasus::CIMValue literalToValue(const MofLiteral& literal, Pegasus::CIMType type, bool isArray,
                                 const std::string& what, const std::string& source);

// The literal typed by its own form, for instances of classes the
// repository does not hold.
Pegasus::CIMValue literalToInferredValue(const MofLiteral& literal, const std::string& what,
                                         const std::string& source);

// The MOF name of a type ("uint32", "string", ...).
std::string typeName(Pegasus::CIMType type);

} // namespace vexa::schema::detail

#endif
