// The command line of vexa-cimserver and the addresses it accepts.
#include <vexa/host/ListenerUrl.h>
#include <vexa/host/ServerOptions.h>

#include <gtest/gtest.h>

#include <vector>

using namespace vexa::host;

namespace {

ServerOptions parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "vexa-cimserver");
    return parseServerOptions(static_cast<int>(arguments.size()), arguments.data());
}

std::string refusal(std::vector<const char*> arguments) {
    try {
        parse(arguments);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(ServerOptionsTest, NoArgumentsServeLoopback5988) {
    ServerOptions options = parse({});
    EXPECT_EQ(options.listenAddress, "127.0.0.1");
    EXPECT_EQ(options.listenPort, 5988);
    EXPECT_TRUE(options.authFile.empty());
    EXPECT_TRUE(options.listeners.empty());
    EXPECT_EQ(options.logLevel, -1);
    EXPECT_FALSE(options.help);
    EXPECT_EQ(parse({"--tls-cert", "c.pem", "--tls-key", "k.pem"}).listenPort, 5989);
    EXPECT_EQ(parse({"--listen", "127.0.0.1:6000", "--tls-cert=c", "--tls-key=k"}).listenPort,
              6000);
    EXPECT_NE(refusal({"--tls-cert", "c.pem"}).find("go together"), std::string::npos);
}

TEST(ServerOptionsTest, ReadsValuesInBothSpellingsAndRepeatsListeners) {
    ServerOptions options =
        parse({"--listen=[::1]:0", "--listener", "http://127.0.0.1:5990/", "--listener",
               "http://[::1]:6000/cim/indications", "--log-level=0", "--workers", "3",
               "--cluster-model", "lab.json", "--event-socket=/tmp/x.sock", "-h"});
    EXPECT_EQ(options.listenAddress, "::1");
    EXPECT_EQ(options.listenPort, 0);
    ASSERT_EQ(options.listeners.size(), 2u);
    EXPECT_EQ(options.listeners[0].host, "127.0.0.1");
    EXPECT_EQ(options.listeners[0].port, 5990);
    EXPECT_EQ(options.listeners[0].path, "/");
    EXPECT_EQ(options.listeners[1].host, "::1");
    EXPECT_EQ(options.listeners[1].path, "/cim/indications");
    EXPECT_EQ(options.logLevel, 0);
    EXPECT_EQ(options.workers, 3u);
    EXPECT_EQ(options.clusterModel, "lab.json");
    EXPECT_EQ(options.eventSocket, "/tmp/x.sock");
    EXPECT_TRUE(options.help);
}

TEST(ServerOptionsTest, RefusesBadOptionsSayingWhich) {
    EXPECT_NE(refusal({"--bogus"}).find("unknown option '--bogus'"), std::string::npos);
    EXPECT_NE(refusal({"stray"}).find("unexpected argument 'stray'"), std::string::npos);
    EXPECT_NE(refusal({"--listen"}).find("--listen needs a value"), std::string::npos);
    EXPECT_NE(refusal({"--listen", "5988"}).find("ADDR:PORT"), std::string::npos);
    EXPECT_NE(refusal({"--listen", "127.0.0.1:70000"}).find("0 to 65535"), std::string::npos);
    EXPECT_NE(refusal({"--log-level", "3"}).find("--log-level"), std::string::npos);
    EXPECT_NE(refusal({"--workers", "-1"}).find("--workers"), std::string::npos);
    EXPECT_NE(refusal({"--workers", "0"}).find("--workers"), std::string::npos);
    EXPECT_NE(refusal({"--cluster-model="}).find("non-empty"), std::string::npos);
    EXPECT_NE(refusal({"--listener", "ftp://host/"}).find("must start with http://"),
              std::string::npos);
}

TEST(ServerOptionsTest, OtherMachinesMayConnectOnlyWithAuthentication) {
    EXPECT_NE(refusal({"--listen", "0.0.0.0:5988"}).find("--auth-file"), std::string::npos);
    EXPECT_NE(refusal({"--listen", "192.168.1.5:5988"}).find("--auth-file"), std::string::npos);
    EXPECT_EQ(parse({"--listen", "0.0.0.0:5988", "--auth-file", "users"}).listenAddress, "0.0.0.0");
    EXPECT_EQ(refusal({"--listen", "127.0.0.2:5988"}), "accepted");
    EXPECT_EQ(refusal({"--listen", "localhost:5988"}), "accepted");

    EXPECT_TRUE(isLoopbackAddress("127.255.0.1"));
    EXPECT_TRUE(isLoopbackAddress("::1"));
    EXPECT_FALSE(isLoopbackAddress("::"));
    EXPECT_FALSE(isLoopbackAddress("128.0.0.1"));
    EXPECT_FALSE(isLoopbackAddress("localhost.example.com"));
}

TEST(ListenerUrlTest, RefusesAddressesThatCannotBeReached) {
    for (const char* bad :
         {"http://", "http:///path", "http://host:", "http://host:0/", "http://host:99999/",
          "http://host:12a/", "http://[::1/", "http://user@host/", "https://host/"}) {
        EXPECT_THROW(parseListenerUrl(bad), std::invalid_argument) << bad;
    }
    ListenerUrl plain = parseListenerUrl("http://listener.example.com");
    EXPECT_EQ(plain.host, "listener.example.com");
    EXPECT_EQ(plain.port, 80);
    EXPECT_EQ(plain.path, "/");
}

} // namespace
