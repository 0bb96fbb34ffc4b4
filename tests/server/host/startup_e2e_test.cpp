// Starting and stopping vexa-cimserver: help, refused command lines, a port
// or socket another server holds, a model that does not load, and a clean
// exit on SIGINT, SIGTERM and SIGHUP.
#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

#include "ProcessRunner.h"

using namespace hosttest;

namespace {

TEST(StartupTest, HelpListsEveryOption) {
    CommandResult help = runCommand({VEXA_CIMSERVER_PATH, "--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* option :
         {"--listen", "--port-file", "--auth-file", "--provider", "--cluster-model", "--log-file",
          "--log-level", "--event-socket", "--listener", "--max-request-bytes", "--max-xml-depth",
          "--timeout", "--workers", "--inventory-dir", "--tls-cert", "--tls-key"}) {
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
    }
}

TEST(StartupTest, RefusesUnusableCommandLinesWithStatus2) {
    std::string dir = makeScratchDir();
    struct Case {
        std::vector<std::string> arguments;
        const char* says;
    };
    for (const Case& bad : std::vector<Case>{
             {{"--frobnicate"}, "unknown option '--frobnicate'"},
             {{"--listen", "0.0.0.0:0"}, "--auth-file"},
             {{"--listen", "127.0.0.1:0", "--cluster-model", dir + "/absent.json"}, "cannot read"},
             {{"--listen", "127.0.0.1:0", "--auth-file", dir + "/absent"}, "cannot read"},
             {{"--listen", "127.0.0.1:0", "--inventory-dir", dir + "/absent"}, "not a readable"}}) {
        std::vector<std::string> argv = {VEXA_CIMSERVER_PATH};
        argv.insert(argv.end(), bad.arguments.begin(), bad.arguments.end());
        CommandResult result = runCommand(argv);
        EXPECT_EQ(result.exitCode, 2) << bad.says << "\n" << result.err;
        EXPECT_NE(result.err.find(bad.says), std::string::npos) << result.err;
    }
}

TEST(StartupTest, AMissingProviderIsReportedAndNothingIsServed) {
    std::string dir = makeScratchDir();
    CommandResult result = runCommand(
        {VEXA_CIMSERVER_PATH, "--listen", "127.0.0.1:0", "--provider", dir + "/libNothing.so"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("cannot load the provider library"), std::string::npos) << result.err;
}

TEST(StartupTest, StopsCleanlyOnSigintAndSigterm) {
    for (int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        ServerProcess server;
        EXPECT_NE(
            server.out().find("wbemcli ei 'http://127.0.0.1:" + std::to_string(server.port()) +
                              "/root/cimv2:KOR_VEXA_Cluster'"),
            std::string::npos)
            << server.out();
        EXPECT_NE(server.out().find("event socket:  " + server.eventSocket()), std::string::npos);
        CommandResult answered = wbemcli({"ein", server.url(":KOR_VEXA_Cluster")});
        EXPECT_EQ(answered.exitCode, 0) << answered.err;
        int status = server.stop(signalNumber);
        EXPECT_EQ(status, 0) << server.err();
        EXPECT_NE(access(server.eventSocket().c_str(), F_OK), 0) << "the event socket is left";
        EXPECT_NE(server.err().find("stopped"), std::string::npos) << server.err();
    }
}

TEST(StartupTest, WhatAnotherServerHoldsIsRefusedAndLeftAlone) {
    ServerProcess first;
    std::string port = std::to_string(first.port());
    CommandResult samePort = runCommand({VEXA_CIMSERVER_PATH, "--listen", "127.0.0.1:" + port,
                                         "--event-socket", first.scratchDir() + "/other.sock"});
    EXPECT_EQ(samePort.exitCode, 2) << samePort.err;
    EXPECT_NE(samePort.err.find("port is in use"), std::string::npos) << samePort.err;
    CommandResult sameSocket = runCommand(
        {VEXA_CIMSERVER_PATH, "--listen", "127.0.0.1:0", "--event-socket", first.eventSocket()});
    EXPECT_EQ(sameSocket.exitCode, 2) << sameSocket.err;
    EXPECT_NE(sameSocket.err.find("in use by another running server"), std::string::npos)
        << sameSocket.err;
    CommandResult listener = runCommand({VEXA_TOOL_PATH, "listen", "--port", port});
    EXPECT_EQ(listener.exitCode, 2) << listener.err;

    EXPECT_EQ(access(first.eventSocket().c_str(), F_OK), 0) << "the first server's socket is gone";
    for (int request = 0; request < 4; ++request) {
        CommandResult answered = wbemcli({"ein", first.url(":KOR_VEXA_Cluster")});
        EXPECT_EQ(answered.exitCode, 0) << answered.err;
    }
    EXPECT_EQ(first.stop(), 0) << first.err();
}

TEST(StartupTest, AModelThatDoesNotLoadIsExplainedOnTheTerminal) {
    std::string dir = makeScratchDir();
    writeFile(dir + "/broken.json", "{\"cluster\": ");
    CommandResult result = runCommand(
        {VEXA_CIMSERVER_PATH, "--listen", "127.0.0.1:0", "--cluster-model", dir + "/broken.json",
         "--log-file", dir + "/provider.log", "--event-socket", dir + "/events.sock"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("cannot load cluster model: " + dir + "/broken.json"),
              std::string::npos)
        << result.err;
    EXPECT_EQ(result.err.find("CIM_ERR_SUCCESS"), std::string::npos) << result.err;
    // The provider's own stderr line belongs with the rest of its log.
    EXPECT_EQ(result.err.find("VexaProvider::initialize, enter"), std::string::npos);
    EXPECT_NE(readFile(dir + "/provider.log").find("VexaProvider::initialize, enter"),
              std::string::npos);
}

TEST(StartupTest, QzsimCheckNamesWhatIsWrongOnce) {
    EXPECT_EQ(runCommand({QZSIM_CHECK_PATH, "--help"}).exitCode, 0);
    std::string dir = makeScratchDir();
    writeFile(dir + "/typo.json", R"({"cluster": {"clusterName": "t"},
        "nodes": [{"name": "a", "ipAddr": "10.0.0.1"}],
        "freeDisks": [{"name": "d9", "status": "suspnded"}]})");
    writeFile(dir + "/down.json", R"({"cluster": {"clusterName": "t"}, "daemonState": "down",
        "nodes": [{"name": "a", "ipAddr": "10.0.0.1"}]})");
    writeFile(dir + "/broken.json", "{");
    CommandResult typo = runCommand({QZSIM_CHECK_PATH, dir + "/typo.json"});
    EXPECT_EQ(typo.exitCode, 1);
    EXPECT_NE(typo.out.find("/freeDisks/0/status: \"suspnded\""), std::string::npos) << typo.out;
    CommandResult down = runCommand({QZSIM_CHECK_PATH, dir + "/down.json"});
    EXPECT_EQ(down.exitCode, 0) << down.out;
    EXPECT_NE(down.out.find("daemon state down"), std::string::npos) << down.out;
    CommandResult broken = runCommand({QZSIM_CHECK_PATH, dir + "/broken.json"});
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_EQ(lines(broken.out + broken.err).size(), 1u) << broken.out << broken.err;
}

} // namespace
