// The server's own messages (start-up, shutdown, delivery problems) go to
// standard error, one whole line at a time even when threads write at once.
// The provider and the simulated cluster log separately, through ts_log.
#ifndef VEXA_HOST_SERVERLOG_H
#define VEXA_HOST_SERVERLOG_H

#include <string>

namespace vexa::host {

void logLine(const std::string& text);

} // namespace vexa::host

#endif
