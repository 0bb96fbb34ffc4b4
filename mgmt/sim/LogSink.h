#ifndef QZSIM_LOG_SINK_H
#define QZSIM_LOG_SINK_H

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace qzsim {

// Destination of ts_log: one write per line to a file or standard error,
// plus an optional in-memory copy for tests.
class LogSink {
public:
    static LogSink& instance();

    bool wants(int level);
    void write(int level, const char* function, const char* text);

    void reloadSettings();
    void setLevel(int level);
    void startCapture();
    void stopCapture();
    void clearCapture();
    std::vector<std::string> captured();

private:
    LogSink() = default;
    ~LogSink();
    void ensureSettings();
    void applyEnvironment(); // with mutex_ held

    std::mutex mutex_;
    std::atomic<bool> configured_{false};
    std::atomic<int> threshold_{1};
    int fd_ = 2;
    bool ownsFd_ = false;
    bool capturing_ = false;
    std::vector<std::string> lines_;
};

} // namespace qzsim

#endif
