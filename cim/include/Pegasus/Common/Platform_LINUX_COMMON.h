// Settings shared by every Linux platform header. Provider code has been known
// to compile only because these system headers come in through Config.h, so
// they stay here even where the layer itself does not need them.
#ifndef Pegasus_Platform_LINUX_COMMON_h
#define Pegasus_Platform_LINUX_COMMON_h

#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#ifndef _REENTRANT
#define _REENTRANT
#endif
#ifndef _THREAD_SAFE
#define _THREAD_SAFE
#endif

#include <features.h>
#include <limits.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/param.h>

#define PEGASUS_OS_TYPE_UNIX
#define PEGASUS_OS_LINUX

#if defined(__GNUC__) && __GNUC__ >= 4
#define PEGASUS_EXPORT __attribute__((visibility("default")))
#define PEGASUS_IMPORT __attribute__((visibility("default")))
#define PEGASUS_HIDDEN_LINKAGE __attribute__((visibility("hidden")))
#endif

#define PEGASUS_UINT64 unsigned long long
#define PEGASUS_SINT64 long long

#endif
