#include "Envelope.h"

namespace vexa::cimxml::detail {

namespace {

// "2.0", "2.1", ...: the major version must match.
bool versionMatches(const std::string& version, char major) {
    if (version.size() < 3 || version[0] != major || version[1] != '.')
        return false;
    for (size_t i = 2; i < version.size(); i++)
        if (version[i] < '0' || version[i] > '9')
            return false;
    return true;
}

void checkVersion(pugi::xml_node node, const char* attributeName, char major,
                  const char* cimErrorHeader) {
    const std::string version = requiredAttribute(node, attributeName);
    if (!versionMatches(version, major))
        throw RequestError::http(501, cimErrorHeader,
                                 std::string(attributeName) + " \"" + version +
                                     "\" is not supported; this server speaks " + major + ".x");
}

} // namespace

void throwNotValid(const std::string& description) {
    throw RequestError::http(400, "request-not-valid", description);
}

void throwParseFault(const ParseResult& result) {
    switch (result.fault) {
    case ParseFault::None:
        return;
    case ParseFault::TooLarge:
        throw RequestError::http(413, "", result.description);
    case ParseFault::NotWellFormed:
        throw RequestError::http(400, "request-not-well-formed", result.description);
    case ParseFault::NotUtf8:
    case ParseFault::TooDeep:
        throwNotValid(result.description);
    }
}

MessageHeader readMessage(const pugi::xml_document& document) {
    const pugi::xml_node root = document.document_element();
    if (!named(root, "CIM"))
        throwNotValid("the root element is <" + std::string(root.name()) + ">, not <CIM>");
    checkVersion(root, "CIMVERSION", '2', "unsupported-cim-version");
    checkVersion(root, "DTDVERSION", '2', "unsupported-dtd-version");
    const pugi::xml_node message = onlyChild(root, "MESSAGE");
    MessageHeader header;
    header.messageId = requiredAttribute(message, "ID");
    checkVersion(message, "PROTOCOLVERSION", '1', "unsupported-protocol-version");
    const std::vector<pugi::xml_node> content = childElements(message);
    if (content.size() != 1)
        throwNotValid(where(message) + " must hold exactly one request");
    header.body = content[0];
    return header;
}

XmlWriter openMessage(const std::string& messageId) {
    XmlWriter out;
    out.raw("<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n");
    out.open("CIM").attribute("CIMVERSION", "2.0").attribute("DTDVERSION", "2.0");
    out.open("MESSAGE").attribute("ID", messageId).attribute("PROTOCOLVERSION", "1.0");
    return out;
}

void endMessage(XmlWriter& out) {
    while (out.openElements() > 0)
        out.close();
    out.raw("\n");
}

std::string closeMessage(XmlWriter& out) {
    endMessage(out);
    return out.take();
}

XmlWriter openResult(const Request& request) {
    XmlWriter out = openMessage(request.messageId);
    out.open("SIMPLERSP");
    if (request.extrinsic) {
        out.open("METHODRESPONSE").attribute("NAME", request.methodName);
    } else {
        out.open("IMETHODRESPONSE").attribute("NAME", request.methodName);
        out.open("IRETURNVALUE");
    }
    return out;
}

void writeError(XmlWriter& out, Pegasus::CIMStatusCode status, const std::string& description) {
    out.open("ERROR")
        .attribute("CODE", std::to_string(static_cast<int>(status)))
        .attribute("DESCRIPTION", description)
        .close();
}

std::string errorMessage(const std::string& messageId, const std::string& methodName,
                         bool extrinsic, Pegasus::CIMStatusCode status,
                         const std::string& description) {
    XmlWriter out = openMessage(messageId);
    out.open("SIMPLERSP");
    out.open(extrinsic ? "METHODRESPONSE" : "IMETHODRESPONSE").attribute("NAME", methodName);
    writeError(out, status, description);
    return closeMessage(out);
}

} // namespace vexa::cimxml::detail
