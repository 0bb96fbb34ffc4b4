#include "vexa/host/CimHttpServer.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "vexa/host/ServerLog.h"
#include "vexa/host/WorkerPool.h"

namespace vexa::host {

CimHttpServer::CimHttpServer(size_t workers, const ConnectionLimits& limits, SSL_CTX* tls)
    : limits_(limits), tls_(tls) {
    // A full queue holds the accepting thread, so that further clients wait
    // in the kernel's backlog.
    new_task_queue = [this, workers] {
        auto* pool = new WorkerPool(workers, workers * 4);
        pool_ = pool;
        return pool;
    };
}

void CimHttpServer::stopServing() {
    stop();
    connections_.closeAll();
}

bool CimHttpServer::othersWaiting() const {
    WorkerPool* pool = pool_;
    return pool != nullptr && pool->waiting() > 0;
}

bool CimHttpServer::process_and_close_socket(socket_t sock) {
    bool served = false;
    if (connections_.add(sock)) {
        int flags = fcntl(sock, F_GETFL);
        fcntl(sock, F_SETFL, flags | O_NONBLOCK);
        // The stream gathers an answer's small writes itself; what it sends
        // must not then wait for the client's delayed acknowledgement.
        int yes = 1;
        setsockopt(sock, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof(yes));

        ClientStream stream(sock, tls_, limits_);
        bool open = stream.handshake();
        for (size_t count = 1; open && count <= keep_alive_max_count_; ++count) {
            if (svr_sock_ == INVALID_SOCKET || stream.waitForRequest([this] {
                    return othersWaiting();
                }) != ClientStream::Next::Request) {
                break;
            }
            stream.beginRequest();
            bool clientCloses = false;
            served = process_request(stream, count == keep_alive_max_count_, clientCloses, nullptr);
            served = stream.flush() && served;
            open = served && !clientCloses;
        }
        if (!stream.cutShort().empty()) {
            logLine("closed the connection from " + stream.peer() + ": " + stream.cutShort());
        }
        connections_.remove(sock);
    }
    shutdown(sock, SHUT_RDWR);
    close(sock);
    return served;
}

} // namespace vexa::host
