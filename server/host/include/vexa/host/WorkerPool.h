// The threads that serve client connections: a fixed number of workers and
// a bounded queue of accepted connections. When the queue is full the
// accepting thread waits, so further clients wait in the kernel's listen
// backlog instead of costing memory here.
#ifndef VEXA_HOST_WORKERPOOL_H
#define VEXA_HOST_WORKERPOOL_H

#include <httplib.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vexa::host {

class WorkerPool : public httplib::TaskQueue {
public:
    WorkerPool(size_t workers, size_t queueCapacity);
    ~WorkerPool() override;

    void enqueue(std::function<void()> task) override;
    // Runs what is queued, then ends the workers.
    void shutdown() override;
    // Connections accepted and not yet taken by a worker.
    size_t waiting();

private:
    // An idle worker, waiting to be handed a connection.
    struct Idle {
        std::condition_variable wake;
        bool woken = false;
    };

    void work();
    // Under the lock: wakes the worker that went idle last, if any.
    void wakeOne();

    const size_t capacity_;
    std::mutex mutex_;
    std::condition_variable roomReady_;
    std::deque<std::function<void()>> tasks_;
    std::vector<Idle*> idle_;
    bool stopping_ = false;
    std::vector<std::thread> workers_;
};

} // namespace vexa::host

#endif
