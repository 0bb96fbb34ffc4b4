// Start-up, shutdown and the operations the provider declines.
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <qzantras/EventsHandler.h>
#include <qzantras/PollingHandler.h>
#include <qzsim/SimControl.h>

#include <dirent.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <thread>

#include "cimProvider.h"
#include "processFlags.h"
#include "providerTestSupport.h"
#include "recordingHandlers.h"

PEGASUS_USING_PEGASUS;

namespace {

size_t threadCount() {
    size_t count = 0;
    if (DIR* tasks = opendir("/proc/self/task")) {
        while (dirent* entry = readdir(tasks)) {
            count += entry->d_name[0] != '.' ? 1 : 0;
        }
        closedir(tasks);
    }
    return count;
}

class ProviderLifecycleTest : public ProviderTest {
protected:
    void TearDown() override {
        stopEventThread();
        // The destructor leaves the library connection alone, as a server's
        // unload does; the counterpart of initVexaHandler releases it.
        if (provider->clusterInfo != nullptr) {
            provider->cleanupVexaHandler();
        }
        delete provider;
        ProviderTest::TearDown();
    }
    VexaProvider* provider = new VexaProvider();
    CIMOMHandle cimom;
};

TEST_F(ProviderLifecycleTest, StartsUpInTheDesignedOrder) {
    testing::internal::CaptureStderr();
    provider->initialize(cimom);
    std::string stderrText = testing::internal::GetCapturedStderr();
    EXPECT_NE(stderrText.find("VexaProvider::initialize, enter\n"), std::string::npos);

    std::vector<std::string> lines = logLines();
    const char* sequence[] = {
        "L0 VexaProvider::initVexaHandler: enter",
        "L0 VexaProvider::buildIndicationFilterList: enter",
        "L0 VexaProvider::buildIndicationFilterList: number of indication filters = 2",
        "L0 VexaProvider::buildAllVexaInstanceList: refresh this time",
        "L0 VexaProvider::initialize: exit",
    };
    int at = 0;
    for (const char* line : sequence) {
        int found = findLine(lines, line, at);
        ASSERT_NE(found, -1) << "missing or out of order: " << line;
        at = found + 1;
    }

    EXPECT_EQ(loadFlag(theVexaProvider), provider);
    EXPECT_EQ(loadFlag(KeepRunning), 1);
    EXPECT_EQ(provider->pollingHandler, thePollingHandler);
    EXPECT_NE(provider->clusterInfo, nullptr);
    // The forced first pass ran: the cache is filled and stamped.
    EXPECT_NE(provider->lastRefresh.tv_sec, 0);
    EXPECT_EQ(provider->clusters.size(), 1u);
    EXPECT_EQ(provider->registeredProfiles.size(), 3u);
    EXPECT_EQ(provider->handlerText, String());
    EXPECT_EQ(provider->indicationFilters.size(), 2u);
}

TEST_F(ProviderLifecycleTest, UnloadableModelFailsStartUpWithCodeZeroAndNoMessage) {
    const char* path = "/tmp/vexa-provider-test-bad-model.json";
    {
        std::ofstream bad(path);
        bad << "{ \"cluster\": { \"name\": ";
    }
    setenv("QZSIM_CLUSTER_MODEL", path, 1);

    try {
        provider->initialize(cimom);
        ADD_FAILURE() << "initialize did not throw";
    } catch (const CIMException& e) {
        EXPECT_EQ(e.getCode(), CIM_ERR_SUCCESS);
        EXPECT_EQ(e.getMessage(), String());
    }
    std::remove(path);

    std::vector<std::string> lines = logLines();
    int initFailed = -1;
    for (size_t i = 0; i < lines.size(); i++) {
        if (lines[i].rfind("L2 VexaProvider::initVexaHandler: Couldn't initialize "
                           "PollingHandler, err = ",
                           0) == 0) {
            initFailed = static_cast<int>(i);
        }
    }
    ASSERT_NE(initFailed, -1);
    EXPECT_GT(findLine(lines,
                       "L2 VexaProvider::initialize: Couldn't initialize VexaHandler, "
                       "exiting...",
                       initFailed),
              initFailed);
    // Nothing after the failed connection was started.
    EXPECT_EQ(findLine(lines, "L0 VexaProvider::buildIndicationFilterList: enter"), -1);
    EXPECT_EQ(provider->indicationFilters.size(), 0u);
    EXPECT_EQ(loadFlag(theVexaProvider), nullptr);
    EXPECT_EQ(loadFlag(KeepRunning), 0);
}

TEST_F(ProviderLifecycleTest, FailingClusterRecordFailsStartUp) {
    qzsim::failOperation("ClusterInfo", 5, 1);
    EXPECT_THROW(provider->initialize(cimom), CIMException);
    EXPECT_NE(findLine(logLines(), "L2 VexaProvider::initialize: Couldn't initialize "
                                   "VexaHandler, exiting..."),
              -1);
    EXPECT_EQ(loadFlag(theVexaProvider), nullptr);
}

TEST_F(ProviderLifecycleTest, DeclinedOperationsTouchNoHandlerAndThrowNothing) {
    OperationContext context;
    CIMObjectPath path(String("KOR_VEXA_Cluster.Name=\"c\""));
    CIMInstance instance(CIMName("KOR_VEXA_Cluster"));

    RecordingPathHandler created;
    RecordingPlainHandler modified, deleted;
    EXPECT_NO_THROW(provider->createInstance(context, path, instance, created));
    EXPECT_NO_THROW(
        provider->modifyInstance(context, path, instance, false, CIMPropertyList(), modified));
    EXPECT_NO_THROW(provider->deleteInstance(context, path, deleted));
    EXPECT_EQ(created.calls.total() + modified.calls.total() + deleted.calls.total(), 0);

    std::vector<std::string> lines = logLines();
    EXPECT_EQ(countLines(lines, "L2 VexaProvider::createInstance: Not supported."), 1);
    EXPECT_EQ(countLines(lines, "L2 VexaProvider::modifyInstance: Not supported."), 1);
    EXPECT_EQ(countLines(lines, "L2 VexaProvider::deleteInstance: Not supported."), 1);

    // References and subscriptions: nothing at all, not even a log line.
    qzsim::clearCapturedLog();
    RecordingObjectHandler objects;
    RecordingPathHandler names;
    provider->references(context, path, CIMName(), String(), false, false, CIMPropertyList(),
                         objects);
    provider->referenceNames(context, path, CIMName(), String(), names);
    provider->createSubscription(context, path, Array<CIMObjectPath>(), CIMPropertyList(), 0);
    provider->modifySubscription(context, path, Array<CIMObjectPath>(), CIMPropertyList(), 0);
    provider->deleteSubscription(context, path, Array<CIMObjectPath>());
    EXPECT_EQ(objects.calls.total() + names.calls.total(), 0);
    EXPECT_TRUE(logLines().empty());
}

TEST_F(ProviderLifecycleTest, IndicationHandlerIsKeptAfterDisableAndReplacedOnEnable) {
    RecordingIndicationHandler first, second;
    provider->enableIndications(first);
    EXPECT_EQ(loadFlag(IndicationEnabled), 1);
    EXPECT_EQ(loadFlag(IndicationHandler), &first);
    EXPECT_EQ(first.calls.processing, 0);

    provider->disableIndications();
    EXPECT_EQ(loadFlag(IndicationEnabled), 0);
    EXPECT_EQ(first.calls.complete, 1);
    EXPECT_EQ(loadFlag(IndicationHandler), &first);

    provider->enableIndications(second);
    EXPECT_EQ(loadFlag(IndicationHandler), &second);
}

TEST_F(ProviderLifecycleTest, EventsBecomeIndicationsOnlyWhileEnabled) {
    provider->initialize(cimom);
    RecordingIndicationHandler handler;

    Event mount;
    mount.type = 0;
    mount.tvSec = 1700000000;
    mount.tvUsec = 42;
    qzsim::postEvent(mount);
    ASSERT_TRUE(qzsim::waitForEventsDelivered(5000));
    std::vector<std::string> lines = logLines();
    EXPECT_NE(findLine(lines, "L0 ::genVexaIndication: tv_sec = 1700000000"), -1);
    EXPECT_NE(findLine(lines, "L0 ::genVexaIndication: tv_usec = 42"), -1);
    EXPECT_EQ(handler.calls.delivered, 0);

    provider->enableIndications(handler);
    qzsim::postEvent(mount);
    Event consoleMessage; // type 13 is not published
    consoleMessage.type = 13;
    qzsim::postEvent(consoleMessage);
    ASSERT_TRUE(qzsim::waitForEventsDelivered(5000));
    EXPECT_EQ(handler.calls.delivered, 1);
    EXPECT_NE(findLine(logLines(),
                       "L0 ::genVexaIndication: VEXA event class name = KOR_VEXA_MountIndication"),
              -1);
    provider->disableIndications();
}

TEST_F(ProviderLifecycleTest, EventThreadAsksForRestartWhenTheStreamEnds) {
    provider->initialize(cimom);
    EXPECT_FALSE(loadFlag(NeedEventHandler));
    stopEventThread();
    EXPECT_TRUE(loadFlag(NeedEventHandler));
    EXPECT_NE(findLine(logLines(), "L0 VexaProvider::eventThread: exit"), -1);
}

// A host disables, enables and unloads the module many times in one process
// and unmaps the library after terminate: each cycle must end every thread it
// started and release the library connection, quickly, without waiting out
// the refresh thread's sleep.
TEST(ProviderUnloadTest, RepeatedStartAndTerminateLeaveNothingRunning) {
    setenv("QZSIM_LOG_FILE", "/dev/null", 1);
    qzsim::reset();
    // A sanitizer runtime starts a helper thread of its own at the first
    // thread creation; let it do so before counting.
    std::thread([] {}).join();
    const size_t threadsBefore = threadCount();
    CIMOMHandle cimom;
    for (int cycle = 0; cycle < 3; cycle++) {
        VexaProvider* provider = new VexaProvider();
        provider->initialize(cimom);
        ASSERT_EQ(loadFlag(theVexaProvider), provider);
        ASSERT_GT(threadCount(), threadsBefore);
        auto started = std::chrono::steady_clock::now();
        provider->terminate();
        EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(10));
        EXPECT_EQ(loadFlag(theVexaProvider), nullptr);
        EXPECT_EQ(thePollingHandler, nullptr);
        EXPECT_EQ(theEventsHandler, nullptr);
        EXPECT_EQ(threadCount(), threadsBefore) << "cycle " << cycle;
    }
    qzsim::reset();
}

} // namespace
