#include <vexa/cimxml/Codec.h>

namespace vexa::cimxml {

RequestError::RequestError(int httpStatus, std::string header, Pegasus::CIMStatusCode status,
                           const std::string& description)
    : std::runtime_error(description), httpStatus_(httpStatus), cimErrorHeader_(std::move(header)),
      cimStatus_(status) {}

// HTTP refusals carry CIM_ERR_FAILED too, so that a caller who answers
// every RequestError with an ERROR element still says something true.
RequestError RequestError::http(int status, const std::string& cimErrorHeader,
                                const std::string& description) {
    return RequestError(status, cimErrorHeader, Pegasus::CIM_ERR_FAILED, description);
}

RequestError RequestError::cim(Pegasus::CIMStatusCode status, const std::string& description) {
    return RequestError(0, std::string(), status, description);
}

void RequestError::setRequestContext(const std::string& messageId, const std::string& methodName,
                                     bool extrinsic) {
    messageId_ = messageId;
    methodName_ = methodName;
    extrinsic_ = extrinsic;
}

} // namespace vexa::cimxml
