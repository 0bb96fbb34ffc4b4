#include "TaskRunner.h"

#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

#include <chrono>
#include <exception>

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
        int result = MGMT_E_INTERNAL;
        try {
            result = runCommand(task.command, task.arguments);
        } catch (const std::exception& error) {
            ts_log(2, "PollingHandler::executionThread", "%s: %s\n", task.command.c_str(),
                   error.what());
        }
        if (result != 0) {
            ts_log(2, "PollingHandler::executionThread", "%s %s failed with %d\n",
                   task.command.c_str(), task.arguments.c_str(), result);
        }
        // Every task ends here, whatever the command did, so the caller's
        // completion function runs exactly once. A completion function that
        // throws must not end the thread and strand the tasks behind it.
        if (task.done != nullptr) {
            try {
                task.done(task.context);
            } catch (...) {
                ts_log(2, "PollingHandler::executionThread", "completion of %s threw\n",
                       task.command.c_str());
            }
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
