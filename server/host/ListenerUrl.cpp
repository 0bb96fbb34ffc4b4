#include "vexa/host/ListenerUrl.h"

#include <cctype>

namespace vexa::host {

namespace {

[[noreturn]] void refuse(const std::string& text, const std::string& problem) {
    throw std::invalid_argument("listener URL '" + text + "' " + problem +
                                " (expected http://HOST:PORT/PATH, e.g. http://127.0.0.1:5990/)");
}

} // namespace

ListenerUrl parseListenerUrl(const std::string& text) {
    static const std::string scheme = "http://";
    if (text.compare(0, scheme.size(), scheme) != 0) {
        refuse(text, "must start with http://");
    }
    ListenerUrl url;
    url.text = text;
    std::string rest = text.substr(scheme.size());
    size_t slash = rest.find('/');
    std::string authority = rest.substr(0, slash);
    url.path = slash == std::string::npos ? "/" : rest.substr(slash);

    std::string portText;
    if (!authority.empty() && authority[0] == '[') {
        size_t close = authority.find(']');
        if (close == std::string::npos) {
            refuse(text, "has an unclosed '[' in its host");
        }
        url.host = authority.substr(1, close - 1);
        if (close + 1 < authority.size()) {
            if (authority[close + 1] != ':') {
                refuse(text, "has text after its host");
            }
            portText = authority.substr(close + 2);
        }
    } else {
        size_t colon = authority.rfind(':');
        url.host = authority.substr(0, colon);
        if (colon != std::string::npos) {
            portText = authority.substr(colon + 1);
        }
    }
    if (url.host.empty()) {
        refuse(text, "has no host");
    }
    if (url.host.find_first_of("@ \t") != std::string::npos) {
        refuse(text, "has a host with characters a host name cannot hold");
    }
    if (!portText.empty() || authority.back() == ':') {
        if (portText.empty() || portText.size() > 5) {
            refuse(text, "has an invalid port");
        }
        for (char c : portText) {
            if (!std::isdigit(static_cast<unsigned char>(c))) {
                refuse(text, "has an invalid port");
            }
        }
        url.port = std::stoi(portText);
        if (url.port < 1 || url.port > 65535) {
            refuse(text, "has a port outside 1-65535");
        }
    }
    return url;
}

} // namespace vexa::host
