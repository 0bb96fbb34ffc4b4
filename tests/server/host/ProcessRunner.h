// Running the programs under test: a command with captured output, and a
// vexa-cimserver on a free loopback port for the length of a test suite.
#ifndef VEXA_TESTS_HOST_PROCESSRUNNER_H
#define VEXA_TESTS_HOST_PROCESSRUNNER_H

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace hosttest {

struct CommandResult {
    int exitCode = -1; // 128 + signal number when killed by a signal
    std::string out;
    std::string err;
};

// Runs argv[0] (a path, or a name looked up in PATH) with the given
// standard input. A command still running after `timeoutSeconds` is killed.
CommandResult runCommand(const std::vector<std::string>& argv, const std::string& input = "",
                         int timeoutSeconds = 30);

// A started program whose output goes to files in a scratch directory.
class BackgroundProcess {
public:
    BackgroundProcess(const std::vector<std::string>& argv, const std::string& scratchDir,
                      const std::string& name);
    ~BackgroundProcess();
    BackgroundProcess(const BackgroundProcess&) = delete;
    BackgroundProcess& operator=(const BackgroundProcess&) = delete;

    // Sends the signal and waits; the exit code as for CommandResult.
    int stop(int signalNumber, int timeoutSeconds = 30);
    bool running();
    std::string out() const;
    std::string err() const;
    // Waits until the program's standard output contains `text`.
    bool waitForOutput(const std::string& text, int timeoutSeconds = 30) const;

private:
    pid_t pid_ = -1;
    int exitCode_ = -1;
    std::string outPath_;
    std::string errPath_;
};

// A fresh directory under the build's scratch area; removed at exit.
std::string makeScratchDir();
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& text);

// vexa-cimserver on 127.0.0.1 with a free port and the small lab cluster.
class ServerProcess {
public:
    explicit ServerProcess(const std::vector<std::string>& extraArguments = {});
    int port() const { return port_; }
    // "http://127.0.0.1:PORT/root/cimv2" + suffix
    std::string url(const std::string& suffix = "") const;
    std::string eventSocket() const { return eventSocket_; }
    // The exit status; 99 when a sanitizer reported a fault on standard
    // error (the server ends with _exit, which skips the sanitizers' own
    // exit status).
    int stop(int signalNumber = 15);
    std::string err() const { return process_->err(); }
    std::string out() const { return process_->out(); }
    const std::string& scratchDir() const { return scratchDir_; }

private:
    std::string scratchDir_;
    std::string eventSocket_;
    int port_ = 0;
    std::unique_ptr<BackgroundProcess> process_;
};

// wbemcli with the given arguments.
CommandResult wbemcli(const std::vector<std::string>& arguments);

// Lines of text, without empty ones.
std::vector<std::string> lines(const std::string& text);

} // namespace hosttest

#endif
