// Scoped holders of the provider's cache lock and the management library's
// polling lock. Each takes its lock through the provider's or the library's
// own lock functions and releases it when it goes out of scope, so no
// exception or early return can leave a lock held.
#ifndef VEXA_PROVIDER_LOCKGUARDS_H
#define VEXA_PROVIDER_LOCKGUARDS_H

#include <qzantras/PollingHandler.h>

#include "cimProvider.h"

// Holds the instance cache for reading.
class CacheReadLock {
public:
    explicit CacheReadLock(VexaProvider& provider) : provider_(provider) {
        provider_.getReadLock();
    }
    ~CacheReadLock() { provider_.releaseLock(); }
    CacheReadLock(const CacheReadLock&) = delete;
    CacheReadLock& operator=(const CacheReadLock&) = delete;

private:
    VexaProvider& provider_;
};

// Holds the instance cache for writing.
class CacheWriteLock {
public:
    explicit CacheWriteLock(VexaProvider& provider) : provider_(provider) {
        provider_.getWriteLock();
    }
    ~CacheWriteLock() { provider_.releaseLock(); }
    CacheWriteLock(const CacheWriteLock&) = delete;
    CacheWriteLock& operator=(const CacheWriteLock&) = delete;

private:
    VexaProvider& provider_;
};

// Holds the management library's polling lock around calls into it.
class PollingLock {
public:
    explicit PollingLock(PollingHandler* handler) : handler_(handler) {
        handler_->getPollingLock();
    }
    ~PollingLock() { handler_->releasePollingLock(); }
    PollingLock(const PollingLock&) = delete;
    PollingLock& operator=(const PollingLock&) = delete;

private:
    PollingHandler* handler_;
};

#endif
