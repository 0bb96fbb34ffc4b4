// The HTTP server of vexa-cimserver: httplib's routing and request parsing,
// with this server's own handling of each connection (ClientStream) so that
// clients are served in plain text or TLS under the same limits, an idle
// connection gives its worker up when others wait for one, and stopping
// wakes every connection instead of waiting out its time-outs.
#ifndef VEXA_HOST_CIMHTTPSERVER_H
#define VEXA_HOST_CIMHTTPSERVER_H

#include <httplib.h>

#include <atomic>
#include <cstddef>

#include "vexa/host/ClientConnections.h"
#include "vexa/host/ClientStream.h"

namespace vexa::host {

class WorkerPool;

class CimHttpServer : public httplib::Server {
public:
    // `tls` null: plain HTTP. The context must outlive the server.
    CimHttpServer(size_t workers, const ConnectionLimits& limits, SSL_CTX* tls);

    // Stops accepting and ends every connection's wait; requests already in
    // a handler run to their end. Safe from any thread, more than once.
    void stopServing();

private:
    bool process_and_close_socket(socket_t sock) override;
    // True while accepted connections wait for a worker.
    bool othersWaiting() const;

    const ConnectionLimits limits_;
    SSL_CTX* const tls_;
    ClientConnections connections_;
    std::atomic<WorkerPool*> pool_{nullptr};
};

} // namespace vexa::host

#endif
