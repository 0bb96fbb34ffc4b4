#ifndef QZANTRAS_CLUSTER_INFO_H
#define QZANTRAS_CLUSTER_INFO_H

// Records of a cluster snapshot. Text fields are NUL-terminated arrays of
// MGMT_TEXT_LEN bytes; 64-bit numbers are unsigned long long and 32-bit ones
// unsigned int, so they convert to the CIM integer types without casts.
// A record that owns other records through pointer lists deletes them in its
// destructor and cannot be copied; its plain fields live in a "...Data" base
// that can be copied freely.

#include <qzantras/MgmtTypes.h>

#include <string>
#include <vector>

// One server of a disk (an entry of DiskInfo's server lists).
struct DiskServerInfo {
    char name[MGMT_TEXT_LEN] = {};
    char ipAddr[MGMT_TEXT_LEN] = {};
};

// How one node reaches one disk.
struct DiskAccessInfo {
    char diskName[MGMT_TEXT_LEN] = {};
    unsigned int localAccess = 0; // non-zero: the node sees the disk as a local device
    char localDeviceName[MGMT_TEXT_LEN] = {};
    char serverName[MGMT_TEXT_LEN] = {}; // the serving node when access is remote
};

struct NodeInfoData {
    char name[MGMT_TEXT_LEN] = {};
    char ipAddr[MGMT_TEXT_LEN] = {};
    char platform[MGMT_TEXT_LEN] = {};
    char status[MGMT_TEXT_LEN] = {}; // "up", "down", "arbitrating", "unknown"
    char version[MGMT_TEXT_LEN] = {};
    char type[MGMT_TEXT_LEN] = {};
    char admin[MGMT_TEXT_LEN] = {};
    char healthy[MGMT_TEXT_LEN] = {};
    char diagnosis[MGMT_TEXT_LEN] = {};
    char unmountOnDiskFail[MGMT_TEXT_LEN] = {};
    unsigned int failureCount = 0;
    unsigned int threadWait = 0;
    unsigned long long pagePool = 0;
    // The ten tuning values, consecutive and in this order.
    unsigned int prefetchThreads = 0;
    unsigned int maxMbps = 0;
    unsigned int maxFilesToCache = 0;
    unsigned int maxStatCache = 0;
    unsigned int worker1Threads = 0;
    unsigned int dmapiEventTimeout = 0;
    unsigned int dmapiMountTimeout = 0;
    unsigned int dmapiSessFailureTimeout = 0;
    unsigned int nsdServerWaitTimeWindowOnMount = 0;
    unsigned int nsdServerWaitTimeForMount = 0;
};

struct NodeInfo : NodeInfoData {
    std::vector<DiskAccessInfo*> diskAccessList;

    NodeInfo() = default;
    ~NodeInfo();
    NodeInfo(const NodeInfo&) = delete;
    NodeInfo& operator=(const NodeInfo&) = delete;
};

struct DiskInfoData {
    char name[MGMT_TEXT_LEN] = {};
    char status[MGMT_TEXT_LEN] = {};       // "ready", "suspended", "being emptied", ...
    char availability[MGMT_TEXT_LEN] = {}; // "OK", "Unavailable", "Recovering", ...
    char metadata[MGMT_TEXT_LEN] = {};     // "yes" / "no"
    char data[MGMT_TEXT_LEN] = {};         // "yes" / "no"
    char failureGroup[MGMT_TEXT_LEN] = {};
    char volumeId[MGMT_TEXT_LEN] = {};
    char poolName[MGMT_TEXT_LEN] = {}; // the pool holding the disk, or meant for a free disk
    int freeDisk = 0;                  // non-zero: the disk belongs to no file system
    unsigned long long totalSpace = 0;
    unsigned long long fullBlockFreeSpace = 0;
    unsigned long long subBlockFreeSpace = 0;
    // Performance values, filled when updateDiskInfo is asked for them.
    unsigned int nodePerfCount = 0;
    unsigned int readOps = 0;
    unsigned int writeOps = 0;
    unsigned long long bytesRead = 0;
    unsigned long long bytesWritten = 0;
    double readTime = 0;
    double writeTime = 0;
    double longestReadTime = 0;
    double longestWriteTime = 0;
    double shortestReadTime = 0;
    double shortestWriteTime = 0;
};

struct DiskInfo : DiskInfoData {
    std::vector<DiskServerInfo*> serverList;       // primary servers
    std::vector<DiskServerInfo*> backupServerList; // backup servers

    DiskInfo() = default;
    ~DiskInfo();
    DiskInfo(const DiskInfo&) = delete;
    DiskInfo& operator=(const DiskInfo&) = delete;
};

struct StoragePoolData {
    char name[MGMT_TEXT_LEN] = {};
    unsigned long long totalSpace = 0;
    unsigned long long freeSpace = 0;
    unsigned long long perfSampleSec = 0; // sampling time of the disks' performance values
    unsigned long long perfSampleUsec = 0;
};

struct StoragePoolInfo : StoragePoolData {
    std::vector<DiskInfo*> diskList;

    StoragePoolInfo() = default;
    ~StoragePoolInfo();
    StoragePoolInfo(const StoragePoolInfo&) = delete;
    StoragePoolInfo& operator=(const StoragePoolInfo&) = delete;
};

// The counter block of a file system, cluster-wide or for one node.
struct FsPerfCounters {
    unsigned long long bytesRead = 0;
    unsigned long long bytesCache = 0;
    unsigned long long bytesWritten = 0;
    unsigned int reads = 0;
    unsigned int caches = 0;
    unsigned int writes = 0;
    unsigned int openCalls = 0;
    unsigned int closeCalls = 0;
    unsigned int readCalls = 0;
    unsigned int writeCalls = 0;
    unsigned int readdirCalls = 0;
    unsigned int inodesWritten = 0;
    unsigned int inodesRead = 0;
    unsigned int inodesDeleted = 0;
    unsigned int inodesCreated = 0;
    unsigned int statCacheHit = 0;
    unsigned int statCacheMiss = 0;
};

// One node's counters for one file system.
struct FilesystemPerf {
    char fsName[MGMT_TEXT_LEN] = {};
    char nodeName[MGMT_TEXT_LEN] = {};
    char nodeIpAddr[MGMT_TEXT_LEN] = {};
    FsPerfCounters counters;
};

struct PolicyRule {
    char name[MGMT_TEXT_LEN] = {};
    char description[MGMT_RULE_TEXT_LEN] = {};
};

struct PolicyData {
    char name[MGMT_TEXT_LEN] = {};
    char installedBy[MGMT_TEXT_LEN] = {};
    char installTime[MGMT_TEXT_LEN] = {};
    char fsName[MGMT_TEXT_LEN] = {}; // the file system the policy is installed on
};

struct PolicyInfo : PolicyData {
    std::vector<PolicyRule*> ruleList;

    PolicyInfo() = default;
    ~PolicyInfo();
    PolicyInfo(const PolicyInfo&) = delete;
    PolicyInfo& operator=(const PolicyInfo&) = delete;
};

struct FilesystemData {
    char name[MGMT_TEXT_LEN] = {};
    char status[MGMT_TEXT_LEN] = {}; // "recovered", "state", "unknown", "panicked", ...
    char xstatus[MGMT_TEXT_LEN] = {};
    unsigned long long totalSpace = 0;
    unsigned long long totalInodes = 0;
    unsigned long long freeSpace = 0;
    unsigned long long freeInodes = 0;
    unsigned long long minFragmentSize = 0;
    unsigned long long inodeSize = 0;
    unsigned long long indirectBlockSize = 0;
    unsigned long long avgFileSize = 0;
    unsigned long long numNodes = 0;
    unsigned long long blockSize = 0;
    unsigned long long maxNumInodes = 0;
    unsigned int defaultMetadataReplicas = 0;
    unsigned int maxMetadataReplicas = 0;
    unsigned int defaultDataReplicas = 0;
    unsigned int maxDataReplicas = 0;
    char blockAllocationType[MGMT_TEXT_LEN] = {};
    char fileLockingSemantics[MGMT_TEXT_LEN] = {};
    char aclSemantics[MGMT_TEXT_LEN] = {};
    char quotaEnforced[MGMT_TEXT_LEN] = {};
    char defaultQuotasEnabled[MGMT_TEXT_LEN] = {};
    char fsVersion[MGMT_TEXT_LEN] = {};
    char largeLunSupport[MGMT_TEXT_LEN] = {};
    char dmapiEnabled[MGMT_TEXT_LEN] = {};
    char exactMtime[MGMT_TEXT_LEN] = {};
    char suppressAtime[MGMT_TEXT_LEN] = {};
    char automaticMountOption[MGMT_TEXT_LEN] = {};
    char additionalMountOptions[MGMT_TEXT_LEN] = {};
    char defaultMountPoint[MGMT_TEXT_LEN] = {};
};

struct FilesystemInfo : FilesystemData {
    // Filled by updateFilesystemMountPointInfo (and updateFilesystemInfo).
    char mountPoint[MGMT_TEXT_LEN] = {}; // empty while not known
    int mountPointKnown = 0;
    // Filled by updateMountedNodeInfo (and updateFilesystemInfo).
    char managerNode[MGMT_TEXT_LEN] = {};  // name of the file-system manager node
    std::vector<std::string> mountedNodes; // names of the nodes that mount it
    // Pools with their disks; refreshed by updateStoragePoolInfo / updateDiskInfo.
    std::vector<StoragePoolInfo*> poolList;
    std::vector<PolicyInfo*> policyList;
    // Performance values, taken afresh when updateFilesystemInfo is called with 1.
    std::vector<FilesystemPerf*> nodePerfList;
    unsigned int duration = 0; // seconds covered by the last sample
    unsigned int writeD = 0;
    unsigned int nodePerfCount = 0; // per-node records summed into counters
    FsPerfCounters counters;

    FilesystemInfo() = default;
    ~FilesystemInfo();
    FilesystemInfo(const FilesystemInfo&) = delete;
    FilesystemInfo& operator=(const FilesystemInfo&) = delete;
};

struct FileSet {
    unsigned int version = 0;
    char name[MGMT_TEXT_LEN] = {};
    char fsName[MGMT_TEXT_LEN] = {};
    char id[MGMT_TEXT_LEN] = {};
    char rootInode[MGMT_TEXT_LEN] = {};
    char parentId[MGMT_TEXT_LEN] = {};
    char status[MGMT_TEXT_LEN] = {}; // "Linked" or "Unlinked"
    char path[MGMT_TEXT_LEN] = {};   // junction path, empty while unlinked
    char comment[MGMT_TEXT_LEN] = {};
    char created[MGMT_TEXT_LEN] = {}; // CIM datetime text
    unsigned long long inodes = 0;
    unsigned long long dataKB = 0;
    int linked = 0;
};

struct Quota {
    unsigned int header = 0;
    unsigned int version = 0;
    unsigned int id = 0;     // uid, gid or fileset id
    unsigned short type = 0; // an MgmtQuotaKind
    unsigned long long blockUsage = 0;
    unsigned long long blockQuota = 0;
    unsigned long long blockLimit = 0;
    unsigned long long blockInDoubt = 0;
    unsigned long long filesUsage = 0;
    unsigned long long filesQuota = 0;
    unsigned long long filesLimit = 0;
    unsigned long long filesInDoubt = 0;
    std::string fsName;
    std::string entityName;
    std::string blockGrace;
    std::string filesGrace;
    std::string remarks;
};

struct User {
    char name[MGMT_TEXT_LEN] = {};
    char fsName[MGMT_TEXT_LEN] = {};
    char clusterName[MGMT_TEXT_LEN] = {};
    char homePath[MGMT_TEXT_LEN] = {};
    unsigned int uid = 0;
    unsigned int gid = 0;
    int detailsKnown = 0; // homePath and gid are valid
};

struct Group {
    char name[MGMT_TEXT_LEN] = {};
    char fsName[MGMT_TEXT_LEN] = {};
    char clusterName[MGMT_TEXT_LEN] = {};
    unsigned int gid = 0;
};

// Owner, group and path of a file or directory (for the junction methods).
struct FileOrDirOwner {
    char owner[MGMT_TEXT_LEN] = {};
    char group[MGMT_TEXT_LEN] = {};
    char path[MGMT_TEXT_LEN] = {};
    int isJunction = 0;
};

// A cluster event. Which fields carry values depends on the type.
struct Event {
    unsigned long long tvSec = 0;
    unsigned long long tvUsec = 0;
    int type = 0; // an MgmtEventType
    char severity[MGMT_TEXT_LEN] = {};
    char nodeIpAddr[MGMT_TEXT_LEN] = {};
    char nodeName[MGMT_TEXT_LEN] = {};
    char fsName[MGMT_TEXT_LEN] = {};
    char diskName[MGMT_TEXT_LEN] = {};
    char poolName[MGMT_TEXT_LEN] = {};
    // change disk
    char diskStatus[MGMT_TEXT_LEN] = {};
    char diskAvailability[MGMT_TEXT_LEN] = {};
    char failureGroup[MGMT_TEXT_LEN] = {};
    char metadata[MGMT_TEXT_LEN] = {};
    char data[MGMT_TEXT_LEN] = {};
    // manager takeover, file system creation and deletion
    char sgmgrIpAddr[MGMT_TEXT_LEN] = {};
    char prevSgmgrIpAddr[MGMT_TEXT_LEN] = {};
    // file system state change
    char userUnbalanced[MGMT_TEXT_LEN] = {};
    char metaUnbalanced[MGMT_TEXT_LEN] = {};
    char userIllReplicated[MGMT_TEXT_LEN] = {};
    char metaIllReplicated[MGMT_TEXT_LEN] = {};
    char userExposed[MGMT_TEXT_LEN] = {};
    char metaExposed[MGMT_TEXT_LEN] = {};
    // hung thread
    unsigned int waitTime = 0;
    char diagnosis[MGMT_TEXT_LEN] = {};
    // storage pool utilisation, percent
    unsigned int utilization = 0;
    // administration commands
    char command[MGMT_TEXT_LEN] = {};
    char commandStatus[MGMT_TEXT_LEN] = {};
    int commandResult = 0;
};

struct ClusterInfoData {
    char clusterName[MGMT_TEXT_LEN] = {};
    char clusterId[MGMT_TEXT_LEN] = {};
    char minReleaseLevel[MGMT_TEXT_LEN] = {};
    char uidDomain[MGMT_TEXT_LEN] = {};
    char remoteShellCommand[MGMT_TEXT_LEN] = {};
    char remoteFileCopyCommand[MGMT_TEXT_LEN] = {};
    char primaryServer[MGMT_TEXT_LEN] = {};
    char secondaryServer[MGMT_TEXT_LEN] = {};
    unsigned int maxBlockSize = 0;
    unsigned int distributeTokenServer = 0;
    unsigned int failureDetectionTime = 0;
    unsigned int tcpPort = 0;
};

struct ClusterInfo : ClusterInfoData {
    std::vector<NodeInfo*> nodeList;
    std::vector<FilesystemInfo*> fsList;
    std::vector<DiskInfo*> freeDiskList;
    std::vector<PolicyInfo*> policyList; // every installed policy, all file systems
    // Sampling time of the file-system performance values.
    unsigned long long perfSampleSec = 0;
    unsigned long long perfSampleUsec = 0;

    // err (when not null) receives 0 or the reason the record cannot be used.
    explicit ClusterInfo(MErrno* err = nullptr);
    ~ClusterInfo();
    ClusterInfo(const ClusterInfo&) = delete;
    ClusterInfo& operator=(const ClusterInfo&) = delete;
};

#endif
