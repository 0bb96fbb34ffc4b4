#ifndef QZSIM_EVENT_HUB_H
#define QZSIM_EVENT_HUB_H

// Where events meet their callbacks. Producers (the control API today, an
// event socket reader later) only call post(); EventsHandler::run() drains
// the queue on the caller's thread.

#include <qzantras/ClusterInfo.h>
#include <qzantras/EventsHandler.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace qzsim {

class EventHub {
public:
    static EventHub& instance();

    void setCallback(int type, MgmtEventCallback callback, void* context);
    void post(const Event& event);
    // Blocks delivering events until endStream().
    void run();
    // Makes the current (or the next) run() return.
    void endStream();
    // Waits until run() has returned; false when called from the run thread.
    bool waitStopped();
    bool waitDelivered(int timeoutMs);
    // Forgets callbacks and the pending end of stream (a new handler starts).
    void restart();
    // Forgets callbacks; a pending end of stream stays for a late run().
    void clearCallbacks();
    // Forgets callbacks, queued events and the pending end of stream.
    void reset();

private:
    struct Registration {
        MgmtEventCallback callback = nullptr;
        void* context = nullptr;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Event> queue_;
    Registration callbacks_[MGMT_EVENT_TYPE_COUNT];
    bool ending_ = false;
    bool running_ = false;
    bool delivering_ = false;
    std::thread::id runThread_;
};

} // namespace qzsim

#endif
