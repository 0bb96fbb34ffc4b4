// The server's own messages (start-up, shutdown, delivery problems) go to
// the terminal's standard error, one whole line at a time even when threads
// write at once. The provider and the simulated cluster log separately,
// through ts_log.
#ifndef VEXA_HOST_SERVERLOG_H
#define VEXA_HOST_SERVERLOG_H

#include <string>

namespace vexa::host {

void logLine(const std::string& text);

// Sends whatever else the process writes to standard error (the provider's
// own lines among it) to the end of `path`; logLine keeps the terminal.
// False when the file cannot be opened.
bool sendStandardErrorTo(const std::string& path);

} // namespace vexa::host

#endif
