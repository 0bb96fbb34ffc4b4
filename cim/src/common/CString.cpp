#include <Pegasus/Common/String.h>
#include <cstring>

PEGASUS_NAMESPACE_BEGIN

namespace {

char* duplicate(const char* bytes) {
    if (!bytes)
        return nullptr;
    std::size_t length = std::strlen(bytes) + 1;
    char* copy = new char[length];
    std::memcpy(copy, bytes, length);
    return copy;
}

} // namespace

CString::CString() : _rep(nullptr) {}

CString::CString(char* cstr) : _rep(cstr) {}

CString::CString(const CString& cstr) : _rep(duplicate(cstr._rep)) {}

CString::~CString() { delete[] _rep; }

CString& CString::operator=(const CString& cstr) {
    if (this != &cstr) {
        char* copy = duplicate(cstr._rep);
        delete[] _rep;
        _rep = copy;
    }
    return *this;
}

CString::operator const char*() const { return _rep; }

PEGASUS_NAMESPACE_END
