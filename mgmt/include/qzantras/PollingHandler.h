#ifndef QZANTRAS_POLLING_HANDLER_H
#define QZANTRAS_POLLING_HANDLER_H

// The library's facade for cluster queries and changes. Every operation
// returns 0 on success or an MgmtError code. Operations are safe to call from
// several threads at once; the polling lock exists so that a caller can keep
// a group of calls together, and holding it never blocks the caller's own
// calls.

#include <qzantras/ClusterInfo.h>
#include <qzantras/MgmtTypes.h>

#include <string>
#include <vector>

class PollingHandler {
public:
    // Creates thePollingHandler and loads the cluster model. Calling it again
    // while the handler exists does nothing and returns 0.
    static int init(MgmtProtocol protocol, int flags, int verbose);
    // Stops the execution thread (after it ran the queued tasks) and deletes
    // thePollingHandler.
    static void term();

    int getPollingLock();
    int releasePollingLock();

    // An MgmtDaemonState; 1 means the daemon is not running.
    int getDaemonState();
    // Rereads the cluster configuration when its source has changed.
    int refreshClusterRecipe(int force);

    // Snapshot refresh: each call replaces the lists it fills.
    int getClusterInfo(ClusterInfo* cluster);               // header fields
    int updateClusterInfo(ClusterInfo* cluster, int flags); // header and policies
    int updateNodeInfo(ClusterInfo* cluster, int flags);    // nodes with disk access
    // File systems complete with pools, disks, policies, mounts and free
    // disks; with withPerf non-zero also a new performance sample.
    int updateFilesystemInfo(ClusterInfo* cluster, int withPerf);
    int updateStoragePoolInfo(ClusterInfo* cluster, const char* fsName);
    // with withPerf non-zero also a new performance sample of the disks.
    int updateDiskInfo(ClusterInfo* cluster, const char* fsName, const char* poolName,
                       int withPerf);
    int updateDiskSDRInfo(int flags);
    int updateMountedNodeInfo(ClusterInfo* cluster);
    int updateFilesystemMountPointInfo(ClusterInfo* cluster);
    int updateFreeDiskInfo(ClusterInfo* cluster);

    // Filesets. getFileSets appends new records that the caller deletes.
    int getFileSets(const char* fsName, std::vector<FileSet*>* filesets);
    int getFileSet(const char* fsName, const char* filesetName, FileSet* fileset);
    int createFileSet(FileSet fileset, std::string* message, bool noComment);
    int deleteFileSet(FileSet fileset, bool force, std::string* message);
    // targetType is "fileset" (nameOrPath names the fileset) or "junction"
    // (nameOrPath is its junction path); null newName/newComment keep them.
    int editFileset(const char* fsName, const char* targetType, const char* nameOrPath,
                    const char* newName, const char* newComment, std::string* message);
    int linkFileSet(FileSet fileset, std::string* message);
    int unlinkFileSet(const char* fsName, const char* nameOrPath, bool isFileset, bool force,
                      std::string* message);

    // Quotas. kind is an MgmtQuotaKind; fsName may also be the mount point.
    int getQuota(int kind, const char* fsName, const char* name, Quota* quota);
    // fsOrMountPoint, entityType ("user", "group", "fileset" or 2, 1, 3),
    // entity name or id, then file soft and hard limits, block soft and hard
    // limits in KB (null keeps the limit), grace text for both limits (null
    // keeps them), message.
    int editQuota(const char* fsOrMountPoint, const char* entityType, const char* entity,
                  unsigned long long* fileSoftLimit, unsigned long long* fileHardLimit,
                  unsigned long long* blockSoftLimitKB, unsigned long long* blockHardLimitKB,
                  const char* grace, std::string* message);

    // Owner, group and ACL of fileset junctions.
    int changeOwnerAndOrGroup(FileOrDirOwner target);
    int changeFileOrDirOwnership(FileOrDirOwner source, FileOrDirOwner target,
                                 std::string* message);
    int changeFileOrDirACL(FileOrDirOwner source, FileOrDirOwner target, int option,
                           std::string* message);

    // Users and groups as seen on one file system; the caller deletes the records.
    int getUsers(const char* fsName, std::vector<User*>* users);
    int getGroups(const char* fsName, std::vector<Group*>* groups);

    // Queues an administration command ("qzchconfig") on the library's
    // execution thread, which calls done(context) when it has run.
    int addExecutionTask(const char* command, const char* arguments, int (*done)(void*),
                         void* context);

private:
    PollingHandler();
    ~PollingHandler();
    PollingHandler(const PollingHandler&) = delete;
    PollingHandler& operator=(const PollingHandler&) = delete;
};

extern PollingHandler* thePollingHandler;

#endif
