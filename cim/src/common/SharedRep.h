// Internal: reference counting shared by the representations of the object
// classes. Counts are atomic so that copies of one handle may live on
// different threads.
#ifndef Pegasus_SharedRep_h
#define Pegasus_SharedRep_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <atomic>

PEGASUS_NAMESPACE_BEGIN

class SharedRep {
public:
    SharedRep() : refs(1) {}
    // A copied representation is a new object with a holder of its own.
    SharedRep(const SharedRep&) : refs(1) {}
    SharedRep& operator=(const SharedRep&) = delete;

    std::atomic<Uint32> refs;
};

template <class Rep>
inline void retainRep(Rep* rep) {
    if (rep)
        rep->refs.fetch_add(1, std::memory_order_relaxed);
}

template <class Rep>
inline void releaseRep(Rep* rep) {
    if (rep && rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete rep;
}

// Handles built by their default constructor have no representation; every
// member that needs one goes through this.
template <class Rep>
inline Rep* checkedRep(Rep* rep) {
    if (!rep)
        throw UninitializedObjectException();
    return rep;
}

// Points a handle's representation slot at another representation.
template <class Rep>
inline void assignRep(Rep*& slot, Rep* rep) {
    if (slot != rep) {
        retainRep(rep);
        releaseRep(slot);
        slot = rep;
    }
}

PEGASUS_NAMESPACE_END

#endif
