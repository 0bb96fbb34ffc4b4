// The MOF reader: the forms the project writes, and the mistakes it must
// report with file, line and what was expected.
#include <vexa/schema/SchemaRepository.h>

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

PEGASUS_USING_PEGASUS;
using vexa::schema::MofError;
using vexa::schema::SchemaRepository;

namespace {

const char* const base = R"mof(
[Abstract] class T_Base { [Key] string Id; string Text; };
)mof";

// Loads `text` after the base class and returns the error, failing the test
// when there is none.
MofError errorOf(const std::string& text, const std::string& source = "t.mof") {
    SchemaRepository repository;
    repository.loadText(base, "base.mof");
    try {
        repository.loadText(text, source);
    } catch (const MofError& e) {
        return e;
    }
    ADD_FAILURE() << "no error for:\n" << text;
    return MofError(source, 0, "");
}

CIMConstProperty propertyOf(const SchemaRepository& repository, const char* className,
                            const char* property) {
    const CIMClass* found = repository.findClass(CIMName(className));
    EXPECT_NE(found, nullptr) << className;
    Uint32 index = found->findProperty(CIMName(property));
    EXPECT_NE(index, PEG_NOT_FOUND) << property;
    return found->getProperty(index);
}

TEST(MofReader, ReadsTheFormsOfTheProjectsMof) {
    SchemaRepository repository;
    repository.loadText(R"mof(
// line comment
/* block
   comment */
#pragma locale ("en_US")
#pragma namespace ("root/cimv2")
Qualifier Site : string = null, Scope (class, property), Flavor (EnableOverride, Restricted);
[Description ("A " "joined" " text"), Site ("lab")]
class T_All {
    [Key] string Name = "a\"b\\c\x41\n";
    uint8 Small = 0x1F;
    sint16 Negative = -32768;
    uint32 Octal = 017;
    uint64 Binary = 101b;
    real64 Ratio = -1.5e3;
    boolean Flag = TRUE;
    char16 Letter = '\'';
    datetime When = "20240102030405.000000+060";
    string Names[] = {"x", "y"};
    uint16 Status[2] = {2, 3};
    string Nothing = NULL;
    [Static, Description ("does it")]
    uint32 Do([IN] string text, [IN (false), OUT] T_All REF result, [OUT] uint16 codes[]);
    sint32 None();
};
)mof",
                        "forms.mof");
    const CIMClass* all = repository.findClass(CIMName("t_all"));
    ASSERT_NE(all, nullptr);

    Uint32 description = all->findQualifier(CIMName("Description"));
    ASSERT_NE(description, PEG_NOT_FOUND);
    EXPECT_EQ(all->getQualifier(description).getValue().toString(), String("A joined text"));
    EXPECT_NE(all->findQualifier(CIMName("Site")), PEG_NOT_FOUND);

    String name;
    propertyOf(repository, "T_All", "Name").getValue().get(name);
    EXPECT_EQ(name, String("a\"b\\cA\n"));
    EXPECT_EQ(propertyOf(repository, "T_All", "Small").getValue(), CIMValue(Uint8(31)));
    EXPECT_EQ(propertyOf(repository, "T_All", "Negative").getValue(), CIMValue(Sint16(-32768)));
    EXPECT_EQ(propertyOf(repository, "T_All", "Octal").getValue(), CIMValue(Uint32(15)));
    EXPECT_EQ(propertyOf(repository, "T_All", "Binary").getValue(), CIMValue(Uint64(5)));
    EXPECT_EQ(propertyOf(repository, "T_All", "Ratio").getValue(), CIMValue(Real64(-1500.0)));
    EXPECT_EQ(propertyOf(repository, "T_All", "Flag").getValue(), CIMValue(Boolean(true)));
    EXPECT_EQ(propertyOf(repository, "T_All", "Letter").getValue(), CIMValue(Char16('\'')));
    EXPECT_EQ(propertyOf(repository, "T_All", "When").getValue(),
              CIMValue(CIMDateTime(String("20240102030405.000000+060"))));
    EXPECT_EQ(propertyOf(repository, "T_All", "Names").getValue().toString(), String("x y "));
    CIMConstProperty status = propertyOf(repository, "T_All", "Status");
    EXPECT_TRUE(status.isArray());
    EXPECT_EQ(status.getArraySize(), 2u);
    EXPECT_TRUE(propertyOf(repository, "T_All", "Nothing").getValue().isNull());
    EXPECT_EQ(propertyOf(repository, "T_All", "Nothing").getType(), CIMTYPE_STRING);

    Uint32 doIndex = all->findMethod(CIMName("Do"));
    ASSERT_NE(doIndex, PEG_NOT_FOUND);
    CIMConstMethod method = all->getMethod(doIndex);
    EXPECT_EQ(method.getType(), CIMTYPE_UINT32);
    ASSERT_EQ(method.getParameterCount(), 3u);
    CIMConstParameter result = method.getParameter(1);
    EXPECT_EQ(result.getType(), CIMTYPE_REFERENCE);
    EXPECT_EQ(result.getReferenceClassName(), CIMName("T_All"));
    EXPECT_EQ(result.getQualifier(result.findQualifier(CIMName("In"))).getValue(),
              CIMValue(Boolean(false)));
    EXPECT_TRUE(method.getParameter(2).isArray());
    EXPECT_EQ(all->getMethod(all->findMethod(CIMName("None"))).getParameterCount(), 0u);
}

TEST(MofReader, ReportsTypicalMistakesWithFileLineAndTheRemedy) {
    struct Case {
        const char* text;
        unsigned line;
        const char* expected;
    } cases[] = {
        {"class T_A {\n  unit32 Count;\n};", 2,
         "unknown type \"unit32\" of property Count; expected a CIM type"},
        {"class T_A {\n  string A\n  string B;\n};", 2,
         "expected ';' after property A, found \"string\""},
        {"class T_A : T_Missing {\n};", 1,
         "unknown superclass T_Missing of class T_A; declare it earlier"},
        {"class T_A {\n  string A = \"open;\n};", 2, "unterminated string"},
        {"#pragma include (\"no-such-file.mof\")\n", 1,
         "cannot read included file \"no-such-file.mof\""},
        {"class T_A {\n  [Kye] string A;\n};", 2, "unknown qualifier \"Kye\""},
        {"[Key] class T_A {\n};", 1, "qualifier Key cannot be used on a class"},
        {"class T_A {\n  uint8 A = 256;\n};", 2,
         "value 256 of property A does not fit its type uint8"},
        {"class T_A {\n  string A[] = \"x\";\n};", 2, "a string cannot be the value of property A"},
        {"class T_A {\n  string A;\n  string a;\n};", 3, "property a is declared twice"},
        {"class T_A : T_Base {\n  string Text;\n};", 2,
         "hides T_Base.Text; mark it [Override (\"Text\")]"},
        {"class T_A : T_Base {\n  [Override (\"Text\")] uint32 Text;\n};", 2,
         "changes the type of T_Base.Text from string to uint32"},
        {"class T_A : T_Base {\n  [Key] string Other;\n};", 2, "a subclass cannot add keys"},
        {"class T_A {\n  [Override (\"X\")] string X;\n};", 2, "no superclass declares it"},
        {"class T_A {\n  T_Base REF Target;\n};", 2, "is not an association"},
        {"class T_Base {\n};", 1, "class T_Base is already declared (base.mof:2)"},
        {"#pragma frobnicate (\"x\")", 1, "unknown pragma \"frobnicate\""},
        {"class T_A {\n  /* never closed\n", 2, "unterminated comment"},
        {"class T_A {\n  string A;\n", 3, "is not closed; expected '}'"},
        {"instance of T_Base {\n  Nope = 1;\n};", 2, "class T_Base has no property Nope"},
        {"class T_A {\n  uint8 A[3] = {1,\n 2};\n};", 2, "holds 3 elements, but its value gives 2"},
    };
    for (const Case& c : cases) {
        MofError error = errorOf(c.text);
        EXPECT_EQ(error.source(), "t.mof") << c.text;
        EXPECT_EQ(error.line(), c.line) << c.text << "\n" << error.what();
        EXPECT_NE(error.problem().find(c.expected), std::string::npos)
            << "expected \"" << c.expected << "\" in: " << error.what();
        EXPECT_EQ(std::string(error.what()).rfind("t.mof:" + std::to_string(c.line) + ": ", 0), 0u)
            << error.what();
    }
}

TEST(MofReader, AFailedLoadLeavesTheRepositoryUnchanged) {
    SchemaRepository repository;
    repository.loadText(base, "base.mof");
    EXPECT_THROW(
        repository.loadText("class T_Good : T_Base {};\nclass T_Bad : T_Nowhere {};", "bad.mof"),
        MofError);
    EXPECT_EQ(repository.classCount(), 1u);
    EXPECT_EQ(repository.findClass(CIMName("T_Good")), nullptr);
    // The same class loads once the mistake is gone.
    repository.loadText("class T_Good : T_Base {};", "good.mof");
    EXPECT_NE(repository.findClass(CIMName("T_Good")), nullptr);
}

class MofFiles : public ::testing::Test {
protected:
    void write(const std::string& name, const std::string& text) {
        std::ofstream(dir + "/" + name) << text;
    }
    void SetUp() override {
        char pattern[] = "/tmp/vexa-mof-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        std::system(("mkdir -p " + dir + "/sub").c_str());
    }
    void TearDown() override { std::system(("rm -rf " + dir).c_str()); }
    std::string dir;
};

TEST_F(MofFiles, IncludesAreRelativeToTheIncludingFileAndErrorsNameTheIncludedFile) {
    write("top.mof", "#pragma include (\"sub/a.mof\")\nclass T_Top : T_A {};\n");
    write("sub/a.mof", "#pragma include (\"b.mof\")\nclass T_A : T_B {};\n");
    write("sub/b.mof", "class T_B {};\n");
    SchemaRepository repository;
    repository.loadFile(dir + "/top.mof");
    EXPECT_TRUE(repository.isA(CIMName("T_Top"), CIMName("T_B")));

    write("sub/b.mof", "class T_B {\n  strin Oops;\n};\n");
    SchemaRepository broken;
    try {
        broken.loadFile(dir + "/top.mof");
        ADD_FAILURE() << "no error";
    } catch (const MofError& e) {
        EXPECT_EQ(e.source(), dir + "/sub/b.mof");
        EXPECT_EQ(e.line(), 2u);
    }
    EXPECT_EQ(broken.classCount(), 0u);
}

TEST_F(MofFiles, AnIncludeCycleIsReportedInsteadOfRecursing) {
    write("a.mof", "#pragma include (\"b.mof\")\n");
    write("b.mof", "\n#pragma include (\"a.mof\")\n");
    SchemaRepository repository;
    try {
        repository.loadFile(dir + "/a.mof");
        ADD_FAILURE() << "no error";
    } catch (const MofError& e) {
        EXPECT_EQ(e.line(), 2u);
        EXPECT_NE(e.problem().find("include cycle"), std::string::npos) << e.what();
    }
}

TEST_F(MofFiles, AMissingFileIsNamed) {
    SchemaRepository repository;
    try {
        repository.loadFile(dir + "/absent.mof");
        ADD_FAILURE() << "no error";
    } catch (const MofError& e) {
        EXPECT_EQ(e.source(), dir + "/absent.mof");
        EXPECT_NE(e.problem().find("cannot read"), std::string::npos);
    }
}

TEST(MofReader, InstancesAreTypedByTheirClassOrByTheirLiterals) {
    SchemaRepository repository;
    repository.loadText(base, "base.mof");
    repository.loadText(R"mof(
class T_Item : T_Base { uint16 Count; };
instance of T_Item { Id = "i"; Count = 7; };
instance of PG_Elsewhere {
    Name = "x"; Types = { 2, 5 }; Negative = -1; Flags = NULL; Ok = true;
};
)mof",
                        "inst.mof");
    ASSERT_EQ(repository.instances().size(), 2u);
    const CIMInstance& item = repository.instances()[0].instance;
    EXPECT_EQ(item.getProperty(item.findProperty(CIMName("Count"))).getValue(),
              CIMValue(Uint16(7)));
    const CIMInstance& other = repository.instances()[1].instance;
    EXPECT_EQ(repository.instances()[1].line, 4u);
    Array<Uint64> types;
    types.append(2);
    types.append(5);
    EXPECT_EQ(other.getProperty(other.findProperty(CIMName("Types"))).getValue(), CIMValue(types));
    EXPECT_EQ(other.getProperty(other.findProperty(CIMName("Negative"))).getValue(),
              CIMValue(Sint64(-1)));
    EXPECT_TRUE(other.getProperty(other.findProperty(CIMName("Flags"))).getValue().isNull());
}

} // namespace
