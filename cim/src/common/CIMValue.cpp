#include "ArrayImpl.h"
#include "SharedRep.h"
#include "ValueElementText.h"
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMValue>;

namespace {

// Only a list of the element types, in CIMType order: a type's position in
// it is its CIMType. No value of it is ever made.
using ValueItems =
    std::variant<Array<Boolean>, Array<Uint8>, Array<Sint8>, Array<Uint16>, Array<Sint16>,
                 Array<Uint32>, Array<Sint32>, Array<Uint64>, Array<Sint64>, Array<Real32>,
                 Array<Real64>, Array<Char16>, Array<String>, Array<CIMDateTime>,
                 Array<CIMObjectPath>, Array<CIMObject>, Array<CIMInstance>>;

template <class T>
struct TypeTag {
    using type = T;
};

template <class Wanted, class Items>
struct ItemIndex;

template <class Wanted, class... Alternatives>
struct ItemIndex<Wanted, std::variant<Alternatives...>> {
    static constexpr std::size_t find() {
        constexpr bool matches[] = {std::is_same_v<Wanted, Alternatives>...};
        for (std::size_t i = 0; i < sizeof...(Alternatives); i++) {
            if (matches[i])
                return i;
        }
        return sizeof...(Alternatives);
    }
};

template <class T>
constexpr CIMType cimTypeOf() {
    return CIMType(ItemIndex<Array<T>, ValueItems>::find());
}

static_assert(std::variant_size_v<ValueItems> == CIMTYPE_INSTANCE + 1);
static_assert(
    std::is_same_v<std::variant_alternative_t<CIMTYPE_REAL64, ValueItems>, Array<Real64>>);
static_assert(
    std::is_same_v<std::variant_alternative_t<CIMTYPE_STRING, ValueItems>, Array<String>>);
static_assert(
    std::is_same_v<std::variant_alternative_t<CIMTYPE_INSTANCE, ValueItems>, Array<CIMInstance>>);

template <class F>
auto visitType(CIMType type, F&& f) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return f(TypeTag<Boolean>());
    case CIMTYPE_UINT8:
        return f(TypeTag<Uint8>());
    case CIMTYPE_SINT8:
        return f(TypeTag<Sint8>());
    case CIMTYPE_UINT16:
        return f(TypeTag<Uint16>());
    case CIMTYPE_SINT16:
        return f(TypeTag<Sint16>());
    case CIMTYPE_UINT32:
        return f(TypeTag<Uint32>());
    case CIMTYPE_SINT32:
        return f(TypeTag<Sint32>());
    case CIMTYPE_UINT64:
        return f(TypeTag<Uint64>());
    case CIMTYPE_SINT64:
        return f(TypeTag<Sint64>());
    case CIMTYPE_REAL32:
        return f(TypeTag<Real32>());
    case CIMTYPE_REAL64:
        return f(TypeTag<Real64>());
    case CIMTYPE_CHAR16:
        return f(TypeTag<Char16>());
    case CIMTYPE_STRING:
        return f(TypeTag<String>());
    case CIMTYPE_DATETIME:
        return f(TypeTag<CIMDateTime>());
    case CIMTYPE_REFERENCE:
        return f(TypeTag<CIMObjectPath>());
    case CIMTYPE_OBJECT:
        return f(TypeTag<CIMObject>());
    case CIMTYPE_INSTANCE:
        return f(TypeTag<CIMInstance>());
    }
    throw TypeMismatchException();
}

// Embedded objects are owned by the value: stored and handed out as clones,
// so that nobody can change a value through a handle they kept.
template <class T>
T detached(const T& x) {
    if constexpr (std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>) {
        if (x.isUninitialized())
            throw UninitializedObjectException();
        return x.clone();
    } else {
        return x;
    }
}

template <class T>
Boolean sameElement(const T& x, const T& y) {
    if constexpr (std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>) {
        return x.identical(y);
    } else {
        // A timestamp against an interval throws TypeMismatchException, as
        // OpenPegasus's value comparison does.
        return x == y;
    }
}

template <class T>
String elementText(const T& x) {
    if constexpr (std::is_same_v<T, Boolean>) {
        return String(x ? "TRUE" : "FALSE");
    } else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>) {
        return String(std::to_string(static_cast<long long>(x)).c_str());
    } else if constexpr (std::is_integral_v<T>) {
        return String(std::to_string(static_cast<unsigned long long>(x)).c_str());
    } else if constexpr (std::is_floating_point_v<T>) {
        char text[64];
        std::snprintf(text, sizeof(text), "%.16e", static_cast<double>(x));
        return String(text);
    } else if constexpr (std::is_same_v<T, Char16>) {
        String text;
        text.append(x);
        return text;
    } else if constexpr (std::is_same_v<T, String>) {
        return x;
    } else if constexpr (std::is_same_v<T, CIMInstance>) {
        return CIMObject(x).toString();
    } else {
        return x.toString();
    }
}

} // namespace

// Scalars and arrays alike are held in the representation itself: every
// element type, and Array of it, is one pointer or one number, so a value
// costs a single allocation. type, isArray and isNull say what the payload
// holds (nothing when null).
class CIMValueRep : public SharedRep {
public:
    CIMValueRep(CIMType valueType, Boolean valueIsArray)
        : typeCode(Uint8(valueType)), isArray(valueIsArray) {}
    CIMValueRep(const CIMValueRep&) = delete;
    CIMValueRep& operator=(const CIMValueRep&) = delete;

    ~CIMValueRep() {
        if (isNull)
            return;
        visitType(type(), [this](auto tag) {
            using T = typename decltype(tag)::type;
            if (isArray)
                items<T>().~Array<T>();
            else
                scalar<T>().~T();
            return 0;
        });
    }

    CIMType type() const { return CIMType(typeCode); }

    template <class T>
    T& scalar() {
        return *std::launder(reinterpret_cast<T*>(payload));
    }
    template <class T>
    const T& scalar() const {
        return *std::launder(reinterpret_cast<const T*>(payload));
    }
    template <class T>
    Array<T>& items() {
        return scalar<Array<T>>();
    }
    template <class T>
    const Array<T>& items() const {
        return scalar<Array<T>>();
    }

    // A null value holds the array size it was given in the unused payload,
    // which keeps the representation at 16 bytes.
    Uint32 nullArraySize() const {
        Uint32 size;
        std::memcpy(&size, payload, sizeof size);
        return size;
    }
    void setNullArraySize(Uint32 size) { std::memcpy(payload, &size, sizeof size); }

    Uint8 typeCode;
    Boolean isArray;
    Boolean isNull = true;
    alignas(8) unsigned char payload[8] = {};
};
static_assert(sizeof(CIMValueRep) == 16, "a value's representation fills one 16-byte block");

template <class T>
constexpr bool fitsPayload() {
    return sizeof(T) <= 8 && alignof(T) <= 8 && sizeof(Array<T>) <= 8 && alignof(Array<T>) <= 8;
}
static_assert(fitsPayload<Uint64>() && fitsPayload<Real64>() && fitsPayload<String>() &&
              fitsPayload<CIMDateTime>() && fitsPayload<CIMObjectPath>() &&
              fitsPayload<CIMObject>() && fitsPayload<CIMInstance>());

namespace {

// Values are immutable once made, so every null value without an array
// size shares one representation per type; their first references are
// never released, so they live as long as the process.
CIMValueRep* sharedNullRep(CIMType type, Boolean isArray) {
    static CIMValueRep* const* const reps = [] {
        static CIMValueRep* made[2 * (CIMTYPE_INSTANCE + 1)];
        for (int t = 0; t <= CIMTYPE_INSTANCE; t++) {
            made[2 * t] = new CIMValueRep(CIMType(t), false);
            made[2 * t + 1] = new CIMValueRep(CIMType(t), true);
        }
        return made;
    }();
    CIMValueRep* rep = reps[2 * int(type) + (isArray ? 1 : 0)];
    retainRep(rep);
    return rep;
}

CIMValueRep* nullBooleanRep() { return sharedNullRep(CIMTYPE_BOOLEAN, false); }

CIMValueRep* makeNullRep(CIMType type, Boolean isArray, Uint32 arraySize) {
    if (int(type) < 0 || int(type) > CIMTYPE_INSTANCE)
        throw TypeMismatchException();
    if (!isArray || arraySize == 0)
        return sharedNullRep(type, isArray);
    CIMValueRep* rep = new CIMValueRep(type, isArray);
    rep->setNullArraySize(arraySize);
    return rep;
}

template <class T>
CIMValueRep* newScalarRep(const T& x) {
    T item = detached(x);
    CIMValueRep* rep = new CIMValueRep(cimTypeOf<T>(), false);
    new (rep->payload) T(std::move(item));
    rep->isNull = false;
    return rep;
}

// The values a large cache repeats most, true, false and the empty string,
// share one representation each, made once and never released.
template <class T>
CIMValueRep* makeScalarRep(const T& x) {
    if constexpr (std::is_same_v<T, Boolean>) {
        static CIMValueRep* const booleans[2] = {newScalarRep(Boolean(false)),
                                                 newScalarRep(Boolean(true))};
        CIMValueRep* rep = booleans[x ? 1 : 0];
        retainRep(rep);
        return rep;
    } else if constexpr (std::is_same_v<T, String>) {
        if (x.size() == 0) {
            static CIMValueRep* const empty = newScalarRep(String());
            retainRep(empty);
            return empty;
        }
    }
    return newScalarRep(x);
}

template <class T>
CIMValueRep* makeArrayRep(const Array<T>& x) {
    Array<T> items;
    if constexpr (std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>) {
        items.reserveCapacity(x.size());
        for (Uint32 i = 0; i < x.size(); i++)
            items.append(detached(x[i]));
    } else {
        items = x;
    }
    CIMValueRep* rep = new CIMValueRep(cimTypeOf<T>(), true);
    new (rep->payload) Array<T>(items);
    rep->isNull = false;
    return rep;
}

template <class T>
void checkReadable(const CIMValueRep* rep, Boolean asArray) {
    if (rep->type() != cimTypeOf<T>() || rep->isArray != asArray)
        throw TypeMismatchException();
}

template <class T>
void readScalar(const CIMValueRep* rep, T& x) {
    checkReadable<T>(rep, false);
    if (!rep->isNull)
        x = detached(rep->scalar<T>());
}

template <class T>
void readArray(const CIMValueRep* rep, Array<T>& x) {
    checkReadable<T>(rep, true);
    if (rep->isNull)
        return;
    const Array<T>& items = rep->items<T>();
    if constexpr (std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>) {
        Array<T> copies;
        copies.reserveCapacity(items.size());
        for (Uint32 i = 0; i < items.size(); i++)
            copies.append(detached(items[i]));
        x = copies;
    } else {
        x = items;
    }
}

} // namespace

CIMValue::CIMValue() : _rep(nullBooleanRep()) {}

CIMValue::CIMValue(CIMType type, Boolean isArray, Uint32 arraySize)
    : _rep(makeNullRep(type, isArray, arraySize)) {}

CIMValue::CIMValue(const CIMValue& x) : _rep(x._rep) { retainRep(_rep); }

CIMValue::~CIMValue() { releaseRep(_rep); }

CIMValue& CIMValue::operator=(const CIMValue& x) {
    assignRep(_rep, x._rep);
    return *this;
}

void CIMValue::assign(const CIMValue& x) { assignRep(_rep, x._rep); }

void CIMValue::clear() {
    CIMValueRep* fresh = nullBooleanRep();
    releaseRep(_rep);
    _rep = fresh;
}

void CIMValue::setNullValue(CIMType type, Boolean isArray, Uint32 arraySize) {
    CIMValueRep* fresh = makeNullRep(type, isArray, arraySize);
    releaseRep(_rep);
    _rep = fresh;
}

Boolean CIMValue::typeCompatible(const CIMValue& x) const {
    return _rep->typeCode == x._rep->typeCode && _rep->isArray == x._rep->isArray;
}

Boolean CIMValue::isArray() const { return _rep->isArray; }

Boolean CIMValue::isNull() const { return _rep->isNull; }

CIMType CIMValue::getType() const { return _rep->type(); }

Uint32 CIMValue::getArraySize() const {
    if (!_rep->isArray)
        return 0;
    if (_rep->isNull)
        return _rep->nullArraySize();
    const CIMValueRep* rep = _rep;
    return visitType(rep->type(), [rep](auto tag) {
        using T = typename decltype(tag)::type;
        return rep->items<T>().size();
    });
}

Boolean CIMValue::equal(const CIMValue& x) const {
    const CIMValueRep* mine = _rep;
    const CIMValueRep* theirs = x._rep;
    if (mine == theirs)
        return true;
    if (mine->typeCode != theirs->typeCode || mine->isArray != theirs->isArray)
        return false;
    if (mine->isNull || theirs->isNull)
        return mine->isNull == theirs->isNull;
    return visitType(mine->type(), [mine, theirs](auto tag) {
        using T = typename decltype(tag)::type;
        if (!mine->isArray)
            return sameElement(mine->scalar<T>(), theirs->scalar<T>());
        const Array<T>& a = mine->items<T>();
        const Array<T>& b = theirs->items<T>();
        if (a.size() != b.size())
            return false;
        for (Uint32 i = 0; i < a.size(); i++) {
            if (!sameElement(a[i], b[i]))
                return false;
        }
        return true;
    });
}

std::vector<String> valueElementTexts(const CIMValue& value) {
    std::vector<String> texts;
    if (value.isNull())
        return texts;
    visitType(value.getType(), [&value, &texts](auto tag) {
        using T = typename decltype(tag)::type;
        if (value.isArray()) {
            Array<T> items;
            value.get(items);
            texts.reserve(items.size());
            for (Uint32 i = 0; i < items.size(); i++)
                texts.push_back(elementText(items[i]));
        } else {
            T item{};
            value.get(item);
            texts.push_back(elementText(item));
        }
        return 0;
    });
    return texts;
}

// Reads the stored elements in place: no copies, and no clones of embedded
// objects, which are only written out.
String CIMValue::toString() const {
    const CIMValueRep* rep = _rep;
    if (rep->isNull)
        return String();
    return visitType(rep->type(), [rep](auto tag) {
        using T = typename decltype(tag)::type;
        if (!rep->isArray)
            return elementText(rep->scalar<T>());
        const Array<T>& items = rep->items<T>();
        String joined;
        for (Uint32 i = 0; i < items.size(); i++) {
            joined.append(elementText(items[i]));
            joined.append(Char16(' '));
        }
        return joined;
    });
}

Boolean operator==(const CIMValue& x, const CIMValue& y) { return x.equal(y); }

Boolean operator!=(const CIMValue& x, const CIMValue& y) { return !x.equal(y); }

// Every element type gets the same six members; only the parameter passing
// differs (by value for numbers, by reference for everything else).
#define VEXA_CIMVALUE_MEMBERS(T, PARAM)                                                            \
    CIMValue::CIMValue(PARAM x) : _rep(makeScalarRep<T>(x)) {}                                     \
    CIMValue::CIMValue(const Array<T>& x) : _rep(makeArrayRep<T>(x)) {}                            \
    void CIMValue::set(PARAM x) {                                                                  \
        CIMValueRep* fresh = makeScalarRep<T>(x);                                                  \
        releaseRep(_rep);                                                                          \
        _rep = fresh;                                                                              \
    }                                                                                              \
    void CIMValue::set(const Array<T>& x) {                                                        \
        CIMValueRep* fresh = makeArrayRep<T>(x);                                                   \
        releaseRep(_rep);                                                                          \
        _rep = fresh;                                                                              \
    }                                                                                              \
    void CIMValue::get(T& x) const { readScalar<T>(_rep, x); }                                     \
    void CIMValue::get(Array<T>& x) const { readArray<T>(_rep, x); }

VEXA_CIMVALUE_MEMBERS(Boolean, Boolean)
VEXA_CIMVALUE_MEMBERS(Uint8, Uint8)
VEXA_CIMVALUE_MEMBERS(Sint8, Sint8)
VEXA_CIMVALUE_MEMBERS(Uint16, Uint16)
VEXA_CIMVALUE_MEMBERS(Sint16, Sint16)
VEXA_CIMVALUE_MEMBERS(Uint32, Uint32)
VEXA_CIMVALUE_MEMBERS(Sint32, Sint32)
VEXA_CIMVALUE_MEMBERS(Uint64, Uint64)
VEXA_CIMVALUE_MEMBERS(Sint64, Sint64)
VEXA_CIMVALUE_MEMBERS(Real32, Real32)
VEXA_CIMVALUE_MEMBERS(Real64, Real64)
VEXA_CIMVALUE_MEMBERS(Char16, const Char16&)
VEXA_CIMVALUE_MEMBERS(String, const String&)
VEXA_CIMVALUE_MEMBERS(CIMDateTime, const CIMDateTime&)
VEXA_CIMVALUE_MEMBERS(CIMObjectPath, const CIMObjectPath&)
VEXA_CIMVALUE_MEMBERS(CIMObject, const CIMObject&)
VEXA_CIMVALUE_MEMBERS(CIMInstance, const CIMInstance&)

#undef VEXA_CIMVALUE_MEMBERS

PEGASUS_NAMESPACE_END
