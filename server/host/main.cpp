// vexa-cimserver: serves the VexaProvider CIM provider to WBEM clients over
// CIM-XML/HTTP, loading it as a CIM server does. With no options it serves
// the simulated demo cluster on 127.0.0.1:5988.
#include <Pegasus/Common/Exception.h>
#ifdef VEXA_KEPT_ENCODINGS
#include <vexa/cim/KeptEncoding.h>
#endif

#include <vexa/schema/SchemaRepository.h>

#include <httplib.h>

#include <limits.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "HeapSettings.h"
#include "vexa/host/AuthFile.h"
#include "vexa/host/CimHttpServer.h"
#include "vexa/host/CimXmlEndpoint.h"
#include "vexa/host/EventSocketPath.h"
#include "vexa/host/ExclusivePort.h"
#include "vexa/host/IndicationExporter.h"
#include "vexa/host/LoginThrottle.h"
#include "vexa/host/OperationDispatcher.h"
#include "vexa/host/ProviderLibrary.h"
#include "vexa/host/Registration.h"
#include "vexa/host/ServedClasses.h"
#include "vexa/host/ServerLog.h"
#include "vexa/host/ServerOptions.h"
#include "vexa/host/TlsContext.h"

using namespace vexa::host;

namespace {

constexpr int EXIT_USAGE = 2;
const char* const PROVIDER_NAME = "VexaProvider";
// Room for the request line and headers beside the largest body.
constexpr size_t HEADER_ALLOWANCE = 64 * 1024;

// Stopping must end within 2 s whatever the clients do: requests still in
// the provider get this long to finish, delivering the indications left
// until the second mark, and waiting for a listener that does not answer
// until the third; then the process ends.
constexpr std::chrono::milliseconds REQUESTS_END_WITHIN{1000};
constexpr std::chrono::milliseconds INDICATIONS_DRAIN_UNTIL{1100};
constexpr std::chrono::milliseconds LISTENERS_GIVEN_UP_AFTER{200};

std::string programDirectory() {
    char path[PATH_MAX];
    ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
    if (length <= 0) {
        return ".";
    }
    path[length] = '\0';
    std::string text(path);
    size_t slash = text.rfind('/');
    return slash == std::string::npos ? "." : text.substr(0, slash);
}

std::string systemHostName() {
    char name[HOST_NAME_MAX + 1] = {};
    if (gethostname(name, sizeof(name) - 1) != 0 || name[0] == '\0') {
        return "localhost";
    }
    return name;
}

std::string defaultEventSocket(int port) {
    const char* runtime = getenv("XDG_RUNTIME_DIR");
    std::string directory = runtime != nullptr && runtime[0] == '/' ? runtime : "/tmp";
    return directory + "/vexa-cimserver-" + std::to_string(port) + ".events";
}

std::string urlHost(const std::string& address) {
    if (address == "0.0.0.0") {
        return "127.0.0.1";
    }
    if (address == "::") {
        return "[::1]";
    }
    return address.find(':') != std::string::npos ? "[" + address + "]" : address;
}

// The size of the file, or 0 when it is not there yet.
long long fileSize(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? static_cast<long long>(info.st_size) : 0;
}

// The error lines (level 2 and up) the provider and its library logged past
// `offset`, without their time stamp, level and thread.
std::vector<std::string> errorLinesSince(const std::string& path, long long offset) {
    std::vector<std::string> found;
    std::ifstream log(path);
    log.seekg(offset);
    std::string line;
    while (std::getline(log, line)) {
        size_t level = line.find(" L");
        if (level == std::string::npos || level + 2 >= line.size() || line[level + 2] < '2' ||
            line[level + 2] > '9') {
            continue;
        }
        size_t thread = line.find(" T", level + 2);
        size_t text = thread == std::string::npos ? std::string::npos : line.find(' ', thread + 2);
        found.push_back(text == std::string::npos ? line : line.substr(text + 1));
    }
    return found;
}

[[noreturn]] void failStart(const std::string& message, int status = EXIT_FAILURE) {
    logLine(message);
    std::exit(status);
}

// Settings the provider's management library reads from its environment;
// they must be in place before the library is loaded.
void exportLibrarySettings(const ServerOptions& options, const std::string& eventSocket) {
    if (!options.clusterModel.empty()) {
        std::ifstream model(options.clusterModel);
        if (!model) {
            failStart("--cluster-model " + options.clusterModel +
                          ": cannot read the file (examples are in examples/clusters/)",
                      EXIT_USAGE);
        }
        setenv("QZSIM_CLUSTER_MODEL", options.clusterModel.c_str(), 1);
    }
    if (!options.logFile.empty()) {
        setenv("QZSIM_LOG_FILE", options.logFile.c_str(), 1);
    }
    if (options.logLevel >= 0) {
        setenv("QZSIM_LOG_LEVEL", std::to_string(options.logLevel).c_str(), 1);
    }
    setenv("QZSIM_EVENT_SOCKET", eventSocket.c_str(), 1);
}

// The folder whose declustered-RAID inventory files the provider reads, or
// empty to leave the provider's built-in folder. The sample files describe
// the demo cluster's RAID layer, so they go with it and with nothing else.
std::string inventoryFolder(const ServerOptions& options) {
    if (!options.inventoryDir.empty()) {
        struct stat info {};
        if (stat(options.inventoryDir.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
            failStart("--inventory-dir " + options.inventoryDir +
                          ": not a readable folder (samples are in examples/inventory/)",
                      EXIT_USAGE);
        }
        return options.inventoryDir;
    }
    if (!options.clusterModel.empty()) {
        return std::string();
    }
    return programDirectory() + "/../share/inventory";
}

// The provider reads the inventory folder from its environment on every
// cache pass; it must be in place before the provider starts.
void exportProviderSettings(const std::string& inventory) {
    if (!inventory.empty()) {
        setenv("VEXA_INVENTORY_DIR", inventory.c_str(), 1);
    }
}

// The model the management library loads: the option, else the variable
// it reads itself, else its demo cluster.
std::string servedModel(const ServerOptions& options) {
    if (!options.clusterModel.empty()) {
        return options.clusterModel;
    }
    const char* fromEnvironment = getenv("QZSIM_CLUSTER_MODEL");
    if (fromEnvironment != nullptr && fromEnvironment[0] != '\0') {
        return std::string(fromEnvironment) + " (from QZSIM_CLUSTER_MODEL)";
    }
    return "built-in demo cluster";
}

void printBanner(const ServerOptions& options, int port, const std::string& providerPath,
                 const std::string& eventSocket, bool eventSocketOpen,
                 const std::string& inventory) {
    std::string scheme = options.tlsCertificate.empty() ? "http://" : "https://";
    std::string base = scheme + urlHost(options.listenAddress) + ":" + std::to_string(port);
    std::cout << "vexa-cimserver: serving " << base << "/ (namespace root/cimv2)\n"
              << "  provider:      " << providerPath << "\n"
              << "  cluster model: " << servedModel(options) << "\n"
              << "  allocator:     " << vexa::heap::allocatorName() << "\n"
              << "  event socket:  "
              << (eventSocketOpen ? eventSocket
                                  : "none (the management library did not open " + eventSocket +
                                        "; the log says why)")
              << "\n"
              << "  inventory:     "
              << (inventory.empty() ? "the provider's built-in folder" : inventory) << "\n";
    for (const ListenerUrl& listener : options.listeners) {
        std::cout << "  indications to " << listener.text << "\n";
    }
    if (!options.authFile.empty()) {
        std::cout << "  clients log in with a user of " << options.authFile << "\n";
    }
    std::string tryBase = base;
    if (!options.authFile.empty()) {
        tryBase.insert(scheme.size(), "USER:PASSWORD@");
        std::cout << "Try (USER and PASSWORD of a user of " << options.authFile << "):\n";
    } else {
        std::cout << "Try:\n";
    }
    // wbemcli cannot be given the certificate to trust; -noverify is the way
    // with a certificate of one's own making.
    std::string noverify = options.tlsCertificate.empty() ? "" : "-noverify ";
    std::cout << "  wbemcli " << noverify << "ei '" << tryBase << "/root/cimv2:KOR_VEXA_Cluster'\n"
              << "  wbemcli " << noverify << "ein '" << tryBase << "/root/cimv2:KOR_VEXA_Node'\n"
              << "Stop with Ctrl-C." << std::endl;
}

} // namespace

int main(int argc, char* argv[]) {
    vexa::heap::useHugePages();
    ServerOptions options;
    try {
        options = parseServerOptions(argc, argv);
    } catch (const UsageError& error) {
        std::cerr << "vexa-cimserver: " << error.what() << "\n"
                  << "Try 'vexa-cimserver --help'." << std::endl;
        return EXIT_USAGE;
    }
    if (options.help) {
        std::cout << serverUsage();
        return 0;
    }
#ifdef VEXA_KEPT_ENCODINGS
    vexa::cim::setKeptEncodingBudget(options.answerCacheMegabytes << 20);
#endif

    // Every thread started from here on inherits this mask, so the signals
    // reach only the sigwait below. A client that hangs up must not kill
    // the server with SIGPIPE.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    // Nothing is reloaded on SIGHUP (the model file is re-read by the
    // refresh passes by itself): the server stops as cleanly as on SIGTERM,
    // instead of dying without a word as the default action would have it.
    sigaddset(&stopSignals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
    signal(SIGPIPE, SIG_IGN);

    std::unique_ptr<AuthFile> auth;
    if (!options.authFile.empty()) {
        try {
            auth = std::make_unique<AuthFile>(AuthFile::load(options.authFile));
        } catch (const std::exception& error) {
            failStart(error.what(), EXIT_USAGE);
        }
        if (auth->userCount() == 0) {
            failStart(options.authFile + ": lists no user; add one with: vexa-tool passwd " +
                          options.authFile + " USER",
                      EXIT_USAGE);
        }
    }

    std::unique_ptr<TlsContext> tls;
    if (!options.tlsCertificate.empty()) {
        try {
            tls = TlsContext::load(options.tlsCertificate, options.tlsKey);
        } catch (const std::exception& error) {
            failStart(error.what(), EXIT_USAGE);
        }
    }

    vexa::schema::SchemaRepository schema;
    try {
        schema = vexa::schema::SchemaRepository::builtIn();
    } catch (const std::exception& error) {
        failStart(std::string("the built-in schema does not load: ") + error.what());
    }
    std::vector<std::string> missing;
    ServedClasses served = ServedClasses::fromRegistration(schema, PROVIDER_NAME, &missing);
    if (served.empty()) {
        try {
            schema.loadText(providerRegistrationMof(), PROVIDER_REGISTRATION_SOURCE);
        } catch (const std::exception& error) {
            failStart(std::string("the provider registration does not load: ") + error.what());
        }
        missing.clear();
        served = ServedClasses::fromRegistration(schema, PROVIDER_NAME, &missing);
    }
    for (const std::string& name : missing) {
        logLine("the schema does not declare the served class " + name +
                "; requests for it are refused");
    }

    ConnectionLimits limits;
    limits.requestTimeout = std::chrono::seconds(options.timeoutSeconds);
    limits.writeTimeout = std::chrono::seconds(options.timeoutSeconds);
    limits.maxRequestBytes = options.maxRequestBytes + HEADER_ALLOWANCE;
    CimHttpServer server(options.workers, limits, tls ? tls->get() : nullptr);
    server.set_payload_max_length(options.maxRequestBytes);
    // Announced in the Keep-Alive header; the wait itself is the limits'.
    server.set_keep_alive_timeout(
        std::chrono::duration_cast<std::chrono::seconds>(limits.idleTimeout).count());
    useExclusivePort(server);

    int port = options.listenPort;
    if (port == 0) {
        port = server.bind_to_any_port(options.listenAddress);
    } else if (!server.bind_to_port(options.listenAddress, port)) {
        port = -1;
    }
    if (port <= 0) {
        failStart("cannot listen on " + options.listenAddress + ":" +
                      std::to_string(options.listenPort) +
                      ": the port is in use or the address is not available (choose another "
                      "with --listen ADDR:PORT)",
                  EXIT_USAGE);
    }
    if (!options.portFile.empty()) {
        std::ofstream portFile(options.portFile);
        portFile << port << "\n";
        if (!portFile) {
            failStart("--port-file " + options.portFile + ": cannot write the file", EXIT_USAGE);
        }
    }

    std::string eventSocket =
        options.eventSocket.empty() ? defaultEventSocket(port) : options.eventSocket;
    std::string socketTaken = eventSocketTaken(eventSocket);
    if (!socketTaken.empty()) {
        failStart(socketTaken, EXIT_USAGE);
    }
    exportLibrarySettings(options, eventSocket);
    const std::string inventory = inventoryFolder(options);
    exportProviderSettings(inventory);

    std::string providerPath = options.providerPath.empty()
                                   ? programDirectory() + "/../lib/libVexaProvider.so"
                                   : options.providerPath;
    long long logOffset = 0;
    if (!options.logFile.empty()) {
        logOffset = fileSize(options.logFile);
        if (!sendStandardErrorTo(options.logFile)) {
            failStart("--log-file " + options.logFile + ": cannot open the file for writing",
                      EXIT_USAGE);
        }
    }
    std::unique_ptr<ProviderLibrary> provider;
    try {
        provider = std::make_unique<ProviderLibrary>(providerPath, PROVIDER_NAME);
    } catch (const std::exception& error) {
        logLine(error.what());
        // Without --log-file the reasons are on the terminal already.
        if (!options.logFile.empty()) {
            std::vector<std::string> reasons = errorLinesSince(options.logFile, logOffset);
            for (const std::string& reason : reasons) {
                logLine("  " + reason);
            }
            if (reasons.empty()) {
                logLine("  the reason may be in " + options.logFile +
                        " (raise the detail with --log-level 0)");
            }
        }
        std::exit(EXIT_FAILURE);
    }

    std::string systemName = systemHostName();
    ProviderInterfaces interfaces;
    interfaces.instances = provider->instances();
    interfaces.associations = provider->associations();
    interfaces.methods = provider->methods();
    OperationDispatcher dispatcher(interfaces, schema, served, systemName);
    EndpointSettings endpointSettings;
    endpointSettings.limits.maxBytes = options.maxRequestBytes;
    endpointSettings.limits.maxDepth = options.maxXmlDepth;
    endpointSettings.auth = auth.get();
    LoginThrottle loginThrottle;
    endpointSettings.loginThrottle = &loginThrottle;
    endpointSettings.systemName = systemName;
    CimXmlEndpoint endpoint(dispatcher, endpointSettings);
    endpoint.install(server);

    // The exporter outlives the provider's use of it: an event thread that
    // read the enabled flag just before disableIndications may still deliver.
    IndicationExporter* exporter = nullptr;
    if (!options.listeners.empty()) {
        if (provider->indications() == nullptr) {
            logLine("the provider makes no indications; --listener has no effect");
        } else {
            exporter = new IndicationExporter(options.listeners);
            try {
                provider->indications()->enableIndications(*exporter);
            } catch (...) {
                failStart("the provider refused to enable indications: " + currentExceptionText());
            }
        }
    }

    std::atomic<bool> servingEnded{false};
    std::thread serving([&server, &servingEnded] {
        if (!server.listen_after_bind()) {
            logLine("the HTTP listener failed");
        }
        servingEnded = true;
        // Wake the main thread if serving ended by itself.
        kill(getpid(), SIGTERM);
    });
    // A stop() that came before the listener runs would be lost; and the
    // banner promises that requests are served.
    while (!server.is_running() && !servingEnded) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    OwnedSocketFile ownSocket;
    ownSocket.remember(eventSocket);
    printBanner(options, port, providerPath, eventSocket, ownSocket.owned(), inventory);

    int received = 0;
    sigwait(&stopSignals, &received);
    logLine(std::string("stopping on ") +
            (received == SIGINT   ? "SIGINT"
             : received == SIGHUP ? "SIGHUP (nothing is reloaded; start the server again to "
                                    "change its options)"
                                  : "SIGTERM"));
    auto stopStarted = std::chrono::steady_clock::now();
    server.stopServing();
    while (!servingEnded && std::chrono::steady_clock::now() - stopStarted < REQUESTS_END_WITHIN) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    // A request still in the provider could be using what terminate frees;
    // the provider is then left as it is and ends with the process.
    const bool providerIdle = servingEnded;
    if (providerIdle) {
        serving.join();
    } else {
        serving.detach();
        logLine("a request was still in the provider " +
                std::to_string(REQUESTS_END_WITHIN.count()) +
                " ms after the stop signal; stopping without terminating the provider");
    }
    if (exporter != nullptr) {
        if (providerIdle) {
            try {
                provider->indications()->disableIndications();
            } catch (...) {
                logLine("disableIndications failed: " + currentExceptionText());
            }
        }
        auto drainLeft = std::chrono::duration_cast<std::chrono::milliseconds>(
            stopStarted + INDICATIONS_DRAIN_UNTIL - std::chrono::steady_clock::now());
        exporter->stop(std::max(drainLeft, std::chrono::milliseconds(0)), LISTENERS_GIVEN_UP_AFTER);
        for (const ListenerCounts& counts : exporter->counts()) {
            logLine("indications to " + loggable(counts.url) + ": " +
                    std::to_string(counts.delivered) + " delivered, " +
                    std::to_string(counts.failed) + " given up, " + std::to_string(counts.dropped) +
                    " dropped");
        }
    }
    if (providerIdle) {
        provider->shutDown();
    }
    // The simulator's socket would outlive the process, which ends without
    // the library's clean-up; a socket another server has made there since
    // is left alone.
    ownSocket.removeIfStillOurs();
    logLine("stopped");
    std::cout.flush();
    std::fflush(nullptr);
    // The provider's and the management library's threads are detached and
    // never joined; running static destructors under them could crash, so
    // the process ends here without them.
    _exit(0);
}
