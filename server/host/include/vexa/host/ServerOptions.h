// The command line of vexa-cimserver.
#ifndef VEXA_HOST_SERVEROPTIONS_H
#define VEXA_HOST_SERVEROPTIONS_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "vexa/host/ListenerUrl.h"

namespace vexa::host {

// A command line that cannot be used; the message says which option and why.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ServerOptions {
    bool help = false;

    std::string listenAddress = "127.0.0.1";
    int listenPort = 5988; // 0 picks a free port
    std::string portFile;  // receives the port actually bound

    std::string providerPath; // empty: ../lib/libVexaProvider.so beside the program
    std::vector<ListenerUrl> listeners;

    std::string clusterModel; // QZSIM_CLUSTER_MODEL
    std::string logFile;      // QZSIM_LOG_FILE
    int logLevel = -1;        // QZSIM_LOG_LEVEL; -1 leaves it unset
    std::string eventSocket;  // QZSIM_EVENT_SOCKET; empty picks a default
    std::string inventoryDir; // VEXA_INVENTORY_DIR; empty: the samples with the demo cluster

    // Both or neither; with them the server speaks only HTTPS, by default
    // on 5989 (the CIM-XML convention: 5988 http, 5989 https).
    std::string tlsCertificate;
    std::string tlsKey;

    std::string authFile;
    size_t workers = 8;
    size_t maxRequestBytes = 4u << 20;
    size_t maxXmlDepth = 64;
    int timeoutSeconds = 10; // read and write time-outs on client connections
    // Memory for the encoded forms of unchanged objects, copied into later
    // answers instead of being encoded again.
    size_t answerCacheMegabytes = 256;
};

// Parses argv[1..argc-1]. Throws UsageError.
ServerOptions parseServerOptions(int argc, const char* const argv[]);

// True for 127.0.0.0/8, ::1 and "localhost".
bool isLoopbackAddress(const std::string& address);

// The --help text.
std::string serverUsage();

} // namespace vexa::host

#endif
