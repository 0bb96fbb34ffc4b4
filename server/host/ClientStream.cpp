#include "vexa/host/ClientStream.h"

#include <netdb.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

namespace vexa::host {

namespace {

std::string seconds(std::chrono::milliseconds duration) {
    long long whole = duration.count() / 1000;
    long long tenths = duration.count() % 1000 / 100;
    return std::to_string(whole) + (tenths != 0 ? "." + std::to_string(tenths) : "") + " s";
}

void numericAddress(const sockaddr_storage& address, socklen_t length, std::string& ip, int& port) {
    char host[NI_MAXHOST] = {};
    char service[NI_MAXSERV] = {};
    if (getnameinfo(reinterpret_cast<const sockaddr*>(&address), length, host, sizeof(host),
                    service, sizeof(service), NI_NUMERICHOST | NI_NUMERICSERV) == 0) {
        ip = host;
        port = std::atoi(service);
    }
}

// Why OpenSSL refused the handshake, in words an administrator can act on.
std::string handshakeProblem() {
    unsigned long code = ERR_peek_last_error();
    if (code == 0) {
        return std::string();
    }
    if (ERR_GET_REASON(code) == SSL_R_HTTP_REQUEST) {
        return "the client sent plain HTTP to the TLS port (it should use https://)";
    }
    char text[256] = {};
    ERR_error_string_n(code, text, sizeof(text));
    return std::string("the TLS handshake failed: ") + text;
}

} // namespace

ClientStream::ClientStream(int socket, SSL_CTX* tls, const ConnectionLimits& limits)
    : socket_(socket), tlsContext_(tls), limits_(limits) {}

ClientStream::~ClientStream() {
    if (tls_ != nullptr) {
        // One try at a polite close; a client that is gone or slow is not
        // waited for.
        ERR_clear_error();
        SSL_shutdown(tls_);
        SSL_free(tls_);
        ERR_clear_error();
    }
}

bool ClientStream::handshake() {
    if (tlsContext_ == nullptr) {
        return true;
    }
    tls_ = SSL_new(tlsContext_);
    if (tls_ == nullptr || SSL_set_fd(tls_, socket_) != 1) {
        cutShort_ = "no TLS session could be set up (out of memory?)";
        return false;
    }
    Clock::time_point until = Clock::now() + limits_.requestTimeout;
    while (true) {
        ERR_clear_error();
        int result = SSL_accept(tls_);
        if (result == 1) {
            return true;
        }
        int error = SSL_get_error(tls_, result);
        short events = error == SSL_ERROR_WANT_READ    ? POLLIN
                       : error == SSL_ERROR_WANT_WRITE ? POLLOUT
                                                       : 0;
        if (events == 0) {
            // A client that connects and hangs up is no news.
            cutShort_ = error == SSL_ERROR_SSL ? handshakeProblem() : std::string();
            return false;
        }
        if (!waitFor(events, until)) {
            cutShort_ = "no TLS handshake within " + seconds(limits_.requestTimeout);
            return false;
        }
    }
}

ClientStream::Next ClientStream::waitForRequest(const std::function<bool()>& busy) {
    Clock::time_point start = Clock::now();
    while (!buffered()) {
        std::chrono::milliseconds limit =
            busy && busy() ? limits_.idleTimeoutWhenBusy : limits_.idleTimeout;
        Clock::time_point now = Clock::now();
        if (now - start >= limit) {
            return Next::Idle;
        }
        // In slices, so that a connection already waiting learns when
        // others start to queue behind it.
        Clock::time_point sliceEnd = std::min(start + limit, now + std::chrono::milliseconds(50));
        if (!waitFor(POLLIN, sliceEnd)) {
            continue;
        }
        if (tls_ != nullptr) {
            // The TLS read that follows tells data from a closing alert.
            return Next::Request;
        }
        char first = 0;
        ssize_t peeked = recv(socket_, &first, 1, MSG_PEEK);
        if (peeked > 0) {
            return Next::Request;
        }
        if (peeked == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)) {
            return Next::Closed;
        }
    }
    return Next::Request;
}

void ClientStream::beginRequest() {
    requestDeadline_ = Clock::now() + limits_.requestTimeout;
    requestBytes_ = bufferEnd_ - bufferStart_;
    cutShort_.clear();
}

std::string ClientStream::peer() const {
    std::string ip = "an unknown address";
    int port = 0;
    get_remote_ip_and_port(ip, port);
    return ip;
}

bool ClientStream::buffered() const {
    return bufferStart_ < bufferEnd_ || (tls_ != nullptr && SSL_pending(tls_) > 0);
}

bool ClientStream::waitFor(short events, Clock::time_point until) const {
    while (true) {
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        pollfd watched{socket_, events, 0};
        int ready = poll(&watched, 1, static_cast<int>(std::min<long long>(left.count(), INT_MAX)));
        if (ready > 0) {
            // Hang-ups and errors count too: the read or write that follows
            // reports them.
            return true;
        }
        if (ready < 0 && errno != EINTR) {
            return true;
        }
    }
}

ssize_t ClientStream::receive(char* buf, size_t size, Clock::time_point until) {
    while (true) {
        short events = POLLIN;
        if (tls_ != nullptr) {
            ERR_clear_error();
            int got = SSL_read(tls_, buf, static_cast<int>(std::min<size_t>(size, INT_MAX)));
            if (got > 0) {
                return got;
            }
            int error = SSL_get_error(tls_, got);
            if (error == SSL_ERROR_WANT_WRITE) {
                events = POLLOUT;
            } else if (error != SSL_ERROR_WANT_READ) {
                return -1;
            }
        } else {
            ssize_t got = recv(socket_, buf, size, 0);
            if (got > 0) {
                return got;
            }
            if (got == 0) {
                return -1;
            }
            if (errno == EINTR) {
                continue;
            }
            if (errno != EAGAIN && errno != EWOULDBLOCK) {
                return -1;
            }
        }
        if (!waitFor(events, until)) {
            cutShort_ =
                "its request did not arrive in full within " + seconds(limits_.requestTimeout);
            return -1;
        }
    }
}

bool ClientStream::is_readable() const {
    return buffered() || waitFor(POLLIN, Clock::now() + std::chrono::milliseconds(1));
}

bool ClientStream::is_writable() const {
    return waitFor(POLLOUT, Clock::now() + limits_.writeTimeout);
}

ssize_t ClientStream::read(char* ptr, size_t size) {
    if (bufferStart_ == bufferEnd_) {
        // The client may be waiting for what is held (an interim answer)
        // before it sends more.
        if (!flush()) {
            return -1;
        }
        if (requestBytes_ >= limits_.maxRequestBytes) {
            cutShort_ = "its request is larger than " + std::to_string(limits_.maxRequestBytes) +
                        " bytes with its headers";
            return -1;
        }
        size_t room = std::min(sizeof(buffer_), limits_.maxRequestBytes - requestBytes_);
        ssize_t got = receive(buffer_, room, requestDeadline_);
        if (got <= 0) {
            return -1;
        }
        bufferStart_ = 0;
        bufferEnd_ = static_cast<size_t>(got);
        requestBytes_ += bufferEnd_;
    }
    size_t count = std::min(size, bufferEnd_ - bufferStart_);
    std::memcpy(ptr, buffer_ + bufferStart_, count);
    bufferStart_ += count;
    return static_cast<ssize_t>(count);
}

ssize_t ClientStream::write(const char* ptr, size_t size) {
    if (size == 0) {
        return 0;
    }
    if (size <= sizeof(held_) - heldSize_) {
        std::memcpy(held_ + heldSize_, ptr, size);
        heldSize_ += size;
        return static_cast<ssize_t>(size);
    }
    return sendAll(ptr, size) ? static_cast<ssize_t>(size) : -1;
}

bool ClientStream::flush() { return heldSize_ == 0 || sendAll(nullptr, 0); }

bool ClientStream::sendAll(const char* ptr, size_t size) {
    // Offsets into the held bytes followed by the caller's.
    const size_t held = heldSize_;
    const size_t total = held + size;
    heldSize_ = 0;
    size_t done = 0;
    while (done < total) {
        Clock::time_point until = Clock::now() + limits_.writeTimeout;
        short events = POLLOUT;
        if (tls_ != nullptr) {
            const char* from = done < held ? held_ + done : ptr + (done - held);
            size_t count = done < held ? held - done : total - done;
            ERR_clear_error();
            int sent = SSL_write(tls_, from, static_cast<int>(std::min<size_t>(count, INT_MAX)));
            if (sent > 0) {
                done += static_cast<size_t>(sent);
                continue;
            }
            int error = SSL_get_error(tls_, sent);
            if (error == SSL_ERROR_WANT_READ) {
                events = POLLIN;
            } else if (error != SSL_ERROR_WANT_WRITE) {
                return false;
            }
        } else {
            iovec parts[2];
            int count = 0;
            if (done < held) {
                parts[count++] = {held_ + done, held - done};
            }
            if (size != 0) {
                const size_t from = done < held ? 0 : done - held;
                parts[count++] = {const_cast<char*>(ptr) + from, size - from};
            }
            msghdr message{};
            message.msg_iov = parts;
            message.msg_iovlen = static_cast<size_t>(count);
            ssize_t sent = sendmsg(socket_, &message, MSG_NOSIGNAL);
            if (sent >= 0) {
                done += static_cast<size_t>(sent);
                continue;
            }
            if (errno == EINTR) {
                continue;
            }
            if (errno != EAGAIN && errno != EWOULDBLOCK) {
                return false;
            }
        }
        if (!waitFor(events, until)) {
            cutShort_ = "it took none of its answer for " + seconds(limits_.writeTimeout);
            return false;
        }
    }
    return true;
}

void ClientStream::get_remote_ip_and_port(std::string& ip, int& port) const {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    if (getpeername(socket_, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
        numericAddress(address, length, ip, port);
    }
}

void ClientStream::get_local_ip_and_port(std::string& ip, int& port) const {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    if (getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
        numericAddress(address, length, ip, port);
    }
}

} // namespace vexa::host
