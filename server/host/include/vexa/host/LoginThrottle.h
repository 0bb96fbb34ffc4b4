// Slows down password guessing: after its second failed login in a row, a
// peer address must wait before its credentials are checked again, a wait
// that doubles with each further failure up to a bound and is forgotten on
// success (or after a pause longer than the bound). Requests
// within the wait are refused at once instead of being held, so a guesser
// never ties up a worker that other clients need. Thread-safe.
#ifndef VEXA_HOST_LOGINTHROTTLE_H
#define VEXA_HOST_LOGINTHROTTLE_H

#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>

namespace vexa::host {

class LoginThrottle {
public:
    using Clock = std::chrono::steady_clock;

    explicit LoginThrottle(std::chrono::milliseconds firstWait = std::chrono::seconds(1),
                           std::chrono::milliseconds longestWait = std::chrono::seconds(30));

    // How long `peer` must still wait; zero when its credentials may be
    // checked now.
    std::chrono::milliseconds waitLeft(const std::string& peer, Clock::time_point now);
    void failed(const std::string& peer, Clock::time_point now);
    void succeeded(const std::string& peer);

private:
    struct Peer {
        unsigned failures = 0;
        Clock::time_point until;
    };
    // Drops peers whose wait ended long ago, so that many addresses cost a
    // bounded amount of memory.
    void forgetOld(Clock::time_point now);

    const std::chrono::milliseconds firstWait_;
    const std::chrono::milliseconds longestWait_;
    std::mutex mutex_;
    std::map<std::string, Peer> peers_;
};

} // namespace vexa::host

#endif
