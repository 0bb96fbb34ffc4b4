// CIM-XML: decoding the operation requests that WBEM clients send, and
// encoding the answers and the indications that the server sends.
//
// The codec knows the wire format only. It neither calls the provider nor
// knows the schema: the host decides what to answer, and gives extrinsic
// method parameters their declared types through convertParameter().
#ifndef VEXA_CIMXML_CODEC_H
#define VEXA_CIMXML_CODEC_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::cimxml {

// Bounds that protect the decoder from hostile input.
struct DecodeLimits {
    size_t maxDepth = 64;       // XML element nesting
    size_t maxBytes = 4u << 20; // message body
};

// A request that cannot be answered normally. Either the HTTP layer refuses
// it (httpStatus 400 with a CIMError header value such as
// "request-not-well-formed", "request-not-valid", "unsupported-operation"),
// or it is well formed and answered with a CIM ERROR element (httpStatus 0,
// cimStatus set). `what()` is the description sent to the client.
class RequestError : public std::runtime_error {
public:
    static RequestError http(int status, const std::string& cimErrorHeader,
                             const std::string& description);
    static RequestError cim(Pegasus::CIMStatusCode status, const std::string& description);

    int httpStatus() const { return httpStatus_; }
    const std::string& cimErrorHeader() const { return cimErrorHeader_; }
    Pegasus::CIMStatusCode cimStatus() const { return cimStatus_; }

    // The request a CIM error belongs to, once the decoder has read that
    // far: its message id and (I)METHODCALL name, so that the ERROR answer
    // can repeat them (cimcli rejects an answer that does not). Empty when
    // the envelope itself could not be read.
    const std::string& messageId() const { return messageId_; }
    const std::string& methodName() const { return methodName_; }
    bool extrinsic() const { return extrinsic_; }
    void setRequestContext(const std::string& messageId, const std::string& methodName,
                           bool extrinsic);

private:
    RequestError(int httpStatus, std::string header, Pegasus::CIMStatusCode status,
                 const std::string& description);
    int httpStatus_;
    std::string cimErrorHeader_;
    Pegasus::CIMStatusCode cimStatus_;
    std::string messageId_;
    std::string methodName_;
    bool extrinsic_ = false;
};

// A parameter value as the client sent it, before it has a declared type.
// wbemcli sends extrinsic parameters without a type; cimcli sends PARAMTYPE.
struct RawValue {
    enum class Shape { Null, Scalar, Array, Reference, ReferenceArray, Instance };
    Shape shape = Shape::Null;
    std::string typeHint;                     // TYPE / PARAMTYPE text, empty when absent
    std::vector<std::string> texts;           // Scalar: one text; Array: one per element
    std::vector<Pegasus::CIMObjectPath> refs; // Reference: one; ReferenceArray: each
    std::string embeddedXml;                  // Instance: the INSTANCE element's text
};

struct RawParameter {
    std::string name;
    RawValue value;
};

// One decoded operation request (a SIMPLEREQ).
struct Request {
    std::string messageId;
    bool extrinsic = false;
    // The intrinsic operation ("GetInstance", "EnumerateInstances", ...) or
    // the extrinsic method name, exactly as sent.
    std::string methodName;
    // The namespace joined from its NAMESPACE elements ("root/cimv2").
    std::string nameSpace;

    // Intrinsic parameters. Only those the operation carries are set; absent
    // optional ones take the operation's defaults from the protocol.
    Pegasus::CIMObjectPath instanceName; // InstanceName, or ObjectName naming an instance
    Pegasus::CIMName className;          // ClassName, or ObjectName naming a class
    bool objectNameIsClass = false;      // association requests on a class
    Pegasus::CIMName assocClass;
    Pegasus::CIMName resultClass;
    std::string role;
    std::string resultRole;
    bool localOnly = true;
    bool deepInheritance = true;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    Pegasus::CIMPropertyList propertyList; // null when absent

    // Extrinsic calls: the target (LOCALINSTANCEPATH or LOCALCLASSPATH, its
    // namespace in nameSpace) and the PARAMVALUEs in the order sent.
    Pegasus::CIMObjectPath target;
    std::vector<RawParameter> parameters;
};

// Decodes a CIM-XML operation request body. Throws RequestError.
//
// Names keep the client's spelling; intrinsic operation and parameter names
// are recognised without regard to case. Key values are normalised so that
// paths compare as the client meant them: numeric keys in plain decimal
// ("007" and "+7" become "7"), boolean keys as TRUE/FALSE. References (in
// keys and parameters) lose their HOST, which names the server as the client
// reached it, and take the request's namespace when they carry none.
// Request::instanceName and Request::target hold class and keys only; their
// namespace is Request::nameSpace. A keyless INSTANCENAME as ObjectName (what
// wbemcli sends for a class path) stays an instance name; className is then
// set to its class as well.
Request decodeRequest(std::string_view body, const DecodeLimits& limits = {});

// Gives a raw parameter its declared type. Throws RequestError with
// CIM_ERR_INVALID_PARAMETER, naming the parameter, when it does not convert,
// and with CIM_ERR_TYPE_MISMATCH when an array arrives for a scalar or a
// reference for a non-reference (a single value for an array parameter is
// taken as an array of one). CIMTYPE_INSTANCE and CIMTYPE_OBJECT parse the
// embedded INSTANCE; CIMTYPE_STRING given an embedded instance keeps its XML.
Pegasus::CIMValue convertParameter(const RawParameter& parameter, Pegasus::CIMType type,
                                   bool isArray);

// The HOST written into INSTANCEPATHs whose path has no host of its own
// (association results must carry a non-empty one). Starts as the system's
// host name; the server sets the name it is reached by. Thread-safe.
void setDefaultHost(const std::string& host);
std::string defaultHost();

// Which properties of an instance go into an answer: those the request's
// PropertyList names (all when it is null or absent) and, with
// `declaredIn`, only those that class declares (DeepInheritance=FALSE for
// instances of a subclass). Filtering while writing leaves the delivered
// instance, which may be the provider's own, untouched.
struct PropertySelection {
    const Pegasus::CIMPropertyList* propertyList = nullptr;
    const Pegasus::CIMClass* declaredIn = nullptr;
    bool includes(const Pegasus::CIMName& name) const;
    bool selectsEverything() const {
        return (propertyList == nullptr || propertyList->isNull()) && declaredIn == nullptr;
    }
};

// An intrinsic answer written while its objects arrive, so that a large
// enumeration is never held whole. The text goes to `flush` in pieces of
// at least `chunkBytes`, each ending after a whole object, and the rest at
// finish() or fail(). A flush that throws ends the stream: the exception
// leaves the add or finish call that flushed.
class AnswerStream {
public:
    using Flush = std::function<void(std::string_view text)>;
    static constexpr size_t DEFAULT_CHUNK_BYTES = 64 * 1024;

    // `host` and `nameSpace` go into the paths of association results that
    // carry none (empty: defaultHost() and the request's namespace).
    AnswerStream(const Request& request, Flush flush, size_t chunkBytes = DEFAULT_CHUNK_BYTES,
                 const std::string& host = std::string(),
                 const std::string& nameSpace = std::string());
    ~AnswerStream();
    AnswerStream(const AnswerStream&) = delete;
    AnswerStream& operator=(const AnswerStream&) = delete;

    // EnumerateInstances: VALUE.NAMEDINSTANCE.
    void addNamedInstance(const Pegasus::CIMConstInstance& instance,
                          const PropertySelection& selection = {});
    // EnumerateInstanceNames: INSTANCENAME.
    void addInstanceName(const Pegasus::CIMObjectPath& path);
    // Associators and References: VALUE.OBJECTWITHPATH.
    void addObjectWithPath(const Pegasus::CIMObject& object,
                           const PropertySelection& selection = {});
    // AssociatorNames and ReferenceNames: OBJECTPATH.
    void addObjectPath(const Pegasus::CIMObjectPath& path);

    // Ends a successful answer.
    void finish();
    // Ends the answer with an ERROR. Before any text was flushed that is the
    // plain error answer. After, the answer cannot be taken back: the
    // IRETURNVALUE is closed, the ERROR follows it inside IMETHODRESPONSE,
    // and the document still ends well-formed. A client that checks the
    // answer's structure refuses it rather than take the objects so far as
    // the whole result.
    void fail(Pegasus::CIMStatusCode status, const std::string& description);
    // Has text been handed to flush?
    bool started() const;

private:
    struct State;
    void afterObject();
    std::unique_ptr<State> state_;
};

// Answers. Each returns the whole message body, for the request's message
// id and method name.
std::string encodeInstance(const Request& request, const Pegasus::CIMInstance& instance);
std::string encodeNamedInstances(const Request& request,
                                 const Pegasus::Array<Pegasus::CIMInstance>& instances);
std::string encodeInstanceNames(const Request& request,
                                const Pegasus::Array<Pegasus::CIMObjectPath>& names);
std::string encodeObjectsWithPath(const Request& request,
                                  const Pegasus::Array<Pegasus::CIMObject>& objects);
std::string encodeObjectPaths(const Request& request,
                              const Pegasus::Array<Pegasus::CIMObjectPath>& paths);
std::string encodeClass(const Request& request, const Pegasus::CIMClass& cimClass);
std::string encodeClasses(const Request& request, const Pegasus::Array<Pegasus::CIMClass>& classes);
std::string encodeClassNames(const Request& request, const Pegasus::Array<Pegasus::CIMName>& names);
std::string encodeEmpty(const Request& request);
std::string encodeMethodResult(const Request& request, const Pegasus::CIMValue& returnValue,
                               const Pegasus::Array<Pegasus::CIMParamValue>& outParameters);
std::string encodeError(const Request& request, Pegasus::CIMStatusCode status,
                        const std::string& description);
// An error answer for a request that could not be decoded far enough to
// know its message id and method (message id "0").
std::string encodeError(Pegasus::CIMStatusCode status, const std::string& description);
// The answer to a RequestError that carries a CIM status (httpStatus() 0),
// for the request context it carries, else as the function above.
std::string encodeError(const RequestError& error);

// Indication export: the server is the export client, a listener the server.
struct ExportRequest {
    std::string messageId;
    Pegasus::CIMInstance indication;
};
std::string encodeExportIndication(const std::string& messageId,
                                   const Pegasus::CIMInstance& indication);
ExportRequest decodeExportIndication(std::string_view body, const DecodeLimits& limits = {});
std::string encodeExportResponse(const std::string& messageId);
std::string encodeExportError(const std::string& messageId, Pegasus::CIMStatusCode status,
                              const std::string& description);

// What a listener answered to an ExportIndication. Anything but an
// EXPMETHODRESPONSE without ERROR is a failed delivery: a body that cannot
// be read gives delivered == false with CIM_ERR_FAILED and the reason.
struct ExportResponse {
    std::string messageId;
    bool delivered = false;
    Pegasus::CIMStatusCode status = Pegasus::CIM_ERR_SUCCESS;
    std::string description;
};
ExportResponse decodeExportResponse(std::string_view body, const DecodeLimits& limits = {});

} // namespace vexa::cimxml

#endif
