// Used when the build names no platform. Assumes a POSIX system with a
// GCC-compatible compiler, which is all the layer itself relies on.
#ifndef Pegasus_Platform_GENERIC_h
#define Pegasus_Platform_GENERIC_h

#if defined(__linux__)
#include <Pegasus/Common/Platform_LINUX_COMMON.h>
#else
#include <limits.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>

#if defined(__GNUC__) && __GNUC__ >= 4
#define PEGASUS_EXPORT __attribute__((visibility("default")))
#define PEGASUS_IMPORT __attribute__((visibility("default")))
#define PEGASUS_HIDDEN_LINKAGE __attribute__((visibility("hidden")))
#endif

#define PEGASUS_UINT64 unsigned long long
#define PEGASUS_SINT64 long long
#endif

#endif
