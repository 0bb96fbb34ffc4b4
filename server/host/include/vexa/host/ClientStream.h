// One client connection as httplib reads and writes it, in plain text or
// TLS, with the limits that keep a slow or hostile client from holding a
// worker: a request must arrive in full within a time and a size from its
// first byte, and each wait to write is bounded. The socket is used
// non-blocking; every wait is a poll, so shutting the socket down from
// another thread ends any wait at once.
#ifndef VEXA_HOST_CLIENTSTREAM_H
#define VEXA_HOST_CLIENTSTREAM_H

#include <httplib.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace vexa::host {

struct ConnectionLimits {
    // From the first byte of a request to the last byte of its body.
    std::chrono::milliseconds requestTimeout{10000};
    // Each wait for the client to take more of an answer.
    std::chrono::milliseconds writeTimeout{10000};
    // Waiting for a request on a connection that has none in progress.
    std::chrono::milliseconds idleTimeout{5000};
    // The same while other connections wait for a worker.
    std::chrono::milliseconds idleTimeoutWhenBusy{250};
    // Request line, headers and body together.
    size_t maxRequestBytes = (4u << 20) + (64u << 10);
};

class ClientStream : public httplib::Stream {
public:
    enum class Next { Request, Idle, Closed };

    // `tls` null: plain text. The stream owns neither the socket nor the
    // TLS context.
    ClientStream(int socket, SSL_CTX* tls, const ConnectionLimits& limits);
    ~ClientStream() override;
    ClientStream(const ClientStream&) = delete;
    ClientStream& operator=(const ClientStream&) = delete;

    // The TLS handshake, within the request time-out; true at once for
    // plain text.
    bool handshake();
    // Waits for the first byte of the next request. Idle when the client sent
    // nothing within the idle time-out (the shorter one while `busy` says
    // other connections wait); Closed when the socket can no longer be read.
    Next waitForRequest(const std::function<bool()>& busy);
    // Starts the time and size allowance of the request that has begun.
    void beginRequest();
    // Why the last request was cut short, or empty: for the log.
    const std::string& cutShort() const { return cutShort_; }
    std::string peer() const;

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* ptr, size_t size) override;
    // Writes everything or fails. Small pieces (headers, chunk sizes) are
    // held back and leave together with what follows, so that an answer
    // goes out in as few packets, and wakes the client as few times, as its
    // size allows; whatever is held leaves before the stream waits to read.
    ssize_t write(const char* ptr, size_t size) override;
    // Sends what is held back; false when the client can no longer take it.
    bool flush();
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return socket_; }

private:
    using Clock = std::chrono::steady_clock;
    // Polls for `events` until `until`; false when the time passed.
    bool waitFor(short events, Clock::time_point until) const;
    bool buffered() const;

    // Reads into buf until `until`; the count, or -1 when the connection
    // ended, failed or the time passed (cutShort_ then says so).
    ssize_t receive(char* buf, size_t size, Clock::time_point until);
    // Sends the held-back bytes and then `size` bytes at `ptr`, in one
    // system call where the transport allows.
    bool sendAll(const char* ptr, size_t size);

    const int socket_;
    SSL_CTX* const tlsContext_;
    SSL* tls_ = nullptr;
    const ConnectionLimits limits_;
    char buffer_[16384];
    size_t bufferStart_ = 0;
    size_t bufferEnd_ = 0;
    char held_[4096];
    size_t heldSize_ = 0;
    Clock::time_point requestDeadline_;
    size_t requestBytes_ = 0;
    std::string cutShort_;
};

} // namespace vexa::host

#endif
