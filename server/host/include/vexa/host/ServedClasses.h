// The classes the provider serves, as its registration declares them
// (PG_ProviderCapabilities instances read with the schema): instance classes
// (ProviderType 2), association classes (3) and method classes (5) in the
// served namespace.
//
// The server needs them to answer a request for a superclass (an
// EnumerateInstances of CIM_ManagedElement) or an association request
// without an association class: it calls the provider once per served class
// that the request covers, as a CIM server calls each registered provider.
#ifndef VEXA_HOST_SERVEDCLASSES_H
#define VEXA_HOST_SERVEDCLASSES_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>

#include <vexa/schema/SchemaRepository.h>

#include <string>
#include <vector>

namespace vexa::host {

class ServedClasses {
public:
    // The capabilities of `providerName` among the schema's instances, in the
    // order declared. Classes the schema does not declare are left out and
    // reported in `missing`.
    static ServedClasses fromRegistration(const schema::SchemaRepository& schema,
                                          const std::string& providerName,
                                          std::vector<std::string>* missing = nullptr);

    bool empty() const;

    // Served instance classes that are `requested` or derive from it.
    Pegasus::Array<Pegasus::CIMName> instanceClassesUnder(const Pegasus::CIMName& requested) const;

    // Served association classes that are `assocClass` or derive from it (all
    // when it is null) and that have a reference an object of `objectClass`
    // can fill.
    Pegasus::Array<Pegasus::CIMName>
    associationClassesFor(const Pegasus::CIMName& objectClass,
                          const Pegasus::CIMName& assocClass) const;

    // True when the provider takes method calls for the class (or a class
    // it derives from).
    bool servesMethodsOf(const Pegasus::CIMName& className) const;

private:
    explicit ServedClasses(const schema::SchemaRepository& schema) : schema_(&schema) {}

    const schema::SchemaRepository* schema_;
    Pegasus::Array<Pegasus::CIMName> instanceClasses_;
    Pegasus::Array<Pegasus::CIMName> associationClasses_;
    Pegasus::Array<Pegasus::CIMName> methodClasses_;
};

} // namespace vexa::host

#endif
