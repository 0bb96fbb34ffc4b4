// Indication delivery: listener queues and the exporter's senders, against
// a listener in this process.
#include <vexa/cimxml/Codec.h>
#include <vexa/host/IndicationExporter.h>
#include <vexa/host/ListenerQueue.h>

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <httplib.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "IndicationText.h"

PEGASUS_USING_PEGASUS;
using namespace vexa::host;
using namespace std::chrono_literals;

namespace {

Pegasus::CIMInstance indication(const char* className, const char* identifier) {
    CIMInstance instance{CIMName(className)};
    instance.addProperty(
        CIMProperty(CIMName("IndicationIdentifier"), CIMValue(String(identifier))));
    instance.addProperty(CIMProperty(CIMName("Codes"), CIMValue(Array<Uint16>())));
    return instance;
}

// Receives ExportIndication requests and keeps the identifiers in order.
class TestListener {
public:
    explicit TestListener(int status = 200) : status_(status) {
        server_.Post(".*", [this](const httplib::Request& request, httplib::Response& response) {
            std::lock_guard<std::mutex> lock(mutex_);
            headersOk_ = headersOk_ && request.get_header_value("CIMExport") == "MethodRequest" &&
                         request.get_header_value("CIMExportMethod") == "ExportIndication";
            vexa::cimxml::ExportRequest received =
                vexa::cimxml::decodeExportIndication(request.body);
            CIMInstance instance = received.indication;
            Uint32 index = instance.findProperty(CIMName("IndicationIdentifier"));
            String identifier;
            instance.getProperty(index).getValue().get(identifier);
            identifiers_.push_back((const char*)identifier.getCString());
            classes_.push_back((const char*)instance.getClassName().getString().getCString());
            response.status = status_;
            response.set_header("CIMExport", "MethodResponse");
            response.set_content(vexa::cimxml::encodeExportResponse(received.messageId),
                                 "application/xml");
            arrived_.notify_all();
        });
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        // stop() before the server runs would be lost.
        while (!server_.is_running()) {
            std::this_thread::sleep_for(1ms);
        }
    }
    ~TestListener() {
        server_.stop();
        thread_.join();
    }
    ListenerUrl url() const {
        return parseListenerUrl("http://127.0.0.1:" + std::to_string(port_) + "/indications");
    }
    bool waitFor(size_t count) {
        std::unique_lock<std::mutex> lock(mutex_);
        return arrived_.wait_for(lock, 10s, [&] { return identifiers_.size() >= count; });
    }
    std::vector<std::string> identifiers() {
        std::lock_guard<std::mutex> lock(mutex_);
        return identifiers_;
    }
    bool headersOk() {
        std::lock_guard<std::mutex> lock(mutex_);
        return headersOk_;
    }

private:
    int status_;
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<std::string> identifiers_;
    std::vector<std::string> classes_;
    bool headersOk_ = true;
};

// A port nothing listens on: bound without listening, and closed again.
ListenerUrl deadListener() {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address));
    getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    close(fd);
    return parseListenerUrl("http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/");
}

ExportSettings quickSettings() {
    ExportSettings settings;
    settings.attempts = 2;
    settings.retryDelay = 10ms;
    settings.timeout = 2s;
    return settings;
}

TEST(ListenerQueueTest, IsBoundedAndDrainsAfterClose) {
    ListenerQueue queue(2);
    EXPECT_TRUE(queue.push("a"));
    EXPECT_TRUE(queue.push("b"));
    EXPECT_FALSE(queue.push("c"));
    EXPECT_FALSE(queue.drained());
    queue.close();
    EXPECT_FALSE(queue.push("d"));
    std::string message;
    ASSERT_TRUE(queue.pop(message));
    EXPECT_EQ(message, "a");
    EXPECT_FALSE(queue.drained()); // "a" is being worked on
    queue.finished();
    ASSERT_TRUE(queue.pop(message));
    EXPECT_EQ(message, "b");
    queue.finished();
    EXPECT_TRUE(queue.drained());
    EXPECT_FALSE(queue.pop(message));
}

TEST(ListenerQueueTest, CloseWakesAWaitingSender) {
    ListenerQueue queue(1);
    std::atomic<bool> popped{true};
    std::thread sender([&] {
        std::string message;
        popped = queue.pop(message);
    });
    std::this_thread::sleep_for(20ms);
    queue.close();
    sender.join();
    EXPECT_FALSE(popped);
}

TEST(IndicationExporterTest, DeliversEveryIndicationInOrderToEachListener) {
    TestListener first;
    TestListener second;
    IndicationExporter exporter({first.url(), second.url()}, quickSettings());
    exporter.deliver(indication("KOR_VEXA_MountIndication", "1"));
    exporter.deliver(Array<CIMInstance>(1, indication("KOR_VEXA_UnmountIndication", "2")));
    exporter.deliver(OperationContext(), indication("KOR_VEXA_NodeFailureIndication", "3"));
    ASSERT_TRUE(first.waitFor(3));
    ASSERT_TRUE(second.waitFor(3));
    EXPECT_EQ(first.identifiers(), (std::vector<std::string>{"1", "2", "3"}));
    EXPECT_EQ(second.identifiers(), (std::vector<std::string>{"1", "2", "3"}));
    EXPECT_TRUE(first.headersOk());
    exporter.stop(1s);
    for (const ListenerCounts& counts : exporter.counts()) {
        EXPECT_EQ(counts.delivered, 3u) << counts.url;
        EXPECT_EQ(counts.failed + counts.dropped, 0u) << counts.url;
    }
}

TEST(IndicationExporterTest, AListenerThatIsDownHoldsUpNeitherTheCallerNorTheOthers) {
    TestListener alive;
    ExportSettings settings = quickSettings();
    settings.queueCapacity = 3;
    IndicationExporter exporter({deadListener(), alive.url()}, settings);
    // Far more than the dead listener's queue holds: the surplus is dropped
    // at once instead of waiting.
    for (int i = 0; i < 20; ++i) {
        exporter.deliver(indication("KOR_VEXA_MountIndication", std::to_string(i).c_str()));
    }
    ASSERT_TRUE(alive.waitFor(3)); // its own queue holds 3 at a time
    exporter.stop(2s);
    std::vector<ListenerCounts> counts = exporter.counts();
    ASSERT_EQ(counts.size(), 2u);
    EXPECT_EQ(counts[0].delivered, 0u);
    EXPECT_EQ(counts[0].failed + counts[0].dropped, 20u);
    EXPECT_GT(counts[0].dropped, 0u);
    EXPECT_EQ(counts[1].delivered + counts[1].failed + counts[1].dropped, 20u);
    EXPECT_EQ(counts[1].failed, 0u);
}

TEST(IndicationExporterTest, AnswersOtherThanSuccessCountAsFailedDeliveries) {
    TestListener refusing(500);
    IndicationExporter exporter({refusing.url()}, quickSettings());
    exporter.deliver(indication("KOR_VEXA_MountIndication", "x"));
    ASSERT_TRUE(refusing.waitFor(2)); // both attempts reach it
    exporter.stop(2s);
    EXPECT_EQ(exporter.counts()[0].failed, 1u);
    EXPECT_EQ(exporter.counts()[0].delivered, 0u);
}

TEST(IndicationExporterTest, IgnoresDeliveriesAfterIndicationsAreDisabled) {
    TestListener listener;
    IndicationExporter exporter({listener.url()}, quickSettings());
    exporter.complete();
    exporter.deliver(indication("KOR_VEXA_MountIndication", "late"));
    exporter.stop(1s);
    EXPECT_TRUE(listener.identifiers().empty());
    EXPECT_EQ(exporter.counts()[0].dropped, 0u);
}

TEST(IndicationTextTest, PrintsTheClassThenOneLinePerProperty) {
    CIMInstance instance{CIMName("KOR_VEXA_MountIndication")};
    instance.addProperty(CIMProperty(CIMName("vexaNodeName"), CIMValue(String("lab+a"))));
    instance.addProperty(CIMProperty(CIMName("Count"), CIMValue(Uint64(7))));
    Array<String> names;
    names.append(String("a b"));
    names.append(String("c"));
    instance.addProperty(CIMProperty(CIMName("Names"), CIMValue(names)));
    instance.addProperty(CIMProperty(CIMName("Codes"), CIMValue(Array<Uint16>(2, Uint16(3)))));
    instance.addProperty(CIMProperty(CIMName("Missing"), CIMValue(CIMTYPE_STRING, false)));
    EXPECT_EQ(vexa::tool::indicationText(instance), "KOR_VEXA_MountIndication\n"
                                                    "  vexaNodeName = lab+a\n"
                                                    "  Count = 7\n"
                                                    "  Names = {a b, c}\n"
                                                    "  Codes = {3, 3}\n"
                                                    "  Missing = NULL\n"
                                                    "\n");
}

} // namespace
