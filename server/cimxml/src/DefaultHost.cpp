#include <vexa/cimxml/Codec.h>

#include <mutex>
#include <unistd.h>

namespace vexa::cimxml {

namespace {

std::mutex hostMutex;
std::string configuredHost;

std::string systemHostName() {
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0 || name[0] == '\0')
        return "localhost";
    name[sizeof name - 1] = '\0';
    return name;
}

} // namespace

void setDefaultHost(const std::string& host) {
    const std::lock_guard<std::mutex> lock(hostMutex);
    configuredHost = host;
}

std::string defaultHost() {
    const std::lock_guard<std::mutex> lock(hostMutex);
    // cimcli refuses an empty HOST, so there is always a name to give.
    if (configuredHost.empty())
        configuredHost = systemHostName();
    return configuredHost;
}

} // namespace vexa::cimxml
