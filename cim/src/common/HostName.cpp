#include "HostName.h"
#include <arpa/inet.h>
#include <string>

PEGASUS_NAMESPACE_BEGIN

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isValidPort(const std::string& port) {
    if (port.empty() || port.size() > 5)
        return false;
    unsigned long value = 0;
    for (char c : port) {
        if (!isDigit(c))
            return false;
        value = value * 10 + unsigned(c - '0');
    }
    return value <= 65535;
}

bool isValidIPv4(const std::string& address) {
    int parts = 0;
    std::size_t start = 0;
    while (true) {
        std::size_t dot = address.find('.', start);
        std::string part = address.substr(start, dot == std::string::npos ? dot : dot - start);
        if (part.empty() || part.size() > 3 || std::stoi(part) > 255)
            return false;
        parts++;
        if (dot == std::string::npos)
            break;
        start = dot + 1;
    }
    return parts == 4;
}

bool isValidDnsName(const std::string& name) {
    std::size_t start = 0;
    while (true) {
        std::size_t dot = name.find('.', start);
        std::string label = name.substr(start, dot == std::string::npos ? dot : dot - start);
        if (label.empty() || label[0] == '-')
            return false;
        for (char c : label) {
            if (!isLetter(c) && !isDigit(c) && c != '-' && c != '_')
                return false;
        }
        if (dot == std::string::npos)
            return true;
        start = dot + 1;
    }
}

} // namespace

bool isValidHostName(const String& host) {
    std::string text(static_cast<const char*>(host.getCString()));
    if (text.empty())
        return false;

    std::string address;
    std::string rest;
    if (text[0] == '[') {
        std::size_t close = text.find(']');
        if (close == std::string::npos)
            return false;
        address = text.substr(1, close - 1);
        rest = text.substr(close + 1);
        in6_addr parsed;
        if (inet_pton(AF_INET6, address.c_str(), &parsed) != 1)
            return false;
    } else {
        std::size_t colon = text.find(':');
        address = text.substr(0, colon);
        rest = colon == std::string::npos ? std::string() : text.substr(colon);
        bool dottedDigits = address.find_first_not_of("0123456789.") == std::string::npos;
        if (dottedDigits ? !isValidIPv4(address) : !isValidDnsName(address))
            return false;
    }
    if (rest.empty())
        return true;
    return rest[0] == ':' && isValidPort(rest.substr(1));
}

PEGASUS_NAMESPACE_END
