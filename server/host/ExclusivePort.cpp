#include "vexa/host/ExclusivePort.h"

#include <sys/socket.h>

namespace vexa::host {

void useExclusivePort(httplib::Server& server) {
    server.set_socket_options([](socket_t sock) {
        int yes = 1;
        setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
}

} // namespace vexa::host
