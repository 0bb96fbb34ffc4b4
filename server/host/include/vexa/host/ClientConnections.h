// The client connections the server holds open, so that stopping can wake
// every one of them: a thread blocked reading a half-sent request, waiting
// for a keep-alive client or writing to a client that does not read returns
// at once when its socket is shut down. Thread-safe.
#ifndef VEXA_HOST_CLIENTCONNECTIONS_H
#define VEXA_HOST_CLIENTCONNECTIONS_H

#include <mutex>
#include <set>

namespace vexa::host {

class ClientConnections {
public:
    // False once closeAll has run: the caller closes the socket unserved.
    bool add(int socket);
    // Must come before the socket is closed, so that closeAll never touches
    // a descriptor number the system has handed out again.
    void remove(int socket);
    // Shuts down every socket held now and every one added later; the
    // threads serving them close them.
    void closeAll();

private:
    std::mutex mutex_;
    std::set<int> sockets_;
    bool closing_ = false;
};

} // namespace vexa::host

#endif
