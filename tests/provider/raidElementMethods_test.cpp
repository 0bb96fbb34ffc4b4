// The RAID-element methods on the sample inventory of the demo cluster: the
// status of a cached element changed, and the change announced.
#include <cstdlib>

#include <Pegasus/Common/CIMObject.h>

#include "instanceInspection.h"
#include "processFlags.h"
#include "readModelSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

class RaidElementMethodsTest : public ReadModelTest {
protected:
    void SetUp() override {
        ReadModelTest::SetUp();
        setenv("VEXA_INVENTORY_DIR", VEXA_SAMPLE_INVENTORY_DIR, 1);
        start();
        storeFlag(IndicationHandler, static_cast<IndicationResponseHandler*>(&indications));
        storeFlag(IndicationEnabled, 1);
    }
    void TearDown() override {
        unsetenv("VEXA_INVENTORY_DIR");
        ReadModelTest::TearDown();
    }

    Uint32 call(const char* method, const char* name, const CIMValue& status) {
        Array<CIMParamValue> in;
        in.append(CIMParamValue("name", CIMValue(String(name))));
        in.append(CIMParamValue("status", status));
        return provider->modifyRaidElement(CIMName(method), in);
    }

    RecordingIndicationHandler indications;
};

TEST_F(RaidElementMethodsTest, AStatusChangeIsStoredAndAnnouncedOnce) {
    ASSERT_EQ(provider->raidPhysicalDisks.size(), 6u);
    EXPECT_EQ(call("ModifyCorvanePhysicalDisk", "e1s02", CIMValue(Uint16(6))), 0u);
    EXPECT_EQ(statusOf(provider->raidPhysicalDisks[1]), 6);
    ASSERT_EQ(indications.calls.delivered, 1);
    const CIMInstance sent = indications.indications()[0];
    EXPECT_TRUE(sent.getClassName().equal(CORVANE_IND_PD));
    CIMObject previous;
    CIMObject source;
    valueOf(sent, "PreviousInstance").get(previous);
    valueOf(sent, "SourceInstance").get(source);
    EXPECT_EQ(statusOf(CIMInstance(previous)), 2);
    EXPECT_EQ(statusOf(CIMInstance(source)), 6);

    qzsim::clearCapturedLog();
    EXPECT_EQ(call("modifycorvanephysicaldisk", "e1s02", CIMValue(Uint16(6))), 0u);
    EXPECT_EQ(indications.calls.delivered, 1);
    EXPECT_EQ(countLines(logLines(), "L0 ::genCorvaneIndication: no change..."), 1);

    storeFlag(IndicationEnabled, 0);
    EXPECT_EQ(call("ModifyCorvanePhysicalDisk", "e1s02", CIMValue(Uint16(3))), 0u);
    EXPECT_EQ(statusOf(provider->raidPhysicalDisks[1]), 3);
    EXPECT_EQ(indications.calls.delivered, 1);
}

TEST_F(RaidElementMethodsTest, UnknownDevicesAndMethodsChangeNothing) {
    qzsim::clearCapturedLog();
    // Virtual disks are named by "Name"; "vd1" is a DeviceID.
    EXPECT_EQ(call("ModifyCorvaneVirtualDisk", "vd1", CIMValue(Uint16(6))), 0u);
    EXPECT_EQ(call("Reboot", "rgL_meta", CIMValue(Uint16(6))), 0u);
    for (Uint32 i = 0; i < provider->raidVirtualDisks.size(); i++)
        EXPECT_EQ(statusOf(provider->raidVirtualDisks[i]), 2);
    EXPECT_EQ(indications.calls.delivered, 0);
    const std::vector<std::string> lines = logLines();
    EXPECT_EQ(countLines(lines, "L0 VexaProvider::invokeMethod: device name = rgL_meta"), 1);
    EXPECT_EQ(countLines(lines, "L0 VexaProvider::invokeMethod: ModifyCorvaneVirtualDisk"), 1);

    // A status that is not a number reads as 0.
    EXPECT_EQ(call("ModifyCorvaneDeclusteredArray", "DA2", CIMValue(String("broken"))), 0u);
    EXPECT_EQ(statusOf(provider->raidDeclusteredArrays[1]), 0);
    EXPECT_EQ(indications.calls.delivered, 1);
}

} // namespace
