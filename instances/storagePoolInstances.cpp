// Storage pool instances, the walk over one file system's pools, and the
// pool names that indications use to find a pool instance.
#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include <climits>
#include <cstdio>
#include <cstring>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addOperationalStatus;
using instances::addProperty;
using instances::appendKey;

namespace {

// Percentages above this mark a pool as degraded: at 90 % and more an
// administrator should add disks before writes start to fail.
const int POOL_DEGRADED_ABOVE_PERCENT = 89;

// Used space in percent, truncated toward zero. A pool without any
// capacity (no disks yet, or a sample taken while its disks were being
// added) holds no data, so it reports 0 % rather than dividing by zero.
// Free space above the total cannot come from a consistent sample; the
// negative percentage is kept, bounded so that it fits an int.
int poolUtilisationPercent(unsigned long long freeSpace, unsigned long long totalSpace) {
    if (totalSpace == 0) {
        return 0;
    }
    double percent =
        (1.0 - static_cast<double>(freeSpace) / static_cast<double>(totalSpace)) * 100.0;
    if (percent < static_cast<double>(INT_MIN)) {
        return INT_MIN;
    }
    return static_cast<int>(percent);
}

} // namespace

CIMInstance VexaProvider::createStgPoolInstance(StoragePoolInfo* pool, FilesystemInfo* fs,
                                                ClusterInfo* cluster) {
    std::string poolId = instances::joinKey(cluster->clusterName, fs->name, pool->name);

    CIMInstance instance(VEXA_STORAGE_POOL);
    ts_log(0, "VexaProvider::createStgPoolInstance", "stgId = %s\n", poolId.c_str());
    addProperty(instance, "InstanceID", poolId);
    addProperty(instance, "Name", pool->name);
    // Unique within the cluster and the key indications look pools up by.
    addProperty(instance, "vexaStgPoolName", instances::joinKey(fs->name, pool->name));
    addProperty(instance, "vexaStgPoolTotalSpace", CIMValue(Uint64(pool->totalSpace)));
    addProperty(instance, "vexaStgPoolFreeSpace", CIMValue(Uint64(pool->freeSpace)));
    int utilPer = poolUtilisationPercent(pool->freeSpace, pool->totalSpace);
    ts_log(0, "VexaProvider::createStgPoolInstance", "utilPer = %d\n", utilPer);
    addOperationalStatus(instance, utilPer > POOL_DEGRADED_ABOVE_PERCENT
                                       ? instances::STATUS_DEGRADED
                                       : instances::STATUS_OK);

    Array<CIMKeyBinding> keys;
    appendKey(keys, "InstanceID", poolId);
    instances::setInstancePath(instance, VEXA_STORAGE_POOL, keys);
    return instance;
}

int VexaProvider::buildStgPoolInstanceList(FilesystemInfo* fs, int fsIndex) {
    if (pollingHandler->updateStoragePoolInfo(clusterInfo, fs->name) != 0) {
        return 1;
    }
    int poolCount = static_cast<int>(fs->poolList.size());
    if (poolCount < 0) {
        return 1;
    }
    fsStoragePools.clear();
    if (poolCount == 0) {
        return 0;
    }

    for (int i = 0; i < poolCount; i++) {
        StoragePoolInfo* pool = fs->poolList.at(static_cast<size_t>(i));
        storagePools.append(createStgPoolInstance(pool, fs, clusterInfo));
        // The scratch list gets an instance of its own: the disks of this
        // pool point at the path of the scratch entry.
        fsStoragePools.append(createStgPoolInstance(pool, fs, clusterInfo));
        CIMObjectPath poolPath = fsStoragePools[fsStoragePools.size() - 1].getPath();
        associatedStoragePools.append(
            createVexaAssocSP(fileSystems[static_cast<Uint32>(fsIndex)].getPath(), poolPath));
        // A pool whose disks cannot be read is still published.
        buildDiskInstanceList(fs, pool, i);
    }
    return 0;
}

// Writes "<file system>+<pool>" into *buffer and returns *buffer. The caller
// owns the buffer and makes it large enough: names taken from the records
// are shorter than MGMT_TEXT_LEN, so 2 * MGMT_TEXT_LEN bytes always suffice.
// There is no size argument because indication construction passes names it
// has just read from those records.
char* VexaProvider::genStgPoolName(char** buffer, char* fsName, char* poolName) {
    sprintf(*buffer, "%s+%s", fsName, poolName);
    return *buffer;
}

char* VexaProvider::getStgPoolName(char* fsName, char* diskName) {
    if (clusterInfo == 0 || clusterInfo->fsList.empty()) {
        return 0;
    }
    for (size_t f = 0; f < clusterInfo->fsList.size(); f++) {
        FilesystemInfo* fs = clusterInfo->fsList.at(f);
        if (strcmp(fs->name, fsName) != 0) {
            continue;
        }
        for (size_t p = 0; p < fs->poolList.size(); p++) {
            StoragePoolInfo* pool = fs->poolList.at(p);
            for (size_t d = 0; d < pool->diskList.size(); d++) {
                if (strcmp(pool->diskList.at(d)->name, diskName) == 0) {
                    ts_log(0, "VexaProvider::getStgPoolName",
                           "Storage pool name from assigned disk search = %s\n", pool->name);
                    return pool->name;
                }
            }
        }
        // Only the first file system of that name is searched.
        break;
    }
    // A disk that left its file system (or never joined one) still names
    // the pool it is meant for.
    for (size_t d = 0; d < clusterInfo->freeDiskList.size(); d++) {
        DiskInfo* disk = clusterInfo->freeDiskList.at(d);
        if (strcmp(disk->name, diskName) == 0) {
            ts_log(0, "VexaProvider::getStgPoolName",
                   "Storage pool name from free disk search = %s\n", disk->poolName);
            return disk->poolName;
        }
    }
    return 0;
}
