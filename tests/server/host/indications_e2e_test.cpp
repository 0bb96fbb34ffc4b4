// An event posted to the simulated cluster reaches a listener as an
// indication: vexa-tool event -> simulator -> provider -> vexa-cimserver ->
// vexa-tool listen.
#include <gtest/gtest.h>

#include <cstdlib>

#include "ProcessRunner.h"

using namespace hosttest;

namespace {

TEST(IndicationsTest, AnEventReachesTheListenerAsAnIndication) {
    std::string dir = makeScratchDir();
    BackgroundProcess listener({VEXA_TOOL_PATH, "listen", "--port", "0", "--count", "1"}, dir,
                               "listener");
    ASSERT_TRUE(listener.waitForOutput("/\n")) << listener.err();
    std::string banner = lines(listener.out())[0];
    ASSERT_EQ(banner.rfind("listening on http://127.0.0.1:", 0), 0u) << banner;
    std::string url = banner.substr(std::string("listening on ").size());

    ServerProcess server({"--listener", url});
    CommandResult sent = runCommand({VEXA_TOOL_PATH, "event", "--socket", server.eventSocket(),
                                     R"({"type": "mount", "node": "a", "fs": "data"})"});
    ASSERT_EQ(sent.exitCode, 0) << sent.err;

    ASSERT_TRUE(listener.waitForOutput("KOR_VEXA_MountIndication\n"))
        << listener.out() << "\nserver:\n"
        << server.err();
    EXPECT_NE(listener.out().find("  IndicationIdentifier = "), std::string::npos)
        << listener.out();
    EXPECT_EQ(listener.stop(0), 0); // --count 1: it ends by itself
    EXPECT_EQ(server.stop(), 0) << server.err();
    EXPECT_NE(server.err().find("1 delivered"), std::string::npos) << server.err();
}

TEST(IndicationsTest, ARefusedEventIsReportedByTheTool) {
    ServerProcess server;
    CommandResult refused = runCommand(
        {VEXA_TOOL_PATH, "event", "--socket", server.eventSocket(), R"({"type": "no such type"})"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.find("error"), std::string::npos) << refused.err;

    CommandResult nobody =
        runCommand({VEXA_TOOL_PATH, "event", "--socket", server.scratchDir() + "/none.sock", "{}"});
    EXPECT_EQ(nobody.exitCode, 1);
    EXPECT_NE(nobody.err.find("is vexa-cimserver running?"), std::string::npos) << nobody.err;
    EXPECT_EQ(server.stop(), 0) << server.err();
}

} // namespace
