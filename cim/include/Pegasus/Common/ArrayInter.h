// The Array class template. Its member definitions are compiled into the
// library for a fixed set of element types only; an Array of any other type
// compiles but does not link, which keeps provider code honest about what
// the CIM layer offers.
#ifndef Pegasus_ArrayInter_h
#define Pegasus_ArrayInter_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

template <class T>
struct ArrayRep;

template <class T>
class Array {
public:
    Array();
    Array(const Array<T>& x);
    Array(Uint32 size);
    Array(Uint32 size, const T& x);
    Array(const T* items, Uint32 size);
    ~Array();

    Array<T>& operator=(const Array<T>& x);
    void clear();
    void reserveCapacity(Uint32 capacity);
    void grow(Uint32 size, const T& x);
    void swap(Array<T>& x);

    Uint32 size() const;
    Uint32 getCapacity() const;
    const T* getData() const;
    T& operator[](Uint32 index);
    const T& operator[](Uint32 index) const;

    void append(const T& x);
    void append(const T* x, Uint32 size);
    void appendArray(const Array<T>& x);
    void prepend(const T& x);
    void prepend(const T* x, Uint32 size);
    void insert(Uint32 index, const T& x);
    void insert(Uint32 index, const T* x, Uint32 size);
    void remove(Uint32 index);
    void remove(Uint32 index, Uint32 size);

private:
    ArrayRep<T>* _rep;
};

PEGASUS_NAMESPACE_END

#endif
