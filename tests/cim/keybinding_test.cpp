#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>
#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

CIMKeyBinding numeric(const char* value) {
    return CIMKeyBinding(CIMName("k"), String(value), CIMKeyBinding::NUMERIC);
}

} // namespace

TEST(CIMKeyBinding, ValueConstructorChoosesTypeAndText) {
    struct Case {
        CIMValue value;
        CIMKeyBinding::Type type;
        const char* text;
    } cases[] = {
        {CIMValue(true), CIMKeyBinding::BOOLEAN, "TRUE"},
        {CIMValue(String("s")), CIMKeyBinding::STRING, "s"},
        {CIMValue(Char16('c')), CIMKeyBinding::STRING, "c"},
        {CIMValue(CIMDateTime(String("00000001020304.000000:000"))), CIMKeyBinding::STRING,
         "00000001020304.000000:000"},
        {CIMValue(Sint16(-3)), CIMKeyBinding::NUMERIC, "-3"},
        {CIMValue(Uint64(7)), CIMKeyBinding::NUMERIC, "7"},
        {CIMValue(Real64(1.5)), CIMKeyBinding::NUMERIC, "1.5000000000000000e+00"},
        {CIMValue(CIMObjectPath(String("A.k=1"))), CIMKeyBinding::REFERENCE, "A.k=1"},
        {CIMValue(CIMTYPE_STRING, false), CIMKeyBinding::STRING, ""},
    };
    for (const Case& c : cases) {
        CIMKeyBinding key(CIMName("K"), c.value);
        EXPECT_EQ(key.getType(), c.type) << c.text;
        EXPECT_EQ(text(key.getValue()), c.text);
    }

    EXPECT_THROW(CIMKeyBinding(CIMName("K"), CIMValue(Array<Uint8>())), TypeMismatchException);
    CIMInstance instance(CIMName("E"));
    EXPECT_THROW(CIMKeyBinding(CIMName("K"), CIMValue(instance)), TypeMismatchException);
}

TEST(CIMKeyBinding, CopiesAreDeep) {
    CIMKeyBinding original(CIMName("k"), String("v"), CIMKeyBinding::STRING);
    CIMKeyBinding copy = original;
    copy.setValue("w");
    copy.setName(CIMName("other"));
    copy.setType(CIMKeyBinding::NUMERIC);
    EXPECT_EQ(text(original.getValue()), "v");
    EXPECT_EQ(text(original.getName().getString()), "k");
    EXPECT_EQ(original.getType(), CIMKeyBinding::STRING);
}

TEST(CIMKeyBinding, NumericKeysCompareAsNumbersOnlyWhenBothParse) {
    EXPECT_TRUE(numeric("10") == numeric("0x0A"));
    EXPECT_TRUE(numeric("255") == numeric("0XfF"));
    EXPECT_TRUE(numeric("0") == numeric("0x0"));
    EXPECT_TRUE(numeric("-16") == numeric("-0x10"));
    EXPECT_TRUE(numeric("+5") == numeric("5"));
    EXPECT_FALSE(numeric("012") == numeric("12"));
    EXPECT_FALSE(numeric("-01") == numeric("-1"));
    EXPECT_FALSE(numeric("1.5") == numeric("1.50"));
    EXPECT_TRUE(numeric("1.5") == numeric("1.5"));
    EXPECT_FALSE(numeric("18446744073709551615") == numeric("-1"));
    EXPECT_TRUE(numeric("18446744073709551615") == numeric("0xFFFFFFFFFFFFFFFF"));
    // Too big for 64 bits: only the text can match.
    EXPECT_FALSE(numeric("18446744073709551616") == numeric("0x10000000000000000"));
}

TEST(CIMKeyBinding, NamesTypesAndStringCase) {
    CIMKeyBinding lower(CIMName("name"), String("Abc"), CIMKeyBinding::STRING);
    CIMKeyBinding upper(CIMName("NAME"), String("Abc"), CIMKeyBinding::STRING);
    EXPECT_TRUE(lower == upper);
    EXPECT_FALSE(lower == CIMKeyBinding(CIMName("name"), String("abc"), CIMKeyBinding::STRING));
    EXPECT_FALSE(numeric("1") == CIMKeyBinding(CIMName("k"), String("1"), CIMKeyBinding::STRING));
    EXPECT_TRUE(CIMKeyBinding(CIMName("b"), String("true"), CIMKeyBinding::BOOLEAN) ==
                CIMKeyBinding(CIMName("B"), String("TRUE"), CIMKeyBinding::BOOLEAN));
}

TEST(CIMKeyBinding, ReferenceKeysCompareAsPaths) {
    CIMKeyBinding a(CIMName("r"), String("root/cimv2:B.z=1,a=\"x\""), CIMKeyBinding::REFERENCE);
    CIMKeyBinding b(CIMName("r"), String("ROOT/CIMV2:b.A=\"x\",Z=0x1"), CIMKeyBinding::REFERENCE);
    EXPECT_TRUE(a == b);
    CIMKeyBinding broken(CIMName("r"), String("not a path"), CIMKeyBinding::REFERENCE);
    EXPECT_TRUE(broken == broken);
    EXPECT_FALSE(broken == a);
}

TEST(CIMKeyBinding, EqualReadsTheKeyAsTheValuesType) {
    CIMKeyBinding five = numeric("5");
    EXPECT_TRUE(five.equal(CIMValue(Uint8(5))));
    EXPECT_TRUE(five.equal(CIMValue(Uint32(5))));
    EXPECT_TRUE(five.equal(CIMValue(Sint64(5))));
    EXPECT_FALSE(five.equal(CIMValue(String("5"))));
    EXPECT_FALSE(five.equal(CIMValue(Uint32(6))));
    EXPECT_FALSE(numeric("300").equal(CIMValue(Uint8(44))));
    EXPECT_FALSE(numeric("-1").equal(CIMValue(Uint32(4294967295u))));
    EXPECT_TRUE(numeric("1.5").equal(CIMValue(Real64(1.5))));
    EXPECT_FALSE(five.equal(CIMValue(Array<Uint8>(1, 5))));

    CIMKeyBinding name(CIMName("n"), String("d1"), CIMKeyBinding::STRING);
    EXPECT_TRUE(name.equal(CIMValue(String("d1"))));
    EXPECT_FALSE(name.equal(CIMValue(String("D1"))));
    EXPECT_TRUE(name.equal(CIMValue(Char16('d'))));
    EXPECT_FALSE(name.equal(CIMValue(Char16('1'))));

    CIMKeyBinding flag(CIMName("f"), String("true"), CIMKeyBinding::BOOLEAN);
    EXPECT_TRUE(flag.equal(CIMValue(true)));
    EXPECT_FALSE(flag.equal(CIMValue(false)));

    CIMKeyBinding when(CIMName("t"), String("garbage"), CIMKeyBinding::STRING);
    EXPECT_FALSE(when.equal(CIMValue(CIMDateTime())));

    CIMKeyBinding ref(CIMName("r"), String("A.k=1"), CIMKeyBinding::REFERENCE);
    EXPECT_TRUE(ref.equal(CIMValue(CIMObjectPath(String("a.K=0x1")))));
}
