// HTTPS with a certificate made for the test: curl trusting that
// certificate and wbemcli without verification get answers; plain HTTP to
// the TLS port gets none and is logged; a key that does not fit the
// certificate stops the start.
#include <gtest/gtest.h>

#include "ProcessRunner.h"

using namespace hosttest;

namespace {

// A self-signed certificate for 127.0.0.1 and its key in `dir`.
void makeCertificate(const std::string& dir, const std::string& name) {
    CommandResult made =
        runCommand({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1",
                    "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout",
                    dir + "/" + name + ".key", "-out", dir + "/" + name + ".crt"});
    ASSERT_EQ(made.exitCode, 0) << made.err;
}

TEST(TlsTest, ServesHttpsWithTheGivenCertificateOnly) {
    std::string dir = makeScratchDir();
    makeCertificate(dir, "server");
    ServerProcess server({"--tls-cert", dir + "/server.crt", "--tls-key", dir + "/server.key"});
    std::string base = "https://127.0.0.1:" + std::to_string(server.port());
    EXPECT_NE(server.out().find("serving " + base + "/"), std::string::npos) << server.out();

    CommandResult curl = runCommand(
        {"curl", "-sS", "--cacert", dir + "/server.crt", "-H", "CIMOperation: MethodCall", "-H",
         "CIMMethod: EnumerateInstanceNames", "-H", "CIMObject: root%2Fcimv2", "-H",
         "Content-Type: application/xml", "--data-binary",
         R"(<?xml version="1.0"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="EnumerateInstanceNames"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="KOR_VEXA_Cluster"/></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)",
         base + "/cimom"});
    EXPECT_EQ(curl.exitCode, 0) << curl.err;
    EXPECT_NE(curl.out.find("KOR_VEXA_Cluster"), std::string::npos) << curl.out;

    CommandResult wbem = wbemcli({"-noverify", "ein", base + "/root/cimv2:KOR_VEXA_Node"});
    EXPECT_EQ(wbem.exitCode, 0) << wbem.err;
    EXPECT_NE(wbem.out.find("KOR_VEXA_Node"), std::string::npos) << wbem.out;

    CommandResult plain = runCommand(
        {"curl", "-sS", "-m", "5", "http://127.0.0.1:" + std::to_string(server.port()) + "/"});
    EXPECT_NE(plain.exitCode, 0);
    EXPECT_EQ(server.stop(), 0) << server.err();
    EXPECT_NE(server.err().find("plain HTTP to the TLS port"), std::string::npos) << server.err();

    makeCertificate(dir, "other");
    CommandResult mismatched =
        runCommand({VEXA_CIMSERVER_PATH, "--listen", "127.0.0.1:0", "--tls-cert",
                    dir + "/server.crt", "--tls-key", dir + "/other.key"});
    EXPECT_EQ(mismatched.exitCode, 2);
    EXPECT_NE(mismatched.err.find("is not the key of the certificate"), std::string::npos)
        << mismatched.err;
}

} // namespace
