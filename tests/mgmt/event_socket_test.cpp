// The event socket: events from other processes reach the callbacks, bad
// input is answered and survived, and the socket file is managed with care.

#include "SimTestSupport.h"

#include <qzantras/EventsHandler.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

struct Received {
    std::mutex mutex;
    std::vector<Event> events;
};

int record(Event* event, void* context) {
    Received* received = static_cast<Received*>(context);
    std::lock_guard<std::mutex> lock(received->mutex);
    received->events.push_back(*event);
    return 0;
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path.c_str());
    return address;
}

// A client that speaks the protocol by hand, to send what sendEventText never would.
class RawClient {
public:
    explicit RawClient(const std::string& path) {
        fd_ = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address = addressOf(path);
        connected_ = connect(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }
    ~RawClient() { close(fd_); }
    bool connected() const { return connected_; }
    void send(const std::string& bytes) {
        ASSERT_EQ(static_cast<ssize_t>(bytes.size()),
                  ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL));
    }
    std::string replyLine() {
        std::string line;
        char c = 0;
        while (recv(fd_, &c, 1, 0) == 1 && c != '\n') {
            line += c;
        }
        return line;
    }

private:
    int fd_ = -1;
    bool connected_ = false;
};

} // namespace

class EventSocketTest : public SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        char pattern[] = "/tmp/qzsim-events-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(pattern));
        dir = pattern;
        path = dir + "/events.sock";
        setenv("QZSIM_EVENT_SOCKET", path.c_str(), 1);
    }
    void TearDown() override {
        stopLoop();
        SimTest::TearDown();
        unsetenv("QZSIM_EVENT_SOCKET");
        unlink(path.c_str());
        rmdir(dir.c_str());
    }

    void startLoop() {
        ASSERT_EQ(0, EventsHandler::init(nullptr, 0));
        ASSERT_EQ(0, theEventsHandler->registerEventCallback(MGMT_EVENT_MOUNT, record, &received));
        ASSERT_EQ(
            0, theEventsHandler->registerEventCallback(MGMT_EVENT_HUNG_THREAD, record, &received));
        EventsHandler* events = theEventsHandler;
        loop = std::thread([events] { events->run(); });
    }
    void stopLoop() {
        EventsHandler::term();
        if (loop.joinable()) {
            loop.join();
        }
    }
    std::vector<Event> delivered() {
        EXPECT_TRUE(qzsim::waitForEventsDelivered(5000));
        std::lock_guard<std::mutex> lock(received.mutex);
        return received.events;
    }

    std::string dir;
    std::string path;
    Received received;
    std::thread loop;
};

TEST_F(EventSocketTest, AnEventSentThroughTheSocketReachesItsCallback) {
    startLoop();
    EXPECT_EQ(path, qzsim::eventSocketPath());
    struct stat info;
    ASSERT_EQ(0, stat(path.c_str(), &info));
    EXPECT_TRUE(S_ISSOCK(info.st_mode));
    EXPECT_EQ(0600u, info.st_mode & 0777);

    EXPECT_EQ("ok", qzsim::sendEventText(path, R"({"type": "mount", "node": "node1",)"
                                               R"( "fs": "fs1", "seconds": 1700000000})"));
    // Typed over several lines, as people do at a shell.
    EXPECT_EQ("ok", qzsim::sendEventText(path, "{\"type\": 14,\n \"nodeIp\": \"10.0.0.12\",\n"
                                               " \"waitTime\": 30}\n"));
    std::vector<Event> events = delivered();
    ASSERT_EQ(2u, events.size());
    EXPECT_EQ(MGMT_EVENT_MOUNT, events[0].type);
    EXPECT_STREQ("10.0.0.11", events[0].nodeIpAddr);
    EXPECT_STREQ("fs1", events[0].fsName);
    EXPECT_EQ(1700000000u, events[0].tvSec);
    EXPECT_EQ(MGMT_EVENT_HUNG_THREAD, events[1].type);
    EXPECT_STREQ("node2", events[1].nodeName);
    EXPECT_EQ(30u, events[1].waitTime);

    // The provider terminates the handler when run() ends and starts it again.
    stopLoop();
    EXPECT_EQ("", qzsim::eventSocketPath());
    EXPECT_NE(0, access(path.c_str(), F_OK)) << "socket file left behind";
    try {
        qzsim::sendEventText(path, R"({"type": "mount"})");
        ADD_FAILURE() << "sent without a listener";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ("no simulator is listening on " + path + ": No such file or directory",
                  std::string(e.what()));
    }
    startLoop();
    EXPECT_EQ("ok", qzsim::sendEventText(path, R"({"type": "mount"})"));
    EXPECT_EQ(3u, delivered().size());
}

TEST_F(EventSocketTest, BadLinesAreAnsweredAndTheConnectionStaysUsable) {
    startLoop();
    RawClient client(path);
    ASSERT_TRUE(client.connected());
    std::string overlong = "{\"type\": \"mount\", \"fs\": \"" + std::string(70000, 'f') + "\"}\n";
    // Several lines in one write, one line over several writes.
    client.send(
        "not json\n{\"type\": \"mount\", \"fs\": \"a\"}\r\n\n{\"tpye\": 0}\n{\"type\": 1e999}\n");
    client.send(overlong.substr(0, 40000));
    client.send(overlong.substr(40000));
    client.send("{\"type\": \"mount\",");
    client.send(" \"fs\": \"b\"}\n");

    EXPECT_EQ(0u, client.replyLine().find("error: not valid JSON at byte "));
    EXPECT_EQ("ok", client.replyLine());
    EXPECT_EQ(0u, client.replyLine().find("error: empty line"));
    EXPECT_EQ(0u, client.replyLine().find("error: member \"tpye\": unknown member"));
    EXPECT_EQ("error: not valid JSON at byte 10: number overflow parsing '1e999'",
              client.replyLine());
    EXPECT_EQ("error: line longer than 65536 bytes, skipped", client.replyLine());
    EXPECT_EQ("ok", client.replyLine());

    std::vector<Event> events = delivered();
    ASSERT_EQ(2u, events.size());
    EXPECT_STREQ("a", events[0].fsName);
    EXPECT_STREQ("b", events[1].fsName);
}

TEST_F(EventSocketTest, AClientLeavingMidLinePostsNothingAndOthersCarryOn) {
    qzsim::startLogCapture();
    startLoop();
    {
        RawClient leaving(path);
        ASSERT_TRUE(leaving.connected());
        leaving.send("{\"type\": \"mount\", \"fs\": \"half");
    }
    {
        RawClient longLeaving(path); // gone while a long line is being skipped
        ASSERT_TRUE(longLeaving.connected());
        longLeaving.send(std::string(100000, ' '));
    }
    EXPECT_EQ("ok", qzsim::sendEventText(path, R"({"type": "mount", "fs": "whole"})"));

    // The departures are noticed on the socket's thread; wait for both notes.
    auto departures = [] {
        int count = 0;
        for (const std::string& line : qzsim::capturedLog()) {
            count += line.find("client left in the middle of a line") != std::string::npos;
        }
        return count;
    };
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (departures() < 2 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(2, departures());
    std::vector<Event> events = delivered();
    ASSERT_EQ(1u, events.size());
    EXPECT_STREQ("whole", events[0].fsName);
}

TEST_F(EventSocketTest, AStaleSocketFileIsReplacedButNothingElseIs) {
    // What a crashed simulator leaves behind: a socket file nobody listens on.
    int stale = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = addressOf(path);
    ASSERT_EQ(0, bind(stale, reinterpret_cast<sockaddr*>(&address), sizeof address));
    close(stale);
    startLoop();
    EXPECT_EQ(path, qzsim::eventSocketPath());
    EXPECT_EQ("ok", qzsim::sendEventText(path, R"({"type": "mount"})"));
    EXPECT_EQ(1u, delivered().size());
    stopLoop();

    // A live listener keeps its socket.
    int live = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(0, bind(live, reinterpret_cast<sockaddr*>(&address), sizeof address));
    ASSERT_EQ(0, listen(live, 1));
    qzsim::startLogCapture();
    startLoop();
    EXPECT_EQ("", qzsim::eventSocketPath());
    bool reported = false;
    for (const std::string& line : qzsim::capturedLog()) {
        reported =
            reported || (line.find("L2") != std::string::npos &&
                         line.find("another process is listening on " + path) != std::string::npos);
    }
    EXPECT_TRUE(reported);
    stopLoop();
    struct stat info;
    EXPECT_EQ(0, stat(path.c_str(), &info)) << "the live listener's socket was removed";
    close(live);
    unlink(path.c_str());

    // So does a file that is no socket.
    { std::ofstream(path) << "keep me\n"; }
    startLoop();
    EXPECT_EQ("", qzsim::eventSocketPath());
    stopLoop();
    std::ifstream kept(path);
    std::string content;
    std::getline(kept, content);
    EXPECT_EQ("keep me", content);
}
