// ModifyNode's asynchronous job, its completion and the modification
// indications of jobs and declustered-RAID elements.
#include <Pegasus/Common/CIMObject.h>

#include <qzantras/MgmtTypes.h>

#include "modificationIndications.h"
#include "readModelSupport.h"
#include "smallClusterModels.h"

PEGASUS_USING_PEGASUS;

namespace {

class JobsTest : public ReadModelTest {
protected:
    // Calls ModifyNode with one setting and returns the path of its job.
    CIMObjectPath modifyNode(const char* setting, const char* value) {
        Array<CIMParamValue> in;
        in.append(CIMParamValue(setting, CIMValue(String(value))));
        in.append(CIMParamValue("maxFilesToCache", CIMValue(Uint32(5000))));
        RecordingMethodHandler handler;
        EXPECT_EQ(provider->modifyNode(in, handler), 0u);
        CIMObjectPath job;
        EXPECT_NE(handler.out("Job"), "<none>");
        if (handler.outParameters.size() == 1) {
            handler.outParameters[0].getValue().get(job);
        }
        return job;
    }
    static std::string embedded(const CIMInstance& indication, const char* property,
                                const char* inner) {
        CIMObject object;
        indication.getProperty(indication.findProperty(property)).getValue().get(object);
        return text(CIMInstance(object), inner);
    }
};

TEST_F(JobsTest, ModifyNodeRunsTheFirstSettingAsAJobThatCompletesEvenWhenItFails) {
    start(SMALL_CLUSTER);
    RecordingIndicationHandler indications;
    provider->enableIndications(indications);
    CIMObjectPath job = modifyNode("pagepool", "4G");
    ASSERT_TRUE(indications.waitFor(1));
    ASSERT_TRUE(qzsim::waitForTasks(1, 5000));
    EXPECT_EQ(qzsim::completedTasks()[0].arguments, "pagepool=4G");
    CIMInstance modification = indications.indications()[0];
    EXPECT_EQ(modification.getClassName(), VEXA_INST_MODIFICATION);
    EXPECT_EQ(embedded(modification, "PreviousInstance", "JobState"), "3");
    EXPECT_EQ(embedded(modification, "SourceInstance", "JobState"), "7");
    ASSERT_EQ(get(job).size(), 1u);
    EXPECT_EQ(text(get(job)[0], "JobState"), "7");

    ageCache();
    Array<CIMInstance> nodes = enumerate("KOR_VEXA_Node");
    ASSERT_EQ(nodes.size(), 2u);
    EXPECT_EQ(text(nodes[1], "vexaNodePagePool"), std::to_string(4ULL << 30));

    provider->disableIndications();
    CIMObjectPath failing = modifyNode("pagepool", "lots");
    ASSERT_TRUE(qzsim::waitForTasks(2, 5000));
    EXPECT_EQ(qzsim::completedTasks()[1].result, MGMT_E_BAD_VALUE);
    EXPECT_EQ(text(get(failing)[0], "JobState"), "7");
    EXPECT_EQ(indications.calls.delivered, 1);
}

TEST_F(JobsTest, RaidElementStatusChangesAreAnnouncedOnlyWhenTheyChange) {
    RecordingIndicationHandler indications;
    provider->enableIndications(indications);
    CIMInstance disk(CORVANE_PHYSICAL_DISK);
    Array<Uint16> ok;
    ok.append(2);
    disk.addProperty(CIMProperty(CIMName("OperationalStatus"), CIMValue(ok)));
    CIMInstance delivered = disk; // a copy a response handler still holds

    EXPECT_EQ(genCorvaneIndication(&disk, "pd1", 2), 0);
    EXPECT_EQ(indications.calls.delivered, 0);
    EXPECT_EQ(genCorvaneIndication(&disk, "pd1", 6), 0);
    EXPECT_EQ(text(disk, "OperationalStatus"), "6 ");
    EXPECT_EQ(text(delivered, "OperationalStatus"), "2 ");
    ASSERT_EQ(indications.calls.delivered, 1);
    CIMInstance modification = indications.indications()[0];
    EXPECT_EQ(modification.getClassName(), CORVANE_IND_PD);
    EXPECT_EQ(embedded(modification, "PreviousInstance", "OperationalStatus"), "2 ");

    CIMInstance other(VEXA_NODE);
    other.addProperty(CIMProperty(CIMName("OperationalStatus"), CIMValue(String("busy"))));
    EXPECT_EQ(genCorvaneIndication(&other, "n1", 0), 0); // no number reads as 0: unchanged
    EXPECT_EQ(genCorvaneIndication(&other, "n1", 3), -1);
    EXPECT_EQ(text(other, "OperationalStatus"), "3 ");
    EXPECT_EQ(indications.calls.delivered, 1);
}

} // namespace
