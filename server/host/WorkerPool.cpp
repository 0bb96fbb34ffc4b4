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
        wakeOne();
    }
}

// The worker that went idle last takes the next connection: its stack, its
// buffers and its share of the heap are the ones still warm, and the same
// few workers serve one client after another. (A worker that had waited
// longest used to be woken. Objects one request builds and another frees
// then crossed between threads, and a worker found thousands of them to
// take back at the start of its next request: a small answer took three
// times as long after every enumeration that rebuilds counters.)
void WorkerPool::wakeOne() {
    if (!idle_.empty()) {
        Idle* next = idle_.back();
        idle_.pop_back();
        next->woken = true;
        next->wake.notify_one();
    }
}

void WorkerPool::shutdown() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (stopping_ && workers_.empty()) {
            return;
        }
        stopping_ = true;
        while (!idle_.empty()) {
            wakeOne();
        }
    }
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
    Idle self;
    while (true) {
        std::function<void()> task;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            while (!stopping_ && tasks_.empty()) {
                self.woken = false;
                idle_.push_back(&self);
                self.wake.wait(lock, [&self] { return self.woken; });
            }
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
