// vexa-tool: companion programs of vexa-cimserver.
#include <vexa/host/ServerOptions.h>

#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"

namespace {

std::string usage() {
    return "Usage: vexa-tool COMMAND [ARGUMENT]...\n\n" + vexa::tool::listenUsage() + "\n" +
           vexa::tool::passwdUsage() + "\n" + vexa::tool::eventUsage();
}

} // namespace

int main(int argc, char* argv[]) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty()) {
        std::cerr << usage();
        return 2;
    }
    std::string command = arguments[0];
    arguments.erase(arguments.begin());
    if (command == "-h" || command == "--help" || command == "help") {
        std::cout << usage();
        return 0;
    }
    try {
        if (command == "listen") {
            return vexa::tool::runListen(arguments);
        }
        if (command == "passwd") {
            return vexa::tool::runPasswd(arguments);
        }
        if (command == "event") {
            return vexa::tool::runEvent(arguments);
        }
        throw vexa::host::UsageError("unknown command '" + command + "'");
    } catch (const vexa::host::UsageError& error) {
        std::cerr << "vexa-tool: " << error.what() << "\nTry 'vexa-tool --help'." << std::endl;
        return 2;
    }
}
