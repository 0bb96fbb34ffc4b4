// Basic types and macros every other header builds on.
#ifndef Pegasus_Config_h
#define Pegasus_Config_h

#if defined(PEGASUS_PLATFORM_LINUX_X86_64_GNU)
#include <Pegasus/Common/Platform_LINUX_X86_64_GNU.h>
#elif defined(PEGASUS_PLATFORM_LINUX_X86_64_CLANG)
#include <Pegasus/Common/Platform_LINUX_X86_64_CLANG.h>
#elif defined(PEGASUS_PLATFORM_LINUX_AARCH64_GNU)
#include <Pegasus/Common/Platform_LINUX_AARCH64_GNU.h>
#else
#include <Pegasus/Common/Platform_GENERIC.h>
#endif

#include <cstdlib>

#ifndef PEGASUS_EXPORT
#define PEGASUS_EXPORT
#endif
#ifndef PEGASUS_IMPORT
#define PEGASUS_IMPORT
#endif
#ifndef PEGASUS_HIDDEN_LINKAGE
#define PEGASUS_HIDDEN_LINKAGE
#endif

#define PEGASUS_NAMESPACE_BEGIN namespace Pegasus {
#define PEGASUS_NAMESPACE_END }
#define PEGASUS_USING_PEGASUS using namespace Pegasus
#define PEGASUS_USING_STD using namespace std
#define PEGASUS_NAMESPACE(X) Pegasus::X
#define PEGASUS_STD(X) std::X

#define PEGASUS_EXPLICIT

#define PEGASUS_SINT64_LITERAL(X) (Sint64(X##LL))
#define PEGASUS_UINT64_LITERAL(X) (Uint64(X##ULL))
#define PEGASUS_64BIT_CONVERSION_WIDTH "ll"

#if defined(__GNUC__)
#define PEGASUS_FORMAT(A1, A2) __attribute__((format(printf, A1, A2)))
#else
#define PEGASUS_FORMAT(A1, A2)
#endif

PEGASUS_NAMESPACE_BEGIN

typedef bool Boolean;
typedef unsigned char Uint8;
typedef signed char Sint8;
typedef unsigned short Uint16;
typedef signed short Sint16;
typedef unsigned int Uint32;
typedef signed int Sint32;
typedef PEGASUS_UINT64 Uint64;
typedef PEGASUS_SINT64 Sint64;
typedef float Real32;
typedef double Real64;

PEGASUS_NAMESPACE_END

#define PEG_NOT_FOUND Uint32(-1)

#endif
