#include "EventSocket.h"

#include "EventHub.h"
#include "LogSink.h"
#include "SimState.h"

#include <qzantras/ts_log.h>
#include <qzsim/SimControl.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace qzsim {

namespace {

const char kLogName[] = "qzsim::EventSocket";
// Replies waiting for a client that does not read; beyond this its input
// is left unread until it catches up.
constexpr std::size_t kMaxPendingReplyBytes = 64 * 1024;
// Further connections wait in the listen backlog.
constexpr std::size_t kMaxClients = 64;

std::string errnoText(const std::string& what) { return what + ": " + std::strerror(errno); }

bool fillAddress(const std::string& path, sockaddr_un* address, std::string* problem) {
    std::memset(address, 0, sizeof *address);
    address->sun_family = AF_UNIX;
    if (path.size() >= sizeof address->sun_path) {
        *problem = path + ": socket path is " + std::to_string(path.size()) +
                   " bytes long, at most " + std::to_string(sizeof address->sun_path - 1) +
                   " fit; choose a shorter QZSIM_EVENT_SOCKET";
        return false;
    }
    std::memcpy(address->sun_path, path.c_str(), path.size() + 1);
    return true;
}

// A socket file left behind by a process that died is removed; a live
// listener or a file of another kind is never touched.
bool clearStaleSocket(const std::string& path, const sockaddr_un& address, std::string* problem) {
    struct stat info;
    if (lstat(path.c_str(), &info) != 0) {
        if (errno == ENOENT) {
            return true;
        }
        *problem = errnoText(path);
        return false;
    }
    if (!S_ISSOCK(info.st_mode)) {
        *problem = path + " exists and is not a socket; remove it or choose another "
                          "QZSIM_EVENT_SOCKET";
        return false;
    }
    int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (probe < 0) {
        *problem = errnoText("socket");
        return false;
    }
    int connected = connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    int connectError = errno;
    close(probe);
    if (connected == 0) {
        *problem = "another process is listening on " + path +
                   "; stop it or choose another "
                   "QZSIM_EVENT_SOCKET";
        return false;
    }
    if (connectError != ECONNREFUSED) {
        *problem = path + ": " + std::strerror(connectError);
        return false;
    }
    if (unlink(path.c_str()) != 0 && errno != ENOENT) {
        *problem = errnoText("cannot remove stale socket file " + path);
        return false;
    }
    ts_log(1, kLogName, "replaced stale socket file %s\n", path.c_str());
    return true;
}

// One connected client: bytes read but not yet a whole line, and replies
// not yet written.
struct Client {
    int fd = -1;
    std::string input;
    std::string output;
    bool skippingLongLine = false;
    std::size_t skippedBytes = 0; // of the long line being skipped
    bool endOfInput = false;
    bool broken = false;
};

// The event is queued before "ok" goes out, so a client that has its "ok"
// may rely on run() delivering the event.
std::string answer(std::string line) {
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    if (line.find_first_not_of(" \t") == std::string::npos) {
        return "error: empty line; send one JSON object per line, such as "
               "{\"type\": \"mount\", \"node\": \"node1\", \"fs\": \"fs1\"}";
    }
    Event event;
    try {
        event = eventFromJson(line);
    } catch (const std::exception& e) {
        // Whatever one line does, it must not end the thread that serves
        // every client (an exception leaving it would end the process).
        ts_log(1, kLogName, "rejected %.200s: %s\n", line.c_str(), e.what());
        std::string text = e.what();
        for (char& c : text) {
            if (c == '\n' || c == '\r') {
                c = ' ';
            }
        }
        return "error: " + text;
    }
    ts_log(0, kLogName, "posting %s event\n", eventTypeName(event.type));
    EventHub::instance().post(event);
    return "ok";
}

void takeInput(Client& client, const char* data, std::size_t size) {
    std::size_t start = 0;
    while (start < size) {
        const void* found = std::memchr(data + start, '\n', size - start);
        std::size_t end = found == nullptr ? size : static_cast<const char*>(found) - data;
        if (client.skippingLongLine) {
            client.skippedBytes += end - start;
        } else {
            client.input.append(data + start, end - start);
        }
        if (found == nullptr) {
            if (client.input.size() > EventSocket::kMaxLineBytes) {
                client.skippedBytes = client.input.size();
                client.input.clear();
                client.skippingLongLine = true;
            }
            return;
        }
        if (client.skippingLongLine || client.input.size() > EventSocket::kMaxLineBytes) {
            client.output += "error: line longer than " +
                             std::to_string(EventSocket::kMaxLineBytes) + " bytes, skipped\n";
            client.skippingLongLine = false;
            client.skippedBytes = 0;
        } else {
            client.output += answer(client.input) + "\n";
        }
        client.input.clear();
        start = end + 1;
    }
}

void readFrom(Client& client) {
    char buffer[4096];
    for (;;) {
        ssize_t n = read(client.fd, buffer, sizeof buffer);
        if (n > 0) {
            takeInput(client, buffer, static_cast<std::size_t>(n));
            if (client.output.size() >= kMaxPendingReplyBytes) {
                return;
            }
            continue;
        }
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return;
        }
        if (n < 0) {
            client.broken = true;
            return;
        }
        if (!client.input.empty() || client.skippingLongLine) {
            ts_log(1, kLogName, "client left in the middle of a line; %zu bytes dropped\n",
                   client.input.size() + client.skippedBytes);
            client.input.clear();
        }
        client.endOfInput = true;
        return;
    }
}

void writeTo(Client& client) {
    while (!client.output.empty()) {
        ssize_t n = send(client.fd, client.output.data(), client.output.size(), MSG_NOSIGNAL);
        if (n > 0) {
            client.output.erase(0, static_cast<std::size_t>(n));
            continue;
        }
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return;
        }
        client.broken = true; // gone without reading its replies
        return;
    }
}

void acceptClients(int listenFd, std::vector<Client>& clients) {
    while (clients.size() < kMaxClients) {
        int fd = accept4(listenFd, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0) {
            if (errno == EINTR || errno == ECONNABORTED) {
                continue;
            }
            if (errno != EAGAIN && errno != EWOULDBLOCK) {
                ts_log(2, kLogName, "accept: %s\n", std::strerror(errno));
            }
            return;
        }
        Client client;
        client.fd = fd;
        clients.push_back(std::move(client));
    }
}

void serve(int listenFd, int wakeFd) {
    std::vector<Client> clients;
    std::vector<pollfd> polled;
    for (;;) {
        polled.clear();
        polled.push_back(pollfd{wakeFd, POLLIN, 0});
        polled.push_back(
            pollfd{listenFd, static_cast<short>(clients.size() < kMaxClients ? POLLIN : 0), 0});
        for (const Client& client : clients) {
            short events = 0;
            if (!client.endOfInput && client.output.size() < kMaxPendingReplyBytes) {
                events |= POLLIN;
            }
            if (!client.output.empty()) {
                events |= POLLOUT;
            }
            polled.push_back(pollfd{client.fd, events, 0});
        }
        if (poll(polled.data(), polled.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            ts_log(2, kLogName, "poll: %s\n", std::strerror(errno));
            break;
        }
        if (polled[0].revents != 0) {
            break;
        }
        // The clients first: polled[2 + i] belongs to clients[i] only until
        // new clients are accepted.
        for (std::size_t i = 0; i < clients.size(); ++i) {
            short revents = polled[2 + i].revents;
            if (revents & (POLLIN | POLLHUP | POLLERR)) {
                readFrom(clients[i]);
            }
            if (!clients[i].output.empty()) {
                writeTo(clients[i]);
            }
            if (revents & POLLNVAL) {
                clients[i].broken = true;
            }
        }
        for (std::size_t i = clients.size(); i-- > 0;) {
            Client& client = clients[i];
            if (client.broken || (client.endOfInput && client.output.empty())) {
                close(client.fd);
                clients.erase(clients.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
        if (polled[1].revents & POLLIN) {
            acceptClients(listenFd, clients);
        }
    }
    for (const Client& client : clients) {
        close(client.fd);
    }
    close(wakeFd);
}

} // namespace

EventSocket& EventSocket::instance() {
    // What the server thread uses must outlive this object, which stops the
    // thread when the process exits: construct it first.
    EventHub::instance();
    LogSink::instance();
    SimState::instance();
    static EventSocket socket;
    return socket;
}

EventSocket::~EventSocket() {
    std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
}

bool EventSocket::start(const std::string& path, std::string* problem) {
    std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
    sockaddr_un address;
    if (!fillAddress(path, &address, problem) || !clearStaleSocket(path, address, problem)) {
        return false;
    }
    int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        *problem = errnoText("socket");
        return false;
    }
    // Nobody can connect before listen(), so the mode is right before the
    // first client can arrive.
    struct stat info;
    if (bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        *problem = errnoText("cannot create socket " + path);
        close(fd);
        return false;
    }
    if (chmod(path.c_str(), 0600) != 0 || stat(path.c_str(), &info) != 0 || listen(fd, 16) != 0) {
        *problem = errnoText("cannot set up socket " + path);
        close(fd);
        unlink(path.c_str());
        return false;
    }
    int wake[2];
    if (pipe2(wake, O_CLOEXEC | O_NONBLOCK) != 0) {
        *problem = errnoText("pipe");
        close(fd);
        unlink(path.c_str());
        return false;
    }
    listenFd_ = fd;
    wakeWriteFd_ = wake[1];
    device_ = info.st_dev;
    inode_ = info.st_ino;
    path_ = path;
    server_ = std::thread(serve, fd, wake[0]);
    ts_log(0, kLogName, "listening on %s\n", path.c_str());
    return true;
}

void EventSocket::stop() {
    std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
}

std::string EventSocket::path() {
    std::lock_guard<std::mutex> lock(mutex_);
    return path_;
}

void EventSocket::stopLocked() {
    if (!server_.joinable()) {
        return;
    }
    char wake = 1;
    while (write(wakeWriteFd_, &wake, 1) < 0 && errno == EINTR) {
    }
    server_.join();
    close(wakeWriteFd_);
    close(listenFd_);
    // Another server may have taken the path over since; leave its socket.
    struct stat info;
    if (stat(path_.c_str(), &info) == 0 && info.st_dev == device_ && info.st_ino == inode_) {
        unlink(path_.c_str());
    }
    wakeWriteFd_ = -1;
    listenFd_ = -1;
    path_.clear();
}

} // namespace qzsim
