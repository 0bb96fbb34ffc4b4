// Answers that copy the encoded forms cached objects keep must read exactly
// as freshly encoded ones, whatever happened to the objects in between.
#include "CodecTestSupport.h"

#ifdef VEXA_KEPT_ENCODINGS

#include <Pegasus/Common/CIMProperty.h>
#include <vexa/cim/KeptEncoding.h>

#include <string>

using namespace vexa::cimxml;
using namespace Pegasus;

namespace {

Request enumeration() {
    Request request;
    request.messageId = "7";
    request.methodName = "EnumerateInstances";
    request.nameSpace = "root/cimv2";
    return request;
}

CIMInstance disk(const char* name) {
    CIMInstance instance(CIMName("Test_Disk"));
    instance.addProperty(CIMProperty(CIMName("Name"), CIMValue(String(name))));
    instance.addProperty(CIMProperty(CIMName("Status"), CIMValue(String("up"))));
    instance.setPath(CIMObjectPath(String("Test_Disk.Name=\"") + name + "\""));
    return instance;
}

std::string answer(const CIMInstance& instance, const Request& request = enumeration(),
                   const PropertySelection& selection = {}) {
    std::string text;
    AnswerStream stream(request, [&text](std::string_view piece) { text += piece; });
    stream.addNamedInstance(instance, selection);
    stream.finish();
    return text;
}

// Kept forms are on for a test and given up after it.
class KeptEncoding : public ::testing::Test {
protected:
    void SetUp() override { vexa::cim::setKeptEncodingBudget(size_t(1) << 20); }
    void TearDown() override { vexa::cim::setKeptEncodingBudget(0); }
};

TEST_F(KeptEncoding, EveryChangeToAnInstanceShowsInItsNextAnswer) {
    CIMInstance instance = disk("d1");
    const std::string first = answer(instance);
    EXPECT_GT(vexa::cim::keptEncodingBytes(), 0u);
    EXPECT_EQ(answer(instance), first);

    // Through a property handle the instance never sees.
    CIMProperty status = instance.getProperty(instance.findProperty(CIMName("Status")));
    status.setValue(CIMValue(String("down")));
    EXPECT_NE(answer(instance).find("<VALUE>down</VALUE>"), std::string::npos);

    instance.addProperty(CIMProperty(CIMName("Size"), CIMValue(Uint64(42))));
    EXPECT_NE(answer(instance).find("NAME=\"Size\""), std::string::npos);
    instance.removeProperty(instance.findProperty(CIMName("Size")));
    EXPECT_EQ(answer(instance).find("NAME=\"Size\""), std::string::npos);

    instance.setPath(CIMObjectPath(String("Test_Disk.Name=\"d2\"")));
    EXPECT_NE(answer(instance).find(">d2</KEYVALUE>"), std::string::npos);

    // A clone is its own object: changing it leaves the original's answer.
    const std::string before = answer(instance);
    CIMInstance copy = instance.clone();
    copy.getProperty(0).setValue(CIMValue(String("other")));
    EXPECT_NE(answer(copy).find("<VALUE>other</VALUE>"), std::string::npos);
    EXPECT_EQ(answer(instance), before);
}

TEST_F(KeptEncoding, FormsThatShowLessOrMoreAreEncodedAfresh) {
    CIMInstance instance = disk("d1");
    const std::string whole = answer(instance);
    ASSERT_EQ(answer(instance), whole);

    Array<CIMName> names;
    names.append(CIMName("Name"));
    const CIMPropertyList onlyName(names);
    PropertySelection selection;
    selection.propertyList = &onlyName;
    EXPECT_EQ(answer(instance, enumeration(), selection).find("NAME=\"Status\""),
              std::string::npos);

    instance.getProperty(0).setClassOrigin(CIMName("Test_Disk"));
    Request withOrigins = enumeration();
    withOrigins.includeClassOrigin = true;
    EXPECT_NE(answer(instance, withOrigins).find("CLASSORIGIN=\"Test_Disk\""), std::string::npos);
    EXPECT_EQ(answer(instance), whole);
}

TEST_F(KeptEncoding, TheBudgetBoundsWhatIsKeptAndGoneObjectsGiveItBack) {
    {
        CIMInstance instance = disk("d1");
        answer(instance);
        EXPECT_GT(vexa::cim::keptEncodingBytes(), 0u);
    }
    EXPECT_EQ(vexa::cim::keptEncodingBytes(), 0u);

    vexa::cim::setKeptEncodingBudget(0);
    CIMInstance instance = disk("d1");
    const std::string fresh = answer(instance);
    EXPECT_EQ(vexa::cim::keptEncodingBytes(), 0u);
    EXPECT_EQ(answer(instance), fresh);

    // Values that hold instances can change inside, out of the holder's sight.
    vexa::cim::setKeptEncodingBudget(size_t(1) << 20);
    CIMInstance holder(CIMName("Test_Holder"));
    holder.addProperty(CIMProperty(CIMName("Inner"), CIMValue(disk("d3"))));
    holder.setPath(CIMObjectPath(String("Test_Holder.Name=\"h\"")));
    const size_t pathOnly = (answer(holder), vexa::cim::keptEncodingBytes());
    answer(holder);
    EXPECT_EQ(vexa::cim::keptEncodingBytes(), pathOnly);
}

} // namespace

#endif
