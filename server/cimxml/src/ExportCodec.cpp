// Indication export: the server sends ExportIndication requests as an
// export client and reads the listener's answer; the decoder and the
// response encoders serve listeners (and the tests that play one).
#include "Envelope.h"
#include "ObjectReader.h"
#include "ObjectWriter.h"
#include "ValueText.h"

#include <vexa/cimxml/Codec.h>

#include <Pegasus/Common/Exception.h>

namespace vexa::cimxml {

using namespace detail;
using namespace Pegasus;

namespace {

constexpr const char* exportMethod = "ExportIndication";

XmlWriter openExportResponse(const std::string& messageId) {
    XmlWriter out = openMessage(messageId);
    out.open("SIMPLEEXPRSP");
    out.open("EXPMETHODRESPONSE").attribute("NAME", exportMethod);
    return out;
}

CIMInstance readIndication(pugi::xml_node call, const DecodeLimits& limits) {
    const std::string method = requiredAttribute(call, "NAME");
    if (!equalNoCase(method, exportMethod))
        throw RequestError::cim(CIM_ERR_NOT_SUPPORTED,
                                "export method " + method + " is not supported");
    pugi::xml_node indication;
    for (pugi::xml_node parameter : childElements(call)) {
        if (!named(parameter, "EXPPARAMVALUE"))
            throwNotValid(where(parameter) + " where only EXPPARAMVALUE elements belong");
        const std::string name = requiredAttribute(parameter, "NAME");
        if (!equalNoCase(name, "NewIndication"))
            throw RequestError::cim(CIM_ERR_INVALID_PARAMETER,
                                    "ExportIndication has no parameter named \"" + name + "\"");
        if (indication)
            throw RequestError::cim(CIM_ERR_INVALID_PARAMETER, "NewIndication is given twice");
        indication = onlyChild(parameter, "INSTANCE");
    }
    if (!indication)
        throw RequestError::cim(CIM_ERR_INVALID_PARAMETER,
                                "ExportIndication needs the NewIndication parameter");
    ReadOptions options;
    options.maxDepth = limits.maxDepth;
    options.maxBytes = limits.maxBytes;
    return readInstance(indication, options);
}

CIMStatusCode statusFromCode(const std::string& code) {
    unsigned long long value = 0;
    if (parseUnsignedInteger(code, value) && value >= 1 && value <= 28)
        return static_cast<CIMStatusCode>(value);
    return CIM_ERR_FAILED;
}

} // namespace

std::string encodeExportIndication(const std::string& messageId, const CIMInstance& indication) {
    XmlWriter out = openMessage(messageId);
    out.open("SIMPLEEXPREQ");
    out.open("EXPMETHODCALL").attribute("NAME", exportMethod);
    out.open("EXPPARAMVALUE").attribute("NAME", "NewIndication");
    writeInstance(out, indication, false);
    return closeMessage(out);
}

ExportRequest decodeExportIndication(std::string_view body, const DecodeLimits& limits) {
    pugi::xml_document document;
    throwParseFault(parseXml(document, body, limits.maxBytes, limits.maxDepth));
    ExportRequest request;
    try {
        const MessageHeader header = readMessage(document);
        request.messageId = header.messageId;
        if (named(header.body, "MULTIEXPREQ"))
            throw RequestError::http(400, "header-mismatch",
                                     "MULTIEXPREQ needs the CIMExportBatch header, and this "
                                     "listener takes one indication per request");
        if (!named(header.body, "SIMPLEEXPREQ"))
            throwNotValid("MESSAGE holds <" + std::string(header.body.name()) +
                          ">, not an export request (SIMPLEEXPREQ)");
        request.indication = readIndication(onlyChild(header.body, "EXPMETHODCALL"), limits);
    } catch (RequestError& e) {
        if (e.httpStatus() == 0)
            e.setRequestContext(request.messageId, exportMethod, true);
        throw;
    } catch (const StructureError& e) {
        throwNotValid(e.what());
    } catch (const ValueError& e) {
        RequestError error = RequestError::cim(CIM_ERR_INVALID_PARAMETER, e.what());
        error.setRequestContext(request.messageId, exportMethod, true);
        throw error;
    } catch (const ValueTextError& e) {
        RequestError error = RequestError::cim(CIM_ERR_INVALID_PARAMETER, e.what());
        error.setRequestContext(request.messageId, exportMethod, true);
        throw error;
    } catch (const Exception& e) {
        throwNotValid(utf8(e.getMessage()));
    }
    return request;
}

std::string encodeExportResponse(const std::string& messageId) {
    XmlWriter out = openExportResponse(messageId);
    return closeMessage(out);
}

std::string encodeExportError(const std::string& messageId, CIMStatusCode status,
                              const std::string& description) {
    XmlWriter out = openExportResponse(messageId);
    out.open("ERROR")
        .attribute("CODE", std::to_string(static_cast<int>(status)))
        .attribute("DESCRIPTION", description)
        .close();
    return closeMessage(out);
}

ExportResponse decodeExportResponse(std::string_view body, const DecodeLimits& limits) {
    ExportResponse response;
    response.status = CIM_ERR_FAILED;
    pugi::xml_document document;
    const ParseResult parsed = parseXml(document, body, limits.maxBytes, limits.maxDepth);
    if (parsed.fault != ParseFault::None) {
        response.description = "the listener's answer cannot be read: " + parsed.description;
        return response;
    }
    try {
        const MessageHeader header = readMessage(document);
        response.messageId = header.messageId;
        if (!named(header.body, "SIMPLEEXPRSP"))
            throw StructureError("MESSAGE holds <" + std::string(header.body.name()) +
                                 ">, not SIMPLEEXPRSP");
        const pugi::xml_node answer = onlyChild(header.body, "EXPMETHODRESPONSE");
        for (pugi::xml_node child : childElements(answer)) {
            if (named(child, "ERROR")) {
                response.status = statusFromCode(child.attribute("CODE").value());
                response.description = child.attribute("DESCRIPTION").value();
                return response;
            }
        }
        response.delivered = true;
        response.status = CIM_ERR_SUCCESS;
    } catch (const RequestError& e) {
        response.description = std::string("the listener's answer is not valid: ") + e.what();
    } catch (const StructureError& e) {
        response.description = std::string("the listener's answer is not valid: ") + e.what();
    }
    return response;
}

} // namespace vexa::cimxml
