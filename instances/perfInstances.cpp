// Performance counters as statistical instances, passed through as the
// management library counted them: rates are the client's business.
#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addProperty;
using instances::appendKey;

namespace {

// The counter block shared by the cluster-wide and the per-node file system
// classes, in their common property order.
void addFileSystemCounters(CIMInstance& instance, const FsPerfCounters& counters) {
    addProperty(instance, "vexaFileSystemBytesRead", CIMValue(Uint64(counters.bytesRead)));
    addProperty(instance, "vexaFileSystemBytesCache", CIMValue(Uint64(counters.bytesCache)));
    addProperty(instance, "vexaFileSystemBytesWritten", CIMValue(Uint64(counters.bytesWritten)));
    addProperty(instance, "vexaFileSystemReads", CIMValue(Uint32(counters.reads)));
    addProperty(instance, "vexaFileSystemCaches", CIMValue(Uint32(counters.caches)));
    addProperty(instance, "vexaFileSystemWrites", CIMValue(Uint32(counters.writes)));
    addProperty(instance, "vexaFileSystemOpenCalls", CIMValue(Uint32(counters.openCalls)));
    addProperty(instance, "vexaFileSystemCloseCalls", CIMValue(Uint32(counters.closeCalls)));
    addProperty(instance, "vexaFileSystemReadCalls", CIMValue(Uint32(counters.readCalls)));
    addProperty(instance, "vexaFileSystemWriteCalls", CIMValue(Uint32(counters.writeCalls)));
    addProperty(instance, "vexaFileSystemReaddirCalls", CIMValue(Uint32(counters.readdirCalls)));
    addProperty(instance, "vexaFileSystemInodesWritten", CIMValue(Uint32(counters.inodesWritten)));
    addProperty(instance, "vexaFileSystemInodesRead", CIMValue(Uint32(counters.inodesRead)));
    addProperty(instance, "vexaFileSystemInodesDeleted", CIMValue(Uint32(counters.inodesDeleted)));
    addProperty(instance, "vexaFileSystemInodesCreated", CIMValue(Uint32(counters.inodesCreated)));
    addProperty(instance, "vexaFileSystemStatCacheHit", CIMValue(Uint32(counters.statCacheHit)));
    addProperty(instance, "vexaFileSystemStatCacheMiss", CIMValue(Uint32(counters.statCacheMiss)));
}

// Performance classes have a single key, the composed id.
void setInstanceIdPath(CIMInstance& instance, const CIMName& className,
                       const std::string& instanceId) {
    Array<CIMKeyBinding> keys;
    appendKey(keys, "InstanceID", instanceId);
    instances::setInstancePath(instance, className, keys);
}

} // namespace

CIMInstance VexaProvider::createFileSystemPerfInstance(ClusterInfo* cluster, FilesystemInfo* fs) {
    std::string instanceId = instances::joinKey(cluster->clusterName, fs->name);
    ts_log(0, "VexaProvider::createFileSystemPerfInstance", "caches = %u\n", fs->counters.caches);

    CIMInstance instance(VEXA_PERF_FILESYSTEM);
    addProperty(instance, "InstanceID", instanceId);
    addProperty(instance, "vexaFileSystemName", fs->name);
    addProperty(instance, "vexaSamplingTimeInSeconds", CIMValue(Uint64(cluster->perfSampleSec)));
    addProperty(instance, "vexaSamplingTimeInMicroseconds",
                CIMValue(Uint64(cluster->perfSampleUsec)));
    // Unprefixed names: the published schema has them so.
    addProperty(instance, "duration", CIMValue(Uint32(fs->duration)));
    addProperty(instance, "writeD", CIMValue(Uint32(fs->writeD)));
    addProperty(instance, "vexaNodePerfCount", CIMValue(Uint32(fs->nodePerfCount)));
    addFileSystemCounters(instance, fs->counters);

    setInstanceIdPath(instance, VEXA_PERF_FILESYSTEM, instanceId);
    return instance;
}

CIMInstance VexaProvider::createFsPerNodePerfInstance(ClusterInfo* cluster, FilesystemPerf* perf) {
    // The cluster name leads, so equal node addresses of two clusters differ.
    std::string instanceId =
        instances::joinKey(cluster->clusterName, perf->fsName, perf->nodeIpAddr);
    ts_log(0, "VexaProvider::createFsPerNodePerfInstance", "caches = %u\n", perf->counters.caches);

    CIMInstance instance(VEXA_PERF_FS_PER_NODE);
    addProperty(instance, "InstanceID", instanceId);
    addProperty(instance, "vexaSamplingTimeInSeconds", CIMValue(Uint64(cluster->perfSampleSec)));
    addProperty(instance, "vexaSamplingTimeInMicroseconds",
                CIMValue(Uint64(cluster->perfSampleUsec)));
    addProperty(instance, "vexaFileSystemName", perf->fsName);
    addProperty(instance, "vexaNodeName", perf->nodeName);
    addProperty(instance, "vexaNodeIP", perf->nodeIpAddr);
    addFileSystemCounters(instance, perf->counters);

    setInstanceIdPath(instance, VEXA_PERF_FS_PER_NODE, instanceId);
    return instance;
}

CIMInstance VexaProvider::createDiskPerfInstance(FilesystemInfo* fs, StoragePoolInfo* pool,
                                                 DiskInfo* disk) {
    // Without the cluster name: disk names are unique within a cluster, and
    // the published ids have this form.
    std::string instanceId = instances::joinKey(fs->name, pool->name, disk->name);

    CIMInstance instance(VEXA_PERF_DISK);
    addProperty(instance, "InstanceID", instanceId);
    addProperty(instance, "ElementName", disk->name);
    addProperty(instance, "vexaSamplingTimeInSeconds", CIMValue(Uint64(pool->perfSampleSec)));
    addProperty(instance, "vexaSamplingTimeInMicroseconds", CIMValue(Uint64(pool->perfSampleUsec)));
    // Lower-case "s": the disk class spells it unlike the file system ones.
    addProperty(instance, "vexaFilesystemName", fs->name);
    addProperty(instance, "vexaNodePerfCount", CIMValue(Uint32(disk->nodePerfCount)));
    addProperty(instance, "vexaDiskReadTime", CIMValue(Real64(disk->readTime)));
    addProperty(instance, "vexaDiskWriteTime", CIMValue(Real64(disk->writeTime)));
    addProperty(instance, "vexaDiskLongestReadTime", CIMValue(Real64(disk->longestReadTime)));
    addProperty(instance, "vexaDiskLongestWriteTime", CIMValue(Real64(disk->longestWriteTime)));
    addProperty(instance, "vexaDiskShortestReadTime", CIMValue(Real64(disk->shortestReadTime)));
    addProperty(instance, "vexaDiskShortestWriteTime", CIMValue(Real64(disk->shortestWriteTime)));
    addProperty(instance, "vexaDiskReadBytes", CIMValue(Uint64(disk->bytesRead)));
    addProperty(instance, "vexaDiskWriteBytes", CIMValue(Uint64(disk->bytesWritten)));
    addProperty(instance, "vexaDiskReadOps", CIMValue(Uint32(disk->readOps)));
    addProperty(instance, "vexaDiskWriteOps", CIMValue(Uint32(disk->writeOps)));

    setInstanceIdPath(instance, VEXA_PERF_DISK, instanceId);
    return instance;
}
