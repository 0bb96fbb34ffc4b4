#ifndef QZSIM_SNAPSHOT_FILL_H
#define QZSIM_SNAPSHOT_FILL_H

// Turning the model into snapshot records. Every make* returns a new record
// that the caller owns.

#include "SimModel.h"

namespace qzsim {

void fillHeader(const ClusterModel& model, ClusterInfo* cluster);
void fillPolicies(const ClusterModel& model, ClusterInfo* cluster);
void fillNodes(const ClusterModel& model, ClusterInfo* cluster);
void fillFreeDisks(const ClusterModel& model, ClusterInfo* cluster);

DiskInfo* makeDisk(const ClusterModel& model, const SimDisk& disk);
StoragePoolInfo* makePool(const ClusterModel& model, const SimPool& pool, bool withDisks);
PolicyInfo* makePolicy(const SimPolicy& policy);

void fillMounts(const SimFilesystem& fs, FilesystemInfo* record);
void fillMountPoint(const SimFilesystem& fs, FilesystemInfo* record);
void fillPerf(const ClusterModel& model, const SimFilesystem& fs, FilesystemInfo* record);
// Complete: pools with disks, policies, mounts, mount point, performance.
FilesystemInfo* makeFilesystem(const ClusterModel& model, const SimFilesystem& fs);

void fillUser(const ClusterModel& model, const SimFilesystem& fs, const SimUser& user, User* out);
void fillGroup(const ClusterModel& model, const SimFilesystem& fs, const SimGroup& group,
               Group* out);

} // namespace qzsim

#endif
