#include "vexa/host/ServerOptions.h"

#include <arpa/inet.h>

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace vexa::host {

namespace {

unsigned long long parseNumber(const std::string& option, const std::string& text,
                               unsigned long long low, unsigned long long high) {
    bool digitsOnly = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    errno = 0;
    unsigned long long value = digitsOnly ? std::strtoull(text.c_str(), nullptr, 10) : 0;
    if (!digitsOnly || errno == ERANGE || value < low || value > high) {
        throw UsageError(option + " needs a whole number from " + std::to_string(low) + " to " +
                         std::to_string(high) + ", not '" + text + "'");
    }
    return value;
}

void parseListen(const std::string& text, ServerOptions& options) {
    std::string address;
    std::string port;
    if (!text.empty() && text[0] == '[') {
        size_t close = text.find("]:");
        if (close == std::string::npos) {
            throw UsageError("--listen needs ADDR:PORT, e.g. [::1]:5988, not '" + text + "'");
        }
        address = text.substr(1, close - 1);
        port = text.substr(close + 2);
    } else {
        size_t colon = text.rfind(':');
        if (colon == std::string::npos) {
            throw UsageError("--listen needs ADDR:PORT, e.g. 127.0.0.1:5988, not '" + text + "'");
        }
        address = text.substr(0, colon);
        port = text.substr(colon + 1);
    }
    if (address.empty()) {
        throw UsageError("--listen needs an address before the port, e.g. 127.0.0.1:5988");
    }
    options.listenAddress = address;
    options.listenPort = static_cast<int>(parseNumber("--listen port", port, 0, 65535));
}

} // namespace

bool isLoopbackAddress(const std::string& address) {
    if (address == "localhost") {
        return true;
    }
    in_addr v4;
    if (inet_pton(AF_INET, address.c_str(), &v4) == 1) {
        return (ntohl(v4.s_addr) >> 24) == 127;
    }
    in6_addr v6;
    if (inet_pton(AF_INET6, address.c_str(), &v6) == 1) {
        return IN6_IS_ADDR_LOOPBACK(&v6);
    }
    return false;
}

ServerOptions parseServerOptions(int argc, const char* const argv[]) {
    ServerOptions options;
    bool portGiven = false;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        std::string name = argument;
        std::string value;
        bool inlineValue = false;
        size_t equals = argument.find('=');
        if (argument.compare(0, 2, "--") == 0 && equals != std::string::npos) {
            name = argument.substr(0, equals);
            value = argument.substr(equals + 1);
            inlineValue = true;
        }
        auto takeValue = [&]() -> std::string {
            if (inlineValue) {
                return value;
            }
            if (i + 1 >= argc) {
                throw UsageError(name + " needs a value");
            }
            return argv[++i];
        };
        auto takeText = [&]() -> std::string {
            std::string text = takeValue();
            if (text.empty()) {
                throw UsageError(name + " needs a non-empty value");
            }
            return text;
        };

        if (name == "-h" || name == "--help") {
            options.help = true;
        } else if (name == "--listen") {
            parseListen(takeText(), options);
            portGiven = true;
        } else if (name == "--port-file") {
            options.portFile = takeText();
        } else if (name == "--provider") {
            options.providerPath = takeText();
        } else if (name == "--listener") {
            try {
                options.listeners.push_back(parseListenerUrl(takeText()));
            } catch (const std::invalid_argument& error) {
                throw UsageError(std::string("--listener: ") + error.what());
            }
        } else if (name == "--cluster-model") {
            options.clusterModel = takeText();
        } else if (name == "--log-file") {
            options.logFile = takeText();
        } else if (name == "--log-level") {
            options.logLevel = static_cast<int>(parseNumber(name, takeValue(), 0, 2));
        } else if (name == "--event-socket") {
            options.eventSocket = takeText();
        } else if (name == "--inventory-dir") {
            options.inventoryDir = takeText();
        } else if (name == "--tls-cert") {
            options.tlsCertificate = takeText();
        } else if (name == "--tls-key") {
            options.tlsKey = takeText();
        } else if (name == "--auth-file") {
            options.authFile = takeText();
        } else if (name == "--workers") {
            options.workers = parseNumber(name, takeValue(), 1, 256);
        } else if (name == "--max-request-bytes") {
            options.maxRequestBytes = parseNumber(name, takeValue(), 1024, 1ull << 30);
        } else if (name == "--max-xml-depth") {
            options.maxXmlDepth = parseNumber(name, takeValue(), 8, 1024);
        } else if (name == "--answer-cache-mb") {
            options.answerCacheMegabytes = parseNumber(name, takeValue(), 0, 1u << 20);
        } else if (name == "--timeout") {
            options.timeoutSeconds = static_cast<int>(parseNumber(name, takeValue(), 1, 3600));
        } else if (name.compare(0, 1, "-") == 0) {
            throw UsageError("unknown option '" + name + "'");
        } else {
            throw UsageError("unexpected argument '" + argument + "' (options start with --)");
        }
    }
    if (options.tlsCertificate.empty() != options.tlsKey.empty()) {
        throw UsageError("--tls-cert and --tls-key go together: give both to serve HTTPS");
    }
    if (!options.tlsCertificate.empty() && !portGiven) {
        options.listenPort = 5989;
    }
    if (!isLoopbackAddress(options.listenAddress) && options.authFile.empty()) {
        throw UsageError("--listen " + options.listenAddress +
                         " is reachable from other machines; give --auth-file FILE so that "
                         "clients must log in (create it with: vexa-tool passwd FILE USER)");
    }
    return options;
}

std::string serverUsage() {
    return R"(Usage: vexa-cimserver [OPTION]...
Serves the VexaProvider CIM provider to WBEM clients over CIM-XML/HTTP(S).
With no options it serves the built-in demo cluster on 127.0.0.1:5988.

Network:
  --listen ADDR:PORT       address to serve on (default 127.0.0.1:5988, with
                           TLS 127.0.0.1:5989; port 0
                           picks a free port). An address other than loopback
                           needs --auth-file.
  --port-file FILE         write the port actually served on to FILE
  --tls-cert FILE          serve HTTPS (only) with this PEM certificate (and its
                           chain); the default port becomes 5989
  --tls-key FILE           the certificate's PEM private key, without passphrase
  --auth-file FILE         require HTTP Basic authentication against FILE, lines
                           of "user:crypt-hash" (make them with vexa-tool passwd)
  --workers N              requests served at the same time (default 8)
  --max-request-bytes N    largest request body accepted (default 4194304)
  --max-xml-depth N        deepest XML element nesting accepted (default 64)
  --timeout SECONDS        time a request may take to arrive in full, and
                           each wait for a client to take its answer
                           (default 10); idle connections close after 5 s
  --answer-cache-mb N      memory for the encoded forms of cached instances
                           and names, copied into later answers instead of
                           encoded again (default 256; 0 keeps none)

Provider and simulated cluster:
  --provider PATH          provider library (default ../lib/libVexaProvider.so
                           beside this program)
  --cluster-model FILE     cluster-model file of the simulated cluster
                           (default: the built-in demo cluster)
  --log-file FILE          file for the provider's and simulator's log and
                           anything else they write to standard error
                           (default: standard error)
  --log-level N            lowest level logged: 0 trace, 1 soft failures,
                           2 errors (default 1)
  --event-socket PATH      socket on which the simulated cluster accepts events
                           (vexa-tool event); default
                           $XDG_RUNTIME_DIR or /tmp, vexa-cimserver-PORT.events
  --inventory-dir DIR      folder of the declustered-RAID inventory files
                           (dalen1_pd.txt, dalen1_vd.txt, dalen1_da.txt);
                           default: the sample files with the demo cluster,
                           the provider's built-in folder with --cluster-model

Indications:
  --listener URL           deliver every indication to URL as a CIM-XML
                           ExportIndication, e.g. http://127.0.0.1:5990/
                           (repeatable; watch them with vexa-tool listen)

  -h, --help               show this help and exit

Stop the server with Ctrl-C (SIGINT), SIGTERM or SIGHUP (nothing is reloaded).
)";
}

} // namespace vexa::host
