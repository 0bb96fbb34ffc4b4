// The refresh cycle: cache passes and the thread that has the management
// library reload the cluster's configuration between them.
#include "cimProvider.h"
#include "lockGuards.h"

#include <qzantras/ts_log.h>

#include <pthread.h>
#include <sys/time.h>
#include <unistd.h>

#include "exceptionBarrier.h"
#include "processFlags.h"
#include "refreshSleep.h"

PEGASUS_USING_PEGASUS;

// Seconds between two wake-ups of the refresh thread.
static const unsigned REFRESH_THREAD_SLEEP_SECONDS = 180;
// getDaemonState() value telling that the file-system daemon is down.
static const int DAEMON_NOT_RUNNING = 1;

// A pass is due when the last one is more than this many seconds old.
static const long long PASS_AGE_LIMIT_SECONDS = 180;
// Users and groups are the dearest lists; they have their own, slower clock.
static const int USER_GROUP_AGE_LIMIT_SECONDS = 900;

bool VexaProvider::shouldRefresh() {
    struct timeval now;
    gettimeofday(&now, 0);
    const long long elapsed =
        static_cast<long long>(now.tv_sec) - static_cast<long long>(lastRefresh.tv_sec);
    ts_log(0, "VexaProvider::shouldRefresh", "curSec - preSec = %d\n", static_cast<int>(elapsed));
    return elapsed > PASS_AGE_LIMIT_SECONDS;
}

bool VexaProvider::shouldRefreshUsersAndGroups() {
    struct timeval now;
    gettimeofday(&now, 0);
    // The difference is taken on the low 32 bits, as the published behaviour
    // has always done; it only matters for clocks 68 years apart.
    const int elapsed = static_cast<int>(static_cast<unsigned>(now.tv_sec) -
                                         static_cast<unsigned>(lastUserGroupRefresh.tv_sec));
    ts_log(0, "VexaProvider::shouldRefreshUsersAndGroups", "curSec - preSec = %d\n", elapsed);
    return elapsed > USER_GROUP_AGE_LIMIT_SECONDS;
}

int VexaProvider::buildAllVexaInstanceList(int force) {
    static const char* const fn = "VexaProvider::buildAllVexaInstanceList";
    if (force == 0 && !shouldRefresh() && !refreshForced) {
        ts_log(0, fn, "Don't do refresh this time\n");
        refreshForced = false;
        return 0;
    }
    ts_log(0, fn, "refresh this time\n");
    // The pass replaces nearly every list: letting go of the indexes first
    // frees the old instances as each list is cleared, instead of keeping
    // two caches alive until the pass ends.
    cacheIndexes.dropAll();

    // Each builder keeps its own lists when its library call fails; the pass
    // goes on with the others.
    ts_log(0, fn, "buildClusterInstanceList\n");
    buildClusterInstanceList();
    ts_log(0, "VexaProvider::buildAllVexaInstanceListz", "buildNodeInstanceList\n");
    buildNodeInstanceList();
    ts_log(0, fn, "buildFileSystemInstanceList\n");
    const bool fileSystemListsRebuilt = buildFileSystemInstanceList() == 0;
    ts_log(0, fn, "buildFreeDiskInstanceList\n");
    // The free disks are appended to the disk list and their servers to the
    // disk-server list, which only a successful file-system rebuild clears:
    // after a failed one the kept lists already hold them.
    if (fileSystemListsRebuilt)
        buildFreeDiskInstanceList();
    ts_log(0, fn, "buildDiskAccessAssoicationList\n");
    buildDiskAccessAssociationList();
    // The RAID element lists follow their inventory files from pass to pass.
    ts_log(0, fn, "buildCorvaneElementLists\n");
    buildCorvanePhysicalDiskList();
    buildCorvaneVirtualDiskList();
    buildCorvaneDeclusteredArrayList();

    if (shouldRefreshUsersAndGroups() || refreshForced) {
        ts_log(0, fn, " building user and group instance list...\n");
        buildUserInstanceList();
        buildGroupInstanceList();
        gettimeofday(&lastUserGroupRefresh, 0);
    }
    gettimeofday(&lastRefresh, 0);
    refreshForced = false;
    return 0;
}

int VexaProvider::buildClusterInstanceList() {
    static const char* const fn = "VexaProvider::buildClusterInstanceList";
    ts_log(0, fn, "refreshClusterRecipe\n");
    {
        PollingLock polling(pollingHandler);
        pollingHandler->refreshClusterRecipe(1);
    }
    ts_log(0, fn, "updateClusterInfo\n");
    pollingHandler->updateClusterInfo(clusterInfo, 0);
    ts_log(0, fn, "getClusterInfo\n");
    pollingHandler->getClusterInfo(clusterInfo);

    clusters.clear();
    clusters.append(createClusterInstance(clusterInfo));
    return 0;
}

int VexaProvider::buildNodeInstanceList() {
    if (pollingHandler->updateNodeInfo(clusterInfo, 0) != 0)
        return 1;
    nodes.clear();
    componentCS.clear();
    // Elements are read through const views: a non-const access would copy
    // an array that an index shares (see cacheIndexes).
    const Array<CIMInstance>& clusterList = clusters;
    const Array<CIMInstance>& nodeList = nodes;
    for (NodeInfo* node : clusterInfo->nodeList) {
        nodes.append(createNodeInstance(clusterInfo, node));
        componentCS.append(
            createVexaComponentCS(clusterList[0].getPath(), nodeList[nodes.size() - 1].getPath()));
    }

    configManagers.clear();
    const int primary = findVexaInstIdx(VEXA_INST_NODE_BY_NAME, clusterInfo->primaryServer);
    if (primary < 0)
        return 0;
    configManagers.append(
        createVexaConfigMgr(clusterList[0].getPath(), nodeList[primary].getPath()));
    return 0;
}

int VexaProvider::buildFileSystemInstanceList() {
    static const char* const fn = "VexaProvider::buildFileSystemInstanceList";
    ts_log(0, fn, "ENTER\n");
    pollingHandler->updateDiskSDRInfo(0);
    if (pollingHandler->updateFilesystemInfo(clusterInfo, 0) != 0)
        return 1;
    pollingHandler->updateMountedNodeInfo(clusterInfo);
    pollingHandler->updateFilesystemMountPointInfo(clusterInfo);

    fileSystems.clear();
    hostedFileSystems.clear();
    mounteds.clear();
    storagePools.clear();
    associatedStoragePools.clear();
    disks.clear();
    storageComponents.clear();
    nodeServingNsds.clear();
    fileSystemManagers.clear();
    policies.clear();
    fileSystemPolicies.clear();
    filesets.clear();
    associatedFilesets.clear();

    if (clusterInfo->fsList.empty()) {
        ts_log(0, fn, "EXIT\n");
        return 0;
    }
    // Const views: a non-const access would copy an array an index shares.
    const Array<CIMInstance>& clusterList = clusters;
    const Array<CIMInstance>& nodeList = nodes;
    const Array<CIMInstance>& fileSystemList = fileSystems;
    for (size_t i = 0; i < clusterInfo->fsList.size(); i++) {
        FilesystemInfo* fs = clusterInfo->fsList.at(i);
        fileSystems.append(createFileSystemInstance(fs, clusterInfo));
        const CIMObjectPath fsPath = fileSystemList[fileSystems.size() - 1].getPath();
        hostedFileSystems.append(createVexaHostedFS(clusterList[0].getPath(), fsPath));
        buildStgPoolInstanceList(fs, static_cast<int>(i));
        buildFileSetInstances(fs, static_cast<int>(i));

        ts_log(0, fn, "nMountedNode = %d\n", static_cast<int>(fs->mountedNodes.size()));
        for (const std::string& name : fs->mountedNodes) {
            // Mount reports may name nodes that left the cluster; they have
            // no instance to point at.
            const int node =
                findVexaInstIdx(VEXA_INST_NODE_BY_NAME, const_cast<char*>(name.c_str()));
            if (node >= 0)
                mounteds.append(createVexaMounted(nodeList[node].getPath(), fsPath));
        }

        const int manager = findVexaInstIdx(VEXA_INST_NODE_BY_NAME, fs->managerNode);
        if (manager >= 0)
            fileSystemManagers.append(createVexaFileSystemMgr(fsPath, nodeList[manager].getPath()));

        ts_log(0, fn, "nPolicy = %d\n", static_cast<int>(fs->policyList.size()));
        for (PolicyInfo* policy : fs->policyList) {
            if (policy == 0)
                continue;
            policies.append(createPolicyInstance(clusterInfo, policy));
            fileSystemPolicies.append(
                createVexaFSPolicy(fsPath, policies[policies.size() - 1].getPath()));
        }
    }
    ts_log(0, fn, "EXIT\n");
    return 0;
}

namespace {

// What differs between the user and the group rebuild.
struct AccountListKind {
    const char* function;
    const char* buildingMessage;
    Array<CIMInstance> VexaProvider::*instances;
    Array<CIMInstance> VexaProvider::*associations;
    int (VexaProvider::*buildForFileSystem)(FilesystemInfo*, int);
};

int buildAccountList(VexaProvider& provider, const AccountListKind& kind) {
    ts_log(0, kind.function, "ENTER\n");
    ClusterInfo* cluster = provider.clusterInfo;
    if (cluster->fsList.empty())
        return 1;
    // Accounts are read through a mounted file system; until the first one
    // has a mount point the cached lists are the best answer.
    if (cluster->fsList.at(0)->mountPoint[0] == '\0') {
        ts_log(0, kind.function, "returning cached user instances.\n");
        return 1;
    }
    ts_log(0, kind.function, "%s", kind.buildingMessage);
    {
        PollingLock polling(provider.pollingHandler);
        if ((provider.*kind.instances).size() != 0) {
            (provider.*kind.instances).clear();
            (provider.*kind.associations).clear();
        }
        for (size_t i = 0; i < cluster->fsList.size(); i++) {
            FilesystemInfo* fs = cluster->fsList.at(i);
            if (fs->mountPoint[0] != '\0')
                (provider.*kind.buildForFileSystem)(fs, static_cast<int>(i));
        }
    }
    ts_log(0, kind.function, "EXIT\n");
    return 0;
}

} // namespace

int VexaProvider::buildUserInstanceList() {
    static const AccountListKind userList = {
        "VexaProvider::buildUserInstanceList", "building user instances\n", &VexaProvider::users,
        &VexaProvider::userAssocs, &VexaProvider::buildUserInstances};
    return buildAccountList(*this, userList);
}

int VexaProvider::buildGroupInstanceList() {
    static const AccountListKind groupList = {
        "VexaProvider::buildGroupInstanceList", "building group instances\n", &VexaProvider::groups,
        &VexaProvider::groupAssocs, &VexaProvider::buildGroupInstances};
    return buildAccountList(*this, groupList);
}

int VexaProvider::buildFileSystemPerfInstanceList() {
    static const char* const fn = "VexaProvider::buildFileSystemPerfInstanceList";
    ts_log(0, fn, "enter\n");
    perfListsStale = false;
    buildAllVexaInstanceList(0);
    fileSystemPerfs.clear();
    diskPerfs.clear();
    fsPerNodePerfs.clear();
    performanceListsBuilt = true;

    pollingHandler->updateDiskSDRInfo(0);
    if (pollingHandler->updateFilesystemInfo(clusterInfo, 1) != 0) {
        ts_log(2, fn, "updateFilesystemInfo failed\n");
        return 1;
    }
    // A pool whose disks cannot be read is skipped; the others still count.
    bool poolFailed = false;
    for (FilesystemInfo* fs : clusterInfo->fsList) {
        ts_log(0, fn, "fs=%s\n", fs->name);
        fileSystemPerfs.append(createFileSystemPerfInstance(clusterInfo, fs));
        for (StoragePoolInfo* pool : fs->poolList) {
            ts_log(0, fn, "sp=%s\n", pool->name);
            if (pollingHandler->updateDiskInfo(clusterInfo, fs->name, pool->name, 1) != 0) {
                ts_log(2, fn, "updateDiskInfo failed\n");
                poolFailed = true;
                continue;
            }
            for (DiskInfo* disk : pool->diskList) {
                ts_log(0, fn, "disk=%s\n", disk->name);
                diskPerfs.append(createDiskPerfInstance(fs, pool, disk));
            }
        }
        for (FilesystemPerf* perf : fs->nodePerfList) {
            ts_log(0, fn, "per-node perf=%s\n", perf->nodeName);
            fsPerNodePerfs.append(createFsPerNodePerfInstance(clusterInfo, perf));
        }
    }
    return poolFailed ? 1 : 0;
}

namespace {

// One wake-up of the refresh thread after its sleep.
void refreshOnce() {
    // The provider may have been terminated while the thread slept.
    VexaProvider* provider = loadFlag(theVexaProvider);
    if (provider == 0 || provider->pollingHandler == 0) {
        return;
    }
    if (provider->pollingHandler->getDaemonState() == DAEMON_NOT_RUNNING) {
        ts_log(0, "VexaProvider::refreshThread", "daemon is not running...back to sleep\n");
        return;
    }
    if (loadFlag(NeedEventHandler)) {
        ts_log(0, "VexaProvider::refreshThread", "init event handler\n");
        // Cleared before the restart, not after: a stream that ends at
        // once raises the flag again, and that request must not be lost.
        storeFlag(NeedEventHandler, false);
        provider->initEventHandler();
    }
    ts_log(0, "VexaProvider::refreshThread", "refresh global node list\n");

    // Provider lock first, polling lock second, as everywhere else.
    {
        CacheWriteLock lock(*provider);
        PollingLock polling(provider->pollingHandler);
        provider->pollingHandler->refreshClusterRecipe(1);
    }
    ts_log(0, "VexaProvider::refreshThread", "Exit refresh thread.\n");
}

} // namespace

void* VexaProvider::refreshThread(void*) {
    while (loadFlag(KeepRunning) != 0) {
        ts_log(0, "VexaProvider::refreshThread", "Going to sleep!\n");
        sleepUntilNextRefresh(REFRESH_THREAD_SLEEP_SECONDS);
        // Woken early to stop: the provider is going away.
        if (loadFlag(KeepRunning) == 0) {
            break;
        }
        ts_log(0, "VexaProvider::refreshThread", "Enter refresh state.\n");
        // A failed wake-up is logged; the thread sleeps and tries again.
        containFailure("VexaProvider::refreshThread", refreshOnce);
    }
    pthread_exit(0);
    return 0;
}
