// HTTP Basic authentication against a credentials file made by
// vexa-tool passwd.
#include <gtest/gtest.h>

#include <httplib.h>

#include "ProcessRunner.h"

using namespace hosttest;

namespace {

TEST(AuthenticationTest, OnlyListedUsersWithTheirPasswordGetAnswers) {
    std::string dir = makeScratchDir();
    std::string users = dir + "/users";
    CommandResult stored = runCommand({VEXA_TOOL_PATH, "passwd", users, "alice"}, "se:cret\n");
    ASSERT_EQ(stored.exitCode, 0) << stored.err;
    EXPECT_EQ(readFile(users).find("se:cret"), std::string::npos);

    ServerProcess server({"--auth-file", users});
    std::string base =
        "127.0.0.1:" + std::to_string(server.port()) + "/root/cimv2:KOR_VEXA_Cluster";

    CommandResult anonymous = wbemcli({"ein", "http://" + base});
    EXPECT_NE(anonymous.exitCode, 0);
    EXPECT_NE(anonymous.err.find("Username/password required"), std::string::npos) << anonymous.err;

    CommandResult wrong = wbemcli({"ein", "http://alice:guess@" + base});
    EXPECT_NE(wrong.exitCode, 0);
    EXPECT_NE(wrong.err.find("Invalid username/password"), std::string::npos) << wrong.err;

    CommandResult right = wbemcli({"ein", "http://alice:se:cret@" + base});
    EXPECT_EQ(right.exitCode, 0) << right.err;
    EXPECT_NE(right.out.find("KOR_VEXA_Cluster"), std::string::npos) << right.out;

    // The challenge a client needs to retry with credentials.
    httplib::Client client("127.0.0.1", server.port());
    httplib::Result challenge = client.Post("/cimom", "<x/>", "application/xml");
    ASSERT_TRUE(challenge);
    EXPECT_EQ(challenge->status, 401);
    EXPECT_EQ(challenge->get_header_value("WWW-Authenticate"), "Basic realm=\"127.0.0.1\"");

    // Guessing is slowed down from the second failure in a row, without
    // holding the request; the log names user and peer, never a password.
    client.set_basic_auth("alice", "guess2");
    std::vector<int> statuses;
    for (int i = 0; i < 3; ++i) {
        httplib::Result guessed = client.Post("/cimom", "<x/>", "application/xml");
        ASSERT_TRUE(guessed);
        statuses.push_back(guessed->status);
    }
    EXPECT_EQ(statuses, (std::vector<int>{401, 401, 429}));
    EXPECT_EQ(server.stop(), 0) << server.err();
    std::string log = server.err();
    EXPECT_NE(log.find("failed login as user 'alice' from 127.0.0.1"), std::string::npos) << log;
    for (const char* secret : {"guess", "se:cret", "Basic ", "YWxpY2U6"}) {
        EXPECT_EQ(log.find(secret), std::string::npos) << secret << " in\n" << log;
    }
}

TEST(AuthenticationTest, PasswdRefusesUnusableInput) {
    std::string dir = makeScratchDir();
    CommandResult badName = runCommand({VEXA_TOOL_PATH, "passwd", dir + "/users", "a:b"}, "x\n");
    EXPECT_EQ(badName.exitCode, 2);
    EXPECT_NE(badName.err.find("':'"), std::string::npos) << badName.err;
    CommandResult noPassword = runCommand({VEXA_TOOL_PATH, "passwd", dir + "/users", "bob"}, "");
    EXPECT_EQ(noPassword.exitCode, 1);
    CommandResult missingUser = runCommand({VEXA_TOOL_PATH, "passwd", dir + "/users"});
    EXPECT_EQ(missingUser.exitCode, 2);
}

} // namespace
