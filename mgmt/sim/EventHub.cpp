#include "EventHub.h"

#include <qzantras/ts_log.h>

#include <chrono>
#include <sys/time.h>

namespace qzsim {

EventHub& EventHub::instance() {
    static EventHub hub;
    return hub;
}

void EventHub::setCallback(int type, MgmtEventCallback callback, void* context) {
    std::lock_guard<std::mutex> lock(mutex_);
    callbacks_[type] = Registration{callback, context};
}

void EventHub::post(const Event& event) {
    Event copy = event;
    if (copy.tvSec == 0 && copy.tvUsec == 0) {
        struct timeval now;
        gettimeofday(&now, nullptr);
        copy.tvSec = static_cast<unsigned long long>(now.tv_sec);
        copy.tvUsec = static_cast<unsigned long long>(now.tv_usec);
    }
    std::lock_guard<std::mutex> lock(mutex_);
    queue_.push_back(copy);
    changed_.notify_all();
}

void EventHub::run() {
    std::unique_lock<std::mutex> lock(mutex_);
    running_ = true;
    runThread_ = std::this_thread::get_id();
    for (;;) {
        changed_.wait(lock, [this] { return ending_ || !queue_.empty(); });
        if (ending_) {
            break;
        }
        Event event = queue_.front();
        queue_.pop_front();
        Registration target;
        if (event.type >= 0 && event.type < MGMT_EVENT_TYPE_COUNT) {
            target = callbacks_[event.type];
        }
        if (target.callback == nullptr) {
            ts_log(0, "EventsHandler::run", "no callback for event type %d, dropped\n", event.type);
            changed_.notify_all();
            continue;
        }
        delivering_ = true;
        lock.unlock();
        target.callback(&event, target.context);
        lock.lock();
        delivering_ = false;
        changed_.notify_all();
    }
    ending_ = false;
    running_ = false;
    runThread_ = std::thread::id();
    changed_.notify_all();
}

void EventHub::endStream() {
    std::lock_guard<std::mutex> lock(mutex_);
    ending_ = true;
    changed_.notify_all();
}

bool EventHub::waitStopped() {
    std::unique_lock<std::mutex> lock(mutex_);
    if (running_ && runThread_ == std::this_thread::get_id()) {
        return false;
    }
    changed_.wait(lock, [this] { return !running_; });
    return true;
}

bool EventHub::waitDelivered(int timeoutMs) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                             [this] { return queue_.empty() && !delivering_; });
}

void EventHub::restart() {
    std::lock_guard<std::mutex> lock(mutex_);
    for (Registration& r : callbacks_) {
        r = Registration();
    }
    if (!running_) {
        ending_ = false;
    }
}

void EventHub::clearCallbacks() {
    std::lock_guard<std::mutex> lock(mutex_);
    for (Registration& r : callbacks_) {
        r = Registration();
    }
}

void EventHub::reset() {
    std::lock_guard<std::mutex> lock(mutex_);
    for (Registration& r : callbacks_) {
        r = Registration();
    }
    queue_.clear();
    if (!running_) {
        ending_ = false;
    }
}

} // namespace qzsim
