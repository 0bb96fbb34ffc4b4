// File system instances.
#include "cimProvider.h"

#include <cstring>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addOperationalStatus;
using instances::addProperty;
using instances::appendKey;

CIMInstance VexaProvider::createFileSystemInstance(FilesystemInfo* fs, ClusterInfo* cluster) {
    bool statusUnknown = strcmp(fs->status, "unknown") == 0;
    // The library says "state" when it could not tell the state; clients get
    // a readable text, while OperationalStatus below still sees the raw one.
    bool stateNotTold = strcmp(fs->status, "state") == 0;

    CIMInstance instance(VEXA_FILESYSTEM);
    addProperty(instance, "CSCreationClassName", "KOR_VEXA_Cluster");
    addProperty(instance, "CSName", cluster->clusterName);
    addProperty(instance, "CreationClassName", "KOR_VEXA_FileSystem");
    addProperty(instance, "Name", fs->name);
    addProperty(instance, "vexaFileSystemName", fs->name);
    addProperty(instance, "vexaFileSystemStatus", stateNotTold ? "state unknown" : fs->status);
    // An extended status of a file system in an unknown state means nothing.
    addProperty(instance, "vexaFileSystemXstatus", statusUnknown ? "unknown" : fs->xstatus);
    addProperty(instance, "vexaFileSystemTotalSpace", CIMValue(Uint64(fs->totalSpace)));
    addProperty(instance, "vexaFileSystemTotalInodes", CIMValue(Uint64(fs->totalInodes)));
    addProperty(instance, "vexaFileSystemFreeSpace", CIMValue(Uint64(fs->freeSpace)));
    addProperty(instance, "vexaFileSystemFreeInodes", CIMValue(Uint64(fs->freeInodes)));
    addProperty(instance, "vexaMinFragmentSize", CIMValue(Uint64(fs->minFragmentSize)));
    addProperty(instance, "vexaInodeSize", CIMValue(Uint64(fs->inodeSize)));
    addProperty(instance, "vexaIndirectBlockSize", CIMValue(Uint64(fs->indirectBlockSize)));
    addProperty(instance, "vexaEstimatedAverageFileSize", CIMValue(Uint64(fs->avgFileSize)));
    addProperty(instance, "vexaNumNodes", CIMValue(Uint64(fs->numNodes)));
    addProperty(instance, "vexaBlockSize", CIMValue(Uint64(fs->blockSize)));
    addProperty(instance, "vexaMaxNumInodes", CIMValue(Uint64(fs->maxNumInodes)));
    addProperty(instance, "vexaDefaultMetadataReplicas",
                CIMValue(Uint32(fs->defaultMetadataReplicas)));
    addProperty(instance, "vexaMaxMetadataReplicas", CIMValue(Uint32(fs->maxMetadataReplicas)));
    addProperty(instance, "vexaDefaultDataReplicas", CIMValue(Uint32(fs->defaultDataReplicas)));
    addProperty(instance, "vexaMaxDataReplicas", CIMValue(Uint32(fs->maxDataReplicas)));
    addProperty(instance, "vexaBlockAllocationType", fs->blockAllocationType);
    addProperty(instance, "vexaFileLockingSemantics", fs->fileLockingSemantics);
    addProperty(instance, "vexaAclSemantics", fs->aclSemantics);
    addProperty(instance, "vexaQuotaEnforced", fs->quotaEnforced);
    addProperty(instance, "vexaDefaultQuotasEnabled", fs->defaultQuotasEnabled);
    // Lower-case "s" in "Filesystem": the published schema spells it so.
    addProperty(instance, "vexaFilesystemVersion", fs->fsVersion);
    addProperty(instance, "vexaSupportForLargeLuns", fs->largeLunSupport);
    addProperty(instance, "vexaDmapiEnabled", fs->dmapiEnabled);
    addProperty(instance, "vexaExactMtime", fs->exactMtime);
    addProperty(instance, "vexaSuppressAtime", fs->suppressAtime);
    addProperty(instance, "vexaAutomaticMountOption", fs->automaticMountOption);
    addProperty(instance, "vexaAdditionalMountOptions", fs->additionalMountOptions);
    addProperty(instance, "vexaDefaultMountPoint", fs->defaultMountPoint);
    // A file system whose state the library could not tell is given the
    // benefit of the doubt rather than raising an alarm.
    bool healthy = strcmp(fs->status, "recovered") == 0 || stateNotTold;
    addOperationalStatus(instance, healthy ? instances::STATUS_OK : instances::STATUS_ERROR);

    Array<CIMKeyBinding> keys;
    appendKey(keys, "CSCreationClassName", "KOR_VEXA_Cluster");
    appendKey(keys, "CSName", cluster->clusterName);
    appendKey(keys, "CreationClassName", "KOR_VEXA_FileSystem");
    appendKey(keys, "Name", fs->name);
    instances::setInstancePath(instance, VEXA_FILESYSTEM, keys);
    return instance;
}
