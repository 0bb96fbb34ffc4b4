// Internal: thrown where a caller hands a null character pointer to the
// layer. Callers outside the library can only catch it as Exception.
#ifndef Pegasus_NullPointer_h
#define Pegasus_NullPointer_h

#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

class NullPointer : public Exception {
public:
    NullPointer();
};

PEGASUS_NAMESPACE_END

#endif
