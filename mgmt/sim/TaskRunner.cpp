#include "TaskRunner.h"

#include <qzantras/ts_log.h>

#include <chrono>

namespace qzsim {

TaskRunner& TaskRunner::instance() {
    static TaskRunner runner;
    return runner;
}

TaskRunner::~TaskRunner() { stop(); }

void TaskRunner::start() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (thread_.joinable()) {
        return;
    }
    stopping_ = false;
    thread_ = std::thread(&TaskRunner::loop, this);
}

void TaskRunner::stop() {
    std::thread finished;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!thread_.joinable()) {
            return;
        }
        stopping_ = true;
        changed_.notify_all();
        finished.swap(thread_);
    }
    if (finished.get_id() == std::this_thread::get_id()) {
        finished.detach(); // term() called from a completion function
    } else {
        finished.join();
    }
}

void TaskRunner::queue(const std::string& command, const std::string& arguments, int (*done)(void*),
                       void* context) {
    std::lock_guard<std::mutex> lock(mutex_);
    queue_.push_back(Task{command, arguments, done, context});
    changed_.notify_all();
}

void TaskRunner::loop() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
        if (queue_.empty()) {
            return;
        }
        Task task = queue_.front();
        queue_.pop_front();
        lock.unlock();
        int result = runCommand(task.command, task.arguments);
        if (result != 0) {
            ts_log(2, "PollingHandler::executionThread", "%s %s failed with %d\n",
                   task.command.c_str(), task.arguments.c_str(), result);
        }
        if (task.done != nullptr) {
            task.done(task.context);
        }
        lock.lock();
        completed_.push_back(TaskRecord{task.command, task.arguments, result});
        changed_.notify_all();
    }
}

std::vector<TaskRecord> TaskRunner::completed() {
    std::lock_guard<std::mutex> lock(mutex_);
    return completed_;
}

bool TaskRunner::waitFor(std::size_t count, int timeoutMs) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                             [&] { return completed_.size() >= count; });
}

void TaskRunner::forget() {
    std::lock_guard<std::mutex> lock(mutex_);
    queue_.clear();
    completed_.clear();
}

} // namespace qzsim
