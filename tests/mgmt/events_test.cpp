// Event delivery: callbacks per type with their context, the loop's end.

#include "SimTestSupport.h"

#include <qzantras/EventsHandler.h>

#include <mutex>
#include <thread>

namespace {

struct Received {
    std::mutex mutex;
    std::vector<std::pair<int, std::string>> events;
    std::vector<void*> contexts;
};

int record(Event* event, void* context) {
    Received* received = *static_cast<Received**>(context);
    std::lock_guard<std::mutex> lock(received->mutex);
    received->events.emplace_back(event->type, event->nodeIpAddr);
    received->contexts.push_back(context);
    EXPECT_NE(0u, event->tvSec);
    return 0;
}

Event makeEvent(int type, const char* ip) {
    Event event;
    event.type = type;
    std::snprintf(event.nodeIpAddr, sizeof event.nodeIpAddr, "%s", ip);
    return event;
}

} // namespace

class EventsTest : public SimTest {};

TEST_F(EventsTest, EventsReachTheCallbackOfTheirTypeUntilTheStreamEnds) {
    Received received;
    Received* mountContext = &received;
    Received* failureContext = &received;
    ASSERT_EQ(0, EventsHandler::init(nullptr, 0));
    ASSERT_NE(nullptr, theEventsHandler);
    ASSERT_EQ(0, theEventsHandler->registerEventCallback(MGMT_EVENT_MOUNT, record, &mountContext));
    ASSERT_EQ(0, theEventsHandler->registerEventCallback(MGMT_EVENT_NODE_FAILURE, record,
                                                         &failureContext));
    EXPECT_EQ(MGMT_E_INVALID_ARG, theEventsHandler->registerEventCallback(19, record, nullptr));

    qzsim::postEvent(makeEvent(MGMT_EVENT_MOUNT, "10.0.0.11"));
    qzsim::postEvent(makeEvent(MGMT_EVENT_CONSOLE_MESSAGE, "10.0.0.12")); // nobody listens
    qzsim::postEvent(makeEvent(MGMT_EVENT_NODE_FAILURE, "10.0.0.13"));

    int runResult = -1;
    std::thread loop([&] { runResult = theEventsHandler->run(); });
    ASSERT_TRUE(qzsim::waitForEventsDelivered(5000));
    {
        std::lock_guard<std::mutex> lock(received.mutex);
        ASSERT_EQ(2u, received.events.size());
        EXPECT_EQ(MGMT_EVENT_MOUNT, received.events[0].first);
        EXPECT_EQ("10.0.0.11", received.events[0].second);
        EXPECT_EQ(static_cast<void*>(&mountContext), received.contexts[0]);
        EXPECT_EQ(MGMT_EVENT_NODE_FAILURE, received.events[1].first);
        EXPECT_EQ(static_cast<void*>(&failureContext), received.contexts[1]);
    }
    qzsim::endEventStream();
    loop.join();
    EXPECT_EQ(0, runResult);

    // As the provider's event thread does: terminate, then start again.
    EventsHandler::term();
    EXPECT_EQ(nullptr, theEventsHandler);
    ASSERT_EQ(0, EventsHandler::init(nullptr, 0));
    EventsHandler* handlerAgain = theEventsHandler;
    ASSERT_EQ(0, handlerAgain->registerEventCallback(MGMT_EVENT_MOUNT, record, &mountContext));
    std::thread again([&] { handlerAgain->run(); });
    qzsim::postEvent(makeEvent(MGMT_EVENT_MOUNT, "10.0.0.14"));
    ASSERT_TRUE(qzsim::waitForEventsDelivered(5000)); // so run() is under way
    EventsHandler::term(); // from another thread: ends run() and waits for it
    again.join();
    EXPECT_EQ(nullptr, theEventsHandler);
}
