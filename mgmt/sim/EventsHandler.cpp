#include "EventHub.h"
#include "FaultTable.h"

#include <qzantras/EventsHandler.h>
#include <qzantras/ts_log.h>

#include <mutex>

EventsHandler* theEventsHandler = nullptr;

using qzsim::EventHub;
using qzsim::FaultTable;

namespace {
std::mutex lifecycleMutex;
}

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
    }
    return MGMT_OK;
}

void EventsHandler::term() {
    std::lock_guard<std::mutex> lock(lifecycleMutex);
    ts_log(0, "EventsHandler::term", "enter\n");
    if (theEventsHandler == nullptr) {
        return;
    }
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
