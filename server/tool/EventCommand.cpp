// vexa-tool event: sends events to the simulated cluster of a running server.
#include <qzsim/SimControl.h>
#include <vexa/host/ServerOptions.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "Commands.h"

using vexa::host::UsageError;

namespace vexa::tool {

namespace {

// Sends one event; prints and counts a refusal.
bool sendOne(const std::string& socket, const std::string& json, const std::string& where) {
    std::string reply = qzsim::sendEventText(socket, json);
    if (reply == "ok") {
        return true;
    }
    std::cerr << "vexa-tool: " << where << reply << std::endl;
    return false;
}

} // namespace

std::string eventUsage() {
    return "vexa-tool event [--socket PATH] JSON...\n"
           "vexa-tool event [--socket PATH] --file FILE\n"
           "  Sends events, each one JSON object such as "
           "'{\"type\": \"mount\", \"node\": \"node1\", \"fs\": \"fs1\"}',\n"
           "  to the simulated cluster of a running vexa-cimserver. --file reads one object "
           "per line\n"
           "  (empty lines and lines starting with # are skipped). PATH is the event socket "
           "the\n"
           "  server printed at start; default $QZSIM_EVENT_SOCKET.\n";
}

int runEvent(const std::vector<std::string>& arguments) {
    std::string socket;
    std::string file;
    std::vector<std::string> events;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--socket" || argument == "--file") {
            if (i + 1 >= arguments.size() || arguments[i + 1].empty()) {
                throw UsageError(argument + " needs a value");
            }
            (argument == "--socket" ? socket : file) = arguments[++i];
        } else if (argument.compare(0, 2, "--") == 0) {
            throw UsageError("event: unknown option '" + argument + "'");
        } else {
            events.push_back(argument);
        }
    }
    if (socket.empty()) {
        const char* fromEnvironment = std::getenv("QZSIM_EVENT_SOCKET");
        socket = fromEnvironment != nullptr ? fromEnvironment : "";
    }
    if (socket.empty()) {
        throw UsageError("event: give --socket PATH (vexa-cimserver prints its event socket "
                         "at start)");
    }
    if (events.empty() == file.empty()) {
        throw UsageError("event: give either JSON events or --file FILE");
    }

    int refused = 0;
    try {
        if (!file.empty()) {
            std::ifstream in(file);
            if (!in) {
                std::cerr << "vexa-tool: " << file << ": cannot read the file" << std::endl;
                return 1;
            }
            std::string line;
            unsigned number = 0;
            while (std::getline(in, line)) {
                ++number;
                if (line.find_first_not_of(" \t\r") == std::string::npos || line[0] == '#') {
                    continue;
                }
                std::string where = file + ":" + std::to_string(number) + ": ";
                refused += sendOne(socket, line, where) ? 0 : 1;
            }
        } else {
            for (const std::string& json : events) {
                refused += sendOne(socket, json, "") ? 0 : 1;
            }
        }
    } catch (const std::runtime_error& error) {
        std::cerr << "vexa-tool: " << error.what() << " (is vexa-cimserver running?)" << std::endl;
        return 1;
    }
    return refused == 0 ? 0 : 1;
}

} // namespace vexa::tool
