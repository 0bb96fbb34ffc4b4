// Symbol visibility of the classes and functions of the common library.
#ifndef Pegasus_Common_Linkage_h
#define Pegasus_Common_Linkage_h

#include <Pegasus/Common/Config.h>

#ifndef PEGASUS_COMMON_LINKAGE
#ifdef PEGASUS_COMMON_INTERNAL
#define PEGASUS_COMMON_LINKAGE PEGASUS_EXPORT
#else
#define PEGASUS_COMMON_LINKAGE PEGASUS_IMPORT
#endif
#endif

#endif
