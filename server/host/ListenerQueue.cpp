#include "vexa/host/ListenerQueue.h"

namespace vexa::host {

bool ListenerQueue::push(std::string message) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (closed_ || messages_.size() >= capacity_) {
            return false;
        }
        messages_.push_back(std::move(message));
    }
    available_.notify_one();
    return true;
}

bool ListenerQueue::pop(std::string& message) {
    std::unique_lock<std::mutex> lock(mutex_);
    available_.wait(lock, [this] { return closed_ || !messages_.empty(); });
    if (messages_.empty()) {
        return false;
    }
    message = std::move(messages_.front());
    messages_.pop_front();
    working_ = true;
    return true;
}

void ListenerQueue::finished() {
    std::lock_guard<std::mutex> lock(mutex_);
    working_ = false;
}

bool ListenerQueue::drained() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return messages_.empty() && !working_;
}

void ListenerQueue::close() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        closed_ = true;
    }
    available_.notify_all();
}

size_t ListenerQueue::clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    size_t count = messages_.size();
    messages_.clear();
    return count;
}

size_t ListenerQueue::size() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return messages_.size();
}

} // namespace vexa::host
