#ifndef QZSIM_POLLING_LOCK_H
#define QZSIM_POLLING_LOCK_H

#include <condition_variable>
#include <mutex>
#include <thread>

namespace qzsim {

// The lock callers take around a group of library calls. The owning thread
// may take it again (each take needs its release); a release by a thread
// that does not hold it is refused instead of corrupting the lock.
class PollingLock {
public:
    void acquire();
    bool release();

private:
    std::mutex mutex_;
    std::condition_variable freed_;
    std::thread::id owner_;
    int depth_ = 0;
};

} // namespace qzsim

#endif
