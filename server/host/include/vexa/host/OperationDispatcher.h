// Answers decoded CIM operation requests: instance and association
// operations and method calls from the provider, class operations from the
// schema. Every outcome, errors included, is a CIM-XML answer body; the
// HTTP layer only wraps it.
//
// What the server adds around the provider, as a CIM server does:
// - A request for a class covers the served classes derived from it
//   (EnumerateInstances of CIM_ManagedElement): the provider is called once
//   per served class, in registration order, and the results are merged.
//   The requested class itself is called only when it is served.
// - An association request is passed to the provider once per served
//   association class that the AssocClass (References: ResultClass) covers
//   and that has a reference the source object's class can fill.
// - PropertyList and DeepInheritance=FALSE are applied to what the provider
//   delivers, and qualifiers are never sent on instances.
// - Paths given to the provider carry the system's host name and the
//   namespace; paths in association answers get the host the client used.
// - Method parameters get their declared types from the schema.
#ifndef VEXA_HOST_OPERATIONDISPATCHER_H
#define VEXA_HOST_OPERATIONDISPATCHER_H

#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>

#include <vexa/cimxml/Codec.h>
#include <vexa/schema/SchemaRepository.h>

#include <string>

#include "vexa/host/ResponseCollectors.h"
#include "vexa/host/ServedClasses.h"

namespace vexa::host {

// The provider's interfaces; a null one answers CIM_ERR_NOT_SUPPORTED.
struct ProviderInterfaces {
    Pegasus::CIMInstanceProvider* instances = nullptr;
    Pegasus::CIMAssociationProvider* associations = nullptr;
    Pegasus::CIMMethodProvider* methods = nullptr;
};

// Who asked, and by which name the client reached the server.
struct Caller {
    std::string user;         // authenticated user, empty without authentication
    std::string hostInAnswer; // HOST written into paths of association answers
};

// How a streamed answer ended: CIM_ERR_SUCCESS, or the error it ends with.
struct StreamOutcome {
    Pegasus::CIMStatusCode status = Pegasus::CIM_ERR_SUCCESS;
    std::string description;
};

// The one namespace the provider serves.
extern const char* const SERVED_NAMESPACE;

class OperationDispatcher {
public:
    // `systemName` is the host put into paths given to the provider.
    OperationDispatcher(ProviderInterfaces provider, const schema::SchemaRepository& schema,
                        const ServedClasses& served, std::string systemName);

    // Never throws: failures become ERROR answers.
    std::string answer(const cimxml::Request& request, const Caller& caller) const;

    // The operations whose answers grow with the cluster (enumerations and
    // association requests): they can be written while the provider
    // delivers, instead of being held whole.
    static bool streams(const cimxml::Request& request);
    // Answers such an operation, handing the text to `flush` in pieces of
    // about `chunkBytes` as the provider delivers. A failure ends the answer
    // with an ERROR (see cimxml::AnswerStream::fail) and is returned. Throws
    // only what `flush` throws, once the provider has been left.
    StreamOutcome stream(const cimxml::Request& request, const Caller& caller,
                         const cimxml::AnswerStream::Flush& flush, size_t chunkBytes) const;

private:
    static void checkNamespace(const cimxml::Request& request);
    std::string dispatch(const cimxml::Request& request, const Caller& caller) const;

    std::string getInstance(const cimxml::Request& request, const Caller& caller) const;
    void enumerateInstances(const cimxml::Request& request, const Caller& caller,
                            cimxml::AnswerStream& answer) const;
    void enumerateInstanceNames(const cimxml::Request& request, const Caller& caller,
                                cimxml::AnswerStream& answer) const;
    void associators(const cimxml::Request& request, const Caller& caller, bool namesOnly,
                     cimxml::AnswerStream& answer) const;
    void references(const cimxml::Request& request, const Caller& caller, bool namesOnly,
                    cimxml::AnswerStream& answer) const;

    // An association or reference request as the provider is asked it: the
    // served association classes it covers, and the source object's path.
    struct AssociationCall {
        Pegasus::Array<Pegasus::CIMName> classes;
        Pegasus::OperationContext context;
        Pegasus::CIMObjectPath path;
    };
    AssociationCall associationCall(const cimxml::Request& request, const Caller& caller,
                                    const Pegasus::CIMName& associationFilter) const;
    std::string getClass(const cimxml::Request& request) const;
    std::string enumerateClasses(const cimxml::Request& request, bool namesOnly) const;
    std::string invokeMethod(const cimxml::Request& request, const Caller& caller) const;

    ProviderInterfaces provider_;
    const schema::SchemaRepository& schema_;
    const ServedClasses& served_;
    std::string systemName_;
};

} // namespace vexa::host

#endif
