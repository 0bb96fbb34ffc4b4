// Disk (NSD) instances and the walk over one pool's disks.
#include "cimProvider.h"

#include <cstring>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addOperationalStatus;
using instances::addProperty;
using instances::appendKey;

namespace {

// OperationalStatus follows the availability a client sees: OK serves,
// Unavailable does not, unknown is unknown, and anything in between (for
// example Recovering) is degraded.
Uint16 diskOperationalStatus(const char* availability) {
    if (strcmp(availability, "OK") == 0) {
        return instances::STATUS_OK;
    }
    if (strcmp(availability, "Unavailable") == 0) {
        return instances::STATUS_ERROR;
    }
    if (strcmp(availability, "unknown") == 0) {
        return instances::STATUS_UNKNOWN;
    }
    return instances::STATUS_DEGRADED;
}

} // namespace

CIMInstance VexaProvider::createDiskInstance(ClusterInfo* cluster, DiskInfo* disk) {
    // When the library cannot tell a disk's status its availability text is
    // stale, so it is not passed on.
    const char* availability =
        strcmp(disk->status, "unknown") == 0 ? "unknown" : disk->availability;

    CIMInstance instance(VEXA_DISK);
    addProperty(instance, "SystemCreationClassName", "KOR_VEXA_ManagementSystem");
    addProperty(instance, "SystemName", cluster->clusterName);
    addProperty(instance, "CreationClassName", "KOR_VEXA_NSD");
    addProperty(instance, "DeviceID", disk->name);
    addProperty(instance, "Name", disk->name);
    addProperty(instance, "vexaDiskName", disk->name);
    addProperty(instance, "vexaFreeDisk", CIMValue(Boolean(disk->freeDisk != 0)));
    addProperty(instance, "vexaDiskStatus", disk->status);
    addProperty(instance, "vexaDiskAvailability", availability);
    addProperty(instance, "vexaDiskTotalSpace", CIMValue(Uint64(disk->totalSpace)));
    addProperty(instance, "vexaDiskFullBlockFreeSpace", CIMValue(Uint64(disk->fullBlockFreeSpace)));
    addProperty(instance, "vexaDiskSubBlockFreeSpace", CIMValue(Uint64(disk->subBlockFreeSpace)));
    addProperty(instance, "vexaDiskMetaData", disk->metadata);
    addProperty(instance, "vexaDiskData", disk->data);
    addProperty(instance, "vexaFailureGroupId", disk->failureGroup);
    addProperty(instance, "vexaVolumeId", disk->volumeId);
    addOperationalStatus(instance, diskOperationalStatus(availability));

    Array<CIMKeyBinding> keys;
    appendKey(keys, "SystemCreationClassName", "KOR_VEXA_ManagementSystem");
    appendKey(keys, "SystemName", cluster->clusterName);
    appendKey(keys, "CreationClassName", "KOR_VEXA_NSD");
    appendKey(keys, "DeviceID", disk->name);
    instances::setInstancePath(instance, VEXA_DISK, keys);
    return instance;
}

int VexaProvider::buildDiskInstanceList(FilesystemInfo* fs, StoragePoolInfo* pool, int poolIndex) {
    if (pollingHandler->updateDiskInfo(clusterInfo, fs->name, pool->name, 0) != 0) {
        return 1;
    }
    int diskCount = static_cast<int>(pool->diskList.size());
    if (diskCount < 0) {
        return 1;
    }
    poolDisks.clear();
    if (diskCount == 0) {
        return 0;
    }

    for (int i = 0; i < diskCount; i++) {
        DiskInfo* disk = pool->diskList.at(static_cast<size_t>(i));
        disks.append(createDiskInstance(clusterInfo, disk));
        poolDisks.append(createDiskInstance(clusterInfo, disk));
        CIMInstance diskInstance = poolDisks[poolDisks.size() - 1];
        storageComponents.append(createVexaStorageComp(
            fsStoragePools[static_cast<Uint32>(poolIndex)].getPath(), diskInstance.getPath()));
        buildDiskServerAssociationList(diskInstance, disk);
    }
    return 0;
}
