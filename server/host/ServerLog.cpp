#include "vexa/host/ServerLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <mutex>

namespace vexa::host {

namespace {
std::mutex logMutex;
FILE* terminal = stderr;
} // namespace

void logLine(const std::string& text) {
    std::lock_guard<std::mutex> lock(logMutex);
    std::fprintf(terminal, "vexa-cimserver: %s\n", text.c_str());
    std::fflush(terminal);
}

bool sendStandardErrorTo(const std::string& path) {
    std::lock_guard<std::mutex> lock(logMutex);
    int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) {
        return false;
    }
    int original = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    FILE* kept = original < 0 ? nullptr : fdopen(original, "w");
    if (kept == nullptr) {
        if (original >= 0) {
            close(original);
        }
        close(file);
        return false;
    }
    std::fflush(stderr);
    dup2(file, STDERR_FILENO);
    close(file);
    terminal = kept;
    return true;
}

} // namespace vexa::host
