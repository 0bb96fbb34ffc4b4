// Turns a class as declared into the class as a repository holds it: the
// superclass's properties and methods are added (marked propagated, with
// the class that declared them as class origin), overrides are checked and
// inheritable qualifiers are passed down.
#ifndef VEXA_SCHEMA_CLASSRESOLVER_H
#define VEXA_SCHEMA_CLASSRESOLVER_H

#include "MofParser.h"

#include <Pegasus/Common/CIMClass.h>

#include <functional>

namespace vexa::schema::detail {

// True when `name` is `ancestor` or one of its subclasses.
using IsA = std::function<bool(const Pegasus::CIMName& name, const Pegasus::CIMName& ancestor)>;

// `superclass` is the resolved superclass, or null for a class without one.
// Throws MofError naming the declaration that breaks a rule.
Pegasus::CIMClass resolveClass(const DeclaredClass& declared, const Pegasus::CIMClass* superclass,
                               const IsA& isA);

} // namespace vexa::schema::detail

#endif
