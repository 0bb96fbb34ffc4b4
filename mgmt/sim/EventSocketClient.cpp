// The sending side of the event socket, for tools and tests: one line out,
// one reply back.

#include <qzsim/SimControl.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace qzsim {

namespace {

// The simulator answers at once (it only queues the event); a peer that
// stays silent this long is not the simulator.
constexpr int kReplyTimeoutSeconds = 10;

class Connection {
public:
    explicit Connection(int fd) : fd_(fd) {}
    ~Connection() { close(fd_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    int fd() const { return fd_; }

private:
    int fd_;
};

[[noreturn]] void unreachable(const std::string& path, int error) {
    throw std::runtime_error("no simulator is listening on " + path + ": " + std::strerror(error));
}

// JSON allows line breaks only as white space between tokens, so a document
// typed over several lines still means the same as one line.
std::string asOneLine(const std::string& json) {
    std::string line = json;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) {
        line.pop_back();
    }
    for (char& c : line) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return line + "\n";
}

} // namespace

std::string sendEventText(const std::string& socketPath, const std::string& jsonLine) {
    sockaddr_un address;
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    if (socketPath.empty()) {
        unreachable("\"\"", ENOENT);
    }
    if (socketPath.size() >= sizeof address.sun_path) {
        unreachable(socketPath, ENAMETOOLONG);
    }
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size() + 1);

    int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        throw std::runtime_error(std::string("cannot create a socket: ") + std::strerror(errno));
    }
    Connection connection(fd);
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        unreachable(socketPath, errno);
    }
    timeval timeout{kReplyTimeoutSeconds, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);

    std::string line = asOneLine(jsonLine);
    std::size_t sent = 0;
    while (sent < line.size()) {
        ssize_t n = send(fd, line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0) {
            throw std::runtime_error("cannot send the event to " + socketPath + ": " +
                                     std::strerror(errno));
        }
        sent += static_cast<std::size_t>(n);
    }

    std::string reply;
    char c = 0;
    for (;;) {
        ssize_t n = recv(fd, &c, 1, 0);
        if (n == 1) {
            if (c == '\n') {
                return reply;
            }
            reply += c;
            continue;
        }
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            throw std::runtime_error("no reply from " + socketPath + " within " +
                                     std::to_string(kReplyTimeoutSeconds) + " seconds");
        }
        if (n < 0) {
            throw std::runtime_error("cannot read the reply from " + socketPath + ": " +
                                     std::strerror(errno));
        }
        throw std::runtime_error(socketPath + " closed the connection without a reply");
    }
}

} // namespace qzsim
