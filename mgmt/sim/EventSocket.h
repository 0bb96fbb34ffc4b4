#ifndef QZSIM_EVENT_SOCKET_H
#define QZSIM_EVENT_SOCKET_H

// Lets other processes feed the event queue: a Unix stream socket that takes
// one JSON event per line and answers each line with "ok" or "error: ...".
// A thread of its own serves every client, so a slow or silent client never
// holds up EventsHandler::run().

#include <cstddef>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <thread>

namespace qzsim {

class EventSocket {
public:
    // Longer lines are answered with an error and skipped up to their end.
    static constexpr std::size_t kMaxLineBytes = 64 * 1024;

    static EventSocket& instance();

    // Listens at path (after stopping a previous socket). A stale socket file
    // there is replaced; anything else there is left alone. False, with the
    // reason in *problem, when the socket cannot be set up.
    bool start(const std::string& path, std::string* problem);
    // Disconnects every client and removes the socket file if it is still ours.
    void stop();
    // Where it listens, or empty.
    std::string path();

    ~EventSocket();

private:
    EventSocket() = default;
    EventSocket(const EventSocket&) = delete;
    EventSocket& operator=(const EventSocket&) = delete;

    void stopLocked();

    std::mutex mutex_;
    std::thread server_;
    std::string path_;
    int listenFd_ = -1;
    int wakeWriteFd_ = -1;
    dev_t device_ = 0;
    ino_t inode_ = 0;
};

} // namespace qzsim

#endif
