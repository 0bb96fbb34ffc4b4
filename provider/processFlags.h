// Access to the process-wide flags shared by request threads, the refresh
// thread and the event thread.
//
// The flags are plain variables of their documented types; reading and
// writing them through acquire and release atomic built-ins keeps each access whole
// and ordered without changing those types or adding a lock.
#ifndef VEXA_PROVIDER_PROCESSFLAGS_H
#define VEXA_PROVIDER_PROCESSFLAGS_H

template <class T>
inline T loadFlag(const T& flag) {
    return __atomic_load_n(&flag, __ATOMIC_ACQUIRE);
}

template <class T>
inline void storeFlag(T& flag, T value) {
    __atomic_store_n(&flag, value, __ATOMIC_RELEASE);
}

#endif
