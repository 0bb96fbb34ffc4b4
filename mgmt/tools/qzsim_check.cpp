// Checks cluster-model files the way the library loads them.
//   qzsim_check FILE...   exit status 0 when every file loads

#include <qzantras/ClusterInfo.h>
#include <qzantras/PollingHandler.h>
#include <qzsim/SimControl.h>

#include <cstdio>
#include <string>

namespace {

int summarize() {
    if (PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1) != 0) {
        return 1;
    }
    MErrno err = 0;
    ClusterInfo cluster(&err);
    PollingHandler* handler = thePollingHandler;
    handler->updateClusterInfo(&cluster, 0);
    handler->updateNodeInfo(&cluster, 0);
    int rc = handler->updateFilesystemInfo(&cluster, 0);
    std::printf("  cluster %s: %zu nodes, %zu file systems, %zu free disks (daemon state %d)\n",
                cluster.clusterName, cluster.nodeList.size(), cluster.fsList.size(),
                cluster.freeDiskList.size(), handler->getDaemonState());
    for (const FilesystemInfo* fs : cluster.fsList) {
        std::size_t disks = 0;
        for (const StoragePoolInfo* pool : fs->poolList) {
            disks += pool->diskList.size();
        }
        std::printf("  file system %s at %s: %zu pools, %zu disks\n", fs->name,
                    fs->mountPointKnown ? fs->mountPoint : "(mount point not known)",
                    fs->poolList.size(), disks);
    }
    PollingHandler::term();
    return rc;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s MODEL.json...\n", argv[0]);
        return 2;
    }
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        qzsim::reset();
        std::string error;
        if (qzsim::loadModelFromFile(argv[i], &error) != 0) {
            std::printf("%s\n", error.c_str());
            ++failures;
            continue;
        }
        std::printf("%s: ok\n", argv[i]);
        if (summarize() != 0) {
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
