// An event posted to the simulated cluster reaches a listener as an
// indication: vexa-tool event -> simulator -> provider -> vexa-cimserver ->
// vexa-tool listen.
#include <gtest/gtest.h>

#include <cstdlib>

#include "ProcessRunner.h"

using namespace hosttest;

namespace {

TEST(IndicationsTest, EventsReachTheListenerWithTheirClassesOwnProperties) {
    std::string dir = makeScratchDir();
    BackgroundProcess listener({VEXA_TOOL_PATH, "listen", "--port", "0", "--count", "2"}, dir,
                               "listener");
    ASSERT_TRUE(listener.waitForOutput("/\n")) << listener.err();
    std::string banner = lines(listener.out())[0];
    ASSERT_EQ(banner.rfind("listening on http://127.0.0.1:", 0), 0u) << banner;
    std::string url = banner.substr(std::string("listening on ").size());

    ServerProcess server({"--listener", url});
    for (const char* event : {R"({"type": "mount", "node": "a", "fs": "data"})",
                              R"({"type": "qzadddisk", "node": "a", "fs": "data",
                                  "command": "qzadddisk data d9", "commandResult": -5})"}) {
        CommandResult sent =
            runCommand({VEXA_TOOL_PATH, "event", "--socket", server.eventSocket(), event});
        ASSERT_EQ(sent.exitCode, 0) << sent.err;
    }

    ASSERT_TRUE(listener.waitForOutput("KOR_VEXA_QzAdddiskIndication\n"))
        << listener.out() << "\nserver:\n"
        << server.err();
    EXPECT_EQ(listener.stop(0), 0); // --count 2: it ends by itself
    std::string out = listener.out();
    std::string mount = out.substr(0, out.find("KOR_VEXA_QzAdddiskIndication"));
    for (const char* line : {"KOR_VEXA_MountIndication\n", "  IndicationIdentifier = ",
                             "  vexaIndicationType = internal\n", "  vexaIndicationName = mount\n",
                             "  vexaNodeIP = 192.168.5.1\n", "  vexaFileSystemName = data\n",
                             "  vexaNodeInstancePath = ", "  vexaFileSystemInstancePath = "}) {
        EXPECT_NE(mount.find(line), std::string::npos) << line << " in\n" << mount;
    }
    std::string command = out.substr(mount.size());
    for (const char* line :
         {"  vexaIndicationType = command\n", "  vexaIndicationName = qzadddisk\n",
          "  vexaCommand = qzadddisk data d9\n", "  vexaCommandResult = -5\n"}) {
        EXPECT_NE(command.find(line), std::string::npos) << line << " in\n" << command;
    }
    EXPECT_EQ(command.find("InstancePath"), std::string::npos) << command;
    EXPECT_EQ(server.stop(), 0) << server.err();
    EXPECT_NE(server.err().find("2 delivered"), std::string::npos) << server.err();
}

TEST(IndicationsTest, ARaidElementStatusChangeReachesTheListener) {
    std::string dir = makeScratchDir();
    BackgroundProcess listener({VEXA_TOOL_PATH, "listen", "--port", "0", "--count", "1"}, dir,
                               "listener");
    ASSERT_TRUE(listener.waitForOutput("/\n")) << listener.err();
    std::string url = lines(listener.out())[0].substr(std::string("listening on ").size());

    ServerProcess server({"--listener", url, "--inventory-dir", VEXA_SAMPLE_INVENTORY_DIR});
    CommandResult called = wbemcli({"cm", server.url(":KOR_VEXA_ClusterConfigurationService"),
                                    "ModifyCorvanePhysicalDisk.name=e1s02,status=6"});
    EXPECT_NE(called.out.find("ModifyCorvanePhysicalDisk: 0"), std::string::npos)
        << called.out << called.err;
    ASSERT_TRUE(listener.waitForOutput("</INSTANCE>\n\n  SourceInstance"))
        << listener.out() << "\nserver:\n"
        << server.err();
    EXPECT_EQ(listener.stop(0), 0);
    std::string out = listener.out();
    size_t source = out.find("SourceInstance");
    EXPECT_NE(out.find("KOR_Corvane_PhysicalDisk_InstModification\n"), std::string::npos) << out;
    EXPECT_NE(out.find("<VALUE>e1s02</VALUE>"), std::string::npos) << out;
    EXPECT_LT(out.find("<VALUE>2</VALUE>\n</VALUE.ARRAY>"), source) << out;
    EXPECT_NE(out.find("<VALUE>6</VALUE>\n</VALUE.ARRAY>", source), std::string::npos) << out;
    EXPECT_EQ(server.stop(), 0) << server.err();
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
