#include "SnapshotFill.h"

#include "OwnedList.h"
#include "PerfSampler.h"
#include "TextCopy.h"

#include <cstring>

namespace qzsim {

void fillHeader(const ClusterModel& model, ClusterInfo* cluster) {
    static_cast<ClusterInfoData&>(*cluster) = model.header;
    cluster->perfSampleSec = model.perfSampleSec;
    cluster->perfSampleUsec = model.perfSampleUsec;
}

void fillPolicies(const ClusterModel& model, ClusterInfo* cluster) {
    deleteAll(cluster->policyList);
    for (const SimFilesystem& fs : model.filesystems) {
        for (const SimPolicy& policy : fs.policies) {
            cluster->policyList.push_back(makePolicy(policy));
        }
    }
}

void fillNodes(const ClusterModel& model, ClusterInfo* cluster) {
    deleteAll(cluster->nodeList);
    for (const SimNode& node : model.nodes) {
        NodeInfo* record = new NodeInfo;
        static_cast<NodeInfoData&>(*record) = node.info;
        for (const DiskAccessInfo& access : node.access) {
            record->diskAccessList.push_back(new DiskAccessInfo(access));
        }
        cluster->nodeList.push_back(record);
    }
}

void fillFreeDisks(const ClusterModel& model, ClusterInfo* cluster) {
    deleteAll(cluster->freeDiskList);
    for (const SimDisk& disk : model.freeDisks) {
        cluster->freeDiskList.push_back(makeDisk(model, disk));
    }
}

DiskInfo* makeDisk(const ClusterModel&, const SimDisk& disk) {
    DiskInfo* record = new DiskInfo;
    static_cast<DiskInfoData&>(*record) = disk.info;
    if (record->nodePerfCount == 0) {
        record->nodePerfCount = disk.accessCount;
    }
    for (const DiskServerInfo& server : disk.servers) {
        record->serverList.push_back(new DiskServerInfo(server));
    }
    for (const DiskServerInfo& server : disk.backupServers) {
        record->backupServerList.push_back(new DiskServerInfo(server));
    }
    return record;
}

StoragePoolInfo* makePool(const ClusterModel& model, const SimPool& pool, bool withDisks) {
    StoragePoolInfo* record = new StoragePoolInfo;
    static_cast<StoragePoolData&>(*record) = pool.info;
    if (withDisks) {
        for (const SimDisk& disk : pool.disks) {
            record->diskList.push_back(makeDisk(model, disk));
        }
    }
    return record;
}

PolicyInfo* makePolicy(const SimPolicy& policy) {
    PolicyInfo* record = new PolicyInfo;
    static_cast<PolicyData&>(*record) = policy.info;
    for (const PolicyRule& rule : policy.rules) {
        record->ruleList.push_back(new PolicyRule(rule));
    }
    return record;
}

void fillMounts(const SimFilesystem& fs, FilesystemInfo* record) {
    copyText(record->managerNode, fs.manager);
    record->mountedNodes = fs.mountedOn;
}

void fillMountPoint(const SimFilesystem& fs, FilesystemInfo* record) {
    copyText(record->mountPoint, fs.mountPoint);
    record->mountPointKnown = fs.mountPoint.empty() ? 0 : 1;
}

void fillPerf(const ClusterModel& model, const SimFilesystem& fs, FilesystemInfo* record) {
    deleteAll(record->nodePerfList);
    for (const SimNodePerf& perf : fs.nodePerf) {
        FilesystemPerf* entry = new FilesystemPerf;
        copyText(entry->fsName, fs.info.name);
        copyText(entry->nodeName, perf.node);
        for (const SimNode& node : model.nodes) {
            if (perf.node == node.info.name) {
                copyText(entry->nodeIpAddr, node.info.ipAddr);
            }
        }
        entry->counters = perf.counters;
        record->nodePerfList.push_back(entry);
    }
    record->counters = sumCounters(fs);
    record->nodePerfCount = static_cast<unsigned int>(fs.nodePerf.size());
    record->duration = fs.duration;
    record->writeD = fs.writeD;
}

FilesystemInfo* makeFilesystem(const ClusterModel& model, const SimFilesystem& fs) {
    FilesystemInfo* record = new FilesystemInfo;
    static_cast<FilesystemData&>(*record) = fs.info;
    fillMounts(fs, record);
    fillMountPoint(fs, record);
    for (const SimPool& pool : fs.pools) {
        record->poolList.push_back(makePool(model, pool, true));
    }
    for (const SimPolicy& policy : fs.policies) {
        record->policyList.push_back(makePolicy(policy));
    }
    fillPerf(model, fs, record);
    return record;
}

void fillUser(const ClusterModel& model, const SimFilesystem& fs, const SimUser& user, User* out) {
    *out = User();
    copyText(out->name, user.name);
    copyText(out->fsName, fs.info.name);
    copyText(out->clusterName, model.header.clusterName);
    out->uid = user.uid;
    if (user.detailsKnown) {
        copyText(out->homePath, user.home);
        out->gid = user.gid;
        out->detailsKnown = 1;
    }
}

void fillGroup(const ClusterModel& model, const SimFilesystem& fs, const SimGroup& group,
               Group* out) {
    *out = Group();
    copyText(out->name, group.name);
    copyText(out->fsName, fs.info.name);
    copyText(out->clusterName, model.header.clusterName);
    out->gid = group.gid;
}

} // namespace qzsim
