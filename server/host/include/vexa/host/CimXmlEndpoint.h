// The HTTP side of CIM operations: checks the request as DSP0200 asks
// (method, CIM headers against the body, content type, credentials), has
// the body decoded and answered, and writes the HTTP answer. Protocol faults
// are HTTP errors with a CIMError header; everything else is a 200 answer,
// CIM errors included. Enumerations and association requests of HTTP/1.1
// clients are answered in chunks while the provider delivers; the rest, and
// everything for HTTP/1.0 clients, whole with a Content-Length.
#ifndef VEXA_HOST_CIMXMLENDPOINT_H
#define VEXA_HOST_CIMXMLENDPOINT_H

#include <httplib.h>

#include <optional>
#include <string>

#include <vexa/cimxml/Codec.h>

#include "vexa/host/AuthFile.h"
#include "vexa/host/LoginThrottle.h"
#include "vexa/host/OperationDispatcher.h"

namespace vexa::host {

struct EndpointSettings {
    cimxml::DecodeLimits limits;
    const AuthFile* auth = nullptr;         // null: no authentication
    LoginThrottle* loginThrottle = nullptr; // null: failed logins are not slowed down
    std::string systemName;                 // host name when the request names none
    // Streamed answers go to the socket in chunks of about this size.
    size_t chunkBytes = cimxml::AnswerStream::DEFAULT_CHUNK_BYTES;
};

class CimXmlEndpoint {
public:
    CimXmlEndpoint(const OperationDispatcher& dispatcher, EndpointSettings settings);

    // Routes every path: POST to handlePost, any other method to a refusal.
    void install(httplib::Server& server) const;

    void handlePost(const httplib::Request& request, httplib::Response& response) const;

private:
    void streamAnswer(const httplib::Request& request, httplib::Response& response,
                      cimxml::Request decoded, Caller caller) const;
    // Answers 429 while the peer must wait after failed logins.
    bool refusedForEarlierFailures(const httplib::Request& request,
                                   httplib::Response& response) const;
    // Logs the failure (user name and peer, never the password) and makes
    // the peer wait.
    void noteFailedLogin(const httplib::Request& request, const std::string& user) const;

    const OperationDispatcher& dispatcher_;
    EndpointSettings settings_;
};

// "%2F" style decoding of CIM header values; empty when malformed.
std::optional<std::string> percentDecode(const std::string& text);
// The reverse, for header and trailer values: all but letters, digits and
// "-._~" encoded.
std::string percentEncode(const std::string& text);

} // namespace vexa::host

#endif
