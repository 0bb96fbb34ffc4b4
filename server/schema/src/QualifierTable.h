// The qualifiers a MOF text may use: the standard CIM qualifiers, known
// without being declared, and any that the text declares itself
// ("Qualifier ... ;"). A qualifier that is neither is an error, so that a
// misspelt one is reported rather than silently kept.
#ifndef VEXA_SCHEMA_QUALIFIERTABLE_H
#define VEXA_SCHEMA_QUALIFIERTABLE_H

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMScope.h>

#include <map>
#include <string>

namespace vexa::schema::detail {

class QualifierTable {
public:
    // Holds the standard qualifiers.
    QualifierTable();

    // Null when the qualifier is not known; names ignore case.
    const Pegasus::CIMQualifierDecl* find(const std::string& name) const;
    // Adds or replaces a declaration.
    void declare(const Pegasus::CIMQualifierDecl& declaration);

private:
    std::map<std::string, Pegasus::CIMQualifierDecl> declarations_;
};

} // namespace vexa::schema::detail

#endif
