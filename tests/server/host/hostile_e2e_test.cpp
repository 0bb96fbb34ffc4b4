// Clients that misbehave on purpose: requests never finished, connections
// left idle by the dozen, answers never read, a listener that never
// answers. The server drops them in bounded time, keeps serving others and
// stops within 2 s of SIGTERM whatever they do.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "ProcessRunner.h"

using namespace hosttest;
using Clock = std::chrono::steady_clock;

namespace {

const std::string HALF_SENT_REQUEST =
    "POST /cimom HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 400\r\n\r\n<?xml";

int connectTo(int port, int receiveBuffer = 0) {
    int socketFd = socket(AF_INET, SOCK_STREAM, 0);
    if (receiveBuffer > 0) {
        setsockopt(socketFd, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof(receiveBuffer));
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(socketFd, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    return socketFd;
}

// True when the server closes the connection within `seconds`.
bool closedWithin(int socketFd, double seconds) {
    Clock::time_point until =
        Clock::now() + std::chrono::milliseconds(static_cast<long long>(seconds * 1000));
    char buffer[4096];
    pollfd watched{socketFd, POLLIN, 0};
    while (Clock::now() < until) {
        if (poll(&watched, 1, 50) == 1 && recv(socketFd, buffer, sizeof(buffer), 0) <= 0) {
            return true;
        }
    }
    return false;
}

double secondsToStop(ServerProcess& server, int& status) {
    Clock::time_point start = Clock::now();
    status = server.stop(SIGTERM);
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The promise is 2 s; the thread sanitizer's build of the server needs
// about a second more for the same steps, so it gets a looser bound.
#if defined(__SANITIZE_THREAD__)
constexpr double STOP_BOUND_SECONDS = 4.0;
#else
constexpr double STOP_BOUND_SECONDS = 2.0;
#endif

TEST(HostileClientsTest, StopsWithin2sWhateverTheClientsAreDoing) {
    // A listener that accepts connections (in the kernel's backlog) and never answers.
    int silent = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    ASSERT_EQ(bind(silent, reinterpret_cast<sockaddr*>(&address), length), 0);
    ASSERT_EQ(listen(silent, 16), 0);
    getsockname(silent, reinterpret_cast<sockaddr*>(&address), &length);
    std::string listener = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";

    ServerProcess server({"--workers", "4", "--listener", listener});
    CommandResult event = runCommand({VEXA_TOOL_PATH, "event", "--socket", server.eventSocket(),
                                      R"({"type": "mount", "node": "a", "fs": "data"})"});
    ASSERT_EQ(event.exitCode, 0) << event.err;

    std::vector<int> clients;
    clients.push_back(connectTo(server.port()));
    send(clients.back(), HALF_SENT_REQUEST.data(), HALF_SENT_REQUEST.size(), 0);
    // Answers asked for and never read, through a small receive window.
    clients.push_back(connectTo(server.port(), 1024));
    for (int i = 0; i < 5; ++i) {
        std::string body = "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
                           "<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL "
                           "NAME=\"EnumerateInstances\"><LOCALNAMESPACEPATH><NAMESPACE "
                           "NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>"
                           "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"KOR_VEXA_Node\"/>"
                           "</IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
        std::string request = "POST /cimom HTTP/1.1\r\nHost: 127.0.0.1\r\nCIMOperation: "
                              "MethodCall\r\nCIMMethod: EnumerateInstances\r\nCIMObject: "
                              "root%2Fcimv2\r\nContent-Type: application/xml\r\nContent-Length: " +
                              std::to_string(body.size()) + "\r\n\r\n" + body;
        send(clients.back(), request.data(), request.size(), 0);
    }
    // Idle connections, more than there are workers.
    for (int i = 0; i < 40; ++i) {
        clients.push_back(connectTo(server.port()));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(300));

    int status = -1;
    double took = secondsToStop(server, status);
    EXPECT_EQ(status, 0) << server.err();
    EXPECT_LT(took, STOP_BOUND_SECONDS) << server.err();
    for (int client : clients) {
        close(client);
    }
    close(silent);
}

TEST(HostileClientsTest, UnfinishedRequestsAreDroppedAndIdleOnesDoNotStarveOthers) {
    ServerProcess server({"--workers", "2", "--timeout", "1"});
    int unfinished = connectTo(server.port());
    send(unfinished, HALF_SENT_REQUEST.data(), HALF_SENT_REQUEST.size(), 0);
    std::vector<int> idle;
    for (int i = 0; i < 20; ++i) {
        idle.push_back(connectTo(server.port()));
    }
    // Behind twenty idle connections and two workers: idle connections
    // give their worker up to those waiting (else 20 x 5 s).
    Clock::time_point start = Clock::now();
    CommandResult answered = wbemcli({"ein", server.url(":KOR_VEXA_Cluster")});
    EXPECT_EQ(answered.exitCode, 0) << answered.err;
    EXPECT_LT(std::chrono::duration<double>(Clock::now() - start).count(), 10.0);
    EXPECT_TRUE(closedWithin(unfinished, 2.0));
    EXPECT_NE(server.err().find("closed the connection from 127.0.0.1: its request did not "
                                "arrive in full within 1 s"),
              std::string::npos)
        << server.err();
    for (int client : idle) {
        close(client);
    }
    close(unfinished);
    EXPECT_EQ(server.stop(), 0) << server.err();
}

} // namespace
