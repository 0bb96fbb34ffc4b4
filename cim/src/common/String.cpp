#include "NullPointer.h"
#include "Utf8.h"

#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

// How strings' storage is made and shared; the layout is in String.h.
struct Rep {
    static StringRep* allocate(Uint32 capacity) {
        void* memory = ::operator new(sizeof(StringRep) + (std::size_t(capacity) + 1) * 2);
        StringRep* rep = new (memory) StringRep;
        rep->refs.store(1, std::memory_order_relaxed);
        rep->size = 0;
        rep->capacity = capacity;
        rep->data()[0] = 0;
        return rep;
    }

    static StringRep* make(const Char16* units, Uint32 n) {
        if (n == 0)
            return nullptr;
        StringRep* rep = allocate(n);
        std::memcpy(static_cast<void*>(rep->data()), units, std::size_t(n) * sizeof(Char16));
        rep->size = n;
        rep->data()[n] = 0;
        return rep;
    }

    static void retain(StringRep* rep) {
        if (rep)
            rep->refs.fetch_add(1, std::memory_order_relaxed);
    }

    static void release(StringRep* rep) {
        if (rep && rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            rep->~StringRep();
            ::operator delete(static_cast<void*>(rep));
        }
    }
};

const Char16 String::_noUnits[1] = {Char16()};

static_assert(sizeof(Char16) == 2, "a Char16 is one UTF-16 unit");
static_assert(sizeof(StringRep) % alignof(Char16) == 0, "units follow the header");

namespace {

// Makes `rep` unshared with room for `capacity` units, keeping its text.
StringRep* ownWithCapacity(StringRep* rep, Uint32 capacity) {
    Uint32 size = rep ? rep->size : 0;
    if (rep && rep->capacity >= capacity && rep->refs.load(std::memory_order_acquire) == 1)
        return rep;
    if (capacity < size)
        capacity = size;
    StringRep* fresh = Rep::allocate(capacity);
    if (rep) {
        std::memcpy(fresh->data(), rep->data(), std::size_t(size + 1) * sizeof(Char16));
        fresh->size = size;
    }
    Rep::release(rep);
    return fresh;
}

// Room for `needed` units, doubling so that repeated appends stay linear.
Uint32 grownCapacity(StringRep* rep, Uint64 needed) {
    Uint64 wanted = rep ? Uint64(rep->capacity) * 2 : 0;
    if (wanted < 16)
        wanted = 16;
    if (wanted < needed)
        wanted = needed;
    if (wanted > Uint32(-1) - 1)
        wanted = Uint32(-1) - 1;
    return Uint32(wanted);
}

// Decodes straight into the representation: names and most values are
// ASCII, which need neither a scratch buffer nor a second copy.
StringRep* fromUtf8(const char* bytes, Uint32 n) {
    if (n == 0)
        return nullptr;
    // UTF-16 never needs more units than UTF-8 needs bytes.
    StringRep* rep = Rep::allocate(n);
    Char16* units = rep->data();
    Uint32 ascii = 0;
    while (ascii < n && static_cast<unsigned char>(bytes[ascii]) < 0x80) {
        units[ascii] = Char16(Uint16(static_cast<unsigned char>(bytes[ascii])));
        ascii++;
    }
    Uint32 count = n;
    if (ascii < n) {
        try {
            count = decodeUtf8(bytes, n, units);
        } catch (...) {
            Rep::release(rep);
            throw;
        }
    }
    units[count] = 0;
    rep->size = count;
    // Multi-byte text leaves unused room; give it back when it is worth it.
    if (n - count > 8) {
        StringRep* exact = Rep::make(units, count);
        Rep::release(rep);
        return exact;
    }
    return rep;
}

Uint32 unitCount(const Char16* units) {
    Uint32 n = 0;
    while (Uint16(units[n]) != 0)
        n++;
    return n;
}

Uint16 foldAscii(Uint16 unit) {
    return (unit >= 'A' && unit <= 'Z') ? Uint16(unit + ('a' - 'A')) : unit;
}

// Compares at most `limit` units, stopping at an embedded NUL. A proper
// prefix orders first.
int compareUnits(const Char16* a, Uint32 sizeA, const Char16* b, Uint32 sizeB, Uint32 limit,
                 bool ignoreCase) {
    for (Uint32 i = 0; i < limit; i++) {
        if (i == sizeA || i == sizeB) {
            if (sizeA == sizeB)
                return 0;
            return i == sizeA ? -1 : 1;
        }
        Uint16 x = a[i];
        Uint16 y = b[i];
        if (ignoreCase) {
            x = foldAscii(x);
            y = foldAscii(y);
        }
        if (x != y)
            return int(x) - int(y);
        if (x == 0)
            return 0;
    }
    return 0;
}

} // namespace

const String String::EMPTY;

String::String() : _rep(nullptr) {}

String::String(const String& str) : _rep(str._rep) { Rep::retain(_rep); }

String::String(const String& str, Uint32 n) : _rep(nullptr) {
    if (n > str.size())
        throw IndexOutOfBoundsException();
    _rep = Rep::make(str.getChar16Data(), n);
}

String::String(const Char16* str) : _rep(nullptr) {
    if (!str)
        throw NullPointer();
    _rep = Rep::make(str, unitCount(str));
}

String::String(const Char16* str, Uint32 n) : _rep(nullptr) {
    if (!str)
        throw NullPointer();
    _rep = Rep::make(str, n);
}

String::String(const char* str) : _rep(nullptr) {
    if (!str)
        throw NullPointer();
    _rep = fromUtf8(str, Uint32(std::strlen(str)));
}

String::String(const char* str, Uint32 n) : _rep(nullptr) {
    if (!str)
        throw NullPointer();
    _rep = fromUtf8(str, n);
}

String::~String() { Rep::release(_rep); }

String& String::operator=(const String& str) { return assign(str); }

String& String::assign(const String& str) {
    if (_rep != str._rep) {
        Rep::retain(str._rep);
        Rep::release(_rep);
        _rep = str._rep;
    }
    return *this;
}

String& String::assign(const Char16* str) {
    String copy(str);
    std::swap(_rep, copy._rep);
    return *this;
}

String& String::assign(const Char16* str, Uint32 n) {
    String copy(str, n);
    std::swap(_rep, copy._rep);
    return *this;
}

String& String::assign(const char* str) {
    String copy(str);
    std::swap(_rep, copy._rep);
    return *this;
}

String& String::assign(const char* str, Uint32 n) {
    String copy(str, n);
    std::swap(_rep, copy._rep);
    return *this;
}

void String::clear() {
    Rep::release(_rep);
    _rep = nullptr;
}

void String::reserveCapacity(Uint32 capacity) { _rep = ownWithCapacity(_rep, capacity); }

CString String::getCString() const {
    const Char16* units = getChar16Data();
    Uint32 count = size();
    Uint32 ascii = 0;
    while (ascii < count && Uint16(units[ascii]) < 0x80)
        ascii++;
    if (ascii == count) {
        char* copy = new char[std::size_t(count) + 1];
        for (Uint32 i = 0; i < count; i++)
            copy[i] = static_cast<char>(Uint16(units[i]));
        copy[count] = '\0';
        return CString(copy);
    }
    std::string bytes = encodeUtf8(units, count);
    char* copy = new char[bytes.size() + 1];
    std::memcpy(copy, bytes.c_str(), bytes.size() + 1);
    return CString(copy);
}

Char16& String::operator[](Uint32 index) {
    if (index > size())
        throw IndexOutOfBoundsException();
    _rep = ownWithCapacity(_rep, size());
    return _rep->data()[index];
}

const Char16 String::operator[](Uint32 index) const {
    if (index > size())
        throw IndexOutOfBoundsException();
    return getChar16Data()[index];
}

String& String::append(const Char16& c) { return append(&c, 1); }

String& String::append(const Char16* str, Uint32 n) {
    if (n == 0)
        return *this;
    if (!str)
        throw NullPointer();
    Uint32 oldSize = size();
    Uint64 needed = Uint64(oldSize) + n;
    if (needed >= Uint32(-1))
        throw IndexOutOfBoundsException();
    if (!_rep || _rep->capacity < needed || _rep->refs.load(std::memory_order_acquire) != 1) {
        // Copy into a fresh buffer before letting go of the old one: `str`
        // may point into it.
        StringRep* fresh = Rep::allocate(grownCapacity(_rep, needed));
        if (oldSize)
            std::memcpy(fresh->data(), _rep->data(), std::size_t(oldSize) * sizeof(Char16));
        std::memcpy(fresh->data() + oldSize, str, std::size_t(n) * sizeof(Char16));
        fresh->size = Uint32(needed);
        fresh->data()[needed] = 0;
        Rep::release(_rep);
        _rep = fresh;
        return *this;
    }
    std::memmove(_rep->data() + oldSize, str, std::size_t(n) * sizeof(Char16));
    _rep->size = Uint32(needed);
    _rep->data()[needed] = 0;
    return *this;
}

String& String::append(const String& str) {
    if (&str != this)
        return append(str.getChar16Data(), str.size());
    // Appending a string to itself: its units must outlive the growth.
    String keep(str);
    return append(keep.getChar16Data(), keep.size());
}

void String::remove(Uint32 index, Uint32 n) {
    Uint32 count = size();
    if (n == PEG_NOT_FOUND) {
        if (index > count)
            throw IndexOutOfBoundsException();
        n = count - index;
    }
    if (Uint64(index) + n > count)
        throw IndexOutOfBoundsException();
    if (n == 0)
        return;
    _rep = ownWithCapacity(_rep, count);
    Char16* units = _rep->data();
    std::memmove(units + index, units + index + n,
                 std::size_t(count - index - n + 1) * sizeof(Char16));
    _rep->size = count - n;
}

String String::subString(Uint32 index, Uint32 n) const {
    Uint32 count = size();
    if (index >= count)
        return String();
    if (n > count - index)
        n = count - index;
    if (index == 0 && n == count)
        return *this;
    return String(getChar16Data() + index, n);
}

Uint32 String::find(Char16 c) const { return find(0, c); }

Uint32 String::find(Uint32 index, Char16 c) const {
    Uint32 count = size();
    if (index > count)
        throw IndexOutOfBoundsException();
    const Char16* units = getChar16Data();
    for (Uint32 i = index; i < count; i++) {
        if (units[i] == c)
            return i;
    }
    return PEG_NOT_FOUND;
}

Uint32 String::find(const String& s) const {
    Uint32 count = size();
    Uint32 length = s.size();
    if (length > count)
        return PEG_NOT_FOUND;
    const Char16* units = getChar16Data();
    const Char16* pattern = s.getChar16Data();
    for (Uint32 i = 0; i + length <= count; i++) {
        if (std::memcmp(units + i, pattern, std::size_t(length) * sizeof(Char16)) == 0)
            return i;
    }
    return PEG_NOT_FOUND;
}

Uint32 String::reverseFind(Char16 c) const {
    const Char16* units = getChar16Data();
    for (Uint32 i = size(); i > 0; i--) {
        if (units[i - 1] == c)
            return i - 1;
    }
    return PEG_NOT_FOUND;
}

void String::toLower() {
    Uint32 count = size();
    const Char16* units = getChar16Data();
    Uint32 first = 0;
    while (first < count && foldAscii(units[first]) == Uint16(units[first]))
        first++;
    if (first == count)
        return;
    _rep = ownWithCapacity(_rep, count);
    Char16* writable = _rep->data();
    for (Uint32 i = first; i < count; i++)
        writable[i] = foldAscii(writable[i]);
}

// The formatted bytes are UTF-8 like every other char* input, so invalid
// sequences throw here as they would in the constructor.
void String::appendPrintf(const char* format, ...) {
    char small[256];
    va_list args;
    va_start(args, format);
    int length = std::vsnprintf(small, sizeof(small), format, args);
    va_end(args);
    if (length <= 0)
        return;
    if (std::size_t(length) < sizeof(small)) {
        append(String(small, Uint32(length)));
        return;
    }
    std::vector<char> large(std::size_t(length) + 1);
    va_start(args, format);
    std::vsnprintf(large.data(), large.size(), format, args);
    va_end(args);
    append(String(large.data(), Uint32(length)));
}

int String::compare(const String& s1, const String& s2, Uint32 n) {
    return compareUnits(s1.getChar16Data(), s1.size(), s2.getChar16Data(), s2.size(), n, false);
}

int String::compare(const String& s1, const String& s2) {
    return compareUnits(s1.getChar16Data(), s1.size(), s2.getChar16Data(), s2.size(), PEG_NOT_FOUND,
                        false);
}

int String::compareNoCase(const String& s1, const String& s2) {
    return compareUnits(s1.getChar16Data(), s1.size(), s2.getChar16Data(), s2.size(), PEG_NOT_FOUND,
                        true);
}

Boolean String::equal(const String& s1, const String& s2) {
    if (s1._rep == s2._rep)
        return true;
    Uint32 count = s1.size();
    if (count != s2.size())
        return false;
    return std::memcmp(s1.getChar16Data(), s2.getChar16Data(), std::size_t(count) * 2) == 0;
}

Boolean String::equalNoCase(const String& s1, const String& s2) {
    // Interned names make this the common case.
    if (s1._rep == s2._rep)
        return true;
    Uint32 count = s1.size();
    if (count != s2.size())
        return false;
    const Char16* a = s1.getChar16Data();
    const Char16* b = s2.getChar16Data();
    // From the end: the names of one class share their prefix ("vexaFileset"
    // ...) and differ towards the end, and every property added to an
    // instance is compared with those it has.
    for (Uint32 i = count; i-- > 0;) {
        if (foldAscii(a[i]) != foldAscii(b[i]))
            return false;
    }
    return true;
}

Boolean operator==(const String& str1, const String& str2) { return String::equal(str1, str2); }

Boolean operator==(const String& str1, const char* str2) {
    return String::equal(str1, String(str2));
}

Boolean operator==(const char* str1, const String& str2) {
    return String::equal(String(str1), str2);
}

Boolean operator!=(const String& str1, const String& str2) { return !String::equal(str1, str2); }

std::ostream& operator<<(std::ostream& os, const String& str) {
    const Char16* units = str.getChar16Data();
    Uint32 count = str.size();
    for (Uint32 i = 0; i < count; i++) {
        Uint16 unit = units[i];
        if (unit < 256) {
            os.put(static_cast<char>(unit));
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof(escaped), "\\x%04X", static_cast<unsigned>(unit));
            os << escaped;
        }
    }
    return os;
}

String operator+(const String& str1, const String& str2) {
    String result;
    result.reserveCapacity(str1.size() + str2.size());
    result.append(str1);
    result.append(str2);
    return result;
}

Boolean operator<(const String& str1, const String& str2) {
    return String::compare(str1, str2) < 0;
}

Boolean operator<=(const String& str1, const String& str2) {
    return String::compare(str1, str2) <= 0;
}

Boolean operator>(const String& str1, const String& str2) {
    return String::compare(str1, str2) > 0;
}

Boolean operator>=(const String& str1, const String& str2) {
    return String::compare(str1, str2) >= 0;
}

PEGASUS_NAMESPACE_END
