// A TCP port served by one process only.
#ifndef VEXA_HOST_EXCLUSIVEPORT_H
#define VEXA_HOST_EXCLUSIVEPORT_H

#include <httplib.h>

namespace vexa::host {

// httplib's default options let a second process bind a port that is
// already served, and the kernel then splits the connections between the
// two. These keep only the quick rebind after a restart.
void useExclusivePort(httplib::Server& server);

} // namespace vexa::host

#endif
