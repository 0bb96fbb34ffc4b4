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

std::string loggable(const std::string& text, size_t limit) {
    std::string source = text;
    size_t scheme = source.find("://");
    if (scheme != std::string::npos) {
        size_t authorityEnd = source.find('/', scheme + 3);
        size_t at = source.rfind('@', authorityEnd);
        if (at != std::string::npos && at > scheme) {
            source.erase(scheme + 3, at + 1 - (scheme + 3));
        }
    }
    std::string safe;
    for (unsigned char c : source) {
        if (safe.size() >= limit) {
            safe += "...";
            break;
        }
        if (c < 0x20 || c >= 0x7f || c == '\\') {
            char escaped[5];
            std::snprintf(escaped, sizeof(escaped), "\\x%02x", c);
            safe += escaped;
        } else {
            safe += static_cast<char>(c);
        }
    }
    return safe;
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
