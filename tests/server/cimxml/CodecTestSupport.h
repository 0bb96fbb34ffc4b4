// Shared helpers for the codec tests: request envelopes as the clients
// write them, and short ways to look at results and failures.
#ifndef VEXA_TESTS_CIMXML_CODECTESTSUPPORT_H
#define VEXA_TESTS_CIMXML_CODECTESTSUPPORT_H

#include <vexa/cimxml/Codec.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace cimxml_test {

inline std::string text(const Pegasus::String& s) {
    return std::string(static_cast<const char*>(s.getCString()));
}

// The envelope wbemcli wraps around every call (MESSAGE ID is always 4711).
inline std::string wbemcliRequest(const std::string& call) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>" +
           call + "</SIMPLEREQ>\n</MESSAGE></CIM>\n";
}

// cimcli puts a newline between all elements and counts message ids from 1000.
inline std::string cimcliRequest(const std::string& call) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"1000\" PROTOCOLVERSION=\"1.0\">\n<SIMPLEREQ>\n" +
           call + "\n</SIMPLEREQ>\n</MESSAGE>\n</CIM>\n";
}

inline const char* rootCimv2 =
    "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"></NAMESPACE><NAMESPACE "
    "NAME=\"cimv2\"></NAMESPACE></LOCALNAMESPACEPATH>";

inline std::optional<vexa::cimxml::RequestError> decodeFailure(const std::string& body) {
    try {
        vexa::cimxml::decodeRequest(body);
    } catch (const vexa::cimxml::RequestError& e) {
        return e;
    }
    return std::nullopt;
}

} // namespace cimxml_test

#endif
