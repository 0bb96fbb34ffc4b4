#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMValue.h>
#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

// One sample per CIM type, with the type the value must report and the text
// it must print.
template <class T>
struct Sample;

#define VEXA_SAMPLE(T, CIM_TYPE, EXPRESSION, TEXT)                                                 \
    template <>                                                                                    \
    struct Sample<T> {                                                                             \
        static constexpr CIMType type = CIM_TYPE;                                                  \
        static T make() { return EXPRESSION; }                                                     \
        static const char* text() { return TEXT; }                                                 \
    };

VEXA_SAMPLE(Boolean, CIMTYPE_BOOLEAN, true, "TRUE")
VEXA_SAMPLE(Uint8, CIMTYPE_UINT8, Uint8(255), "255")
VEXA_SAMPLE(Sint8, CIMTYPE_SINT8, Sint8(-128), "-128")
VEXA_SAMPLE(Uint16, CIMTYPE_UINT16, Uint16(513), "513")
VEXA_SAMPLE(Sint16, CIMTYPE_SINT16, Sint16(-513), "-513")
VEXA_SAMPLE(Uint32, CIMTYPE_UINT32, Uint32(4000000000u), "4000000000")
VEXA_SAMPLE(Sint32, CIMTYPE_SINT32, Sint32(-2000000000), "-2000000000")
VEXA_SAMPLE(Uint64, CIMTYPE_UINT64, Uint64(1) << 40, "1099511627776")
VEXA_SAMPLE(Sint64, CIMTYPE_SINT64, -(Sint64(1) << 40), "-1099511627776")
VEXA_SAMPLE(Real32, CIMTYPE_REAL32, Real32(-0.5f), "-5.0000000000000000e-01")
VEXA_SAMPLE(Real64, CIMTYPE_REAL64, Real64(1e300), "1.0000000000000001e+300")
VEXA_SAMPLE(Char16, CIMTYPE_CHAR16, Char16('Q'), "Q")
VEXA_SAMPLE(String, CIMTYPE_STRING, String("text"), "text")
VEXA_SAMPLE(CIMDateTime, CIMTYPE_DATETIME, CIMDateTime(String("00000001020304.000005:000")),
            "00000001020304.000005:000")
VEXA_SAMPLE(CIMObjectPath, CIMTYPE_REFERENCE, CIMObjectPath(String("A.k=\"v\"")), "A.k=\"v\"")

#undef VEXA_SAMPLE

template <class T>
class CIMValueEveryType : public ::testing::Test {};

using ValueTypes =
    ::testing::Types<Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32,
                     Real64, Char16, String, CIMDateTime, CIMObjectPath>;
TYPED_TEST_SUITE(CIMValueEveryType, ValueTypes);

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

} // namespace

TYPED_TEST(CIMValueEveryType, ScalarAndArrayKeepTypeValueAndText) {
    using T = TypeParam;
    const T sample = Sample<T>::make();

    CIMValue scalar(sample);
    EXPECT_EQ(scalar.getType(), Sample<T>::type);
    EXPECT_FALSE(scalar.isArray());
    EXPECT_EQ(text(scalar.toString()), Sample<T>::text());
    T back{};
    scalar.get(back);
    EXPECT_EQ(CIMValue(back), scalar);

    Array<T> items;
    items.append(sample);
    items.append(sample);
    CIMValue array;
    array.set(items);
    EXPECT_EQ(array.getType(), Sample<T>::type);
    EXPECT_TRUE(array.isArray());
    EXPECT_EQ(array.getArraySize(), 2u);
    EXPECT_EQ(text(array.toString()),
              std::string(Sample<T>::text()) + " " + Sample<T>::text() + " ");
    Array<T> readBack;
    array.get(readBack);
    ASSERT_EQ(readBack.size(), 2u);
    EXPECT_EQ(CIMValue(readBack[1]), scalar);

    // Neither form reads as the other.
    EXPECT_THROW(scalar.get(readBack), TypeMismatchException);
    EXPECT_THROW(array.get(back), TypeMismatchException);

    CIMValue nullOfType(Sample<T>::type, false);
    EXPECT_TRUE(nullOfType.typeCompatible(scalar));
    EXPECT_NE(nullOfType, scalar);
}

TEST(CIMValueEmbedded, ObjectAndInstanceTypesStayDistinct) {
    CIMInstance instance(CIMName("E"));
    instance.addProperty(CIMProperty(CIMName("Note"), CIMValue(String("R&D"))));
    CIMValue asInstance(instance);
    CIMValue asObject{CIMObject(instance)};
    EXPECT_EQ(asInstance.getType(), CIMTYPE_INSTANCE);
    EXPECT_EQ(asObject.getType(), CIMTYPE_OBJECT);
    EXPECT_NE(asInstance, asObject);

    CIMObject object;
    EXPECT_THROW(asInstance.get(object), TypeMismatchException);
    asObject.get(object);
    EXPECT_TRUE(object.isInstance());
    EXPECT_TRUE(object.identical(instance));
    EXPECT_EQ(text(asObject.toString()), text(asInstance.toString()));

    // An instance nested in another is escaped once more inside its VALUE.
    CIMInstance outer(CIMName("Outer"));
    outer.addProperty(CIMProperty(CIMName("Inner"), asObject));
    std::string xml = text(CIMObject(outer).toString());
    EXPECT_NE(xml.find("<PROPERTY NAME=\"Inner\"  TYPE=\"string\" EmbeddedObject=\"object\" "
                       "EMBEDDEDOBJECT=\"object\">"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("&lt;INSTANCE CLASSNAME=&quot;E&quot; &gt;&#10;"), std::string::npos) << xml;
    EXPECT_NE(xml.find("R&amp;amp;D"), std::string::npos) << xml;
}
