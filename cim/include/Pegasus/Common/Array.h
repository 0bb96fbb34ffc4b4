// Public entry point for Array<T>.
#ifndef Pegasus_Array_h
#define Pegasus_Array_h

#include <Pegasus/Common/ArrayInter.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>

#endif
