#ifndef QZSIM_SIM_MODEL_H
#define QZSIM_SIM_MODEL_H

// The simulated cluster in memory. Plain fields reuse the record "...Data"
// types so that a snapshot is filled by assignment.

#include <qzantras/ClusterInfo.h>

#include <string>
#include <vector>

namespace qzsim {

// Amounts a disk's performance values grow by per sample, on average.
struct DiskPerfRates {
    unsigned int readOps = 40;
    unsigned int writeOps = 25;
    unsigned long long bytesRead = 40ULL * 65536;
    unsigned long long bytesWritten = 25ULL * 65536;
    double readTime = 0.2;  // seconds spent reading per sample
    double writeTime = 0.3; // seconds spent writing per sample
};

struct SimDisk {
    DiskInfoData info;
    std::vector<DiskServerInfo> servers;
    std::vector<DiskServerInfo> backupServers;
    DiskPerfRates rates;
    // Number of node access records naming this disk, counted once at load
    // (the records do not change afterwards) instead of per snapshot.
    unsigned int accessCount = 0;
};

struct SimPool {
    StoragePoolData info;
    bool spaceGiven = false; // false: total and free space follow the disks
    std::vector<SimDisk> disks;
};

struct SimNodePerf {
    std::string node;
    FsPerfCounters counters;
    FsPerfCounters rates;
};

struct SimPolicy {
    PolicyData info;
    std::vector<PolicyRule> rules;
};

struct SimFileset {
    FileSet record;
    std::string owner;
    std::string group;
    std::string acl;
};

struct SimFilesystem {
    FilesystemData info;
    std::string mountPoint; // empty: not known yet
    std::string manager;
    std::vector<std::string> mountedOn;
    std::vector<SimPool> pools;
    std::vector<SimPolicy> policies;
    std::vector<SimNodePerf> nodePerf;
    unsigned int writeD = 0;
    unsigned int duration = 0;
    unsigned long long lastSampleSec = 0;
    unsigned long long lastSampleUsec = 0;
    std::vector<SimFileset> filesets;
    std::vector<Quota> quotas;
};

struct SimNode {
    NodeInfoData info;
    std::vector<DiskAccessInfo> access;
};

struct SimUser {
    std::string name;
    unsigned int uid = 0;
    unsigned int gid = 0;
    std::string home;
    bool detailsKnown = false;
};

struct SimGroup {
    std::string name;
    unsigned int gid = 0;
};

struct InjectedFault {
    std::string operation;
    int code = 0;
    int times = -1;
};

struct ClusterModel {
    ClusterInfoData header;
    int daemonState = 0;
    std::vector<SimNode> nodes;
    std::vector<SimFilesystem> filesystems;
    std::vector<SimDisk> freeDisks;
    std::vector<SimUser> users;
    std::vector<SimGroup> groups;
    std::vector<InjectedFault> faults;
    unsigned long long perfSampleSec = 0;
    unsigned long long perfSampleUsec = 0;
    unsigned int randomState = 12345;

    SimNode* findNode(const std::string& name);
    // By file-system name, or by mount point when no name matches.
    SimFilesystem* findFilesystem(const std::string& nameOrMountPoint);
    SimDisk* findDisk(const std::string& name);
    const SimUser* findUser(const std::string& nameOrId) const;
    const SimGroup* findGroup(const std::string& nameOrId) const;
    // A factor in [0.5, 1.5) from the model's own generator.
    double jitter();
};

SimFileset* findFileset(SimFilesystem& fs, const std::string& name);
SimFileset* findFilesetByJunction(SimFilesystem& fs, const std::string& path);

} // namespace qzsim

#endif
