// ts_log and its sink. Each line is formatted completely before it is
// written, so lines of concurrent threads never interleave.

#include "LogSink.h"

#include <qzantras/ts_log.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace qzsim {

LogSink& LogSink::instance() {
    static LogSink sink;
    return sink;
}

LogSink::~LogSink() {
    if (ownsFd_) {
        close(fd_);
    }
}

void LogSink::applyEnvironment() {
    if (ownsFd_) {
        close(fd_);
    }
    fd_ = 2;
    ownsFd_ = false;
    const char* file = std::getenv("QZSIM_LOG_FILE");
    if (file != nullptr && *file != '\0') {
        int fd = open(file, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
        if (fd >= 0) {
            fd_ = fd;
            ownsFd_ = true;
        }
    }
    int level = 1;
    const char* levelText = std::getenv("QZSIM_LOG_LEVEL");
    if (levelText != nullptr && *levelText != '\0') {
        char* end = nullptr;
        long value = std::strtol(levelText, &end, 10);
        if (end != levelText && *end == '\0') {
            level = static_cast<int>(value);
        }
    }
    threshold_ = level;
    configured_ = true;
}

void LogSink::ensureSettings() {
    if (configured_) {
        return;
    }
    std::lock_guard<std::mutex> lock(mutex_);
    if (!configured_) {
        applyEnvironment();
    }
}

bool LogSink::wants(int level) {
    ensureSettings();
    return level >= threshold_;
}

void LogSink::write(int level, const char* function, const char* text) {
    struct timeval now;
    gettimeofday(&now, nullptr);
    struct tm local;
    time_t seconds = now.tv_sec;
    localtime_r(&seconds, &local);
    char stamp[64];
    std::snprintf(stamp, sizeof stamp, "%04d-%02d-%02d %02d:%02d:%02d.%06ld", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec,
                  static_cast<long>(now.tv_usec));
    char head[128];
    std::snprintf(head, sizeof head, "%s L%d T%ld ", stamp, level,
                  static_cast<long>(syscall(SYS_gettid)));

    std::string line(head);
    line += function != nullptr ? function : "?";
    line += ": ";
    line += text;
    if (!line.empty() && line.back() == '\n') {
        line.pop_back();
    }

    std::lock_guard<std::mutex> lock(mutex_);
    if (capturing_) {
        lines_.push_back(line);
    }
    line += '\n';
    const char* data = line.data();
    std::size_t left = line.size();
    while (left > 0) {
        ssize_t n = ::write(fd_, data, left);
        if (n <= 0) {
            break;
        }
        data += n;
        left -= static_cast<std::size_t>(n);
    }
}

void LogSink::reloadSettings() {
    std::lock_guard<std::mutex> lock(mutex_);
    applyEnvironment();
}

void LogSink::setLevel(int level) {
    ensureSettings();
    threshold_ = level;
}

void LogSink::startCapture() {
    std::lock_guard<std::mutex> lock(mutex_);
    capturing_ = true;
}

void LogSink::stopCapture() {
    std::lock_guard<std::mutex> lock(mutex_);
    capturing_ = false;
}

void LogSink::clearCapture() {
    std::lock_guard<std::mutex> lock(mutex_);
    lines_.clear();
}

std::vector<std::string> LogSink::captured() {
    std::lock_guard<std::mutex> lock(mutex_);
    return lines_;
}

} // namespace qzsim

void ts_log(int level, const char* function, const char* format, ...) {
    qzsim::LogSink& sink = qzsim::LogSink::instance();
    if (!sink.wants(level) || format == nullptr) {
        return;
    }
    char small[1024];
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int needed = std::vsnprintf(small, sizeof small, format, args);
    va_end(args);
    if (needed < 0) {
        va_end(copy);
        return;
    }
    if (static_cast<std::size_t>(needed) < sizeof small) {
        va_end(copy);
        sink.write(level, function, small);
        return;
    }
    std::string large(static_cast<std::size_t>(needed) + 1, '\0');
    std::vsnprintf(&large[0], large.size(), format, copy);
    va_end(copy);
    large.resize(static_cast<std::size_t>(needed));
    sink.write(level, function, large.c_str());
}
