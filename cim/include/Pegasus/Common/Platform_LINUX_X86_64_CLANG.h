// Platform settings for x86-64 Linux built with clang.
#ifndef Pegasus_Platform_LINUX_X86_64_CLANG_h
#define Pegasus_Platform_LINUX_X86_64_CLANG_h

#include <Pegasus/Common/Platform_LINUX_COMMON.h>

#endif
