// The management library's event socket as the server sees it: who holds
// the path, and whether the socket there is the one this process made.
#ifndef VEXA_HOST_EVENTSOCKETPATH_H
#define VEXA_HOST_EVENTSOCKETPATH_H

#include <sys/types.h>

#include <string>

namespace vexa::host {

// Why the path cannot serve as this server's event socket, or empty when it
// is free or holds only a socket nobody listens on any more.
std::string eventSocketTaken(const std::string& path);

// The socket file at a path, remembered so that it is removed only while it
// is still the same file.
class OwnedSocketFile {
public:
    // Remembers the socket now at `path`, if there is one.
    void remember(const std::string& path);
    bool owned() const { return owned_; }
    // Removes the file when it is still the remembered socket.
    void removeIfStillOurs() const;

private:
    std::string path_;
    bool owned_ = false;
    dev_t device_ = 0;
    ino_t inode_ = 0;
};

} // namespace vexa::host

#endif
