// The address of an indication listener, as given with --listener.
#ifndef VEXA_HOST_LISTENERURL_H
#define VEXA_HOST_LISTENERURL_H

#include <stdexcept>
#include <string>

namespace vexa::host {

struct ListenerUrl {
    std::string text; // as the user wrote it, for messages
    std::string host;
    int port = 80;
    std::string path = "/";
};

// Parses "http://HOST[:PORT][/PATH]". Throws std::invalid_argument saying
// what is wrong, e.g. "listener URL 'ftp://x' must start with http://".
ListenerUrl parseListenerUrl(const std::string& text);

} // namespace vexa::host

#endif
