// Internal: member definitions of Array<T>. A .cpp that owns an element type
// includes this header and instantiates the array for it:
//
//     #include "ArrayImpl.h"
//     PEGASUS_NAMESPACE_BEGIN
//     template class Array<CIMInstance>;
//     PEGASUS_NAMESPACE_END
//
// Storage is shared between copies and copied (element by element, with the
// element's own copy constructor) before the first change through a copy.
#ifndef Pegasus_ArrayImpl_h
#define Pegasus_ArrayImpl_h

#include <Pegasus/Common/ArrayInter.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <atomic>
#include <cstddef>
#include <functional>
#include <new>
#include <utility>

PEGASUS_NAMESPACE_BEGIN

template <class T>
struct ArrayRep {
    std::atomic<Uint32> refs;
    Uint32 size;
    Uint32 capacity;

    static constexpr std::size_t dataOffset() {
        return (sizeof(ArrayRep) + alignof(T) - 1) / alignof(T) * alignof(T);
    }

    T* data() { return reinterpret_cast<T*>(reinterpret_cast<char*>(this) + dataOffset()); }

    static ArrayRep* allocate(Uint32 capacity) {
        void* memory = ::operator new(dataOffset() + sizeof(T) * std::size_t(capacity));
        ArrayRep* rep = new (memory) ArrayRep;
        rep->refs.store(1, std::memory_order_relaxed);
        rep->size = 0;
        rep->capacity = capacity;
        return rep;
    }

    // Frees a rep nobody else refers to, destroying its elements.
    static void destroy(ArrayRep* rep) {
        T* items = rep->data();
        for (Uint32 i = 0; i < rep->size; i++)
            items[i].~T();
        rep->~ArrayRep();
        ::operator delete(static_cast<void*>(rep));
    }

    static void retain(ArrayRep* rep) {
        if (rep)
            rep->refs.fetch_add(1, std::memory_order_relaxed);
    }

    static void release(ArrayRep* rep) {
        if (rep && rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            destroy(rep);
    }

    static bool shared(const ArrayRep* rep) {
        return rep->refs.load(std::memory_order_acquire) > 1;
    }

    // Capacity for at least `needed` elements, growing geometrically so that
    // repeated appends stay linear overall. Grown from the size, not the
    // capacity: an array whose storage is shared is copied on every append,
    // and doubling the capacity each time would reach gigabytes within a few
    // dozen appends.
    static Uint32 grownCapacity(const ArrayRep* rep, Uint64 needed) {
        Uint64 current = rep ? rep->size : 0;
        Uint64 wanted = current * 2;
        if (wanted < 8)
            wanted = 8;
        if (wanted < needed)
            wanted = needed;
        if (wanted > Uint32(-1))
            wanted = Uint32(-1);
        return Uint32(wanted);
    }

    // Builds a new rep of the given capacity holding `old`'s elements with
    // `count` copies of `items` placed at `index`. The new items are copied
    // first, because they may live inside `old` and the old elements are
    // moved (not copied) when `old` has no other owner. `old` is released.
    // On an exception `old` is left as it was.
    static ArrayRep* splice(ArrayRep* old, Uint32 index, const T* items, Uint32 count,
                            Uint32 capacity) {
        Uint32 oldSize = old ? old->size : 0;
        ArrayRep* rep = allocate(capacity);
        T* target = rep->data();
        // Elements are constructed out of order, so track them separately
        // from rep->size until all of them exist.
        Uint32 builtItems = 0;
        Uint32 builtHead = 0;
        Uint32 builtTail = 0;
        try {
            for (; builtItems < count; builtItems++)
                new (target + index + builtItems) T(items[builtItems]);
            if (old) {
                T* source = old->data();
                bool steal = !shared(old);
                for (; builtHead < index; builtHead++) {
                    if (steal)
                        new (target + builtHead) T(std::move(source[builtHead]));
                    else
                        new (target + builtHead) T(source[builtHead]);
                }
                for (; index + builtTail < oldSize; builtTail++) {
                    Uint32 from = index + builtTail;
                    if (steal)
                        new (target + from + count) T(std::move(source[from]));
                    else
                        new (target + from + count) T(source[from]);
                }
            }
        } catch (...) {
            for (Uint32 i = 0; i < builtItems; i++)
                target[index + i].~T();
            for (Uint32 i = 0; i < builtHead; i++)
                target[i].~T();
            for (Uint32 i = 0; i < builtTail; i++)
                target[index + count + i].~T();
            rep->size = 0;
            destroy(rep);
            throw;
        }
        rep->size = oldSize + count;
        release(old);
        return rep;
    }

    // Appends `count` copies of `value` to a rep that has room and no other
    // owner; rep->size counts exactly the constructed elements throughout.
    static void fill(ArrayRep* rep, Uint32 count, const T& value) {
        T* items = rep->data();
        for (Uint32 i = 0; i < count; i++) {
            new (items + rep->size) T(value);
            rep->size++;
        }
    }
};

template <class T>
inline const T* emptyArrayData() {
    // Never dereferenced (the array is empty), but must not be null: callers
    // hand getData() on to functions that reject null pointers.
    alignas(alignof(std::max_align_t) > alignof(T)
                ? alignof(std::max_align_t)
                : alignof(T)) static const unsigned char storage[sizeof(T)] = {};
    return reinterpret_cast<const T*>(storage);
}

template <class T>
Array<T>::Array() : _rep(nullptr) {}

template <class T>
Array<T>::Array(const Array<T>& x) : _rep(x._rep) {
    ArrayRep<T>::retain(_rep);
}

template <class T>
Array<T>::Array(Uint32 size) : _rep(nullptr) {
    if (size == 0)
        return;
    _rep = ArrayRep<T>::allocate(size);
    try {
        T* items = _rep->data();
        while (_rep->size < size) {
            new (items + _rep->size) T();
            _rep->size++;
        }
    } catch (...) {
        ArrayRep<T>::destroy(_rep);
        throw;
    }
}

template <class T>
Array<T>::Array(Uint32 size, const T& x) : _rep(nullptr) {
    if (size == 0)
        return;
    _rep = ArrayRep<T>::allocate(size);
    try {
        ArrayRep<T>::fill(_rep, size, x);
    } catch (...) {
        ArrayRep<T>::destroy(_rep);
        throw;
    }
}

template <class T>
Array<T>::Array(const T* items, Uint32 size) : _rep(nullptr) {
    if (size != 0)
        _rep = ArrayRep<T>::splice(nullptr, 0, items, size, size);
}

template <class T>
Array<T>::~Array() {
    ArrayRep<T>::release(_rep);
}

template <class T>
Array<T>& Array<T>::operator=(const Array<T>& x) {
    if (_rep != x._rep) {
        ArrayRep<T>::retain(x._rep);
        ArrayRep<T>::release(_rep);
        _rep = x._rep;
    }
    return *this;
}

template <class T>
void Array<T>::clear() {
    ArrayRep<T>::release(_rep);
    _rep = nullptr;
}

template <class T>
void Array<T>::reserveCapacity(Uint32 capacity) {
    if (!_rep) {
        if (capacity != 0)
            _rep = ArrayRep<T>::allocate(capacity);
        return;
    }
    if (capacity > _rep->capacity || ArrayRep<T>::shared(_rep)) {
        Uint32 keep = capacity > _rep->capacity ? capacity : _rep->capacity;
        _rep = ArrayRep<T>::splice(_rep, _rep->size, nullptr, 0, keep);
    }
}

template <class T>
void Array<T>::grow(Uint32 size, const T& x) {
    if (size == 0)
        return;
    // x may be one of our own elements, which a reallocation would move.
    T value(x);
    Uint64 needed = Uint64(this->size()) + size;
    if (!_rep || ArrayRep<T>::shared(_rep) || needed > _rep->capacity) {
        Uint32 capacity = ArrayRep<T>::grownCapacity(_rep, needed);
        _rep = ArrayRep<T>::splice(_rep, this->size(), nullptr, 0, capacity);
    }
    ArrayRep<T>::fill(_rep, size, value);
}

template <class T>
void Array<T>::swap(Array<T>& x) {
    std::swap(_rep, x._rep);
}

template <class T>
Uint32 Array<T>::size() const {
    return _rep ? _rep->size : 0;
}

template <class T>
Uint32 Array<T>::getCapacity() const {
    return _rep ? _rep->capacity : 0;
}

template <class T>
const T* Array<T>::getData() const {
    return _rep ? _rep->data() : emptyArrayData<T>();
}

template <class T>
T& Array<T>::operator[](Uint32 index) {
    if (index >= size())
        throw IndexOutOfBoundsException();
    if (ArrayRep<T>::shared(_rep))
        _rep = ArrayRep<T>::splice(_rep, _rep->size, nullptr, 0, _rep->capacity);
    return _rep->data()[index];
}

template <class T>
const T& Array<T>::operator[](Uint32 index) const {
    if (index >= size())
        throw IndexOutOfBoundsException();
    return _rep->data()[index];
}

template <class T>
void Array<T>::append(const T& x) {
    if (_rep && !ArrayRep<T>::shared(_rep) && _rep->size < _rep->capacity) {
        new (_rep->data() + _rep->size) T(x);
        _rep->size++;
        return;
    }
    Uint32 capacity = ArrayRep<T>::grownCapacity(_rep, Uint64(size()) + 1);
    _rep = ArrayRep<T>::splice(_rep, size(), &x, 1, capacity);
}

template <class T>
void Array<T>::append(const T* x, Uint32 size) {
    if (size == 0)
        return;
    Uint64 needed = Uint64(this->size()) + size;
    if (_rep && !ArrayRep<T>::shared(_rep) && needed <= _rep->capacity) {
        // The source may be our own elements; those stay where they are.
        T* items = _rep->data();
        for (Uint32 i = 0; i < size; i++) {
            new (items + _rep->size) T(x[i]);
            _rep->size++;
        }
        return;
    }
    Uint32 capacity = ArrayRep<T>::grownCapacity(_rep, needed);
    _rep = ArrayRep<T>::splice(_rep, this->size(), x, size, capacity);
}

template <class T>
void Array<T>::appendArray(const Array<T>& x) {
    // Hold on to x's storage: when x is *this, appending may replace it.
    Array<T> source(x);
    append(source.getData(), source.size());
}

template <class T>
void Array<T>::prepend(const T& x) {
    insert(0, &x, 1);
}

template <class T>
void Array<T>::prepend(const T* x, Uint32 size) {
    insert(0, x, size);
}

template <class T>
void Array<T>::insert(Uint32 index, const T& x) {
    insert(index, &x, 1);
}

template <class T>
void Array<T>::insert(Uint32 index, const T* x, Uint32 size) {
    if (index > this->size())
        throw IndexOutOfBoundsException();
    if (size == 0)
        return;
    Uint32 capacity = ArrayRep<T>::grownCapacity(_rep, Uint64(this->size()) + size);
    _rep = ArrayRep<T>::splice(_rep, index, x, size, capacity);
}

template <class T>
void Array<T>::remove(Uint32 index) {
    remove(index, 1);
}

template <class T>
void Array<T>::remove(Uint32 index, Uint32 size) {
    if (size == 0)
        return;
    Uint32 count = this->size();
    // Removing from the last element takes just that element, however many
    // were asked for; callers have come to depend on it.
    if (count != 0 && index == count - 1)
        size = 1;
    else if (Uint64(index) + size > count)
        throw IndexOutOfBoundsException();
    if (ArrayRep<T>::shared(_rep))
        _rep = ArrayRep<T>::splice(_rep, count, nullptr, 0, _rep->capacity);
    T* items = _rep->data();
    for (Uint32 i = index; i + size < count; i++)
        items[i] = std::move(items[i + size]);
    for (Uint32 i = count - size; i < count; i++)
        items[i].~T();
    _rep->size = count - size;
}

PEGASUS_NAMESPACE_END

#endif
