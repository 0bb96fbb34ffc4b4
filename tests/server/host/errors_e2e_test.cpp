// Requests a server must refuse, and refuse without hanging or falling over:
// wrong namespaces and classes, unsupported operations, protocol faults and
// hostile bodies, sent with wbemcli and as raw HTTP.
#include <gtest/gtest.h>

#include <httplib.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include "ServerSuite.h"

using namespace hosttest;

namespace {

const char* const ENUMERATE_NAMES =
    R"(<?xml version="1.0" encoding="utf-8" ?>
<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="4711" PROTOCOLVERSION="1.0"><SIMPLEREQ>
<IMETHODCALL NAME="EnumerateInstanceNames"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH>
<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="KOR_VEXA_Cluster"/></IPARAMVALUE>
</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";

std::string intrinsicCall(const std::string& name, const std::string& parameters) {
    return R"(<?xml version="1.0" encoding="utf-8" ?>
<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1001" PROTOCOLVERSION="1.0"><SIMPLEREQ>
<IMETHODCALL NAME=")" +
           name +
           R"("><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH>)" +
           parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

httplib::Headers cimHeaders(const std::string& method) {
    return {{"CIMOperation", "MethodCall"},
            {"CIMMethod", method},
            {"CIMObject", "root%2Fcimv2"},
            {"CIMProtocolVersion", "1.0"}};
}

class ErrorsTest : public ServerSuite {
protected:
    static void SetUpTestSuite() {
        start({"--max-request-bytes", "65536", "--max-xml-depth", "32"});
    }
    void TearDown() override {
        // Whatever a test sent, the server still answers.
        httplib::Result result = post(cimHeaders("EnumerateInstanceNames"), ENUMERATE_NAMES);
        ASSERT_TRUE(result) << "the server stopped answering";
        EXPECT_EQ(result->status, 200);
    }

    static httplib::Result post(const httplib::Headers& headers, const std::string& body) {
        httplib::Client client("127.0.0.1", server->port());
        client.set_read_timeout(20, 0);
        return client.Post("/cimom", headers, body, "application/xml; charset=\"utf-8\"");
    }
};

TEST_F(ErrorsTest, WrongNamespaceAndUnknownClassAreCimErrors) {
    CommandResult badNamespace =
        wbemcli({"ein", "http://127.0.0.1:" + std::to_string(server->port()) +
                            "/root/other:KOR_VEXA_Cluster"});
    EXPECT_NE(badNamespace.exitCode, 0);
    EXPECT_NE(badNamespace.err.find("CIM_ERR_INVALID_NAMESPACE"), std::string::npos)
        << badNamespace.err;

    CommandResult badClass = wbemcli({"ei", server->url(":KOR_VEXA_Nothing")});
    EXPECT_NE(badClass.exitCode, 0);
    EXPECT_NE(badClass.err.find("CIM_ERR_INVALID_CLASS"), std::string::npos) << badClass.err;

    CommandResult missingKey = wbemcli({"gi", server->url(":KOR_VEXA_Cluster.Name=\"lab\"")});
    EXPECT_NE(missingKey.exitCode, 0);
    EXPECT_NE(missingKey.err.find("CIM_ERR_INVALID_PARAMETER"), std::string::npos)
        << missingKey.err;
    EXPECT_NE(missingKey.err.find("CreationClassName"), std::string::npos) << missingKey.err;
}

TEST_F(ErrorsTest, UnsupportedOperationsAnswerNotSupported) {
    for (const char* operation : {"DeleteInstance", "ExecQuery", "GetQualifier"}) {
        httplib::Result result = post(cimHeaders(operation), intrinsicCall(operation, ""));
        ASSERT_TRUE(result) << operation;
        EXPECT_EQ(result->status, 200) << operation;
        EXPECT_EQ(result->get_header_value("CIMOperation"), "MethodResponse");
        EXPECT_NE(result->body.find("CODE=\"7\""), std::string::npos) << result->body;
        EXPECT_NE(result->body.find("<IMETHODRESPONSE NAME=\"" + std::string(operation)),
                  std::string::npos)
            << result->body;
    }
}

TEST_F(ErrorsTest, ProtocolFaultsAreHttpErrors) {
    httplib::Headers wrongOperation = cimHeaders("EnumerateInstanceNames");
    wrongOperation.erase("CIMOperation");
    wrongOperation.emplace("CIMOperation", "MethodRequest");
    httplib::Result result = post(wrongOperation, ENUMERATE_NAMES);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 400);
    EXPECT_EQ(result->get_header_value("CIMError"), "unsupported-operation");

    result = post(cimHeaders("GetInstance"), ENUMERATE_NAMES);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 400);
    EXPECT_EQ(result->get_header_value("CIMError"), "header-mismatch");

    httplib::Headers noCim = {{"Content-Type", "application/xml"}};
    result = post(noCim, ENUMERATE_NAMES);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 400);
    // A person with curl learns why, and the answer does not both close and
    // keep the connection.
    EXPECT_NE(result->body.find("CIMOperation header is missing"), std::string::npos);
    EXPECT_EQ(result->get_header_value("Connection"), "close");
    EXPECT_FALSE(result->has_header("Keep-Alive"));

    httplib::Client client("127.0.0.1", server->port());
    httplib::Result get = client.Get("/cimom");
    ASSERT_TRUE(get);
    EXPECT_EQ(get->status, 501);
}

TEST_F(ErrorsTest, MalformedBodiesAreRefusedAsNotWellFormed) {
    for (const std::string& body :
         {std::string("this is not XML"), std::string(ENUMERATE_NAMES).substr(0, 150),
          std::string("<?xml version=\"1.0\"?><CIM><MESSAGE ID=\"1\" a&b></CIM>")}) {
        httplib::Result result = post(cimHeaders("EnumerateInstanceNames"), body);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->status, 400) << body;
        EXPECT_EQ(result->get_header_value("CIMError"), "request-not-well-formed") << body;
        EXPECT_NE(result->body.find("not well-formed"), std::string::npos) << result->body;
    }
    EXPECT_NE(server->err().find("refused POST /cimom from 127.0.0.1 with 400"), std::string::npos);
}

TEST_F(ErrorsTest, DeepNestingAndOversizedBodiesAreRefused) {
    std::string deep;
    for (int i = 0; i < 200; ++i) {
        deep += "<VALUE.ARRAY>";
    }
    for (int i = 0; i < 200; ++i) {
        deep += "</VALUE.ARRAY>";
    }
    httplib::Result result =
        post(cimHeaders("EnumerateInstanceNames"),
             intrinsicCall("EnumerateInstanceNames",
                           "<IPARAMVALUE NAME=\"ClassName\">" + deep + "</IPARAMVALUE>"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 400);

    std::string oversized = std::string(ENUMERATE_NAMES) + std::string(70000, ' ');
    result = post(cimHeaders("EnumerateInstanceNames"), oversized);
    // The server may answer 413 or close the connection while the client
    // is still sending; it must not take the body.
    if (result) {
        EXPECT_EQ(result->status, 413);
    }
}

TEST_F(ErrorsTest, ATruncatedBodyDoesNotHoldTheServer) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_GE(fd, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(server->port()));
    inet_pton(AF_INET, "127.0.0.1", &address.sin_addr);
    ASSERT_EQ(connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    std::string request = "POST /cimom HTTP/1.1\r\nHost: 127.0.0.1\r\n"
                          "Content-Type: application/xml\r\nCIMOperation: MethodCall\r\n"
                          "CIMMethod: EnumerateInstanceNames\r\nCIMObject: root%2Fcimv2\r\n"
                          "Content-Length: 5000\r\n\r\n" +
                          std::string(ENUMERATE_NAMES).substr(0, 100);
    ASSERT_EQ(send(fd, request.data(), request.size(), 0), static_cast<ssize_t>(request.size()));
    shutdown(fd, SHUT_WR);
    timeval timeout{20, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
    char buffer[512];
    ssize_t got = recv(fd, buffer, sizeof(buffer), 0);
    close(fd);
    // Either an HTTP refusal or a closed connection, and never a 200.
    if (got > 0) {
        EXPECT_EQ(std::string(buffer, static_cast<size_t>(got)).rfind("HTTP/1.1 4", 0), 0u);
    } else {
        EXPECT_EQ(got, 0) << "the server neither answered nor closed the connection";
    }
}

} // namespace
