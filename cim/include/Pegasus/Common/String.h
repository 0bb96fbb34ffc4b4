// Text as UTF-16 code units with value semantics; UTF-8 at the char* edges.
#ifndef Pegasus_String_h
#define Pegasus_String_h

#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <atomic>
#include <cstdarg>
#include <iostream>

PEGASUS_NAMESPACE_BEGIN

class String;

// The head of a string's storage: the units follow it and end in a NUL
// unit. Laid out here only so that size() and getChar16Data(), called for
// nearly every text written or compared, are inline; String alone makes
// and changes it.
struct StringRep {
    std::atomic<Uint32> refs;
    Uint32 size;
    Uint32 capacity;

    Char16* data() { return reinterpret_cast<Char16*>(this + 1); }
    const Char16* data() const { return reinterpret_cast<const Char16*>(this + 1); }
};

// An owned, NUL-terminated UTF-8 copy of a String. Only String makes
// non-null ones; the bytes die with the object.
class PEGASUS_COMMON_LINKAGE CString {
public:
    CString();
    CString(const CString& cstr);
    ~CString();
    CString& operator=(const CString& cstr);
    operator const char*() const;

private:
    CString(char* cstr);
    friend class String;
    char* _rep;
};

class PEGASUS_COMMON_LINKAGE String {
public:
    static const String EMPTY;

    String();
    String(const String& str);
    String(const String& str, Uint32 n);
    String(const Char16* str);
    String(const Char16* str, Uint32 n);
    String(const char* str);
    String(const char* str, Uint32 n);
    // A string moved from is left empty.
    String(String&& str) noexcept : _rep(str._rep) { str._rep = nullptr; }
    ~String();

    String& operator=(const String& str);
    String& operator=(String&& str) noexcept {
        StringRep* mine = _rep;
        _rep = str._rep;
        str._rep = mine;
        return *this;
    }
    String& assign(const String& str);
    String& assign(const Char16* str);
    String& assign(const Char16* str, Uint32 n);
    String& assign(const char* str);
    String& assign(const char* str, Uint32 n);
    void clear();
    void reserveCapacity(Uint32 capacity);

    Uint32 size() const { return _rep ? _rep->size : 0; }
    const Char16* getChar16Data() const { return _rep ? _rep->data() : _noUnits; }
    CString getCString() const;
    Char16& operator[](Uint32 index);
    const Char16 operator[](Uint32 index) const;

    String& append(const Char16& c);
    String& append(const Char16* str, Uint32 n);
    String& append(const String& str);
    void remove(Uint32 index, Uint32 size = PEG_NOT_FOUND);
    String subString(Uint32 index, Uint32 n = PEG_NOT_FOUND) const;

    Uint32 find(Char16 c) const;
    Uint32 find(Uint32 index, Char16 c) const;
    Uint32 find(const String& s) const;
    Uint32 reverseFind(Char16 c) const;

    void toLower();
    void appendPrintf(const char* format, ...) PEGASUS_FORMAT(2, 3);

    static int compare(const String& s1, const String& s2, Uint32 n);
    static int compare(const String& s1, const String& s2);
    static int compareNoCase(const String& s1, const String& s2);
    static Boolean equal(const String& s1, const String& s2);
    static Boolean equalNoCase(const String& s1, const String& s2);

private:
    static const Char16 _noUnits[1];
    StringRep* _rep;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator==(const String& str1, const char* str2);
PEGASUS_COMMON_LINKAGE Boolean operator==(const char* str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE PEGASUS_STD(ostream) & operator<<(PEGASUS_STD(ostream) & os,
                                                         const String& str);
PEGASUS_COMMON_LINKAGE String operator+(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator<(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator<=(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator>(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator>=(const String& str1, const String& str2);

PEGASUS_NAMESPACE_END

#endif
