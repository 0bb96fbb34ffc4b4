// Starting and stopping vexa-cimserver: help, refused command lines, and a
// clean exit on SIGINT and SIGTERM.
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
          "--timeout", "--workers", "--inventory-dir"}) {
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
    for (int signalNumber : {SIGINT, SIGTERM}) {
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

} // namespace
