// The paths an indication carries for the stored elements its event names,
// and the cache lock their look-ups take.
#include <atomic>
#include <chrono>
#include <cstring>
#include <future>
#include <stdexcept>

#include "indicationInstance.h"
#include "lockGuards.h"
#include "processFlags.h"
#include "readModelSupport.h"
#include "smallClusterModels.h"

PEGASUS_USING_PEGASUS;

namespace {

class IndicationContentTest : public ReadModelTest {
protected:
    // Names elements of the small cluster; both managers are node n2.
    static Event event() {
        Event e;
        std::strcpy(e.nodeIpAddr, "10.1.0.1");
        std::strcpy(e.fsName, "data0");
        std::strcpy(e.diskName, "b1");
        std::strcpy(e.sgmgrIpAddr, "10.1.0.2");
        std::strcpy(e.prevSgmgrIpAddr, "10.1.0.2");
        return e;
    }
};

// Which properties each class carries, with their types, is checked against
// the schema by ProviderConformance.IndicationsMatchTheirClasses.
TEST_F(IndicationContentTest, PathsNameTheStoredElementsAndOnlyThose) {
    start(SMALL_CLUSTER);
    Event e = event();
    CIMInstance takeover = createVexaIndicationInstance(VEXA_IND_MGR_TAKEOVER, &e, 0);
    EXPECT_EQ(text(takeover, "vexaIndicationName"), "sgmgr_takeover");
    EXPECT_EQ(text(takeover, "vexaNodeInstancePath"), text(takeover, "vexaPrevNodeInstancePath"));
    EXPECT_EQ(text(takeover, "vexaNodeInstancePath"),
              (const char*)provider->nodes[1].getPath().toString().getCString());
    CIMInstance adddisk = createVexaIndicationInstance(VEXA_IND_ADDDISK, &e, 0);
    EXPECT_NE(text(adddisk, "vexaStoragePoolInstancePath").find("data0+system"), std::string::npos);
    EXPECT_NE(text(adddisk, "vexaNsdInstancePath").find("b1"), std::string::npos);

    std::strcpy(e.nodeIpAddr, "10.9.9.9");
    std::strcpy(e.diskName, "nowhere");
    adddisk = createVexaIndicationInstance(VEXA_IND_ADDDISK, &e, 0);
    EXPECT_EQ(text(adddisk, "vexaNodeIP"), "10.9.9.9");
    for (const char* absent :
         {"vexaNodeInstancePath", "vexaStoragePoolInstancePath", "vexaNsdInstancePath"}) {
        EXPECT_EQ(adddisk.findProperty(absent), PEG_NOT_FOUND) << absent;
    }
    EXPECT_NE(adddisk.findProperty("vexaFileSystemInstancePath"), PEG_NOT_FOUND);
    // An unknown class keeps the six common properties only.
    EXPECT_EQ(createVexaIndicationInstance(VEXA_INST_MODIFICATION, &e, 0).getPropertyCount(), 6u);
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

// A delivery that throws loses its indication, not the event stream; and
// the server may release a handler once complete() returns, so a delivery
// under way when indications are disabled holds complete() back.
TEST_F(IndicationContentTest, DisablingWaitsForADeliveryUnderWay) {
    start(SMALL_CLUSTER);
    struct SlowHandler : RecordingIndicationHandler {
        using RecordingIndicationHandler::deliver;
        std::promise<void> entered, release;
        std::atomic<int> attempts{0};
        std::atomic<bool> returned{false}, completedEarly{false};
        void deliver(const CIMIndication&) override {
            if (attempts++ == 0)
                throw std::runtime_error("listener gone");
            entered.set_value();
            release.get_future().wait();
            returned = true;
        }
        void complete() override { completedEarly = !returned; }
    } handler;
    provider->enableIndications(handler);
    for (const char* type : {"mount", "unmount"})
        qzsim::postEvent(qzsim::eventFromJson(std::string(R"({"type": ")") + type +
                                              R"(", "node": "n1", "fs": "data0"})"));
    handler.entered.get_future().wait();
    std::future<void> disabled =
        std::async(std::launch::async, [&] { provider->disableIndications(); });
    EXPECT_EQ(disabled.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    handler.release.set_value();
    disabled.get();
    EXPECT_FALSE(handler.completedEarly);
}

} // namespace
