// vexa-tool listen: a CIM-XML indication listener that prints what arrives.
#include <vexa/cimxml/Codec.h>
#include <vexa/host/ExclusivePort.h>
#include <vexa/host/ServerOptions.h>

#include <httplib.h>

#include <signal.h>
#include <strings.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <iostream>
#include <mutex>
#include <thread>

#include "Commands.h"
#include "IndicationText.h"

using vexa::host::UsageError;

namespace vexa::tool {

namespace {

struct ListenOptions {
    std::string bind = "127.0.0.1";
    int port = 5990;
    long count = 0; // stop after this many indications; 0 never
};

long numberArgument(const std::string& option, const std::string& text, long low, long high) {
    bool digits = !text.empty() && text.size() < 10 &&
                  text.find_first_not_of("0123456789") == std::string::npos;
    long value = digits ? std::stol(text) : -1;
    if (value < low || value > high) {
        throw UsageError(option + " needs a whole number from " + std::to_string(low) + " to " +
                         std::to_string(high) + ", not '" + text + "'");
    }
    return value;
}

ListenOptions parseListenOptions(const std::vector<std::string>& arguments) {
    ListenOptions options;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        auto value = [&]() -> std::string {
            if (i + 1 >= arguments.size()) {
                throw UsageError(name + " needs a value");
            }
            return arguments[++i];
        };
        if (name == "--port") {
            options.port = static_cast<int>(numberArgument(name, value(), 0, 65535));
        } else if (name == "--bind") {
            options.bind = value();
        } else if (name == "--count") {
            options.count = numberArgument(name, value(), 1, 1000000000);
        } else {
            throw UsageError("listen: unknown argument '" + name + "'");
        }
    }
    if (!vexa::host::isLoopbackAddress(options.bind)) {
        std::cerr << "vexa-tool: listening on " << options.bind
                  << ": indications from other machines will be printed too" << std::endl;
    }
    return options;
}

bool sameText(const std::string& a, const char* b) { return strcasecmp(a.c_str(), b) == 0; }

class Listener {
public:
    explicit Listener(long count) : limit_(count) {}

    void handle(const httplib::Request& request, httplib::Response& response) {
        if (request.has_header("CIMExportBatch")) {
            refuse(response, 501, "multiple-requests-unsupported");
            return;
        }
        if (!request.has_header("CIMExport")) {
            refuse(response, 400, "");
            return;
        }
        if (!sameText(request.get_header_value("CIMExport"), "MethodRequest")) {
            refuse(response, 400, "unsupported-operation");
            return;
        }
        if (!sameText(request.get_header_value("CIMExportMethod"), "ExportIndication")) {
            refuse(response, 400, "header-mismatch");
            return;
        }
        cimxml::ExportRequest received;
        try {
            received = cimxml::decodeExportIndication(request.body);
        } catch (const cimxml::RequestError& error) {
            if (error.httpStatus() != 0) {
                refuse(response, error.httpStatus(), error.cimErrorHeader());
            } else {
                answer(response, cimxml::encodeExportError(error.messageId(), error.cimStatus(),
                                                           error.what()));
            }
            return;
        }
        bool last = false;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            std::cout << indicationText(received.indication) << std::flush;
            ++received_;
            last = limit_ > 0 && received_ >= limit_;
        }
        answer(response, cimxml::encodeExportResponse(received.messageId));
        if (last) {
            // The sender would otherwise keep the connection, and with it
            // this listener, open until the keep-alive time-out.
            response.set_header("Connection", "close");
        }
        finished_.notify_all();
    }

    void stop() {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            stopped_ = true;
        }
        finished_.notify_all();
    }

    void waitUntilDone() {
        std::unique_lock<std::mutex> lock(mutex_);
        finished_.wait(lock, [this] { return stopped_ || (limit_ > 0 && received_ >= limit_); });
    }

private:
    static void refuse(httplib::Response& response, int status, const std::string& cimError) {
        response.status = status;
        if (!cimError.empty()) {
            response.set_header("CIMError", cimError);
        }
    }

    static void answer(httplib::Response& response, const std::string& body) {
        response.status = 200;
        response.set_header("CIMExport", "MethodResponse");
        response.set_content(body, "application/xml; charset=\"utf-8\"");
    }

    const long limit_;
    std::mutex mutex_;
    std::condition_variable finished_;
    long received_ = 0;
    bool stopped_ = false;
};

} // namespace

std::string listenUsage() {
    return "vexa-tool listen [--port N] [--bind ADDR] [--count N]\n"
           "  Receives CIM-XML indications (give the server --listener "
           "http://ADDR:PORT/) and prints\n"
           "  each: its class, then one 'name = value' line per property. --port 0 picks a "
           "free port;\n"
           "  the first line printed says where it listens. --count N stops after N "
           "indications.\n"
           "  Defaults: 127.0.0.1, port 5990.\n";
}

int runListen(const std::vector<std::string>& arguments) {
    ListenOptions options = parseListenOptions(arguments);

    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

    Listener listener(options.count);
    httplib::Server server;
    server.Post(".*", [&listener](const httplib::Request& request, httplib::Response& response) {
        listener.handle(request, response);
    });
    server.set_payload_max_length(4u << 20);
    vexa::host::useExclusivePort(server);

    int port = options.port;
    if (port == 0) {
        port = server.bind_to_any_port(options.bind);
    } else if (!server.bind_to_port(options.bind, port)) {
        port = -1;
    }
    if (port <= 0) {
        std::cerr << "vexa-tool: cannot listen on " << options.bind << ":" << options.port
                  << ": the address is not available or the port is in use (choose another "
                     "with --port N)"
                  << std::endl;
        return 2;
    }
    std::string host =
        options.bind.find(':') != std::string::npos ? "[" + options.bind + "]" : options.bind;
    std::atomic<bool> servingEnded{false};
    std::thread serving([&server, &servingEnded] {
        server.listen_after_bind();
        servingEnded = true;
    });
    // stop() before the listener runs would be lost.
    while (!server.is_running() && !servingEnded) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::cout << "listening on http://" << host << ":" << port << "/" << std::endl;
    std::thread([&listener, stopSignals] {
        int received = 0;
        sigwait(&stopSignals, &received);
        listener.stop();
    }).detach();

    listener.waitUntilDone();
    server.stop();
    serving.join();
    return 0;
}

} // namespace vexa::tool
