#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/LanguageTag.h>

#include <gtest/gtest.h>

#include <string>

PEGASUS_USING_PEGASUS;

namespace {

std::string text(const String& s) { return std::string((const char*)s.getCString()); }

} // namespace

TEST(LanguageTag, SplitsSubtagsAndComparesWithoutCase) {
    LanguageTag us("en-US");
    EXPECT_EQ(text(us.getLanguage()), "en");
    EXPECT_EQ(text(us.getCountry()), "US");
    EXPECT_EQ(text(us.getVariant()), "");
    EXPECT_EQ(text(us.toString()), "en-US");

    LanguageTag variant("de-CH-1901");
    EXPECT_EQ(text(variant.getCountry()), "CH");
    EXPECT_EQ(text(variant.getVariant()), "1901");

    // A second subtag that is not two letters is no country.
    LanguageTag script("zh-Hant-TW");
    EXPECT_EQ(text(script.getLanguage()), "zh");
    EXPECT_EQ(text(script.getCountry()), "");
    EXPECT_EQ(text(script.getVariant()), "Hant-TW");

    EXPECT_TRUE(LanguageTag("EN-us") == us);
    EXPECT_TRUE(LanguageTag("en") != us);
    EXPECT_EQ(text(LanguageTag("*").getLanguage()), "");
    EXPECT_EQ(text(LanguageTag("*").toString()), "*");
    EXPECT_EQ(text(LanguageTag("x-vexa").getLanguage()), "");
    EXPECT_EQ(text(LanguageTag("x-vexa").getVariant()), "");

    for (const char* bad : {"", "-", "en-", "en--US", "e1", "toolongtag", "en-US!", "en_US"}) {
        EXPECT_THROW(LanguageTag{String(bad)}, Exception) << bad;
    }
    EXPECT_THROW(LanguageTag().toString(), UninitializedObjectException);

    LanguageTag copy(us);
    copy = LanguageTag("fr");
    EXPECT_EQ(text(us.toString()), "en-US");
}

TEST(AcceptLanguageList, OrdersByQualityAndChecksItsInput) {
    AcceptLanguageList list;
    list.insert(LanguageTag("fr"), 0.5f);
    list.insert(LanguageTag("en"), 1.0f);
    list.insert(LanguageTag("de"), 0.5f);
    list.insert(LanguageTag("*"), 0.0f);
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(text(list.getLanguageTag(0).toString()), "en");
    // Equal qualities keep the order in which they were given.
    EXPECT_EQ(text(list.getLanguageTag(1).toString()), "fr");
    EXPECT_EQ(text(list.getLanguageTag(2).toString()), "de");
    EXPECT_EQ(list.getQualityValue(3), 0.0f);
    EXPECT_EQ(list.find(LanguageTag("DE")), 2u);
    EXPECT_EQ(list.find(LanguageTag("it")), PEG_NOT_FOUND);

    EXPECT_THROW(list.insert(LanguageTag("it"), 1.5f), Exception);
    EXPECT_THROW(list.insert(LanguageTag("it"), -0.1f), Exception);
    EXPECT_EQ(list.size(), 4u);
    EXPECT_THROW(list.getLanguageTag(4), IndexOutOfBoundsException);
    EXPECT_THROW(list.getQualityValue(4), IndexOutOfBoundsException);

    AcceptLanguageList copy(list);
    list.remove(0);
    EXPECT_EQ(copy.size(), 4u);
    EXPECT_TRUE(copy != list);
    copy.remove(0);
    EXPECT_TRUE(copy == list);
    list.clear();
    EXPECT_EQ(list.size(), 0u);
}

TEST(ContentLanguageList, KeepsOrderAndRefusesTheWildcard) {
    ContentLanguageList list;
    list.append(LanguageTag("fr-CA"));
    list.append(LanguageTag("en"));
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(text(list.getLanguageTag(0).toString()), "fr-CA");
    EXPECT_EQ(list.find(LanguageTag("EN")), 1u);
    EXPECT_THROW(list.append(LanguageTag("*")), Exception);
    EXPECT_THROW(list.getLanguageTag(2), IndexOutOfBoundsException);

    ContentLanguageList copy;
    copy = list;
    list.remove(0);
    EXPECT_EQ(copy.size(), 2u);
    EXPECT_TRUE(copy != list);
    EXPECT_TRUE(ContentLanguageList() == ContentLanguageList());
}
