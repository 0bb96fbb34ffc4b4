// Internal: the one door through which the library's own code reaches the
// representation behind a public handle, or wraps a representation in a new
// handle. Each public handle class names RepAccess as a friend.
#ifndef Pegasus_RepAccess_h
#define Pegasus_RepAccess_h

#include "SharedRep.h"
#include <Pegasus/Common/Config.h>

PEGASUS_NAMESPACE_BEGIN

class RepAccess {
public:
    template <class Handle>
    static auto rep(const Handle& handle) {
        return handle._rep;
    }

    // A new handle sharing rep (which may be null for an uninitialised one).
    template <class Handle, class Rep>
    static Handle wrap(Rep* rep) {
        Handle handle;
        retainRep(rep);
        handle._rep = rep;
        return handle;
    }

    // A new handle taking over a fresh representation's only reference.
    template <class Handle, class Rep>
    static Handle adopt(Rep* rep) {
        Handle handle;
        handle._rep = rep;
        return handle;
    }
};

PEGASUS_NAMESPACE_END

#endif
