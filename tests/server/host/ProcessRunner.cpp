#include "ProcessRunner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace hosttest {

namespace {

using Clock = std::chrono::steady_clock;

std::vector<char*> argumentPointers(const std::vector<std::string>& argv) {
    std::vector<char*> pointers;
    for (const std::string& argument : argv) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

int exitCodeOf(int status) {
    if (WIFEXITED(status)) {
        return WEXITSTATUS(status);
    }
    if (WIFSIGNALED(status)) {
        return 128 + WTERMSIG(status);
    }
    return -1;
}

// Waits for the child; kills it when it outlives the deadline.
int waitUntil(pid_t pid, Clock::time_point deadline) {
    int status = 0;
    while (true) {
        pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) {
            return exitCodeOf(status);
        }
        if (done < 0) {
            return -1;
        }
        if (Clock::now() > deadline) {
            kill(pid, SIGKILL);
            waitpid(pid, &status, 0);
            return exitCodeOf(status);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

std::vector<std::string>& scratchDirs() {
    static std::vector<std::string> dirs;
    return dirs;
}

void removeScratchDirs() {
    for (const std::string& dir : scratchDirs()) {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }
}

} // namespace

CommandResult runCommand(const std::vector<std::string>& argv, const std::string& input,
                         int timeoutSeconds) {
    // Close-on-exec, so that a command started at the same time by another
    // thread does not inherit these pipes and hold them open.
    int in[2], out[2], err[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe failed");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    std::vector<char*> pointers = argumentPointers(argv);
    pid_t pid = -1;
    int spawned = posix_spawnp(&pid, argv[0].c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    close(err[1]);
    CommandResult result;
    if (spawned != 0) {
        close(in[1]);
        close(out[0]);
        close(err[0]);
        result.err = "cannot start " + argv[0] + ": " + std::strerror(spawned);
        return result;
    }
    // Small inputs fit the pipe; a child that does not read them is no harm.
    signal(SIGPIPE, SIG_IGN);
    if (!input.empty() && write(in[1], input.data(), input.size()) < 0) {
        result.err = "cannot write the input";
    }
    close(in[1]);

    Clock::time_point deadline = Clock::now() + std::chrono::seconds(timeoutSeconds);
    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* sinks[2] = {&result.out, &result.err};
    int open = 2;
    while (open > 0 && Clock::now() < deadline) {
        if (poll(fds, 2, 100) <= 0) {
            continue;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd >= 0 && (fds[i].revents & (POLLIN | POLLHUP | POLLERR))) {
                char buffer[4096];
                ssize_t got = read(fds[i].fd, buffer, sizeof(buffer));
                if (got > 0) {
                    sinks[i]->append(buffer, static_cast<size_t>(got));
                } else {
                    close(fds[i].fd);
                    fds[i].fd = -1;
                    --open;
                }
            }
        }
    }
    for (pollfd& fd : fds) {
        if (fd.fd >= 0) {
            close(fd.fd);
        }
    }
    result.exitCode = waitUntil(pid, deadline);
    return result;
}

BackgroundProcess::BackgroundProcess(const std::vector<std::string>& argv,
                                     const std::string& scratchDir, const std::string& name)
    : outPath_(scratchDir + "/" + name + ".out"), errPath_(scratchDir + "/" + name + ".err") {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&actions, 2, errPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    std::vector<char*> pointers = argumentPointers(argv);
    int spawned = posix_spawnp(&pid_, argv[0].c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        pid_ = -1;
        throw std::runtime_error("cannot start " + argv[0] + ": " + std::strerror(spawned));
    }
}

BackgroundProcess::~BackgroundProcess() {
    if (pid_ > 0) {
        stop(SIGKILL, 10);
    }
}

int BackgroundProcess::stop(int signalNumber, int timeoutSeconds) {
    if (pid_ > 0) {
        kill(pid_, signalNumber);
        exitCode_ = waitUntil(pid_, Clock::now() + std::chrono::seconds(timeoutSeconds));
        pid_ = -1;
    }
    return exitCode_;
}

bool BackgroundProcess::running() {
    if (pid_ <= 0) {
        return false;
    }
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
        exitCode_ = exitCodeOf(status);
        pid_ = -1;
        return false;
    }
    return true;
}

std::string BackgroundProcess::out() const { return readFile(outPath_); }
std::string BackgroundProcess::err() const { return readFile(errPath_); }

bool BackgroundProcess::waitForOutput(const std::string& text, int timeoutSeconds) const {
    Clock::time_point deadline = Clock::now() + std::chrono::seconds(timeoutSeconds);
    while (Clock::now() < deadline) {
        if (out().find(text) != std::string::npos) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

std::string makeScratchDir() {
    // The list must exist before the clean-up is registered, so that it is
    // destroyed only after the clean-up has run.
    static std::once_flag registered;
    std::call_once(registered, [] {
        scratchDirs();
        std::atexit(removeScratchDirs);
    });
    std::string pattern = "/tmp/vexa-host-test-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("mkdtemp failed");
    }
    scratchDirs().push_back(pattern);
    return pattern;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

ServerProcess::ServerProcess(const std::vector<std::string>& extraArguments)
    : scratchDir_(makeScratchDir()), eventSocket_(scratchDir_ + "/events.sock") {
    std::string portFile = scratchDir_ + "/port";
    std::vector<std::string> argv = {
        VEXA_CIMSERVER_PATH, "--listen",   "127.0.0.1:0",
        "--port-file",       portFile,     "--cluster-model",
        VEXA_LAB_MODEL,      "--log-file", scratchDir_ + "/provider.log",
        "--event-socket",    eventSocket_};
    argv.insert(argv.end(), extraArguments.begin(), extraArguments.end());
    process_ = std::make_unique<BackgroundProcess>(argv, scratchDir_, "server");
    // The port file is written before the provider loads; the banner comes
    // once requests are served.
    if (!process_->waitForOutput("Stop with Ctrl-C.", 60)) {
        throw std::runtime_error("vexa-cimserver did not start:\n" + process_->err());
    }
    port_ = std::atoi(readFile(portFile).c_str());
}

int ServerProcess::stop(int signalNumber) {
    int status = process_->stop(signalNumber);
    // With --log-file the process's standard error, sanitizer reports
    // included, goes to that file.
    std::string log = process_->err() + readFile(scratchDir_ + "/provider.log");
    for (const char* report :
         {"ThreadSanitizer", "AddressSanitizer", "LeakSanitizer", "runtime error:"}) {
        if (log.find(report) != std::string::npos) {
            return 99;
        }
    }
    return status;
}

std::string ServerProcess::url(const std::string& suffix) const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/root/cimv2" + suffix;
}

CommandResult wbemcli(const std::vector<std::string>& arguments) {
    std::vector<std::string> argv = {"wbemcli"};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return runCommand(argv);
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty()) {
            result.push_back(line);
        }
    }
    return result;
}

} // namespace hosttest
