// Everything at once, for a few seconds: clients enumerating, fetching,
// walking associations and calling methods while full passes run, events
// stream in with indications switched on and off, and jobs complete. The run
// must end (a watchdog reports every thread's last step and aborts if it
// does not), no handler may see a delivery after its complete(), and the
// cache must match the model at the end.
#include <qzantras/PollingHandler.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include "lockGuards.h"
#include "readModelSupport.h"
#include "smallClusterModels.h"

PEGASUS_USING_PEGASUS;

namespace {

const auto RUN_TIME = std::chrono::seconds(3);
const auto WATCHDOG_LIMIT = std::chrono::seconds(120);

// Counts deliveries that arrive after complete(): the server may have
// released the handler by then.
class FencedIndicationHandler : public RecordingIndicationHandler {
public:
    using RecordingIndicationHandler::deliver;
    std::atomic<bool> completed{false};
    std::atomic<int> lateDeliveries{0};
    void complete() override {
        completed = true;
        RecordingIndicationHandler::complete();
    }
    void deliver(const CIMIndication& indication) override {
        if (completed)
            lateDeliveries++;
        RecordingIndicationHandler::deliver(indication);
    }
};

class ConcurrencyStress : public ReadModelTest {
protected:
    struct Worker {
        const char* name;
        std::atomic<const char*> step{"starting"};
        std::atomic<long> rounds{0};
    };

    void run(Worker& worker, std::function<void(Worker&)> body) {
        threads.emplace_back([this, &worker, body] {
            while (!stop) {
                body(worker);
                worker.rounds++;
            }
            worker.step = "done";
        });
    }

    RecordingMethodHandler call(const char* method, const Array<CIMParamValue>& in) {
        RecordingMethodHandler handler;
        provider->invokeMethod(context, classPath("KOR_VEXA_ClusterConfigurationService"),
                               CIMName(method), in, handler);
        return handler;
    }

    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
};

TEST_F(ConcurrencyStress, ClientsPassesEventsAndJobsTogether) {
    qzsim::stopLogCapture();
    qzsim::setLogLevel(2);
    start(SMALL_CLUSTER);
    const CIMObjectPath fsPath = enumerate("KOR_VEXA_FileSystem")[0].getPath();
    const CIMObjectPath nodePath = enumerate("KOR_VEXA_Node")[0].getPath();

    Worker readers[2] = {{"reader 1"}, {"reader 2"}};
    Worker passes{"passes"}, events{"events"}, indications{"indications"}, methods{"methods"};
    std::atomic<bool> finished{false};
    std::thread watchdog([&] {
        const auto deadline = std::chrono::steady_clock::now() + WATCHDOG_LIMIT;
        while (!finished && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        if (finished)
            return;
        std::fprintf(stderr, "stress run did not end within %lld s; last steps:\n",
                     static_cast<long long>(WATCHDOG_LIMIT.count()));
        for (Worker* w : {&readers[0], &readers[1], &passes, &events, &indications, &methods})
            std::fprintf(stderr, "  %s: %s (%ld rounds)\n", w->name, w->step.load(),
                         w->rounds.load());
        std::abort();
    });

    const char* classes[] = {"KOR_VEXA_Cluster",        "KOR_VEXA_Node",    "KOR_VEXA_NSD",
                             "KOR_VEXA_NodeServingNSD", "KOR_VEXA_Fileset", "KOR_VEXA_FreeNSD"};
    for (Worker& reader : readers) {
        run(reader, [&](Worker& w) {
            for (const char* className : classes) {
                w.step = "enumerateInstances";
                enumerate(className);
                w.step = "enumerateInstanceNames";
                names(className);
            }
            w.step = "getInstance";
            get(nodePath);
            w.step = "associators";
            RecordingObjectHandler objects;
            provider->associators(context, fsPath, CIMName("KOR_VEXA_AssociatedFileset"), CIMName(),
                                  String(), String(), false, false, CIMPropertyList(), objects);
            w.step = "associatorNames";
            RecordingPathHandler paths;
            provider->associatorNames(context, nodePath, CIMName("KOR_VEXA_Mounted"), CIMName(),
                                      String(), String(), paths);
        });
    }
    run(passes, [&](Worker& w) {
        w.step = "full pass";
        {
            CacheWriteLock lock(*provider);
            provider->buildAllVexaInstanceList(1);
        }
        w.step = "performance rebuild";
        enumerate("KOR_VEXA_FileSystemPerf");
    });
    run(events, [&](Worker& w) {
        w.step = "postEvent";
        qzsim::postEvent(qzsim::eventFromJson(R"({"type": "mount", "node": "n1", "fs": "data0"})"));
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    });
    std::vector<std::unique_ptr<FencedIndicationHandler>> handlers;
    run(indications, [&](Worker& w) {
        handlers.emplace_back(new FencedIndicationHandler);
        w.step = "enableIndications";
        provider->enableIndications(*handlers.back());
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        w.step = "disableIndications";
        provider->disableIndications();
    });
    run(methods, [&](Worker& w) {
        const CIMValue fs(fsPath);
        Array<CIMParamValue> create;
        create.append(CIMParamValue("vexaFileSystem", fs));
        create.append(CIMParamValue("vexaFilesetName", CIMValue(String("burst"))));
        w.step = "CreateFileset";
        call("CreateFileset", create);
        Array<CIMInstance> sets = enumerate("KOR_VEXA_Fileset");
        for (Uint32 i = 0; i < sets.size(); i++) {
            if (text(sets[i], "Name") != "burst")
                continue;
            Array<CIMParamValue> remove;
            remove.append(CIMParamValue("vexaFileset", CIMValue(sets[i].getPath())));
            w.step = "DeleteFileset";
            call("DeleteFileset", remove);
        }
        Array<CIMParamValue> setting;
        setting.append(CIMParamValue("maxFilesToCache", CIMValue(String("6000"))));
        w.step = "ModifyNode";
        call("ModifyNode", setting);
    });

    std::this_thread::sleep_for(RUN_TIME);
    stop = true;
    for (std::thread& t : threads)
        t.join();
    finished = true;
    watchdog.join();

    for (Worker* w : {&readers[0], &readers[1], &passes, &events, &indications, &methods})
        EXPECT_GT(w->rounds.load(), 0) << w->name;
    int late = 0;
    for (const auto& handler : handlers)
        late += handler->lateDeliveries;
    EXPECT_EQ(late, 0);

    // Every job ran; the last pass reads the model as the methods left it.
    ASSERT_TRUE(qzsim::waitForEventsDelivered(5000));
    ASSERT_TRUE(qzsim::waitForTasks(static_cast<size_t>(methods.rounds.load()), 20000));
    ageCache();
    EXPECT_EQ(enumerate("KOR_VEXA_NSD").size(), 3u);
    EXPECT_EQ(enumerate("KOR_VEXA_FreeNSD").size(), 1u);
    EXPECT_EQ(enumerate("KOR_VEXA_NodeServingNSD").size(), 4u);
    Array<CIMInstance> nodes = enumerate("KOR_VEXA_Node");
    ASSERT_EQ(nodes.size(), 2u);
    for (Uint32 i = 0; i < nodes.size(); i++)
        EXPECT_EQ(text(nodes[i], "vexaNodeMaxFilesToCache"), "6000");
    std::vector<FileSet*> modelSets;
    ASSERT_EQ(provider->pollingHandler->getFileSets("data0", &modelSets), 0);
    Array<CIMInstance> cachedSets = enumerate("KOR_VEXA_Fileset");
    ASSERT_EQ(cachedSets.size(), modelSets.size());
    for (Uint32 i = 0; i < cachedSets.size(); i++)
        EXPECT_EQ(text(cachedSets[i], "Name"), modelSets[i]->name);
    for (FileSet* set : modelSets)
        delete set;
}

} // namespace
