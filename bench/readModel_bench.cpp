// How long a full cache pass takes, and what a request costs once the cache
// is fresh, for clusters of growing size.
#include <benchmark/benchmark.h>

#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <qzsim/SimControl.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

namespace {

// A cluster of `nodes` nodes and `fileSystems` file systems, each with two
// pools of `disksPerPool` disks served by two nodes, and ten filesets.
std::string generatedCluster(int nodes, int fileSystems, int disksPerPool) {
    std::string json = R"({"cluster": {"clusterName": "bench", "primaryServer": "n0"}, "nodes": [)";
    for (int n = 0; n < nodes; n++) {
        json += (n ? "," : "") + std::string(R"({"name": "n)") + std::to_string(n) +
                R"(", "ipAddr": "10.9.)" + std::to_string(n / 250) + "." +
                std::to_string(n % 250 + 1) + R"(", "status": "up"})";
    }
    json += R"(], "filesystems": [)";
    int disk = 0;
    for (int f = 0; f < fileSystems; f++) {
        json += (f ? "," : "") + std::string(R"({"name": "fs)") + std::to_string(f) +
                R"(", "mountPoint": "/bench/fs)" + std::to_string(f) +
                R"(", "managerNode": "n0", "mountedNodes": ["n0", "n1"], "pools": [)";
        for (int p = 0; p < 2; p++) {
            json += (p ? "," : "") + std::string(R"({"name": "pool)") + std::to_string(p) +
                    R"(", "disks": [)";
            for (int d = 0; d < disksPerPool; d++, disk++) {
                json += (d ? "," : "") + std::string(R"({"name": "d)") + std::to_string(disk) +
                        R"(", "totalSpace": 1000, "fullBlockFreeSpace": 500, "servers": ["n)" +
                        std::to_string(disk % nodes) + R"("], "backupServers": ["n)" +
                        std::to_string((disk + 1) % nodes) + R"("]})";
            }
            json += "]}";
        }
        json += R"(], "filesets": [)";
        for (int s = 0; s < 10; s++)
            json += (s ? "," : "") + std::string(R"({"name": "set)") + std::to_string(s) + "\"}";
        json += "]}";
    }
    return json + "]}";
}

class StartedProvider {
public:
    explicit StartedProvider(const std::string& model) {
        setenv("QZSIM_LOG_FILE", "/dev/null", 1);
        qzsim::reset();
        std::string error;
        if (!model.empty() && qzsim::loadModelFromString(model, &error) != 0)
            throw std::runtime_error(error);
        provider->initialize(cimom);
    }
    ~StartedProvider() {
        provider->cleanupVexaHandler();
        delete provider;
        qzsim::reset();
    }
    VexaProvider* provider = new VexaProvider();
    CIMOMHandle cimom;
};

class CountingHandler : public InstanceResponseHandler {
public:
    size_t delivered = 0;
    void processing() override {}
    void complete() override {}
    void deliver(const CIMInstance&) override { delivered++; }
    void deliver(const Array<CIMInstance>& list) override { delivered += list.size(); }
};

std::string modelFor(const benchmark::State& state) {
    if (state.range(0) == 0)
        return std::string(); // the built-in demo cluster
    const int size = static_cast<int>(state.range(0));
    return generatedCluster(size, size / 8 + 1, 4);
}

void fullCachePass(benchmark::State& state) {
    StartedProvider started(modelFor(state));
    VexaProvider& provider = *started.provider;
    for (auto _ : state) {
        provider.getWriteLock();
        provider.buildAllVexaInstanceList(1);
        provider.releaseLock();
    }
    state.counters["nodes"] = static_cast<double>(provider.nodes.size());
    state.counters["disks"] = static_cast<double>(provider.disks.size());
    state.counters["filesets"] = static_cast<double>(provider.filesets.size());
}

void enumerateFromFreshCache(benchmark::State& state) {
    StartedProvider started(modelFor(state));
    OperationContext context;
    CIMObjectPath disks(String(), CIMNamespaceName("root/cimv2"), CIMName("KOR_VEXA_NSD"));
    size_t delivered = 0;
    for (auto _ : state) {
        CountingHandler handler;
        started.provider->enumerateInstances(context, disks, false, false, CIMPropertyList(),
                                             handler);
        delivered = handler.delivered;
    }
    state.counters["instances"] = static_cast<double>(delivered);
}

} // namespace

// Argument 0 is the demo cluster; others are the node count of a generated one.
BENCHMARK(fullCachePass)->Arg(0)->Arg(64)->Arg(512)->Unit(benchmark::kMillisecond);
BENCHMARK(enumerateFromFreshCache)->Arg(0)->Arg(512)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
