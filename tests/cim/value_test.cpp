#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMValue.h>
#include <gtest/gtest.h>
#include <thread>
#include <type_traits>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

std::string textOf(const CIMValue& v) { return text(v.toString()); }

CIMInstance makeInstance(const char* className, const char* name) {
    CIMInstance instance{CIMName(className)};
    instance.addProperty(CIMProperty(CIMName("Name"), CIMValue(String(name))));
    return instance;
}

// The overload set decides what provider code means; these pin it down.
static_assert(!std::is_convertible_v<const char*, CIMObjectPath>);
static_assert(std::is_constructible_v<CIMObjectPath, const char*>);
static_assert(!std::is_convertible_v<CIMObject, CIMInstance>);
static_assert(std::is_constructible_v<CIMInstance, CIMObject>);
static_assert(std::is_convertible_v<CIMInstance, CIMObject>);
static_assert(std::is_convertible_v<Array<Uint16>, CIMValue>);

} // namespace

// One value of each type is in CIMValueEveryType; these are the limits.
TEST(CIMValueText, ScalarsUseTheirFixedForms) {
    EXPECT_EQ(textOf(CIMValue(false)), "FALSE");
    EXPECT_EQ(textOf(CIMValue(Uint64(18446744073709551615ULL))), "18446744073709551615");
    EXPECT_EQ(textOf(CIMValue(Sint64(-9223372036854775807LL - 1))), "-9223372036854775808");
    EXPECT_EQ(textOf(CIMValue(Real64(0.1))), "1.0000000000000001e-01");
    EXPECT_EQ(textOf(CIMValue(Real64(0.0))), "0.0000000000000000e+00");
    EXPECT_EQ(textOf(CIMValue(Real32(0.1f))), "1.0000000149011612e-01");
    EXPECT_EQ(textOf(CIMValue(String("a \"b\" <c>"))), "a \"b\" <c>");
    EXPECT_EQ(textOf(CIMValue(CIMObjectPath(String("root/x:A.b=\"q\",a=1")))),
              "root/x:A.a=1,b=\"q\"");
}

TEST(CIMValueText, NonAsciiCharactersComeOutAsUtf8) {
    Char16 eAcute(0x00E9);
    EXPECT_EQ(textOf(CIMValue(eAcute)), "\xC3\xA9");
    EXPECT_EQ(textOf(CIMValue(String("gr\xC3\xBC\xC3\x9F"))), "gr\xC3\xBC\xC3\x9F");
}

// Arrays of every type end each element with a space (CIMValueEveryType).
TEST(CIMValueText, NullsAndEmptyArraysAreEmpty) {
    EXPECT_EQ(textOf(CIMValue(Array<Sint64>())), "");
    EXPECT_EQ(textOf(CIMValue()), "");
    EXPECT_EQ(textOf(CIMValue(CIMTYPE_STRING, false)), "");
    EXPECT_EQ(textOf(CIMValue(CIMTYPE_UINT16, true, 3)), "");
}

TEST(CIMValueText, EmbeddedInstanceIsRenderedAsXml) {
    CIMInstance embedded = makeInstance("E", "a<b");
    embedded.addProperty(CIMProperty(CIMName("Count"), CIMValue(Uint32(7))));
    std::string xml = textOf(CIMValue(embedded));
    EXPECT_EQ(xml.rfind("<INSTANCE CLASSNAME=\"E\" >\n", 0), 0u) << xml;
    EXPECT_NE(xml.find("</INSTANCE>"), std::string::npos);
    EXPECT_NE(xml.find("<PROPERTY NAME=\"Name\"  TYPE=\"string\">"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<VALUE>a&lt;b</VALUE>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<VALUE>7</VALUE>"), std::string::npos) << xml;
    EXPECT_LT(xml.find("Name"), xml.find("Count"));

    // Objects render the same way, and arrays of them follow the array rule.
    Array<CIMObject> objects;
    objects.append(CIMObject(embedded));
    std::string arrayText = textOf(CIMValue(objects));
    EXPECT_EQ(arrayText.rfind("<INSTANCE CLASSNAME=\"E\" >", 0), 0u);
    EXPECT_EQ(arrayText.back(), ' ');
}

TEST(CIMValueOverloads, LiteralsPickTheSameOverloadsAsEverywhereElse) {
    CIMValue literal("abc");
    EXPECT_EQ(literal.getType(), CIMTYPE_BOOLEAN);
    EXPECT_EQ(textOf(literal), "TRUE");

    CIMValue character('x');
    EXPECT_EQ(character.getType(), CIMTYPE_SINT32);
    EXPECT_EQ(textOf(character), "120");

    EXPECT_EQ(CIMValue(5).getType(), CIMTYPE_SINT32);
    EXPECT_EQ(CIMValue(5u).getType(), CIMTYPE_UINT32);
    EXPECT_EQ(CIMValue(Uint64(5)).getType(), CIMTYPE_UINT64);
    EXPECT_EQ(CIMValue(1.5).getType(), CIMTYPE_REAL64);
    EXPECT_EQ(CIMValue(1.5f).getType(), CIMTYPE_REAL32);
    EXPECT_EQ(CIMValue(Char16('x')).getType(), CIMTYPE_CHAR16);
}

TEST(CIMValueGet, TypeAndArraynessMustMatchExactly) {
    // Scalar against array is in CIMValueEveryType.
    CIMValue value(Uint32(42));
    Uint64 wide = 0;
    EXPECT_THROW(value.get(wide), TypeMismatchException);

    try {
        String s;
        value.get(s);
        FAIL() << "expected a type mismatch";
    } catch (const TypeMismatchException& e) {
        EXPECT_EQ(text(e.getMessage()), "type mismatch");
    }
}

TEST(CIMValueGet, NullOfTheRightTypeLeavesTheTargetAlone) {
    CIMValue nullString(CIMTYPE_STRING, false);
    String target("untouched");
    nullString.get(target);
    EXPECT_EQ(text(target), "untouched");

    Uint16 number = 9;
    EXPECT_THROW(nullString.get(number), TypeMismatchException);

    CIMValue nullArray(CIMTYPE_UINT8, true, 4);
    Array<Uint8> bytes(2);
    nullArray.get(bytes);
    EXPECT_EQ(bytes.size(), 2u);
}

TEST(CIMValueState, NullnessTypeAndArraySize) {
    CIMValue empty;
    EXPECT_TRUE(empty.isNull());
    EXPECT_EQ(empty.getType(), CIMTYPE_BOOLEAN);
    EXPECT_FALSE(empty.isArray());
    EXPECT_EQ(empty.getArraySize(), 0u);

    CIMValue nullArray(CIMTYPE_UINT16, true, 5);
    EXPECT_TRUE(nullArray.isNull());
    EXPECT_TRUE(nullArray.isArray());
    EXPECT_EQ(nullArray.getArraySize(), 5u);

    CIMValue emptyArray(Array<String>{});
    EXPECT_FALSE(emptyArray.isNull());
    EXPECT_EQ(emptyArray.getArraySize(), 0u);

    // set replaces type and array-ness whatever they were.
    CIMValue v(String("x"));
    v.set(Array<Sint16>(3));
    EXPECT_EQ(v.getType(), CIMTYPE_SINT16);
    EXPECT_TRUE(v.isArray());
    EXPECT_EQ(v.getArraySize(), 3u);
    v.setNullValue(CIMTYPE_DATETIME, false);
    EXPECT_TRUE(v.isNull());
    EXPECT_EQ(v.getType(), CIMTYPE_DATETIME);
    v.clear();
    EXPECT_TRUE(v.isNull());
    EXPECT_EQ(v.getType(), CIMTYPE_BOOLEAN);

    EXPECT_TRUE(CIMValue(Uint8(1)).typeCompatible(CIMValue(CIMTYPE_UINT8, false)));
    EXPECT_FALSE(CIMValue(Uint8(1)).typeCompatible(CIMValue(CIMTYPE_UINT8, true)));
}

TEST(CIMValueEquality, TypeNullnessAndElements) {
    EXPECT_NE(CIMValue(Uint32(1)), CIMValue(Uint64(1)));
    EXPECT_EQ(CIMValue(Uint32(1)), CIMValue(Uint32(1)));
    EXPECT_NE(CIMValue(CIMTYPE_UINT32, false), CIMValue(Uint32(0)));
    EXPECT_EQ(CIMValue(CIMTYPE_UINT32, false), CIMValue(CIMTYPE_UINT32, false));
    EXPECT_NE(CIMValue(CIMTYPE_UINT32, false), CIMValue(CIMTYPE_UINT32, true));
    EXPECT_NE(CIMValue(String("a")), CIMValue(String("A")));

    Array<String> ab;
    ab.append("a");
    ab.append("b");
    Array<String> ba;
    ba.append("b");
    ba.append("a");
    EXPECT_EQ(CIMValue(ab), CIMValue(ab));
    EXPECT_NE(CIMValue(ab), CIMValue(ba));

    // Embedded instances compare by content, not identity.
    EXPECT_EQ(CIMValue(makeInstance("E", "x")), CIMValue(makeInstance("E", "x")));
    EXPECT_NE(CIMValue(makeInstance("E", "x")), CIMValue(makeInstance("E", "y")));

    // Datetimes compare as instants; a timestamp and an interval do not compare at all.
    EXPECT_EQ(CIMValue(CIMDateTime(String("20240102030405.123456+060"))),
              CIMValue(CIMDateTime(String("20240102020405.123456+000"))));
    EXPECT_THROW(CIMValue(CIMDateTime(String("20240102030405.123456+060")))
                     .equal(CIMValue(CIMDateTime(String("00000001020304.000000:000")))),
                 TypeMismatchException);
}

TEST(CIMValueCopies, CopiesAreIndependentValues) {
    CIMValue original(String("first"));
    CIMValue copy = original;
    copy.set(Uint8(3));
    EXPECT_EQ(original.getType(), CIMTYPE_STRING);
    EXPECT_EQ(textOf(original), "first");

    Array<Uint32> numbers(2, 7);
    CIMValue fromArray(numbers);
    numbers[0] = 99;
    EXPECT_EQ(textOf(fromArray), "7 7 ");
}

TEST(CIMValueCopies, EmbeddedInstancesAreStoredAndReturnedAsClones) {
    CIMInstance instance = makeInstance("E", "before");
    CIMValue value(instance);
    instance.getProperty(0).setValue(CIMValue(String("after")));
    instance.addProperty(CIMProperty(CIMName("Extra"), CIMValue(true)));

    CIMInstance first;
    value.get(first);
    EXPECT_EQ(first.getPropertyCount(), 1u);
    EXPECT_EQ(textOf(first.getProperty(0).getValue()), "before");

    first.getProperty(0).setValue(CIMValue(String("changed")));
    CIMInstance second;
    value.get(second);
    EXPECT_EQ(textOf(second.getProperty(0).getValue()), "before");

    EXPECT_THROW(CIMValue{CIMInstance()}, UninitializedObjectException);
    EXPECT_THROW(CIMValue{CIMObject()}, UninitializedObjectException);
    Array<CIMInstance> withHole(1);
    EXPECT_THROW(CIMValue{withHole}, UninitializedObjectException);
}

TEST(CIMValueCopies, SharedValuesSurviveConcurrentCopying) {
    const CIMValue shared(makeInstance("E", "shared"));
    const CIMValue numbers(Array<Uint64>(16, 5));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; t++) {
        threads.emplace_back([&shared, &numbers] {
            for (int i = 0; i < 2000; i++) {
                CIMValue a = shared;
                CIMValue b = numbers;
                if (a.getType() != CIMTYPE_INSTANCE || b.getArraySize() != 16)
                    ADD_FAILURE();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(textOf(numbers), "5 5 5 5 5 5 5 5 5 5 5 5 5 5 5 5 ");
}
