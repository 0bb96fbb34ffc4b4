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

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::cimxml {

// Bounds that protect the decoder from hostile input.
struct DecodeLimits {
    size_t maxDepth = 64;          // XML element nesting
    size_t maxBytes = 4u << 20;    // message body
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

private:
    RequestError(int httpStatus, std::string header, Pegasus::CIMStatusCode status,
                 const std::string& description);
    int httpStatus_;
    std::string cimErrorHeader_;
    Pegasus::CIMStatusCode cimStatus_;
};

// A parameter value as the client sent it, before it has a declared type.
// wbemcli sends extrinsic parameters without a type; cimcli sends PARAMTYPE.
struct RawValue {
    enum class Shape { Null, Scalar, Array, Reference, ReferenceArray, Instance };
    Shape shape = Shape::Null;
    std::string typeHint;                      // TYPE / PARAMTYPE text, empty when absent
    std::vector<std::string> texts;            // Scalar: one text; Array: one per element
    std::vector<Pegasus::CIMObjectPath> refs;  // Reference: one; ReferenceArray: each
    std::string embeddedXml;                   // Instance: the INSTANCE element's text
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
    Pegasus::CIMObjectPath instanceName;  // InstanceName, or ObjectName naming an instance
    Pegasus::CIMName className;           // ClassName, or ObjectName naming a class
    bool objectNameIsClass = false;       // association requests on a class
    Pegasus::CIMName assocClass;
    Pegasus::CIMName resultClass;
    std::string role;
    std::string resultRole;
    bool localOnly = true;
    bool deepInheritance = true;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    Pegasus::CIMPropertyList propertyList;  // null when absent

    // Extrinsic calls: the target (LOCALINSTANCEPATH or LOCALCLASSPATH, its
    // namespace in nameSpace) and the PARAMVALUEs in the order sent.
    Pegasus::CIMObjectPath target;
    std::vector<RawParameter> parameters;
};

// Decodes a CIM-XML operation request body. Throws RequestError.
Request decodeRequest(std::string_view body, const DecodeLimits& limits = {});

// Gives a raw parameter its declared type. Throws RequestError with
// CIM_ERR_INVALID_PARAMETER, naming the parameter, when it does not convert.
Pegasus::CIMValue convertParameter(const RawParameter& parameter, Pegasus::CIMType type,
                                   bool isArray);

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

} // namespace vexa::cimxml

#endif
