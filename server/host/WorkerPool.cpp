#include "vexa/host/WorkerPool.h"

namespace vexa::host {

WorkerPool::WorkerPool(size_t workers, size_t queueCapacity) : capacity_(queueCapacity) {
    for (size_t i = 0; i < workers; ++i) {
        workers_.emplace_back([this] { work(); });
    }
}

WorkerPool::~WorkerPool() { shutdown(); }

void WorkerPool::enqueue(std::function<void()> task) {
    {
        std::unique_lock<std::mutex> lock(mutex_);
        roomReady_.wait(lock, [this] { return stopping_ || tasks_.size() < capacity_; });
        // A task given after shutdown still runs, here: it owns a socket
        // that only it closes.
        if (stopping_) {
            lock.unlock();
            task();
            return;
        }
        tasks_.push_back(std::move(task));
    }
    taskReady_.notify_one();
}

void WorkerPool::shutdown() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (stopping_ && workers_.empty()) {
            return;
        }
        stopping_ = true;
    }
    taskReady_.notify_all();
    roomReady_.notify_all();
    for (std::thread& worker : workers_) {
        if (worker.joinable()) {
            worker.join();
        }
    }
    workers_.clear();
}

size_t WorkerPool::waiting() {
    std::lock_guard<std::mutex> lock(mutex_);
    return tasks_.size();
}

void WorkerPool::work() {
    while (true) {
        std::function<void()> task;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            taskReady_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
            if (tasks_.empty()) {
                return;
            }
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        roomReady_.notify_one();
        task();
    }
}

} // namespace vexa::host
