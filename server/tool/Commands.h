// The subcommands of vexa-tool. Each takes the arguments after its name and
// returns the exit status; a UsageError from vexa/host/ServerOptions.h means
// the arguments were wrong (exit status 2).
#ifndef VEXA_TOOL_COMMANDS_H
#define VEXA_TOOL_COMMANDS_H

#include <string>
#include <vector>

namespace vexa::tool {

int runListen(const std::vector<std::string>& arguments);
int runPasswd(const std::vector<std::string>& arguments);
int runEvent(const std::vector<std::string>& arguments);

std::string listenUsage();
std::string passwdUsage();
std::string eventUsage();

} // namespace vexa::tool

#endif
