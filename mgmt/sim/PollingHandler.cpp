// Start and stop, the polling lock, the daemon state and the snapshot
// refresh operations.

#include "FaultTable.h"
#include "OpScope.h"
#include "OwnedList.h"
#include "PerfSampler.h"
#include "PollingLock.h"
#include "SimState.h"
#include "SnapshotFill.h"
#include "TaskRunner.h"
#include "TextCopy.h"

#include <qzantras/PollingHandler.h>
#include <qzantras/ts_log.h>

#include <atomic>
#include <cstring>

PollingHandler* thePollingHandler = nullptr;

namespace qzsim {

namespace {

std::atomic<bool> handlerActive{false};
std::mutex lifecycleMutex;

PollingLock& pollingLock() {
    static PollingLock lock;
    return lock;
}

SimFilesystem* findFs(ClusterModel& model, const char* name) {
    return name == nullptr ? nullptr : model.findFilesystem(name);
}

FilesystemInfo* findRecord(ClusterInfo* cluster, const char* name) {
    for (FilesystemInfo* fs : cluster->fsList) {
        if (std::strcmp(fs->name, name) == 0) {
            return fs;
        }
    }
    return nullptr;
}

} // namespace

bool pollingHandlerActive() { return handlerActive; }

} // namespace qzsim

using namespace qzsim;

PollingHandler::PollingHandler() = default;
PollingHandler::~PollingHandler() = default;

int PollingHandler::init(MgmtProtocol protocol, int flags, int verbose) {
    std::lock_guard<std::mutex> lock(lifecycleMutex);
    ts_log(0, "PollingHandler::init", "protocol %d, flags %d, verbose %d\n",
           static_cast<int>(protocol), flags, verbose);
    if (thePollingHandler != nullptr) {
        return MGMT_OK;
    }
    if (int rc = SimState::instance().loadInitial()) {
        return rc;
    }
    if (int rc = FaultTable::instance().take("init")) {
        return rc;
    }
    thePollingHandler = new PollingHandler;
    handlerActive = true;
    TaskRunner::instance().start();
    return MGMT_OK;
}

void PollingHandler::term() {
    std::lock_guard<std::mutex> lock(lifecycleMutex);
    ts_log(0, "PollingHandler::term", "enter\n");
    if (thePollingHandler == nullptr) {
        return;
    }
    TaskRunner::instance().stop();
    handlerActive = false;
    delete thePollingHandler;
    thePollingHandler = nullptr;
}

int PollingHandler::getPollingLock() {
    pollingLock().acquire();
    return MGMT_OK;
}

int PollingHandler::releasePollingLock() {
    if (!pollingLock().release()) {
        ts_log(2, "PollingHandler::releasePollingLock",
               "released by a thread that does not hold it\n");
        return MGMT_E_INVALID_ARG;
    }
    return MGMT_OK;
}

int PollingHandler::getDaemonState() {
    OpScope op("getDaemonState", nullptr, false);
    if (op.status() != 0) {
        return MGMT_DAEMON_UNKNOWN;
    }
    return op.model().daemonState;
}

int PollingHandler::refreshClusterRecipe(int force) {
    {
        OpScope op("refreshClusterRecipe", nullptr, false);
        if (op.status() != 0) {
            return op.status();
        }
    }
    ts_log(0, "PollingHandler::refreshClusterRecipe", "force %d\n", force);
    return SimState::instance().reloadIfChanged();
}

// Every snapshot refresh starts alike: the operation may go on (handler up,
// daemon running, no injected fault) and there is a record to fill.
static int openSnapshotRefresh(OpScope& op, const ClusterInfo* cluster) {
    if (op.status() != 0) {
        return op.status();
    }
    if (cluster == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No cluster record.");
    }
    return MGMT_OK;
}

int PollingHandler::getClusterInfo(ClusterInfo* cluster) {
    OpScope op("getClusterInfo", nullptr);
    if (int rc = openSnapshotRefresh(op, cluster)) {
        return rc;
    }
    fillHeader(op.model(), cluster);
    return MGMT_OK;
}

int PollingHandler::updateClusterInfo(ClusterInfo* cluster, int /*flags*/) {
    OpScope op("updateClusterInfo", nullptr);
    if (int rc = openSnapshotRefresh(op, cluster)) {
        return rc;
    }
    fillHeader(op.model(), cluster);
    fillPolicies(op.model(), cluster);
    return MGMT_OK;
}

int PollingHandler::updateNodeInfo(ClusterInfo* cluster, int /*flags*/) {
    OpScope op("updateNodeInfo", nullptr);
    if (int rc = openSnapshotRefresh(op, cluster)) {
        return rc;
    }
    fillNodes(op.model(), cluster);
    return MGMT_OK;
}

int PollingHandler::updateFilesystemInfo(ClusterInfo* cluster, int withPerf) {
    OpScope op("updateFilesystemInfo", nullptr);
    if (int rc = openSnapshotRefresh(op, cluster)) {
        return rc;
    }
    ClusterModel& model = op.model();
    deleteAll(cluster->fsList);
    for (SimFilesystem& fs : model.filesystems) {
        if (withPerf != 0) {
            sampleFilesystem(model, fs);
        }
        cluster->fsList.push_back(makeFilesystem(model, fs));
    }
    cluster->perfSampleSec = model.perfSampleSec;
    cluster->perfSampleUsec = model.perfSampleUsec;
    fillFreeDisks(model, cluster);
    return MGMT_OK;
}

int PollingHandler::updateStoragePoolInfo(ClusterInfo* cluster, const char* fsName) {
    OpScope op("updateStoragePoolInfo", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (cluster == nullptr || fsName == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No cluster record or file system name.");
    }
    SimFilesystem* fs = findFs(op.model(), fsName);
    FilesystemInfo* record = findRecord(cluster, fsName);
    if (fs == nullptr || record == nullptr) {
        return op.fail(MGMT_E_NO_FILESYSTEM, "File system %s not found.", fsName);
    }
    deleteAll(record->poolList);
    for (const SimPool& pool : fs->pools) {
        record->poolList.push_back(makePool(op.model(), pool, true));
    }
    return MGMT_OK;
}

int PollingHandler::updateDiskInfo(ClusterInfo* cluster, const char* fsName, const char* poolName,
                                   int withPerf) {
    OpScope op("updateDiskInfo", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (cluster == nullptr || fsName == nullptr || poolName == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No cluster record, file system or pool name.");
    }
    SimFilesystem* fs = findFs(op.model(), fsName);
    FilesystemInfo* record = findRecord(cluster, fsName);
    if (fs == nullptr || record == nullptr) {
        return op.fail(MGMT_E_NO_FILESYSTEM, "File system %s not found.", fsName);
    }
    SimPool* pool = nullptr;
    for (SimPool& candidate : fs->pools) {
        if (std::strcmp(candidate.info.name, poolName) == 0) {
            pool = &candidate;
        }
    }
    StoragePoolInfo* poolRecord = nullptr;
    for (StoragePoolInfo* candidate : record->poolList) {
        if (std::strcmp(candidate->name, poolName) == 0) {
            poolRecord = candidate;
        }
    }
    if (pool == nullptr || poolRecord == nullptr) {
        return op.fail(MGMT_E_NO_POOL, "Storage pool %s not found in file system %s.", poolName,
                       fsName);
    }
    if (withPerf != 0) {
        samplePool(op.model(), *pool);
    }
    static_cast<StoragePoolData&>(*poolRecord) = pool->info;
    deleteAll(poolRecord->diskList);
    for (const SimDisk& disk : pool->disks) {
        poolRecord->diskList.push_back(makeDisk(op.model(), disk));
    }
    return MGMT_OK;
}

int PollingHandler::updateDiskSDRInfo(int /*flags*/) {
    OpScope op("updateDiskSDRInfo", nullptr);
    return op.status();
}

int PollingHandler::updateMountedNodeInfo(ClusterInfo* cluster) {
    OpScope op("updateMountedNodeInfo", nullptr);
    if (int rc = openSnapshotRefresh(op, cluster)) {
        return rc;
    }
    for (FilesystemInfo* record : cluster->fsList) {
        if (SimFilesystem* fs = findFs(op.model(), record->name)) {
            fillMounts(*fs, record);
        }
    }
    return MGMT_OK;
}

int PollingHandler::updateFilesystemMountPointInfo(ClusterInfo* cluster) {
    OpScope op("updateFilesystemMountPointInfo", nullptr);
    if (int rc = openSnapshotRefresh(op, cluster)) {
        return rc;
    }
    for (FilesystemInfo* record : cluster->fsList) {
        if (SimFilesystem* fs = findFs(op.model(), record->name)) {
            fillMountPoint(*fs, record);
        }
    }
    return MGMT_OK;
}

int PollingHandler::updateFreeDiskInfo(ClusterInfo* cluster) {
    OpScope op("updateFreeDiskInfo", nullptr);
    if (int rc = openSnapshotRefresh(op, cluster)) {
        return rc;
    }
    fillFreeDisks(op.model(), cluster);
    return MGMT_OK;
}

int PollingHandler::getUsers(const char* fsName, std::vector<User*>* users) {
    OpScope op("getUsers", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (users == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No list for the users.");
    }
    SimFilesystem* fs = findFs(op.model(), fsName);
    if (fs == nullptr) {
        return op.fail(MGMT_E_NO_FILESYSTEM, "File system %s not found.",
                       fsName != nullptr ? fsName : "(null)");
    }
    for (const SimUser& user : op.model().users) {
        User* record = new User;
        fillUser(op.model(), *fs, user, record);
        users->push_back(record);
    }
    return MGMT_OK;
}

int PollingHandler::getGroups(const char* fsName, std::vector<Group*>* groups) {
    OpScope op("getGroups", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (groups == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No list for the groups.");
    }
    SimFilesystem* fs = findFs(op.model(), fsName);
    if (fs == nullptr) {
        return op.fail(MGMT_E_NO_FILESYSTEM, "File system %s not found.",
                       fsName != nullptr ? fsName : "(null)");
    }
    for (const SimGroup& group : op.model().groups) {
        Group* record = new Group;
        fillGroup(op.model(), *fs, group, record);
        groups->push_back(record);
    }
    return MGMT_OK;
}

int PollingHandler::addExecutionTask(const char* command, const char* arguments, int (*done)(void*),
                                     void* context) {
    if (int code = FaultTable::instance().take("addExecutionTask")) {
        return code;
    }
    if (command == nullptr || *command == '\0') {
        ts_log(1, "PollingHandler::addExecutionTask", "no command\n");
        return MGMT_E_INVALID_ARG;
    }
    ts_log(0, "PollingHandler::addExecutionTask", "queue %s %s\n", command,
           arguments != nullptr ? arguments : "");
    TaskRunner::instance().queue(command, arguments != nullptr ? arguments : "", done, context);
    return MGMT_OK;
}
