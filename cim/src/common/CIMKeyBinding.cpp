#include "ArrayImpl.h"
#include "KeyNumber.h"
#include "ReferenceKey.h"
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <string>
#include <type_traits>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMKeyBinding>;

namespace {

std::string utf8(const String& text) {
    return std::string(static_cast<const char*>(text.getCString()));
}

CIMKeyBinding::Type keyTypeFor(CIMType type) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return CIMKeyBinding::BOOLEAN;
    case CIMTYPE_CHAR16:
    case CIMTYPE_STRING:
    case CIMTYPE_DATETIME:
        return CIMKeyBinding::STRING;
    case CIMTYPE_REFERENCE:
        return CIMKeyBinding::REFERENCE;
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        throw TypeMismatchException();
    default:
        return CIMKeyBinding::NUMERIC;
    }
}

Boolean sameNumber(const String& x, const String& y) {
    std::string a = utf8(x);
    std::string b = utf8(y);
    Uint64 ua = 0;
    Uint64 ub = 0;
    if (parseUnsignedKeyNumber(a, ua) && parseUnsignedKeyNumber(b, ub))
        return ua == ub;
    Sint64 sa = 0;
    Sint64 sb = 0;
    if (parseSignedKeyNumber(a, true, sa) && parseSignedKeyNumber(b, true, sb))
        return sa == sb;
    return String::equal(x, y);
}

Boolean sameReference(const String& x, const String& y) {
    try {
        return CIMObjectPath(x) == CIMObjectPath(y);
    } catch (const Exception&) {
        return String::equal(x, y);
    }
}

template <class T>
bool readInteger(const std::string& text, CIMValue& value) {
    if constexpr (std::is_signed_v<T>) {
        Sint64 number = 0;
        if (!parseSignedKeyNumber(text, true, number) ||
            number < Sint64(std::numeric_limits<T>::min()) ||
            number > Sint64(std::numeric_limits<T>::max()))
            return false;
        value = CIMValue(T(number));
    } else {
        Uint64 number = 0;
        if (!parseUnsignedKeyNumber(text, number) || number > Uint64(std::numeric_limits<T>::max()))
            return false;
        value = CIMValue(T(number));
    }
    return true;
}

bool readReal(const std::string& text, Real64& number) {
    if (text.empty())
        return false;
    char* end = nullptr;
    errno = 0;
    number = std::strtod(text.c_str(), &end);
    return errno == 0 && end && *end == '\0';
}

// The key's text read as a value of the given type; false when it cannot be.
bool keyTextAsValue(const String& text, CIMType type, CIMValue& value) {
    std::string bytes = utf8(text);
    Real64 real = 0;
    switch (type) {
    case CIMTYPE_BOOLEAN:
        if (String::equalNoCase(text, "TRUE"))
            value = CIMValue(true);
        else if (String::equalNoCase(text, "FALSE"))
            value = CIMValue(false);
        else
            return false;
        return true;
    case CIMTYPE_UINT8:
        return readInteger<Uint8>(bytes, value);
    case CIMTYPE_SINT8:
        return readInteger<Sint8>(bytes, value);
    case CIMTYPE_UINT16:
        return readInteger<Uint16>(bytes, value);
    case CIMTYPE_SINT16:
        return readInteger<Sint16>(bytes, value);
    case CIMTYPE_UINT32:
        return readInteger<Uint32>(bytes, value);
    case CIMTYPE_SINT32:
        return readInteger<Sint32>(bytes, value);
    case CIMTYPE_UINT64:
        return readInteger<Uint64>(bytes, value);
    case CIMTYPE_SINT64:
        return readInteger<Sint64>(bytes, value);
    case CIMTYPE_REAL32:
        if (!readReal(bytes, real))
            return false;
        value = CIMValue(Real32(real));
        return true;
    case CIMTYPE_REAL64:
        if (!readReal(bytes, real))
            return false;
        value = CIMValue(real);
        return true;
    case CIMTYPE_CHAR16:
        // Only the first character is read: a Char16 property matches a
        // key whose text merely starts with it, as OpenPegasus does.
        if (text.size() == 0)
            return false;
        value = CIMValue(text[0]);
        return true;
    case CIMTYPE_STRING:
        value = CIMValue(text);
        return true;
    case CIMTYPE_DATETIME:
        value = CIMValue(CIMDateTime(text));
        return true;
    case CIMTYPE_REFERENCE:
        value = CIMValue(CIMObjectPath(text));
        return true;
    case CIMTYPE_OBJECT:
    case CIMTYPE_INSTANCE:
        return false;
    }
    return false;
}

} // namespace

CIMKeyBinding::CIMKeyBinding() : _rep(new CIMKeyBindingRep()) {}

CIMKeyBinding::CIMKeyBinding(const CIMKeyBinding& x) : _rep(new CIMKeyBindingRep(*x._rep)) {}

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const String& value, Type type)
    : _rep(new CIMKeyBindingRep()) {
    _rep->name = name;
    _rep->value = value;
    _rep->type = type;
}

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const CIMValue& value) : _rep(nullptr) {
    if (value.isArray())
        throw TypeMismatchException();
    Type type = keyTypeFor(value.getType());
    _rep = new CIMKeyBindingRep();
    _rep->name = name;
    _rep->type = type;
    if (type == REFERENCE && !value.isNull()) {
        CIMObjectPath path;
        value.get(path);
        _rep->value = referenceText(path, _rep->canonicalReference);
    } else {
        _rep->value = value.toString();
    }
}

CIMKeyBinding::~CIMKeyBinding() { delete _rep; }

CIMKeyBinding& CIMKeyBinding::operator=(const CIMKeyBinding& x) {
    if (this != &x)
        *_rep = *x._rep;
    return *this;
}

const CIMName& CIMKeyBinding::getName() const { return _rep->name; }

void CIMKeyBinding::setName(const CIMName& name) { _rep->name = name; }

const String& CIMKeyBinding::getValue() const { return _rep->value; }

void CIMKeyBinding::setValue(const String& value) {
    _rep->value = value;
    _rep->canonicalReference = false;
}

CIMKeyBinding::Type CIMKeyBinding::getType() const { return _rep->type; }

void CIMKeyBinding::setType(Type type) {
    _rep->type = type;
    _rep->canonicalReference = false;
}

Boolean CIMKeyBinding::equal(CIMValue value) {
    if (value.isArray() || value.getType() == CIMTYPE_OBJECT || value.getType() == CIMTYPE_INSTANCE)
        return false;
    if (keyTypeFor(value.getType()) != _rep->type)
        return false;
    try {
        CIMValue keyValue;
        return keyTextAsValue(_rep->value, value.getType(), keyValue) && keyValue.equal(value);
    } catch (const Exception&) {
        return false;
    }
}

Boolean operator==(const CIMKeyBinding& x, const CIMKeyBinding& y) {
    if (!x.getName().equal(y.getName()) || x.getType() != y.getType())
        return false;
    switch (x.getType()) {
    case CIMKeyBinding::REFERENCE:
        return sameReference(x.getValue(), y.getValue());
    case CIMKeyBinding::BOOLEAN:
        return String::equalNoCase(x.getValue(), y.getValue());
    case CIMKeyBinding::NUMERIC:
        return sameNumber(x.getValue(), y.getValue());
    case CIMKeyBinding::STRING:
        break;
    }
    return String::equal(x.getValue(), y.getValue());
}

PEGASUS_NAMESPACE_END
