// Everything at once for a few seconds: clients enumerating, fetching,
// walking associations and calling methods while full passes run, events
// stream in with indications switched on and off, and jobs complete. A
// watchdog aborts with every thread's last step if the run does not end; at
// the end the cache must match the model.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

#include "lockGuards.h"
#include "readModelSupport.h"
#include "smallClusterModels.h"

PEGASUS_USING_PEGASUS;

namespace {

struct Worker {
    const char* name;
    std::atomic<const char*> step{"starting"};
    std::atomic<long> rounds{0};
};

using ConcurrencyStress = ReadModelTest;

TEST_F(ConcurrencyStress, ClientsPassesEventsAndJobsTogether) {
    qzsim::stopLogCapture();
    qzsim::setLogLevel(2);
    start(SMALL_CLUSTER);
    const CIMObjectPath fsPath = enumerate("KOR_VEXA_FileSystem")[0].getPath();
    const CIMObjectPath nodePath = enumerate("KOR_VEXA_Node")[0].getPath();
    auto call = [&](const char* method, const char* name, const CIMValue& value) {
        Array<CIMParamValue> in;
        in.append(CIMParamValue(name, value));
        if (std::string(method) == "CreateFileset")
            in.append(CIMParamValue("vexaFileSystem", CIMValue(fsPath)));
        RecordingMethodHandler handler;
        provider->invokeMethod(context, classPath("KOR_VEXA_ClusterConfigurationService"),
                               CIMName(method), in, handler);
    };

    Worker workers[6] = {{"reader"}, {"reader"},      {"passes"},
                         {"events"}, {"indications"}, {"methods"}};
    std::vector<std::function<void(Worker&)>> bodies = {
        [&](Worker& w) {
            for (const char* className : {"KOR_VEXA_Cluster", "KOR_VEXA_NSD", "KOR_VEXA_Fileset",
                                          "KOR_VEXA_NodeServingNSD"}) {
                w.step = "enumerate";
                enumerate(className);
                w.step = "names";
                names(className);
            }
            w.step = "getInstance";
            get(nodePath);
            w.step = "associators";
            RecordingObjectHandler objects;
            provider->associators(context, fsPath, CIMName("KOR_VEXA_AssociatedFileset"), CIMName(),
                                  String(), String(), false, false, CIMPropertyList(), objects);
        },
        nullptr,
        [&](Worker& w) {
            w.step = "full pass";
            CacheWriteLock lock(*provider);
            provider->buildAllVexaInstanceList(1);
        },
        [&](Worker& w) {
            w.step = "postEvent";
            qzsim::postEvent(
                qzsim::eventFromJson(R"({"type": "mount", "node": "n1", "fs": "data0"})"));
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        },
        [&](Worker& w) {
            RecordingIndicationHandler handler;
            w.step = "enableIndications";
            provider->enableIndications(handler);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            w.step = "disableIndications";
            provider->disableIndications();
        },
        [&](Worker& w) {
            w.step = "CreateFileset";
            call("CreateFileset", "vexaFilesetName", CIMValue(String("burst")));
            Array<CIMInstance> sets = enumerate("KOR_VEXA_Fileset");
            for (Uint32 i = 0; i < sets.size(); i++)
                if (text(sets[i], "Name") == "burst") {
                    w.step = "DeleteFileset";
                    call("DeleteFileset", "vexaFileset", CIMValue(sets[i].getPath()));
                }
            w.step = "ModifyNode";
            call("ModifyNode", "maxFilesToCache", CIMValue(String("6000")));
        }};
    bodies[1] = bodies[0];

    std::atomic<bool> stop{false}, finished{false};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < bodies.size(); i++)
        threads.emplace_back([&, i] {
            for (; !stop; workers[i].rounds++)
                bodies[i](workers[i]);
        });
    std::thread watchdog([&] {
        for (int waited = 0; !finished; waited++) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            if (waited < 1200)
                continue;
            std::fprintf(stderr, "stress run stuck after 120 s; last steps:\n");
            for (const Worker& w : workers)
                std::fprintf(stderr, "  %s: %s after %ld rounds\n", w.name, w.step.load(),
                             w.rounds.load());
            std::abort();
        }
    });
    std::this_thread::sleep_for(std::chrono::seconds(3));
    stop = true;
    for (std::thread& t : threads)
        t.join();
    finished = true;
    watchdog.join();

    for (const Worker& w : workers)
        EXPECT_GT(w.rounds.load(), 0) << w.name;
    ASSERT_TRUE(qzsim::waitForEventsDelivered(5000));
    ASSERT_TRUE(qzsim::waitForTasks(static_cast<size_t>(workers[5].rounds.load()), 20000));
    ageCache();
    EXPECT_EQ(enumerate("KOR_VEXA_NSD").size(), 3u);
    EXPECT_EQ(enumerate("KOR_VEXA_FreeNSD").size(), 1u);
    EXPECT_EQ(enumerate("KOR_VEXA_NodeServingNSD").size(), 4u);
    Array<CIMInstance> nodes = enumerate("KOR_VEXA_Node");
    for (Uint32 i = 0; i < nodes.size(); i++)
        EXPECT_EQ(text(nodes[i], "vexaNodeMaxFilesToCache"), "6000");
    std::vector<FileSet*> modelSets;
    ASSERT_EQ(provider->pollingHandler->getFileSets("data0", &modelSets), 0);
    Array<CIMInstance> cachedSets = enumerate("KOR_VEXA_Fileset");
    ASSERT_EQ(cachedSets.size(), modelSets.size());
    for (Uint32 i = 0; i < cachedSets.size(); i++) {
        EXPECT_EQ(text(cachedSets[i], "Name"), modelSets[i]->name);
        delete modelSets[i];
    }
}

} // namespace
