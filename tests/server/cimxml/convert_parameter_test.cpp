#include "CodecTestSupport.h"

#include <Pegasus/Common/CIMDateTime.h>

#include <cmath>

using namespace cimxml_test;
using namespace vexa::cimxml;
using namespace Pegasus;

namespace {

RawParameter scalar(const std::string& value) {
    RawParameter parameter;
    parameter.name = "P";
    parameter.value.shape = RawValue::Shape::Scalar;
    parameter.value.texts = {value};
    return parameter;
}

RawParameter array(const std::vector<std::string>& values) {
    RawParameter parameter;
    parameter.name = "P";
    parameter.value.shape = RawValue::Shape::Array;
    parameter.value.texts = values;
    return parameter;
}

// The text of the converted value, or the failure as "error <code>: <what>".
std::string converted(const RawParameter& parameter, CIMType type, bool isArray = false) {
    try {
        return text(convertParameter(parameter, type, isArray).toString());
    } catch (const RequestError& e) {
        return "error " + std::to_string(int(e.cimStatus())) + ": " + e.what();
    }
}

bool rejected(const RawParameter& parameter, CIMType type) {
    return converted(parameter, type).rfind("error 4: parameter P: ", 0) == 0;
}

} // namespace

TEST(ConvertParameter, IntegersTakeTheFullRangeOfTheirTypeAndNoMore) {
    EXPECT_EQ(converted(scalar("255"), CIMTYPE_UINT8), "255");
    EXPECT_TRUE(rejected(scalar("256"), CIMTYPE_UINT8));
    EXPECT_TRUE(rejected(scalar("-1"), CIMTYPE_UINT8));
    EXPECT_EQ(converted(scalar("-128"), CIMTYPE_SINT8), "-128");
    EXPECT_TRUE(rejected(scalar("128"), CIMTYPE_SINT8));
    EXPECT_EQ(converted(scalar("18446744073709551615"), CIMTYPE_UINT64), "18446744073709551615");
    EXPECT_TRUE(rejected(scalar("18446744073709551616"), CIMTYPE_UINT64));
    EXPECT_EQ(converted(scalar("-9223372036854775808"), CIMTYPE_SINT64), "-9223372036854775808");
    EXPECT_TRUE(rejected(scalar("9223372036854775808"), CIMTYPE_SINT64));
    // wbemcli copies what the user typed: leading zeros, '+', hex, spaces.
    EXPECT_EQ(converted(scalar(" +007 "), CIMTYPE_UINT32), "7");
    EXPECT_EQ(converted(scalar("0x1F"), CIMTYPE_UINT16), "31");
    for (const char* bad : {"", "1.5", "12abc", "--1", "0x", "1 2"})
        EXPECT_TRUE(rejected(scalar(bad), CIMTYPE_SINT32)) << bad;
}

TEST(ConvertParameter, ErrorsNameTheParameterAndTheExpectedType) {
    EXPECT_EQ(converted(scalar("300"), CIMTYPE_UINT8),
              "error 4: parameter P: \"300\" is not a uint8 (a whole number from 0 to 255)");
}

TEST(ConvertParameter, BooleansRealsChar16AndDatetimes) {
    for (const char* yes : {"true", "TRUE", "True"})
        EXPECT_EQ(converted(scalar(yes), CIMTYPE_BOOLEAN), "TRUE") << yes;
    EXPECT_EQ(converted(scalar("false"), CIMTYPE_BOOLEAN), "FALSE");
    EXPECT_TRUE(rejected(scalar("1"), CIMTYPE_BOOLEAN));

    EXPECT_EQ(converted(scalar("1.5"), CIMTYPE_REAL64), "1.5000000000000000e+00");
    EXPECT_EQ(converted(scalar("-2.5e-3"), CIMTYPE_REAL64), "-2.5000000000000001e-03");
    EXPECT_TRUE(rejected(scalar("1e39"), CIMTYPE_REAL32));
    EXPECT_TRUE(rejected(scalar("1,5"), CIMTYPE_REAL64));

    EXPECT_EQ(converted(scalar("\xC3\xA9"), CIMTYPE_CHAR16), "\xC3\xA9");
    EXPECT_TRUE(rejected(scalar("ab"), CIMTYPE_CHAR16));
    EXPECT_TRUE(rejected(scalar(""), CIMTYPE_CHAR16));

    EXPECT_EQ(converted(scalar("20240102030405.123456+060"), CIMTYPE_DATETIME),
              "20240102030405.123456+060");
    EXPECT_EQ(converted(scalar("00000001020304.000000:000"), CIMTYPE_DATETIME),
              "00000001020304.000000:000");
    EXPECT_TRUE(rejected(scalar("20241302030405.123456+060"), CIMTYPE_DATETIME));
    EXPECT_TRUE(rejected(scalar("2024-01-02"), CIMTYPE_DATETIME));
}

TEST(ConvertParameter, StringsKeepTheirSpaces) {
    const CIMValue value = convertParameter(scalar("  a <b> & \"c\"  "), CIMTYPE_STRING, false);
    String s;
    value.get(s);
    EXPECT_EQ(text(s), "  a <b> & \"c\"  ");
}

TEST(ConvertParameter, ArraysAndShapeMismatches) {
    const CIMValue codes = convertParameter(array({"1", "2", "3"}), CIMTYPE_UINT16, true);
    EXPECT_TRUE(codes.isArray());
    EXPECT_EQ(codes.getArraySize(), 3u);
    EXPECT_EQ(
        converted(array({"1", "x"}), CIMTYPE_UINT16, true).rfind("error 4: parameter P: \"x\"", 0),
        0u);
    // A single value for an array parameter is an array of one ...
    EXPECT_EQ(convertParameter(scalar("5"), CIMTYPE_UINT8, true).getArraySize(), 1u);
    // ... but an array for a scalar loses values, so it is a type mismatch.
    EXPECT_EQ(converted(array({"1", "2"}), CIMTYPE_UINT8).rfind("error 13: parameter P", 0), 0u);

    RawParameter nothing;
    nothing.name = "P";
    const CIMValue null = convertParameter(nothing, CIMTYPE_STRING, true);
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(null.isArray());
    EXPECT_EQ(null.getType(), CIMTYPE_STRING);
}

TEST(ConvertParameter, References) {
    RawParameter reference;
    reference.name = "R";
    reference.value.shape = RawValue::Shape::Reference;
    reference.value.refs = {CIMObjectPath(String("root/cimv2:Test_Class.Name=\"x\""))};
    EXPECT_EQ(converted(reference, CIMTYPE_REFERENCE), "root/cimv2:Test_Class.Name=\"x\"");
    EXPECT_EQ(converted(reference, CIMTYPE_STRING).rfind("error 13", 0), 0u);
    // A reference typed as path text is accepted too.
    EXPECT_EQ(converted(scalar("Test_Class.Name=\"y\""), CIMTYPE_REFERENCE),
              "Test_Class.Name=\"y\"");
    EXPECT_TRUE(rejected(scalar("not a path"), CIMTYPE_REFERENCE));
}

TEST(ConvertParameter, EmbeddedInstances) {
    RawParameter embedded;
    embedded.name = "E";
    embedded.value.shape = RawValue::Shape::Instance;
    embedded.value.embeddedXml = "<INSTANCE CLASSNAME=\"Test_Emb\"><PROPERTY NAME=\"N\" "
                                 "TYPE=\"string\"><VALUE>R&amp;D</VALUE></PROPERTY></INSTANCE>";
    const CIMValue object = convertParameter(embedded, CIMTYPE_OBJECT, false);
    EXPECT_EQ(object.getType(), CIMTYPE_OBJECT);
    CIMObject held;
    object.get(held);
    String note;
    held.getProperty(held.findProperty("N")).getValue().get(note);
    EXPECT_EQ(text(note), "R&D");
    // Declared as a string (EmbeddedInstance qualifier): the markup itself.
    EXPECT_EQ(converted(embedded, CIMTYPE_STRING), embedded.value.embeddedXml);

    embedded.value.embeddedXml = "<INSTANCE CLASSNAME=\"Test_Emb\"><PROPERTY NAME=\"N\"";
    EXPECT_EQ(converted(embedded, CIMTYPE_INSTANCE).rfind("error 4: parameter E:", 0), 0u);
    embedded.value.embeddedXml = "<CLASS NAME=\"Test_Emb\"></CLASS>";
    EXPECT_EQ(converted(embedded, CIMTYPE_INSTANCE).rfind("error 4: parameter E:", 0), 0u);
}
