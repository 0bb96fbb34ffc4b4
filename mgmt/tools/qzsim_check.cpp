// Checks cluster-model files the way the library loads them.
//   qzsim_check FILE...   exit status 0 when every file loads and uses only
//   known node and disk states

#include <qzantras/ClusterInfo.h>
#include <qzantras/PollingHandler.h>
#include <qzsim/SimControl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "UnlistedValues.h"

namespace {

const char* const USAGE =
    "usage: qzsim_check MODEL.json...\n"
    "  Loads each cluster model as vexa-cimserver --cluster-model would, prints why one\n"
    "  does not load, or a summary of what it describes. A node or disk state that is\n"
    "  none of the known values (a typing error, most often) fails the check too,\n"
    "  although the server would serve it. Exit status 0 when every file passes, 1 when\n"
    "  one does not, 2 for a wrong command line.\n";

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

const char* daemonStateName(int state) {
    switch (state) {
    case MGMT_DAEMON_ACTIVE:
        return "active";
    case MGMT_DAEMON_DOWN:
        return "down";
    case MGMT_DAEMON_ARBITRATING:
        return "arbitrating";
    default:
        return "unknown";
    }
}

int summarize() {
    if (PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1) != 0) {
        return 1;
    }
    int state = thePollingHandler->getDaemonState();
    if (state != MGMT_DAEMON_ACTIVE) {
        // The library answers nothing while the daemon is not active; zero
        // counts would read as an empty model.
        std::printf("  daemon state %s: the library reports no cluster, nodes, file systems or "
                    "disks until it is active (the server serves the same)\n",
                    daemonStateName(state));
        PollingHandler::term();
        return 0;
    }
    MErrno err = 0;
    ClusterInfo cluster(&err);
    PollingHandler* handler = thePollingHandler;
    handler->updateClusterInfo(&cluster, 0);
    handler->updateNodeInfo(&cluster, 0);
    int rc = handler->updateFilesystemInfo(&cluster, 0);
    std::printf("  cluster %s: %s, %s, %s (daemon state %s)\n", cluster.clusterName,
                counted(cluster.nodeList.size(), "node", "nodes").c_str(),
                counted(cluster.fsList.size(), "file system", "file systems").c_str(),
                counted(cluster.freeDiskList.size(), "free disk", "free disks").c_str(),
                daemonStateName(state));
    for (const FilesystemInfo* fs : cluster.fsList) {
        std::size_t disks = 0;
        for (const StoragePoolInfo* pool : fs->poolList) {
            disks += pool->diskList.size();
        }
        std::printf("  file system %s at %s: %s, %s\n", fs->name,
                    fs->mountPointKnown ? fs->mountPoint : "(mount point not known)",
                    counted(fs->poolList.size(), "pool", "pools").c_str(),
                    counted(disks, "disk", "disks").c_str());
    }
    PollingHandler::term();
    return rc;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs(USAGE, stderr);
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(USAGE, stdout);
            return 0;
        }
        if (argv[i][0] == '-') {
            std::fprintf(stderr, "qzsim_check: unknown option '%s'\n%s", argv[i], USAGE);
            return 2;
        }
    }
    // The tool prints each problem itself; the library's log line would say
    // it a second time. QZSIM_LOG_LEVEL set by the user still wins.
    setenv("QZSIM_LOG_LEVEL", "3", 0);
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        qzsim::reset();
        std::string error;
        if (qzsim::loadModelFromFile(argv[i], &error) != 0) {
            std::printf("%s\n", error.c_str());
            ++failures;
            continue;
        }
        std::vector<std::string> unlisted = unlistedValues(argv[i]);
        if (!unlisted.empty()) {
            for (const std::string& line : unlisted) {
                std::printf("%s: %s\n", argv[i], line.c_str());
            }
            ++failures;
            continue;
        }
        std::printf("%s: ok\n", argv[i]);
        if (summarize() != 0) {
            std::printf("  the library could not list the model (run with QZSIM_LOG_LEVEL=0 "
                        "for its log)\n");
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
