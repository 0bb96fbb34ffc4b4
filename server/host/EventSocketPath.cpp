#include "vexa/host/EventSocketPath.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vexa::host {

std::string eventSocketTaken(const std::string& path) {
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0) {
        return std::string();
    }
    if (!S_ISSOCK(info.st_mode)) {
        return "event socket " + path +
               " exists and is not a socket (choose another with --event-socket PATH)";
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        // Too long to reach; the library says so when it tries.
        return std::string();
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (probe < 0) {
        return std::string();
    }
    bool live = connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    close(probe);
    if (!live) {
        return std::string();
    }
    return "event socket " + path +
           " is in use by another running server (stop it, or choose another socket with "
           "--event-socket PATH)";
}

void OwnedSocketFile::remember(const std::string& path) {
    struct stat info {};
    path_ = path;
    owned_ = lstat(path.c_str(), &info) == 0 && S_ISSOCK(info.st_mode);
    device_ = info.st_dev;
    inode_ = info.st_ino;
}

void OwnedSocketFile::removeIfStillOurs() const {
    struct stat info {};
    if (owned_ && lstat(path_.c_str(), &info) == 0 && S_ISSOCK(info.st_mode) &&
        info.st_dev == device_ && info.st_ino == inode_) {
        unlink(path_.c_str());
    }
}

} // namespace vexa::host
