// Platform settings for x86-64 Linux built with GCC.
#ifndef Pegasus_Platform_LINUX_X86_64_GNU_h
#define Pegasus_Platform_LINUX_X86_64_GNU_h

#include <Pegasus/Common/Platform_LINUX_COMMON.h>

#endif
