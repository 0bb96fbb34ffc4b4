#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Exception.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

std::string utf8(const String& s) { return std::string(static_cast<const char*>(s.getCString())); }

} // namespace

TEST(CIMName, ValidatesAndComparesIgnoringAsciiCase) {
    CIMName name("KOR_VEXA_Cluster");
    EXPECT_EQ(utf8(name.getString()), "KOR_VEXA_Cluster");
    EXPECT_TRUE(name == CIMName("kor_vexa_cluster"));
    EXPECT_TRUE(name == "KOR_VEXA_CLUSTER");
    EXPECT_TRUE(name != CIMName("KOR_VEXA_Node"));
    EXPECT_FALSE(CIMName("\xC3\x84x") == CIMName("\xC3\xA4x"));

    EXPECT_TRUE(CIMName::legal("_a9"));
    EXPECT_TRUE(CIMName::legal("\xC3\xA9t\xC3\xA9"));
    EXPECT_FALSE(CIMName::legal(""));
    EXPECT_FALSE(CIMName::legal("9abc"));
    EXPECT_FALSE(CIMName::legal("a-b"));
    EXPECT_FALSE(CIMName::legal("a b"));

    try {
        CIMName bad("a-b");
        FAIL() << "an illegal name was accepted";
    } catch (const InvalidNameException& e) {
        EXPECT_EQ(utf8(e.getMessage()), "The CIM name is not valid: a-b");
    }
    EXPECT_THROW(CIMName(""), InvalidNameException);
    String empty;
    EXPECT_THROW(CIMName{empty}, InvalidNameException);
    CIMName assigned;
    EXPECT_THROW(assigned = String("1x"), InvalidNameException);
    EXPECT_TRUE(assigned.isNull());
    CIMName copy = name;
    name.clear();
    EXPECT_TRUE(name.isNull() && !copy.isNull());
    EXPECT_TRUE(assigned == name);
}

// Equal names may share their text; each must still read back exactly as it
// was given, however many threads make names at once and however many
// distinct names a process sees.
TEST(CIMName, EveryNameKeepsItsOwnSpelling) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; t++) {
        threads.emplace_back([t] {
            for (int i = 0; i < 10000; i++) {
                std::string lower = "prop_" + std::to_string((i * 7 + t) % 10000);
                std::string upper = "PROP_" + std::to_string(i);
                CIMName a(lower.c_str());
                CIMName b{String(upper.c_str())};
                CIMName c = CIMName(upper.c_str());
                if (utf8(a.getString()) != lower || utf8(b.getString()) != upper ||
                    utf8(c.getString()) != upper || !(b == c))
                    ADD_FAILURE() << lower << " " << upper;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(utf8(CIMName("Name").getString()), "Name");
    EXPECT_EQ(utf8(CIMName("NAME").getString()), "NAME");
    EXPECT_EQ(utf8(CIMName("\xC3\xA9t\xC3\xA9").getString()), "\xC3\xA9t\xC3\xA9");
    String source("Widget");
    CIMName named(source);
    source[0] = 'M';
    EXPECT_EQ(utf8(named.getString()), "Widget");
    EXPECT_EQ(utf8(CIMName("Widget").getString()), "Widget");
    std::string longName(300, 'x');
    EXPECT_EQ(utf8(CIMName(longName.c_str()).getString()), longName);
}

TEST(CIMNamespaceName, DropsOneLeadingSlashAndChecksEveryElement) {
    CIMNamespaceName ns("/root/cimv2");
    EXPECT_EQ(utf8(ns.getString()), "root/cimv2");
    EXPECT_TRUE(ns == CIMNamespaceName("ROOT/CIMV2"));
    EXPECT_TRUE(ns != CIMNamespaceName("root/interop"));
    EXPECT_TRUE(CIMNamespaceName().isNull());

    const char* illegal[] = {"", "/", "root/", "root//x", "//root", "root/my-ns", "1root"};
    for (const char* text : illegal) {
        EXPECT_FALSE(CIMNamespaceName::legal(text)) << text;
        try {
            CIMNamespaceName bad(text);
            ADD_FAILURE() << "accepted " << text;
        } catch (const InvalidNamespaceNameException& e) {
            EXPECT_EQ(utf8(e.getMessage()), std::string("invalid CIM namespace name: ") + text);
        }
    }
    EXPECT_TRUE(CIMNamespaceName::legal("root"));
    EXPECT_TRUE(CIMNamespaceName::legal("/a/b_2/c"));
}
