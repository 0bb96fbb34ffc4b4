#ifndef QZANTRAS_EVENTS_HANDLER_H
#define QZANTRAS_EVENTS_HANDLER_H

// The library's event stream: callbacks per event type and a loop that
// delivers events to them on the thread that calls run().

#include <qzantras/ClusterInfo.h>
#include <qzantras/MgmtTypes.h>

class PollingHandler;

typedef int (*MgmtEventCallback)(Event* event, void* context);

class EventsHandler {
public:
    // Creates theEventsHandler; a second call while it exists returns 0.
    static int init(PollingHandler* pollingHandler, int flags);
    // Ends run() (if another thread is in it), waits for it to return and
    // deletes theEventsHandler.
    static void term();

    // One callback per type (an MgmtEventType); a later call replaces it.
    int registerEventCallback(int eventType, MgmtEventCallback callback, void* context);
    // Blocks, delivering events, until term() or until the event stream ends.
    int run();

private:
    EventsHandler();
    ~EventsHandler();
    EventsHandler(const EventsHandler&) = delete;
    EventsHandler& operator=(const EventsHandler&) = delete;
};

extern EventsHandler* theEventsHandler;

#endif
