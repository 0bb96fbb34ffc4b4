#include "vexa/host/CimXmlEndpoint.h"

#include <strings.h>

#include <cctype>

#include "vexa/host/Base64.h"
#include "vexa/host/ChunkedBody.h"
#include "vexa/host/ProviderLibrary.h"
#include "vexa/host/ServerLog.h"

namespace vexa::host {

namespace {

bool sameText(const std::string& a, const std::string& b) {
    return a.size() == b.size() && strcasecmp(a.c_str(), b.c_str()) == 0;
}

std::string trimmed(const std::string& text) {
    size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return std::string();
    }
    size_t last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

std::string withoutLeadingSlash(std::string nameSpace) {
    while (!nameSpace.empty() && nameSpace[0] == '/') {
        nameSpace.erase(0, 1);
    }
    return nameSpace;
}

// An HTTP-level refusal: the reason as a line of plain text for people,
// and in the CIMError header for CIM clients when the protocol names one.
// The connection is closed after requests that could not be understood.
// Each refusal is logged, so that whoever runs the server sees why a
// client got nothing.
void refuse(const httplib::Request& request, httplib::Response& response, int status,
            const std::string& cimError, bool closeConnection, const std::string& reason) {
    response.status = status;
    response.set_content(reason + "\n", "text/plain; charset=utf-8");
    if (!cimError.empty()) {
        response.set_header("CIMError", cimError);
    }
    if (closeConnection) {
        response.set_header("Connection", "close");
    }
    // Only the method, path and reason: never a header or the body, where
    // the credentials are.
    logLine("refused " + loggable(request.method, 20) + " " + loggable(request.path) + " from " +
            request.remote_addr + " with " + std::to_string(status) + ": " + reason);
}

// The host name the client used, without the port.
std::string hostOfRequest(const httplib::Request& request, const std::string& fallback) {
    std::string host = request.get_header_value("Host");
    if (!host.empty() && host[0] == '[') {
        size_t close = host.find(']');
        host = close == std::string::npos ? std::string() : host.substr(0, close + 1);
    } else {
        host = host.substr(0, host.find(':'));
    }
    return host.empty() ? fallback : host;
}

bool acceptableContentType(const std::string& value) {
    if (value.empty()) {
        return true;
    }
    std::string lower;
    for (char c : value) {
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    size_t semicolon = lower.find(';');
    std::string media = trimmed(lower.substr(0, semicolon));
    if (media != "application/xml" && media != "text/xml") {
        return false;
    }
    while (semicolon != std::string::npos) {
        size_t next = lower.find(';', semicolon + 1);
        std::string parameter = trimmed(lower.substr(semicolon + 1, next - semicolon - 1));
        if (parameter.compare(0, 8, "charset=") == 0) {
            std::string charset = parameter.substr(8);
            if (charset.size() >= 2 && charset.front() == '"' && charset.back() == '"') {
                charset = charset.substr(1, charset.size() - 2);
            }
            if (charset != "utf-8") {
                return false;
            }
        }
        semicolon = next;
    }
    return true;
}

// The user named by valid Basic credentials; empty optional otherwise,
// with the user name tried, if any, in `tried`.
std::optional<std::string> authenticatedUser(const httplib::Request& request, const AuthFile& auth,
                                             std::string& tried) {
    std::string value = trimmed(request.get_header_value("Authorization"));
    size_t space = value.find(' ');
    if (space == std::string::npos || !sameText(value.substr(0, space), "Basic")) {
        return std::nullopt;
    }
    std::optional<std::string> credential = base64Decode(trimmed(value.substr(space + 1)));
    if (!credential) {
        return std::nullopt;
    }
    // Passwords may hold ':'; user names may not.
    size_t colon = credential->find(':');
    if (colon == std::string::npos) {
        return std::nullopt;
    }
    std::string user = credential->substr(0, colon);
    tried = user;
    if (!auth.check(user, credential->substr(colon + 1))) {
        return std::nullopt;
    }
    return user;
}

// Does the CIMObject header name what the body names? Compared as CIM names
// are compared, ignoring case; key values are not compared.
bool objectHeaderMatches(const std::string& header, const cimxml::Request& request) {
    if (!request.extrinsic) {
        return sameText(withoutLeadingSlash(header), withoutLeadingSlash(request.nameSpace));
    }
    size_t colon = header.find(':');
    if (colon == std::string::npos) {
        return false;
    }
    std::string className = header.substr(colon + 1);
    className = className.substr(0, className.find('.'));
    std::string target = (const char*)request.target.getClassName().getString().getCString();
    return sameText(withoutLeadingSlash(header.substr(0, colon)),
                    withoutLeadingSlash(request.nameSpace)) &&
           sameText(className, target);
}

const char* const XML_CONTENT_TYPE = "application/xml; charset=\"utf-8\"";

// Does the TE header allow trailer fields ("TE: trailers", "TE: chunked,
// trailers")? Trailers may only be sent to a client that said so.
bool acceptsTrailers(const std::string& te) {
    size_t start = 0;
    while (start <= te.size()) {
        size_t comma = te.find(',', start);
        std::string item = trimmed(te.substr(start, comma - start));
        item = trimmed(item.substr(0, item.find(';')));
        if (sameText(item, "trailers")) {
            return true;
        }
        if (comma == std::string::npos) {
            break;
        }
        start = comma + 1;
    }
    return false;
}

// The trailer of a streamed answer: its CIM status, and for a failure the
// description percent-encoded, as in the CIMError header of a refusal.
httplib::Headers statusTrailer(const StreamOutcome& outcome) {
    httplib::Headers trailer;
    trailer.emplace("CIMStatusCode", std::to_string(static_cast<int>(outcome.status)));
    if (outcome.status != Pegasus::CIM_ERR_SUCCESS) {
        std::string description = percentEncode(outcome.description);
        trailer.emplace("CIMStatusCodeDescription", description);
        // The name wbemcli -cte reads the description under.
        trailer.emplace("CIMStatusDescription", description);
    }
    return trailer;
}

} // namespace

std::string percentEncode(const std::string& text) {
    static const char* const digits = "0123456789ABCDEF";
    std::string encoded;
    for (char c : text) {
        unsigned char byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) || c == '-' || c == '.' || c == '_' || c == '~') {
            encoded += c;
        } else {
            encoded += '%';
            encoded += digits[byte >> 4];
            encoded += digits[byte & 0x0F];
        }
    }
    return encoded;
}

std::optional<std::string> percentDecode(const std::string& text) {
    std::string decoded;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        if (i + 2 >= text.size() || !std::isxdigit(static_cast<unsigned char>(text[i + 1])) ||
            !std::isxdigit(static_cast<unsigned char>(text[i + 2]))) {
            return std::nullopt;
        }
        decoded += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
        i += 2;
    }
    return decoded;
}

CimXmlEndpoint::CimXmlEndpoint(const OperationDispatcher& dispatcher, EndpointSettings settings)
    : dispatcher_(dispatcher), settings_(std::move(settings)) {}

void CimXmlEndpoint::install(httplib::Server& server) const {
    server.Post(".*", [this](const httplib::Request& request, httplib::Response& response) {
        handlePost(request, response);
    });
    // CIM operations are POSTs; anything else is not implemented here.
    auto notImplemented = [](const httplib::Request& request, httplib::Response& response) {
        refuse(request, response, 501, "", false, "CIM operations are sent with POST");
        response.set_header("Allow", "POST");
    };
    server.Get(".*", notImplemented);
    server.Put(".*", notImplemented);
    server.Patch(".*", notImplemented);
    server.Delete(".*", notImplemented);
    server.Options(".*", notImplemented);
    // httplib adds Keep-Alive to every answer it keeps the connection for;
    // an answer that announces the close must not also offer to stay open.
    server.set_post_routing_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.get_header_value("Connection") == "close") {
            response.headers.erase("Keep-Alive");
        }
    });
}

bool CimXmlEndpoint::refusedForEarlierFailures(const httplib::Request& request,
                                               httplib::Response& response) const {
    if (settings_.loginThrottle == nullptr) {
        return false;
    }
    std::chrono::milliseconds wait =
        settings_.loginThrottle->waitLeft(request.remote_addr, LoginThrottle::Clock::now());
    if (wait.count() == 0) {
        return false;
    }
    std::string seconds = std::to_string((wait.count() + 999) / 1000);
    refuse(request, response, 429, "", false,
           "too many failed logins from this address; try again in " + seconds + " s");
    response.set_header("Retry-After", seconds);
    return true;
}

void CimXmlEndpoint::noteFailedLogin(const httplib::Request& request,
                                     const std::string& user) const {
    logLine("failed login" +
            (user.empty() ? std::string(" with unreadable credentials")
                          : " as user '" + loggable(user, 64) + "'") +
            " from " + request.remote_addr);
    if (settings_.loginThrottle != nullptr) {
        settings_.loginThrottle->failed(request.remote_addr, LoginThrottle::Clock::now());
    }
}

void CimXmlEndpoint::handlePost(const httplib::Request& request,
                                httplib::Response& response) const {
    try {
        Caller caller;
        caller.hostInAnswer = hostOfRequest(request, settings_.systemName);
        if (settings_.auth != nullptr) {
            if (refusedForEarlierFailures(request, response)) {
                return;
            }
            std::string tried;
            std::optional<std::string> user = authenticatedUser(request, *settings_.auth, tried);
            if (!user) {
                // A request without credentials is the usual first step of a
                // client that logs in when challenged, not a failure.
                if (request.has_header("Authorization")) {
                    noteFailedLogin(request, tried);
                }
                refuse(request, response, 401, "", false,
                       "missing or wrong credentials (this server has users; log in with HTTP "
                       "Basic)");
                response.set_header("WWW-Authenticate",
                                    "Basic realm=\"" + caller.hostInAnswer + "\"");
                return;
            }
            if (settings_.loginThrottle != nullptr) {
                settings_.loginThrottle->succeeded(request.remote_addr);
            }
            caller.user = *user;
        }
        if (request.version == "HTTP/1.1" && !request.has_header("Host")) {
            refuse(request, response, 400, "", true, "an HTTP/1.1 request needs a Host header");
            return;
        }
        if (!acceptableContentType(request.get_header_value("Content-Type"))) {
            refuse(request, response, 400, "", true,
                   "the Content-Type must be application/xml or text/xml in utf-8");
            return;
        }
        if (request.has_header("CIMBatch")) {
            refuse(request, response, 501, "multiple-requests-unsupported", false,
                   "batched requests are not supported");
            return;
        }
        if (!request.has_header("CIMOperation")) {
            // Also a CIM export request: this server is no listener.
            refuse(request, response, 400, "", true,
                   "not a CIM operation: the CIMOperation header is missing (send CIM-XML "
                   "with CIMOperation, CIMMethod and CIMObject headers)");
            return;
        }
        if (!sameText(trimmed(request.get_header_value("CIMOperation")), "MethodCall")) {
            refuse(request, response, 400, "unsupported-operation", true,
                   "the CIMOperation header must be MethodCall");
            return;
        }
        std::optional<std::string> methodHeader =
            percentDecode(trimmed(request.get_header_value("CIMMethod")));
        std::optional<std::string> objectHeader =
            percentDecode(trimmed(request.get_header_value("CIMObject")));
        if (!methodHeader || methodHeader->empty() || !objectHeader || objectHeader->empty()) {
            refuse(request, response, 400, "header-mismatch", true,
                   "the CIMMethod and CIMObject headers are missing or not percent-encoded");
            return;
        }
        if (request.body.size() > settings_.limits.maxBytes) {
            refuse(request, response, 413, "", true,
                   "the body is larger than the server accepts (--max-request-bytes)");
            return;
        }

        cimxml::Request decoded;
        try {
            decoded = cimxml::decodeRequest(request.body, settings_.limits);
        } catch (const cimxml::RequestError& error) {
            if (error.httpStatus() != 0) {
                refuse(request, response, error.httpStatus(), error.cimErrorHeader(), true,
                       error.what());
            } else {
                response.status = 200;
                response.set_header("CIMOperation", "MethodResponse");
                response.set_content(cimxml::encodeError(error), XML_CONTENT_TYPE);
            }
            return;
        }
        bool methodMatches = decoded.extrinsic ? *methodHeader == decoded.methodName
                                               : sameText(*methodHeader, decoded.methodName);
        std::string versionHeader = trimmed(request.get_header_value("CIMProtocolVersion"));
        if (!methodMatches || !objectHeaderMatches(*objectHeader, decoded) ||
            (!versionHeader.empty() && versionHeader.compare(0, 2, "1.") != 0)) {
            refuse(request, response, 400, "header-mismatch", true,
                   "the CIMMethod, CIMObject or CIMProtocolVersion header does not match the "
                   "body");
            return;
        }

        if (OperationDispatcher::streams(decoded) && request.version == "HTTP/1.1") {
            streamAnswer(request, response, std::move(decoded), std::move(caller));
            return;
        }
        std::string body = dispatcher_.answer(decoded, caller);
        response.status = 200;
        response.set_header("CIMOperation", "MethodResponse");
        response.set_content(body, XML_CONTENT_TYPE);
    } catch (...) {
        logLine("internal failure while answering a request: " + currentExceptionText());
        refuse(request, response, 500, "", true,
               "internal server error; the server's log says more");
    }
}

void CimXmlEndpoint::streamAnswer(const httplib::Request& request, httplib::Response& response,
                                  cimxml::Request decoded, Caller caller) const {
    struct Call {
        cimxml::Request request;
        Caller caller;
    };
    // httplib calls the content provider after this handler has returned,
    // on this connection's thread: the provider is called from there, and
    // each piece of the answer goes to the socket as it is written.
    auto call = std::make_shared<Call>(Call{std::move(decoded), std::move(caller)});
    const bool trailers = acceptsTrailers(request.get_header_value("TE"));
    response.status = 200;
    response.set_header("CIMOperation", "MethodResponse");
    response.set_header("Transfer-Encoding", "chunked");
    if (trailers) {
        response.set_header("Trailer", "CIMStatusCode, CIMStatusCodeDescription");
    }
    const std::string peer = request.remote_addr;
    response.set_content_provider(
        XML_CONTENT_TYPE, [this, call, trailers, peer](size_t, httplib::DataSink& sink) {
            try {
                ChunkedBody body(sink);
                StreamOutcome outcome = dispatcher_.stream(
                    call->request, call->caller,
                    [&body](std::string_view text) { body.write(text); }, settings_.chunkBytes);
                body.end(trailers ? statusTrailer(outcome) : httplib::Headers());
                sink.done();
                return true;
            } catch (const ClientGone&) {
                logLine("stopped answering " + call->request.methodName + " to " + peer +
                        ": the client stopped reading");
            } catch (...) {
                logLine("internal failure while streaming an answer: " + currentExceptionText());
            }
            // The connection is closed; the client sees the answer cut short.
            return false;
        });
}

} // namespace vexa::host
