// Association lists filled from the cluster snapshot: free disks, the nodes
// that serve each disk, the disks each node reaches, and the quota, user and
// group associations asked for on demand.
#include "cimProvider.h"

#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

PEGASUS_USING_PEGASUS;

int VexaProvider::buildFreeDiskInstanceList() {
    const int count = static_cast<int>(clusterInfo->freeDiskList.size());
    if (count < 0)
        return 1;
    freeNsds.clear();
    if (count == 0)
        return 0;
    for (int i = 0; i < count; i++) {
        DiskInfo* info = clusterInfo->freeDiskList.at(i);
        CIMInstance disk = createDiskInstance(clusterInfo, info);
        disks.append(disk);
        const Array<CIMInstance>& clusterList = clusters;
        freeNsds.append(createVexaFreeNsd(clusterList[0].getPath(), disk.getPath()));
        buildDiskServerAssociationList(disk, info);
    }
    return 0;
}

int VexaProvider::buildDiskServerAssociationList(CIMInstance disk, DiskInfo* info) {
    ts_log(0, "VexaProvider::buildDiskServerAssociationList", "disk name = %s\n", info->name);
    ts_log(0, "VexaProvider::buildDiskServerAssociationList", "nServer = %d\n",
           static_cast<int>(info->serverList.size()));

    // The order numbers the servers that are known nodes, primary servers
    // first, then the backups; unknown names do not take a number.
    unsigned int order = 0;
    // A const view: a non-const access would copy the node array, which the
    // name index shares.
    const Array<CIMInstance>& nodeList = nodes;
    for (const std::vector<DiskServerInfo*>* servers :
         {&info->serverList, &info->backupServerList}) {
        for (DiskServerInfo* server : *servers) {
            const int node = findVexaInstIdx(VEXA_INST_NODE_BY_NAME, server->name);
            if (node < 0)
                continue;
            nodeServingNsds.append(
                createVexaNodeServNsd(disk.getPath(), nodeList[node].getPath(), order));
            order++;
        }
    }
    return 0;
}

int VexaProvider::buildDiskAccessAssociationList() {
    const int count = static_cast<int>(clusterInfo->nodeList.size());
    if (count < 0)
        return 1;
    nodeAccessesNsds.clear();
    if (count == 0)
        return 0;
    const Array<CIMInstance>& nodeList = nodes;
    const Array<CIMInstance>& diskList = disks;
    // The node end is taken by position: the node list is built in the
    // snapshot's order, so node record i is node instance i.
    for (int i = 0; i < count; i++) {
        NodeInfo* node = clusterInfo->nodeList.at(i);
        for (DiskAccessInfo* access : node->diskAccessList) {
            const int disk = findVexaInstIdx(VEXA_INST_DISK, access->diskName);
            if (disk < 0)
                continue;
            nodeAccessesNsds.append(createVexaNodeAccessNsd(
                nodeList[i].getPath(), diskList[disk].getPath(), access, clusterInfo));
        }
    }
    return 0;
}

int VexaProvider::buildQuotaAssocInstance(CIMObjectPath source, int quotaType) {
    static const char* const fn = "VexaProvider::buildQuotaAssocInstance";
    ts_log(0, fn, "ENTER\n");
    // Only the first quota of the list is associated with the source. An
    // empty quota list has nothing to associate: the association list is
    // left as it was and the caller reports the failure.
    Array<CIMInstance>* quotas = 0;
    Array<CIMInstance>* assocs = 0;
    CIMInstance (VexaProvider::*build)(CIMObjectPath, CIMObjectPath) = 0;
    switch (quotaType) {
    case MGMT_QUOTA_GROUP:
        quotas = &groupQuotas;
        assocs = &groupQuotaAssocs;
        build = &VexaProvider::createVexaAssociatedGroupQuota;
        break;
    case MGMT_QUOTA_USER:
        quotas = &userQuotas;
        assocs = &userQuotaAssocs;
        build = &VexaProvider::createVexaAssociatedUserQuota;
        break;
    case MGMT_QUOTA_FILESET:
        quotas = &filesetQuotas;
        assocs = &filesetQuotaAssocs;
        build = &VexaProvider::createVexaAssociatedFilesetQuota;
        break;
    default:
        break;
    }
    if (quotas != 0) {
        if (quotas->size() == 0)
            return 1;
        CIMInstance association = (this->*build)(source, (*quotas)[0].getPath());
        assocs->clear();
        assocs->append(association);
    }
    ts_log(0, fn, "EXIT\n");
    return 0;
}

int VexaProvider::buildUserAssocInstances(CIMObjectPath fileSystem) {
    ts_log(0, "VexaProvider::buildUserAssocInstances", "ENTER\n");
    userAssocs.clear();
    for (Uint32 i = 0; i < users.size(); i++)
        userAssocs.append(createUserAssocInstance(fileSystem, users[i].getPath()));
    ts_log(0, "VexaProvider::buildUserAssocInstances", "EXIT\n");
    return 0;
}

int VexaProvider::buildGroupAssocInstances(CIMObjectPath fileSystem) {
    ts_log(0, "VexaProvider::buildGroupAssocInstances", "ENTER\n");
    groupAssocs.clear();
    for (Uint32 i = 0; i < groups.size(); i++)
        groupAssocs.append(createGroupAssocInstance(fileSystem, groups[i].getPath()));
    ts_log(0, "VexaProvider::buildGroupAssocInstances", "EXIT\n");
    return 0;
}
