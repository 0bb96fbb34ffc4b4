// vexa-tool passwd: adds or replaces a user's line in a credentials file.
#include <vexa/host/AuthFile.h>
#include <vexa/host/ServerOptions.h>

#include <termios.h>
#include <unistd.h>

#include <iostream>
#include <string>

#include "Commands.h"

using vexa::host::AuthFile;
using vexa::host::UsageError;

namespace vexa::tool {

namespace {

// One line from standard input; without echo when it is a terminal.
bool readSecretLine(const char* prompt, std::string& line) {
    bool terminal = isatty(STDIN_FILENO) == 1;
    termios saved{};
    if (terminal) {
        std::cerr << prompt << std::flush;
        tcgetattr(STDIN_FILENO, &saved);
        termios quiet = saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    bool got = static_cast<bool>(std::getline(std::cin, line));
    if (terminal) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
        std::cerr << std::endl;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return got;
}

} // namespace

std::string passwdUsage() {
    return "vexa-tool passwd FILE USER\n"
           "  Reads a password (from the terminal without echo, or one line of standard "
           "input) and\n"
           "  adds or replaces USER's salted hash in FILE, the credentials file of "
           "vexa-cimserver --auth-file.\n";
}

int runPasswd(const std::vector<std::string>& arguments) {
    if (arguments.size() != 2) {
        throw UsageError("passwd needs FILE and USER");
    }
    const std::string& file = arguments[0];
    const std::string& user = arguments[1];
    try {
        AuthFile::checkUserName(user);
    } catch (const std::invalid_argument& error) {
        throw UsageError(std::string("passwd: ") + error.what());
    }
    std::string password;
    if (!readSecretLine("Password: ", password) || password.empty()) {
        std::cerr << "vexa-tool: no password given; nothing changed" << std::endl;
        return 1;
    }
    if (isatty(STDIN_FILENO) == 1) {
        std::string again;
        if (!readSecretLine("Again: ", again) || again != password) {
            std::cerr << "vexa-tool: the passwords differ; nothing changed" << std::endl;
            return 1;
        }
    }
    try {
        AuthFile::storeUser(file, user, AuthFile::hashPassword(password));
    } catch (const std::exception& error) {
        std::cerr << "vexa-tool: " << error.what() << std::endl;
        return 1;
    }
    std::cerr << "vexa-tool: stored the password of " << user << " in " << file << std::endl;
    return 0;
}

} // namespace vexa::tool
