#include "HostName.h"
#include <arpa/inet.h>
#include <net/if.h>
#include <string>
#include <strings.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Four dot-separated decimal octets of at most three digits each; leading
// zeros are fine ("1.2.3.04").
bool isValidIPv4(const std::string& address) {
    std::size_t at = 0;
    for (int octet = 0; octet < 4; octet++) {
        if (octet && (at >= address.size() || address[at++] != '.'))
            return false;
        std::size_t digits = 0;
        unsigned value = 0;
        while (at < address.size() && isDigit(address[at]) && digits < 4) {
            value = value * 10 + unsigned(address[at++] - '0');
            digits++;
        }
        if (digits == 0 || digits > 3 || value > 255)
            return false;
    }
    return at == address.size();
}

// Dot-separated labels of letters, digits, '-' and '_', none starting with
// '-', and a last label that is not all digits (a top-level domain never is).
bool isValidDnsName(const std::string& name) {
    std::size_t at = 0;
    bool lastAllDigits = true;
    while (true) {
        if (at >= name.size() || !(isLetter(name[at]) || isDigit(name[at]) || name[at] == '_'))
            return false;
        lastAllDigits = true;
        while (at < name.size() &&
               (isLetter(name[at]) || isDigit(name[at]) || name[at] == '-' || name[at] == '_')) {
            if (!isDigit(name[at]))
                lastAllDigits = false;
            at++;
        }
        if (at < name.size() && name[at] == '.') {
            at++;
            continue;
        }
        return at == name.size() && !lastAllDigits;
    }
}

// A link-local address (fe80...) names its interface after a '%', and the
// interface must exist here.
bool isValidIPv6(std::string address) {
    if (address.find(':') == std::string::npos)
        return false;
    if (address.size() >= 4 && strncasecmp(address.c_str(), "fe80", 4) == 0) {
        std::size_t percent = address.find('%');
        if (percent == std::string::npos ||
            if_nametoindex(address.substr(percent + 1).c_str()) == 0)
            return false;
        address.erase(percent);
    }
    in6_addr parsed;
    return inet_pton(AF_INET6, address.c_str(), &parsed) == 1;
}

// An empty port after the ':' counts as no port; leading zeros are fine.
bool isValidPort(const std::string& port) {
    unsigned long value = 0;
    for (char c : port) {
        if (!isDigit(c))
            return false;
        value = value * 10 + unsigned(c - '0');
        if (value > 65535)
            return false;
    }
    return true;
}

} // namespace

bool isValidHostName(const String& host) {
    std::string text(static_cast<const char*>(host.getCString()));
    std::string rest;
    if (!text.empty() && text[0] == '[') {
        std::size_t close = text.find(']');
        if (close == std::string::npos || !isValidIPv6(text.substr(1, close - 1)))
            return false;
        rest = text.substr(close + 1);
    } else {
        std::size_t colon = text.find(':');
        std::string address = text.substr(0, colon);
        if (!isValidIPv4(address) && !isValidDnsName(address))
            return false;
        rest = colon == std::string::npos ? std::string() : text.substr(colon);
    }
    return rest.empty() || (rest[0] == ':' && isValidPort(rest.substr(1)));
}

PEGASUS_NAMESPACE_END
