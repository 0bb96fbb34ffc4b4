// The indications waiting for one listener. Bounded, so that a listener that
// is down costs a fixed amount of memory; pushing never waits, so that the
// provider's event thread is never held up by a listener.
#ifndef VEXA_HOST_LISTENERQUEUE_H
#define VEXA_HOST_LISTENERQUEUE_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace vexa::host {

class ListenerQueue {
public:
    explicit ListenerQueue(size_t capacity) : capacity_(capacity) {}

    // False, without waiting, when the queue is full or closed.
    bool push(std::string message);
    // Waits for a message; false once the queue is closed and empty. The
    // caller reports with finished() when it is done with the message.
    bool pop(std::string& message);
    void finished();
    // True when nothing is queued and no popped message is being worked on.
    bool drained() const;
    // Wakes every waiter; later pushes fail, queued messages can still be popped.
    void close();
    // Drops what is queued and returns how many messages that was.
    size_t clear();
    size_t size() const;

private:
    const size_t capacity_;
    mutable std::mutex mutex_;
    std::condition_variable available_;
    std::deque<std::string> messages_;
    bool closed_ = false;
    bool working_ = false;
};

} // namespace vexa::host

#endif
