#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Exception.h>
#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

Array<CIMName> names(std::initializer_list<const char*> list) {
    Array<CIMName> result;
    for (const char* name : list)
        result.append(CIMName(name));
    return result;
}

} // namespace

TEST(CIMPropertyList, NullMeansEverythingAndEmptyMeansNothing) {
    CIMPropertyList all;
    EXPECT_TRUE(all.isNull());
    EXPECT_TRUE(all.useThisProperty(CIMName("Anything")));
    EXPECT_EQ(text(all.toString()), "NULL");

    CIMPropertyList none{Array<CIMName>()};
    EXPECT_FALSE(none.isNull());
    EXPECT_EQ(none.size(), 0u);
    EXPECT_FALSE(none.useThisProperty(CIMName("Anything")));
    EXPECT_EQ(text(none.toString()), "EMPTY");

    CIMPropertyList some(names({"A", "b"}));
    EXPECT_EQ(text(some.toString()), "A, b");
    EXPECT_TRUE(some.contains(CIMName("B")));
    EXPECT_FALSE(some.contains(CIMName("C")));
    EXPECT_EQ(text(some[1].getString()), "b");
    EXPECT_THROW(some[2], IndexOutOfBoundsException);

    some.clear();
    EXPECT_TRUE(some.isNull());
}

TEST(CIMPropertyList, RejectsNullNamesAndDeduplicatesAppends) {
    Array<CIMName> withNull = names({"A"});
    withNull.append(CIMName());
    EXPECT_THROW(CIMPropertyList{withNull}, UninitializedObjectException);
    CIMPropertyList list;
    EXPECT_THROW(list.set(withNull), UninitializedObjectException);
    EXPECT_TRUE(list.isNull());

    Array<String> more;
    more.append("Size");
    more.append("size");
    more.append("Name");
    list.append(more);
    EXPECT_FALSE(list.isNull());
    EXPECT_EQ(text(list.toString()), "Size, Name");

    Array<String> illegal;
    illegal.append("not-a-name");
    EXPECT_THROW(list.append(illegal), InvalidNameException);

    CIMPropertyList tagged;
    tagged.appendCIMNameTag(7);
    EXPECT_EQ(tagged.getCIMNameTag(0), 7u);
    EXPECT_THROW(tagged.getCIMNameTag(1), IndexOutOfBoundsException);
}

TEST(CIMPropertyList, CopiesAreIndependentValues) {
    CIMPropertyList original(names({"A"}));
    CIMPropertyList copy = original;
    copy.set(names({"B", "C"}));
    EXPECT_EQ(text(original.toString()), "A");
    copy = original;
    copy.clear();
    EXPECT_FALSE(original.isNull());
    Array<CIMName> extracted = original.getPropertyNameArray();
    extracted.append(CIMName("Z"));
    EXPECT_EQ(original.size(), 1u);
}
