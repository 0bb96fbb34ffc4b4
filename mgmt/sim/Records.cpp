// Destructors of the snapshot records and the ClusterInfo constructor.

#include "FaultTable.h"
#include "OwnedList.h"

#include <qzantras/ClusterInfo.h>

using qzsim::deleteAll;

NodeInfo::~NodeInfo() { deleteAll(diskAccessList); }

DiskInfo::~DiskInfo() {
    deleteAll(serverList);
    deleteAll(backupServerList);
}

StoragePoolInfo::~StoragePoolInfo() { deleteAll(diskList); }

PolicyInfo::~PolicyInfo() { deleteAll(ruleList); }

FilesystemInfo::~FilesystemInfo() {
    deleteAll(poolList);
    deleteAll(policyList);
    deleteAll(nodePerfList);
}

ClusterInfo::ClusterInfo(MErrno* err) {
    int rc = qzsim::FaultTable::instance().take("ClusterInfo");
    if (err != nullptr) {
        *err = rc;
    }
}

ClusterInfo::~ClusterInfo() {
    deleteAll(nodeList);
    deleteAll(fsList);
    deleteAll(freeDiskList);
    deleteAll(policyList);
}
