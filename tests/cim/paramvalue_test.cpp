#include <Pegasus/Common/CIMParamValue.h>
#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

} // namespace

TEST(CIMParamValue, CopiesShareAndClonesDoNot) {
    CIMParamValue original("vexaFilesetName", CIMValue(String("fs1")));
    EXPECT_TRUE(original.isTyped());
    CIMParamValue copy = original;
    CIMValue changed(Uint32(5));
    copy.setValue(changed);
    EXPECT_EQ(original.getValue().getType(), CIMTYPE_UINT32);

    CIMParamValue clone = original.clone();
    CIMValue other(String("x"));
    clone.setValue(other);
    EXPECT_EQ(original.getValue().getType(), CIMTYPE_UINT32);

    // The value handed out is a copy: changing it leaves the parameter alone.
    CIMValue out = original.getValue();
    out.set(true);
    EXPECT_EQ(text(original.getValue().toString()), "5");
}

TEST(CIMParamValue, NamesMustBeNonEmptyButNeedNotBeCIMNames) {
    EXPECT_THROW(CIMParamValue("", CIMValue(true)), UninitializedObjectException);
    CIMParamValue odd("not a-name", CIMValue(true), false);
    EXPECT_EQ(text(odd.getParameterName()), "not a-name");
    EXPECT_FALSE(odd.isTyped());
    String empty;
    EXPECT_THROW(odd.setParameterName(empty), UninitializedObjectException);
    EXPECT_EQ(text(odd.getParameterName()), "not a-name");
}

TEST(CIMParamValue, UninitialisedHandleRefusesEverything) {
    CIMParamValue empty;
    EXPECT_TRUE(empty.isUninitialized());
    EXPECT_THROW(empty.getParameterName(), UninitializedObjectException);
    EXPECT_THROW(empty.setIsTyped(true), UninitializedObjectException);
}
