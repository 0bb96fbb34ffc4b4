#include "PollingLock.h"

namespace qzsim {

void PollingLock::acquire() {
    std::unique_lock<std::mutex> lock(mutex_);
    std::thread::id self = std::this_thread::get_id();
    if (depth_ > 0 && owner_ == self) {
        ++depth_;
        return;
    }
    freed_.wait(lock, [this] { return depth_ == 0; });
    owner_ = self;
    depth_ = 1;
}

bool PollingLock::release() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (depth_ == 0 || owner_ != std::this_thread::get_id()) {
        return false;
    }
    if (--depth_ == 0) {
        owner_ = std::thread::id();
        freed_.notify_one();
    }
    return true;
}

} // namespace qzsim
