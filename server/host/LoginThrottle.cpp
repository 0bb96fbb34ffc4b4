#include "vexa/host/LoginThrottle.h"

#include <algorithm>

namespace vexa::host {

namespace {

// Peers remembered at most; past it, the ones whose wait ended are dropped
// first, then all.
constexpr size_t MAX_PEERS = 4096;

} // namespace

LoginThrottle::LoginThrottle(std::chrono::milliseconds firstWait,
                             std::chrono::milliseconds longestWait)
    : firstWait_(firstWait), longestWait_(std::max(firstWait, longestWait)) {}

std::chrono::milliseconds LoginThrottle::waitLeft(const std::string& peer, Clock::time_point now) {
    std::lock_guard<std::mutex> lock(mutex_);
    auto found = peers_.find(peer);
    if (found == peers_.end() || found->second.until <= now) {
        return std::chrono::milliseconds(0);
    }
    return std::chrono::ceil<std::chrono::milliseconds>(found->second.until - now);
}

void LoginThrottle::failed(const std::string& peer, Clock::time_point now) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (peers_.size() >= MAX_PEERS && peers_.count(peer) == 0) {
        forgetOld(now);
    }
    Peer& entry = peers_[peer];
    // A peer that has waited out a long pause starts over.
    if (entry.failures > 0 && now - entry.until > longestWait_) {
        entry.failures = 0;
    }
    ++entry.failures;
    // The first failure costs nothing: a mistyped password retried at once
    // is the common case.
    std::chrono::milliseconds wait(0);
    if (entry.failures > 1) {
        wait = firstWait_;
        for (unsigned i = 2; i < entry.failures && wait < longestWait_; ++i) {
            wait *= 2;
        }
    }
    entry.until = now + std::min(wait, longestWait_);
}

void LoginThrottle::succeeded(const std::string& peer) {
    std::lock_guard<std::mutex> lock(mutex_);
    peers_.erase(peer);
}

void LoginThrottle::forgetOld(Clock::time_point now) {
    for (auto entry = peers_.begin(); entry != peers_.end();) {
        entry = entry->second.until < now ? peers_.erase(entry) : std::next(entry);
    }
    if (peers_.size() >= MAX_PEERS) {
        peers_.clear();
    }
}

} // namespace vexa::host
