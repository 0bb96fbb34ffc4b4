#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>
#include <cstring>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

PEGASUS_USING_PEGASUS;

namespace {

std::string utf8(const String& s) {
    CString c = s.getCString();
    return std::string(static_cast<const char*>(c));
}

// The message of the exception `f` throws, or "" when it throws nothing.
template <class F>
std::string messageOf(F f) {
    try {
        f();
    } catch (const Exception& e) {
        return utf8(e.getMessage());
    }
    return "";
}

} // namespace

TEST(String, CopiesBehaveAsValues) {
    String a("abc");
    String b = a;
    b[0] = Char16('X');
    b.append(Char16('d'));
    EXPECT_EQ(utf8(a), "abc");
    EXPECT_EQ(utf8(b), "Xbcd");

    String c = a;
    c.toLower();
    c.remove(0, 1);
    a.clear();
    EXPECT_EQ(utf8(c), "bc");
    EXPECT_EQ(a.size(), 0u);
    EXPECT_EQ(Uint16(a.getChar16Data()[0]), 0);

    // Appending a string to itself must read the old text, not the new.
    String d("xy");
    d.append(d);
    d.append(d);
    EXPECT_EQ(utf8(d), "xyxyxyxy");
}

TEST(String, Utf8RoundTripsThroughUtf16Units) {
    const char* text = "Gr\xC3\xBC\xC3\x9F"
                       "e \xE2\x82\xAC \xF0\x9D\x84\x9E";
    String s(text);
    // G r ü ß e ' ' € ' ' and a surrogate pair
    ASSERT_EQ(s.size(), 10u);
    EXPECT_EQ(Uint16(s[2]), 0x00FC);
    EXPECT_EQ(Uint16(s[6]), 0x20AC);
    EXPECT_EQ(Uint16(s[8]), 0xD834);
    EXPECT_EQ(Uint16(s[9]), 0xDD1E);
    EXPECT_EQ(utf8(s), text);

    String counted("a\0b", 3);
    EXPECT_EQ(counted.size(), 3u);
    EXPECT_EQ(Uint16(counted[1]), 0);
}

TEST(String, RejectsInvalidUtf8WithTheOffendingIndex) {
    const char* prefix = "The byte sequence starting at index ";
    struct Case {
        const char* bytes;
        const char* index;
    } cases[] = {
        {"ab\xC3\x28", "2"},       // bad continuation
        {"\xC0\xAF", "0"},         // overlong '/'
        {"x\xE0\x80\xAF", "1"},    // overlong three-byte form
        {"\xF4\x90\x80\x80", "0"}, // beyond U+10FFFF
        {"abc\xE2\x82", "3"},      // truncated at the end
        {"\x80", "0"},             // stray continuation byte
        {"ok\xFF", "2"},           // never valid
    };
    for (const Case& c : cases) {
        std::string message = messageOf([&] { String s(c.bytes); });
        std::string expected = std::string(prefix) + c.index + " is not valid UTF-8 encoding:";
        EXPECT_EQ(message.compare(0, expected.size(), expected), 0) << message;
    }
    // An encoded surrogate and U+FFFF pass, each as one replacement character.
    String replaced("a\xED\xA0\x80"
                    "b\xEF\xBF\xBF");
    EXPECT_EQ(replaced.size(), 4u);
    EXPECT_EQ(Uint16(replaced[1]), 0xFFFDu);
    EXPECT_EQ(Uint16(replaced[3]), 0xFFFDu);
    std::string counted = messageOf([] { String s("ab\xC3", 3); });
    EXPECT_NE(counted.find("index 2"), std::string::npos) << counted;
}

TEST(String, NullCharPointersThrowNullPointer) {
    const char* none = nullptr;
    EXPECT_EQ(messageOf([&] { String s(none); }), "null pointer");
    EXPECT_EQ(messageOf([&] { String s(none, 2); }), "null pointer");
    EXPECT_EQ(messageOf([&] {
                  String s;
                  s.assign(none, 1);
              }),
              "null pointer");
}

TEST(String, IndexingAllowsTheTerminatorOnly) {
    String s("ab");
    const String& cs = s;
    EXPECT_EQ(Uint16(cs[2]), 0);
    EXPECT_EQ(Uint16(s[2]), 0);
    EXPECT_THROW(cs[3], IndexOutOfBoundsException);
    EXPECT_THROW(s[3], IndexOutOfBoundsException);
    EXPECT_EQ(messageOf([&] { cs[3]; }), "index out of bounds");

    String empty;
    EXPECT_EQ(Uint16(empty[0]), 0);
    EXPECT_THROW(empty[1], IndexOutOfBoundsException);

    EXPECT_THROW(String(s, 3), IndexOutOfBoundsException);
    EXPECT_EQ(utf8(String(s, 1)), "a");
}

TEST(String, SubStringIsLenientButRemoveAndFindCheckBounds) {
    String s("hello");
    EXPECT_EQ(utf8(s.subString(1, 3)), "ell");
    EXPECT_EQ(utf8(s.subString(3)), "lo");
    EXPECT_EQ(utf8(s.subString(2, 100)), "llo");
    EXPECT_EQ(s.subString(5).size(), 0u);
    EXPECT_EQ(s.subString(99, 2).size(), 0u);

    String r = s;
    r.remove(1, 2);
    EXPECT_EQ(utf8(r), "hlo");
    r.remove(1);
    EXPECT_EQ(utf8(r), "h");
    String t = s;
    t.remove(5);
    EXPECT_EQ(utf8(t), "hello");
    EXPECT_THROW(t.remove(3, 3), IndexOutOfBoundsException);
    EXPECT_THROW(t.remove(1, PEG_NOT_FOUND - 1), IndexOutOfBoundsException);

    EXPECT_EQ(s.find('l'), 2u);
    EXPECT_EQ(s.find(3, 'l'), 3u);
    EXPECT_EQ(s.find(5, 'l'), PEG_NOT_FOUND);
    EXPECT_THROW(s.find(6, 'l'), IndexOutOfBoundsException);
    EXPECT_EQ(s.find('z'), PEG_NOT_FOUND);
    EXPECT_EQ(s.find(String("llo")), 2u);
    EXPECT_EQ(s.find(String("lol")), PEG_NOT_FOUND);
    EXPECT_EQ(s.find("hello!"), PEG_NOT_FOUND);
    EXPECT_EQ(s.reverseFind('l'), 3u);
    EXPECT_EQ(s.reverseFind('q'), PEG_NOT_FOUND);
}

TEST(String, ComparisonAndCaseFoldingAreAsciiOnly) {
    EXPECT_TRUE(String::equalNoCase("KOR_Vexa", "kor_vEXA"));
    EXPECT_FALSE(String::equalNoCase("abc", "abcd"));
    EXPECT_FALSE(String::equal("abc", "ABC"));
    EXPECT_EQ(String::compareNoCase("ABC", "abc"), 0);

    // Non-ASCII letters are left alone by every case-insensitive operation.
    String upperUmlaut("\xC3\x84");
    String lowerUmlaut("\xC3\xA4");
    EXPECT_FALSE(String::equalNoCase(upperUmlaut, lowerUmlaut));
    EXPECT_NE(String::compareNoCase(upperUmlaut, lowerUmlaut), 0);
    String folded("A\xC3\x84Z");
    folded.toLower();
    EXPECT_EQ(utf8(folded), "a\xC3\x84z");

    EXPECT_LT(String::compare("abc", "abd"), 0);
    EXPECT_GT(String::compare("abd", "abc"), 0);
    EXPECT_LT(String::compare("ab", "abc"), 0);
    EXPECT_GT(String::compare("abc", "ab"), 0);
    EXPECT_EQ(String::compare("abc", "abd", 2), 0);
    EXPECT_EQ(String::compare(String("a\0x", 3), String("a\0y", 3)), 0);
    EXPECT_LT(String::compare("B", "a"), 0);
    EXPECT_GT(String::compareNoCase("B", "a"), 0);

    EXPECT_TRUE(String("x") < String("y"));
    EXPECT_TRUE(String("x") <= String("x"));
    EXPECT_TRUE(String("y") > String("x"));
    EXPECT_TRUE(String("abc") == "abc");
    EXPECT_TRUE("abc" == String("abc"));
    EXPECT_TRUE(String("abc") != String("abC"));
    EXPECT_EQ(utf8(String("ab") + "cd"), "abcd");
}

TEST(String, StreamsLatin1AndEscapesWiderUnits) {
    std::ostringstream out;
    out << String("a\xC3\xBC\xE2\x82\xAC");
    EXPECT_EQ(out.str(), "a\xFC\\x20AC");
}

TEST(String, AppendPrintfFormatsAnyLength) {
    String s("n=");
    s.appendPrintf("%d/%s", 42, "x");
    EXPECT_EQ(utf8(s), "n=42/x");

    std::string big(200, 'q');
    String t;
    t.appendPrintf("%s%llu", big.c_str(), 18446744073709551615ULL);
    EXPECT_EQ(utf8(t), big + "18446744073709551615");
}
