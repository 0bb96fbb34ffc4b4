// What each event's indication carries: its class's properties in order,
// with their types, and the paths of the stored elements the event names.
#include <qzantras/MgmtTypes.h>

#include <chrono>
#include <cstring>
#include <future>

#include "indicationInstance.h"
#include "lockGuards.h"
#include "processFlags.h"
#include "readModelSupport.h"
#include "smallClusterModels.h"

PEGASUS_USING_PEGASUS;

namespace {

class IndicationContentTest : public ReadModelTest {
protected:
    // Every field set, each naming an element of the small cluster.
    Event event() {
        Event e;
        e.tvSec = 1700000000;
        std::strcpy(e.severity, "WARNING");
        std::strcpy(e.nodeIpAddr, "10.1.0.1");
        std::strcpy(e.nodeName, "n1");
        std::strcpy(e.fsName, "data0");
        std::strcpy(e.diskName, "b1");
        std::strcpy(e.poolName, "system");
        std::strcpy(e.sgmgrIpAddr, "10.1.0.2");
        std::strcpy(e.prevSgmgrIpAddr, "10.1.0.2");
        e.waitTime = 7;
        e.utilization = 93;
        e.commandResult = -5;
        return e;
    }
    // Names of the properties from position `from` on, each followed by a space.
    static std::string propertyNames(const CIMInstance& indication, Uint32 from) {
        std::string names;
        for (Uint32 i = from; i < indication.getPropertyCount(); i++) {
            names +=
                std::string(indication.getProperty(i).getName().getString().getCString()) + " ";
        }
        return names;
    }
};

TEST_F(IndicationContentTest, EachClassCarriesItsPropertiesAndPaths) {
    start(SMALL_CLUSTER);
    const std::string disk = "vexaNodeIP vexaFileSystemName vexaDiskName ";
    const std::string diskPaths = "vexaNodeInstancePath vexaFileSystemInstancePath "
                                  "vexaStoragePoolInstancePath vexaNsdInstancePath ";
    const std::string command = "vexaNodeName vexaFileSystemName vexaDiskName vexaCommand "
                                "vexaCommandStatus vexaCommandResult ";
    const std::pair<const CIMName*, std::string> expected[] = {
        {&VEXA_IND_MOUNT, "internal mount vexaNodeIP vexaFileSystemName vexaNodeInstancePath "
                          "vexaFileSystemInstancePath "},
        {&VEXA_IND_UNMOUNT, "internal unmount vexaNodeIP vexaFileSystemName "
                            "vexaNodeInstancePath vexaFileSystemInstancePath "},
        {&VEXA_IND_ADDDISK, "internal adddisk " + disk + diskPaths},
        {&VEXA_IND_DELDISK, "internal deldisk " + disk + diskPaths},
        {&VEXA_IND_CHDISK, "internal chdisk " + disk +
                               "vexaDiskStatus vexaDiskAvailability vexaDiskFailureGroupName "
                               "vexaDiskMetadata vexaDiskData " +
                               diskPaths},
        {&VEXA_IND_MGR_TAKEOVER, "internal sgmgr_takeover vexaSgmgrIpAddress "
                                 "vexaPrevSgmgrIpAddress vexaFileSystemName vexaNodeInstancePath "
                                 "vexaPrevNodeInstancePath vexaFileSystemInstancePath "},
        {&VEXA_IND_NODE_FAILURE, "internal node_failure vexaNodeIP vexaNodeInstancePath "},
        {&VEXA_IND_NODE_RECOVERY, "internal node_recovery vexaNodeIP vexaNodeInstancePath "},
        {&VEXA_IND_CRFS, "internal crfs vexaSgmgrIpAddress vexaFileSystemName "
                         "vexaNodeInstancePath vexaFileSystemInstancePath "},
        {&VEXA_IND_DELFS, "internal delfs vexaSgmgrIpAddress vexaFileSystemName "
                          "vexaNodeInstancePath vexaFileSystemInstancePath "},
        {&VEXA_IND_CHFS, "internal chfs vexaFileSystemName vexaUserUnbalanced vexaMetaUnbalanced "
                         "vexaUserIllReplicated vexaMetaIllReplicated vexaUserExposed "
                         "vexaMetaExposed vexaFileSystemInstancePath "},
        {&VEXA_IND_NEW_CONN, "internal new_conn vexaNodeIP vexaNodeInstancePath "},
        {&VEXA_IND_EVT_OVERFLOW, "internal event_overflow vexaNodeIP vexaNodeInstancePath "},
        {&VEXA_IND_HUNGTHREAD,
         "internal hungthread vexaNodeIP vexaWaitTime vexaDiagnosis vexaNodeInstancePath "},
        {&VEXA_IND_STGPOOL_UTIL, "internal stgpool_util vexaFileSystemName vexaStgPoolName "
                                 "vexaStgPoolUtil vexaFileSystemInstancePath "
                                 "vexaStoragePoolInstancePath "},
        {&VEXA_IND_QZADDDISK, "command qzadddisk " + command},
        {&VEXA_IND_QZDELDISK, "command qzdeldisk " + command},
    };
    for (const auto& each : expected) {
        Event e = event();
        CIMInstance indication = createVexaIndicationInstance(*each.first, &e, 0);
        std::string shape = text(indication, "vexaIndicationType") + " " +
                            text(indication, "vexaIndicationName") + " " +
                            propertyNames(indication, 8);
        EXPECT_EQ(shape, each.second) << each.first->getString().getCString();
    }

    Event e = event();
    CIMInstance takeover = createVexaIndicationInstance(VEXA_IND_MGR_TAKEOVER, &e, 0);
    EXPECT_EQ(text(takeover, "vexaNodeInstancePath"), text(takeover, "vexaPrevNodeInstancePath"));
    EXPECT_EQ(text(takeover, "vexaNodeInstancePath"),
              (const char*)provider->nodes[1].getPath().toString().getCString());
    CIMInstance adddisk = createVexaIndicationInstance(VEXA_IND_ADDDISK, &e, 0);
    EXPECT_NE(text(adddisk, "vexaStoragePoolInstancePath").find("data0+system"), std::string::npos);
    CIMInstance hung = createVexaIndicationInstance(VEXA_IND_HUNGTHREAD, &e, 0);
    EXPECT_EQ(hung.getProperty(hung.findProperty("vexaWaitTime")).getValue().getType(),
              CIMTYPE_UINT32);
    CIMInstance util = createVexaIndicationInstance(VEXA_IND_STGPOOL_UTIL, &e, 0);
    EXPECT_EQ(util.getProperty(util.findProperty("vexaStgPoolUtil")).getValue().getType(),
              CIMTYPE_UINT32);
    CIMInstance qz = createVexaIndicationInstance(VEXA_IND_QZADDDISK, &e, 0);
    CIMValue result = qz.getProperty(qz.findProperty("vexaCommandResult")).getValue();
    EXPECT_EQ(result.getType(), CIMTYPE_SINT32);
    EXPECT_EQ(result.toString(), "-5");

    // Unknown elements leave their paths out.
    std::strcpy(e.nodeIpAddr, "10.9.9.9");
    std::strcpy(e.diskName, "nowhere");
    EXPECT_EQ(propertyNames(createVexaIndicationInstance(VEXA_IND_ADDDISK, &e, 0), 8),
              disk + "vexaFileSystemInstancePath ");
    EXPECT_EQ(propertyNames(createVexaIndicationInstance(VEXA_INST_MODIFICATION, &e, 0), 6), "");
}

TEST_F(IndicationContentTest, OnlyLookUpsWaitForTheCacheLock) {
    start(SMALL_CLUSTER);
    Event e = event();
    auto build = [&](const CIMName& className) {
        return std::async(std::launch::async, [&e, &className] {
            Event copy = e;
            return createVexaIndicationInstance(className, &copy, 0);
        });
    };
    std::future<CIMInstance> mount;
    {
        CacheWriteLock writer(*provider);
        EXPECT_EQ(build(VEXA_IND_QZADDDISK).wait_for(std::chrono::seconds(5)),
                  std::future_status::ready);
        mount = build(VEXA_IND_MOUNT);
        EXPECT_EQ(mount.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    }
    EXPECT_NE(text(mount.get(), "vexaNodeInstancePath").find("n1"), std::string::npos);

    // Before the provider is published there is nothing to look up in.
    storeFlag(theVexaProvider, static_cast<VexaProvider*>(0));
    EXPECT_EQ(text(createVexaIndicationInstance(VEXA_IND_MOUNT, &e, 0), "vexaNodeInstancePath"),
              "<missing vexaNodeInstancePath>");
}

} // namespace
