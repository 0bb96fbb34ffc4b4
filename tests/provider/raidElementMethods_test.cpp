// The RAID-element methods on the sample inventory of the demo cluster.
#include <cstdlib>

#include "instanceInspection.h"
#include "processFlags.h"
#include "readModelSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

class RaidElementMethodsTest : public ReadModelTest {
protected:
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
};

TEST_F(RaidElementMethodsTest, ChangesAreStoredAndAnnouncedOnceAndUnknownNamesChangeNothing) {
    setenv("VEXA_INVENTORY_DIR", VEXA_SAMPLE_INVENTORY_DIR, 1);
    start();
    RecordingIndicationHandler indications;
    storeFlag(IndicationHandler, static_cast<IndicationResponseHandler*>(&indications));
    storeFlag(IndicationEnabled, 1);

    EXPECT_EQ(call("ModifyCorvanePhysicalDisk", "e1s02", CIMValue(Uint16(6))), 0u);
    EXPECT_EQ(statusOf(provider->raidPhysicalDisks[1]), 6);
    ASSERT_EQ(indications.calls.delivered, 1);
    EXPECT_TRUE(indications.indications()[0].getClassName().equal(CORVANE_IND_PD));

    // The same status again, a virtual disk named by its DeviceID instead of
    // its Name, and a method of no element: nothing changes, nothing is sent.
    EXPECT_EQ(call("modifycorvanephysicaldisk", "e1s02", CIMValue(Uint16(6))), 0u);
    EXPECT_EQ(call("ModifyCorvaneVirtualDisk", "vd1", CIMValue(Uint16(6))), 0u);
    EXPECT_EQ(call("Reboot", "rgL_meta", CIMValue(Uint16(6))), 0u);
    EXPECT_EQ(statusOf(provider->raidVirtualDisks[0]), 2);
    EXPECT_EQ(indications.calls.delivered, 1);

    // Not a number reads as 0; with indications off the change is still made.
    storeFlag(IndicationEnabled, 0);
    EXPECT_EQ(call("ModifyCorvaneDeclusteredArray", "DA2", CIMValue(String("broken"))), 0u);
    EXPECT_EQ(statusOf(provider->raidDeclusteredArrays[1]), 0);
    EXPECT_EQ(indications.calls.delivered, 1);
}

} // namespace
