#include "MofLiteral.h"

#include "Names.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>

#include <vexa/schema/SchemaRepository.h>

#include <cerrno>
#include <cstdlib>
#include <limits>

PEGASUS_USING_PEGASUS;

namespace vexa::schema::detail {

namespace {

struct Integer {
    unsigned long long magnitude = 0;
    bool negative = false;
};

const char* kindName(MofLiteral::Kind kind) {
    switch (kind) {
    case MofLiteral::Null:
        return "NULL";
    case MofLiteral::Integer:
        return "an integer";
    case MofLiteral::Real:
        return "a real number";
    case MofLiteral::String:
        return "a string";
    case MofLiteral::Char:
        return "a character";
    case MofLiteral::Boolean:
        return "a boolean";
    default:
        return "a list";
    }
}

[[noreturn]] void mismatch(const MofLiteral& literal, CIMType type, bool isArray,
                           const std::string& what, const std::string& source) {
    throw MofError(source, literal.line,
                   std::string(kindName(literal.kind)) + " cannot be the value of " + what +
                       ", which is of type " + typeName(type) + (isArray ? "[]" : ""));
}

// Reads decimal, 0x hexadecimal, 0 octal and b binary integers.
bool parseInteger(const std::string& text, Integer* out) {
    size_t pos = 0;
    if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) {
        out->negative = text[pos] == '-';
        pos++;
    }
    std::string digits = text.substr(pos);
    int base = 10;
    if (digits.size() > 1 && (digits.back() == 'b' || digits.back() == 'B')) {
        base = 2;
        digits.pop_back();
    } else if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        base = 16;
        digits = digits.substr(2);
    } else if (digits.size() > 1 && digits[0] == '0') {
        base = 8;
        digits = digits.substr(1);
    }
    if (digits.empty()) {
        return false;
    }
    unsigned long long value = 0;
    for (char c : digits) {
        int digit;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (c >= 'a' && c <= 'f') {
            digit = c - 'a' + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        } else {
            return false;
        }
        if (digit >= base || value > (std::numeric_limits<unsigned long long>::max() -
                                      static_cast<unsigned>(digit)) /
                                         static_cast<unsigned>(base)) {
            return false;
        }
        value = value * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
    }
    out->magnitude = value;
    return true;
}

template <typename T>
CIMValue integerValue(const MofLiteral& literal, const std::string& what, const std::string& source,
                      CIMType type) {
    Integer number;
    if (!parseInteger(literal.text, &number)) {
        throw MofError(source, literal.line,
                       "\"" + literal.text + "\" is not a valid integer (value of " + what + ")");
    }
    const auto high = static_cast<unsigned long long>(std::numeric_limits<T>::max());
    bool below = number.negative && number.magnitude != 0;
    bool fits = below ? std::numeric_limits<T>::is_signed && number.magnitude <= high + 1
                      : number.magnitude <= high;
    if (!fits) {
        throw MofError(source, literal.line,
                       "value " + literal.text + " of " + what + " does not fit its type " +
                           typeName(type) + " (" + std::to_string(+std::numeric_limits<T>::min()) +
                           " to " + std::to_string(+std::numeric_limits<T>::max()) + ")");
    }
    T value = below ? static_cast<T>(-static_cast<long long>(number.magnitude - 1) - 1)
                    : static_cast<T>(number.magnitude);
    return CIMValue(value);
}

double realOf(const MofLiteral& literal, const std::string& what, const std::string& source) {
    if (literal.kind == MofLiteral::Integer) {
        Integer number;
        if (!parseInteger(literal.text, &number)) {
            throw MofError(source, literal.line,
                           "\"" + literal.text + "\" is not a valid number (value of " + what +
                               ")");
        }
        double magnitude = static_cast<double>(number.magnitude);
        return number.negative ? -magnitude : magnitude;
    }
    errno = 0;
    char* end = nullptr;
    double value = std::strtod(literal.text.c_str(), &end);
    if (errno != 0 || end == nullptr || *end != '\0') {
        throw MofError(source, literal.line,
                       "\"" + literal.text + "\" is not a valid real number (value of " + what +
                           ")");
    }
    return value;
}

CIMValue scalarValue(const MofLiteral& literal, CIMType type, const std::string& what,
                     const std::string& source) {
    bool integer = literal.kind == MofLiteral::Integer;
    switch (type) {
    case CIMTYPE_UINT8:
        if (integer)
            return integerValue<Uint8>(literal, what, source, type);
        break;
    case CIMTYPE_SINT8:
        if (integer)
            return integerValue<Sint8>(literal, what, source, type);
        break;
    case CIMTYPE_UINT16:
        if (integer)
            return integerValue<Uint16>(literal, what, source, type);
        break;
    case CIMTYPE_SINT16:
        if (integer)
            return integerValue<Sint16>(literal, what, source, type);
        break;
    case CIMTYPE_UINT32:
        if (integer)
            return integerValue<Uint32>(literal, what, source, type);
        break;
    case CIMTYPE_SINT32:
        if (integer)
            return integerValue<Sint32>(literal, what, source, type);
        break;
    case CIMTYPE_UINT64:
        if (integer)
            return integerValue<Uint64>(literal, what, source, type);
        break;
    case CIMTYPE_SINT64:
        if (integer)
            return integerValue<Sint64>(literal, what, source, type);
        break;
    case CIMTYPE_REAL32:
        if (integer || literal.kind == MofLiteral::Real)
            return CIMValue(static_cast<Real32>(realOf(literal, what, source)));
        break;
    case CIMTYPE_REAL64:
        if (integer || literal.kind == MofLiteral::Real)
            return CIMValue(static_cast<Real64>(realOf(literal, what, source)));
        break;
    case CIMTYPE_BOOLEAN:
        if (literal.kind == MofLiteral::Boolean)
            return CIMValue(static_cast<Boolean>(literal.boolean));
        break;
    case CIMTYPE_STRING:
        if (literal.kind == MofLiteral::String)
            return CIMValue(String(literal.text.c_str()));
        break;
    case CIMTYPE_CHAR16:
        if (literal.kind == MofLiteral::Char) {
            String text(literal.text.c_str());
            if (text.size() == 1) {
                return CIMValue(text[0]);
            }
        }
        break;
    case CIMTYPE_DATETIME:
        if (literal.kind == MofLiteral::String) {
            try {
                return CIMValue(CIMDateTime(String(literal.text.c_str())));
            } catch (const Exception&) {
                throw MofError(source, literal.line,
                               "\"" + literal.text + "\" is not a CIM datetime (value of " + what +
                                   "); expected yyyymmddhhmmss.mmmmmmsutc or an interval "
                                   "ddddddddhhmmss.mmmmmm:000");
            }
        }
        break;
    case CIMTYPE_REFERENCE:
        if (literal.kind == MofLiteral::String) {
            try {
                return CIMValue(CIMObjectPath(String(literal.text.c_str())));
            } catch (const Exception& e) {
                throw MofError(source, literal.line,
                               "\"" + literal.text + "\" is not an object path (value of " + what +
                                   "): " + toStd(e.getMessage()));
            }
        }
        break;
    default:
        break;
    }
    mismatch(literal, type, false, what, source);
}

template <typename T>
CIMValue arrayValue(const MofLiteral& literal, CIMType type, const std::string& what,
                    const std::string& source) {
    Array<T> values;
    for (const MofLiteral& element : literal.elements) {
        if (element.kind == MofLiteral::Null || element.kind == MofLiteral::List) {
            throw MofError(source, element.line,
                           std::string(kindName(element.kind)) +
                               " cannot be an element of the array value of " + what);
        }
        T value;
        scalarValue(element, type, what, source).get(value);
        values.append(value);
    }
    return CIMValue(values);
}

} // namespace

std::string typeName(CIMType type) { return cimTypeToString(type); }

CIMValue literalToValue(const MofLiteral& literal, CIMType type, bool isArray,
                        const std::string& what, const std::string& source) {
    if (literal.kind == MofLiteral::Null) {
        return CIMValue(type, isArray);
    }
    if ((literal.kind == MofLiteral::List) != isArray) {
        mismatch(literal, type, isArray, what, source);
    }
    if (!isArray) {
        return scalarValue(literal, type, what, source);
    }
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return arrayValue<Boolean>(literal, type, what, source);
    case CIMTYPE_UINT8:
        return arrayValue<Uint8>(literal, type, what, source);
    case CIMTYPE_SINT8:
        return arrayValue<Sint8>(literal, type, what, source);
    case CIMTYPE_UINT16:
        return arrayValue<Uint16>(literal, type, what, source);
    case CIMTYPE_SINT16:
        return arrayValue<Sint16>(literal, type, what, source);
    case CIMTYPE_UINT32:
        return arrayValue<Uint32>(literal, type, what, source);
    case CIMTYPE_SINT32:
        return arrayValue<Sint32>(literal, type, what, source);
    case CIMTYPE_UINT64:
        return arrayValue<Uint64>(literal, type, what, source);
    case CIMTYPE_SINT64:
        return arrayValue<Sint64>(literal, type, what, source);
    case CIMTYPE_REAL32:
        return arrayValue<Real32>(literal, type, what, source);
    case CIMTYPE_REAL64:
        return arrayValue<Real64>(literal, type, what, source);
    case CIMTYPE_CHAR16:
        return arrayValue<Char16>(literal, type, what, source);
    case CIMTYPE_STRING:
        return arrayValue<String>(literal, type, what, source);
    case CIMTYPE_DATETIME:
        return arrayValue<CIMDateTime>(literal, type, what, source);
    default:
        mismatch(literal, type, isArray, what, source);
    }
}

CIMValue literalToInferredValue(const MofLiteral& literal, const std::string& what,
                                const std::string& source) {
    auto typeOf = [&](const MofLiteral& value) {
        switch (value.kind) {
        case MofLiteral::Integer:
            return value.text[0] == '-' ? CIMTYPE_SINT64 : CIMTYPE_UINT64;
        case MofLiteral::Real:
            return CIMTYPE_REAL64;
        case MofLiteral::Char:
            return CIMTYPE_CHAR16;
        case MofLiteral::Boolean:
            return CIMTYPE_BOOLEAN;
        default:
            return CIMTYPE_STRING;
        }
    };
    if (literal.kind == MofLiteral::Null) {
        return CIMValue();
    }
    if (literal.kind != MofLiteral::List) {
        return literalToValue(literal, typeOf(literal), false, what, source);
    }
    CIMType type = literal.elements.empty() ? CIMTYPE_STRING : typeOf(literal.elements[0]);
    for (const MofLiteral& element : literal.elements) {
        if (typeOf(element) == CIMTYPE_SINT64) {
            type = CIMTYPE_SINT64;
        }
    }
    return literalToValue(literal, type, true, what, source);
}

} // namespace vexa::schema::detail
