// Platform settings for aarch64 Linux built with GCC.
#ifndef Pegasus_Platform_LINUX_AARCH64_GNU_h
#define Pegasus_Platform_LINUX_AARCH64_GNU_h

#include <Pegasus/Common/Platform_LINUX_COMMON.h>

#endif
