#include "EventHub.h"
#include "EventSocket.h"
#include "FaultTable.h"

#include <qzantras/EventsHandler.h>
#include <qzantras/ts_log.h>

#include <cstdlib>
#include <mutex>
#include <string>

EventsHandler* theEventsHandler = nullptr;

using qzsim::EventHub;
using qzsim::EventSocket;
using qzsim::FaultTable;

namespace {
std::mutex lifecycleMutex;

// The socket lives as long as the handler, so a restarted handler (the
// provider restarts it whenever run() ends) picks up a changed path.
void startEventSocket() {
    const char* path = std::getenv("QZSIM_EVENT_SOCKET");
    if (path == nullptr || *path == '\0') {
        return;
    }
    std::string problem;
    if (!EventSocket::instance().start(path, &problem)) {
        ts_log(2, "EventsHandler::init", "no event socket: %s\n", problem.c_str());
    }
}
} // namespace

EventsHandler::EventsHandler() = default;
EventsHandler::~EventsHandler() = default;

int EventsHandler::init(PollingHandler* /*pollingHandler*/, int flags) {
    std::lock_guard<std::mutex> lock(lifecycleMutex);
    ts_log(0, "EventsHandler::init", "flags %d\n", flags);
    if (int code = FaultTable::instance().take("EventsHandler::init")) {
        return code;
    }
    if (theEventsHandler == nullptr) {
        EventHub::instance().restart();
        theEventsHandler = new EventsHandler;
        startEventSocket();
    }
    return MGMT_OK;
}

void EventsHandler::term() {
    std::lock_guard<std::mutex> lock(lifecycleMutex);
    ts_log(0, "EventsHandler::term", "enter\n");
    if (theEventsHandler == nullptr) {
        return;
    }
    EventSocket::instance().stop();
    EventHub::instance().endStream();
    EventHub::instance().waitStopped();
    EventHub::instance().clearCallbacks();
    delete theEventsHandler;
    theEventsHandler = nullptr;
}

int EventsHandler::registerEventCallback(int eventType, MgmtEventCallback callback, void* context) {
    if (int code = FaultTable::instance().take("registerEventCallback")) {
        return code;
    }
    if (eventType < 0 || eventType >= MGMT_EVENT_TYPE_COUNT) {
        ts_log(1, "EventsHandler::registerEventCallback", "unknown event type %d\n", eventType);
        return MGMT_E_INVALID_ARG;
    }
    EventHub::instance().setCallback(eventType, callback, context);
    return MGMT_OK;
}

int EventsHandler::run() {
    if (int code = FaultTable::instance().take("EventsHandler::run")) {
        return code;
    }
    ts_log(0, "EventsHandler::run", "enter\n");
    EventHub::instance().run();
    ts_log(0, "EventsHandler::run", "event stream ended\n");
    return MGMT_OK;
}
