#include "vexa/host/ClientConnections.h"

#include <sys/socket.h>

namespace vexa::host {

bool ClientConnections::add(int socket) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (closing_) {
        return false;
    }
    sockets_.insert(socket);
    return true;
}

void ClientConnections::remove(int socket) {
    std::lock_guard<std::mutex> lock(mutex_);
    sockets_.erase(socket);
}

void ClientConnections::closeAll() {
    std::lock_guard<std::mutex> lock(mutex_);
    closing_ = true;
    for (int socket : sockets_) {
        shutdown(socket, SHUT_RDWR);
    }
}

} // namespace vexa::host
