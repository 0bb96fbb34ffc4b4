#ifndef QZSIM_TASK_RUNNER_H
#define QZSIM_TASK_RUNNER_H

// The library's execution thread: runs queued administration commands one
// after the other and calls each task's completion function afterwards.

#include <qzsim/SimControl.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace qzsim {

class TaskRunner {
public:
    static TaskRunner& instance();

    void start();
    // Runs what is queued, then ends the thread.
    void stop();
    void queue(const std::string& command, const std::string& arguments, int (*done)(void*),
               void* context);

    std::vector<TaskRecord> completed();
    bool waitFor(std::size_t count, int timeoutMs);
    void forget();

private:
    TaskRunner() = default;
    ~TaskRunner();
    void loop();

    struct Task {
        std::string command;
        std::string arguments;
        int (*done)(void*) = nullptr;
        void* context = nullptr;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> queue_;
    std::vector<TaskRecord> completed_;
    bool stopping_ = false;
    std::thread thread_;
};

// Runs one command against the model; 0 or an MgmtError code.
int runCommand(const std::string& command, const std::string& arguments);

} // namespace qzsim

#endif
