// The credentials file: hashes made by vexa-tool passwd and checked by the
// server, and the Basic credential encoding.
#include <vexa/host/AuthFile.h>
#include <vexa/host/Base64.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace vexa::host;

namespace {

class AuthFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/vexa-auth-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        path = dir + "/users";
    }
    void TearDown() override { std::system(("rm -rf '" + dir + "'").c_str()); }

    void write(const std::string& text) { std::ofstream(path) << text; }
    std::string read() {
        std::ifstream in(path);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    std::string loadError() {
        try {
            AuthFile::load(path);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "loaded";
    }

    std::string dir;
    std::string path;
};

TEST_F(AuthFileTest, StoredPasswordsCheckAndNeverAppearInTheFile) {
    AuthFile::storeUser(path, "alice", AuthFile::hashPassword("se:cret"));
    AuthFile::storeUser(path, "bob", AuthFile::hashPassword("hunter2"));
    std::string text = read();
    EXPECT_EQ(text.find("se:cret"), std::string::npos);
    EXPECT_EQ(text.find("hunter2"), std::string::npos);
    struct stat info {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    AuthFile file = AuthFile::load(path);
    EXPECT_EQ(file.userCount(), 2u);
    EXPECT_TRUE(file.check("alice", "se:cret"));
    EXPECT_TRUE(file.check("bob", "hunter2"));
    EXPECT_FALSE(file.check("alice", "hunter2"));
    EXPECT_FALSE(file.check("alice", "se:cret "));
    EXPECT_FALSE(file.check("alice", ""));
    EXPECT_FALSE(file.check("carol", "se:cret"));
    EXPECT_FALSE(file.check("Alice", "se:cret"));
}

TEST_F(AuthFileTest, HashesAreSaltedSoEqualPasswordsDiffer) {
    EXPECT_NE(AuthFile::hashPassword("same"), AuthFile::hashPassword("same"));
}

TEST_F(AuthFileTest, ReplacingAUserKeepsTheOtherLines) {
    write("# operators\ncarol:" + AuthFile::hashPassword("old") +
          "\n\nalice:" + AuthFile::hashPassword("first") + "\n");
    AuthFile::storeUser(path, "alice", AuthFile::hashPassword("second"));
    std::string text = read();
    EXPECT_EQ(text.rfind("# operators\ncarol:", 0), 0u) << text;
    AuthFile file = AuthFile::load(path);
    EXPECT_EQ(file.userCount(), 2u);
    EXPECT_TRUE(file.check("alice", "second"));
    EXPECT_FALSE(file.check("alice", "first"));
    EXPECT_TRUE(file.check("carol", "old"));
}

TEST_F(AuthFileTest, ReportsTheLineAtFault) {
    write("alice:" + AuthFile::hashPassword("x") + "\nbob\n");
    EXPECT_NE(loadError().find(path + ":2: expected user:hash"), std::string::npos);
    write("alice:plaintext\n");
    EXPECT_NE(loadError().find(path + ":1: the hash of 'alice' is not a salted crypt hash"),
              std::string::npos);
    write("alice:$6$a$b\nalice:$6$c$d\n");
    EXPECT_NE(loadError().find(path + ":2: user 'alice' is listed twice"), std::string::npos);
    std::remove(path.c_str());
    EXPECT_NE(loadError().find("cannot read the credentials file"), std::string::npos);
}

TEST_F(AuthFileTest, UserNamesThatCannotStandInACredentialAreRefused) {
    for (const char* bad : {"", "a:b", "a b", "tab\there"}) {
        EXPECT_THROW(AuthFile::checkUserName(bad), std::invalid_argument) << bad;
        EXPECT_THROW(AuthFile::storeUser(path, bad, "$6$x$y"), std::invalid_argument) << bad;
    }
}

TEST(Base64Test, RoundTripsAndRefusesWhatIsNotBase64) {
    // The credential cimcli sent for alice with the password se:cret.
    EXPECT_EQ(base64Encode("alice:se:cret"), "YWxpY2U6c2U6Y3JldA==");
    EXPECT_EQ(base64Decode("YWxpY2U6c2U6Y3JldA==").value_or("?"), "alice:se:cret");
    for (const std::string& bytes : {std::string(), std::string("a"), std::string("ab"),
                                     std::string("abc"), std::string("\0\xff\x10", 3)}) {
        EXPECT_EQ(base64Decode(base64Encode(bytes)).value_or("?"), bytes);
    }
    for (const char* bad : {"abc", "ab=c", "a===", "@@@@", "YW=j", "YQ==YQ=="}) {
        EXPECT_FALSE(base64Decode(bad).has_value()) << bad;
    }
}

} // namespace
