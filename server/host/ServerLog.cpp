#include "vexa/host/ServerLog.h"

#include <cstdio>
#include <mutex>

namespace vexa::host {

void logLine(const std::string& text) {
    static std::mutex mutex;
    std::lock_guard<std::mutex> lock(mutex);
    std::fprintf(stderr, "vexa-cimserver: %s\n", text.c_str());
    std::fflush(stderr);
}

} // namespace vexa::host
