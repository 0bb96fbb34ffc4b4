// Fileset instances and the per-file-system walk that publishes them with
// their file-system associations.
#include "cimProvider.h"
#include "lockGuards.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <qzantras/ts_log.h>

#include <cstring>
#include <vector>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addProperty;
using instances::appendKey;

namespace {

// The library shows a missing comment as two double quotes (an empty quoted
// text); a client is better served by a null value than by the quotes.
bool isEmptyQuotedComment(const char* comment) { return strcmp(comment, "\"\"") == 0; }

// The library delivers creation times as CIM datetime text. A record that
// breaks that promise must not take the whole refresh down with an escaped
// exception: its creation time is published as null instead.
CIMValue creationTime(const FileSet* fileset) {
    try {
        CIMDateTime created;
        created.set(String(fileset->created));
        return CIMValue(created);
    } catch (const Exception&) {
        ts_log(1, "VexaProvider::createFileSetInstance",
               "fileset %s of %s: creation time \"%s\" is no CIM datetime, published as null\n",
               fileset->name, fileset->fsName, fileset->created);
        return CIMValue(CIMTYPE_DATETIME, false);
    }
}

// getFileSets hands over records that the caller deletes, on every way out.
struct FileSetRecords {
    std::vector<FileSet*> list;
    FileSetRecords() = default;
    FileSetRecords(const FileSetRecords&) = delete;
    FileSetRecords& operator=(const FileSetRecords&) = delete;
    ~FileSetRecords() {
        for (FileSet* fileset : list) {
            delete fileset;
        }
    }
};

} // namespace

CIMInstance VexaProvider::createFileSetInstance(FileSet* fileset, ClusterInfo* cluster) {
    std::string filesetId =
        instances::joinKey(cluster->clusterName, fileset->fsName, fileset->name);
    // Logged under the pool builder's label "stgId", as log filters expect.
    ts_log(0, "VexaProvider::createFileSetInstance", "stgId = %s\n", filesetId.c_str());

    // Texts used more than once are made once: the path's keys then share
    // them with the properties, and a large cluster's filesets hold one copy
    // of each class name instead of one per fileset.
    const String& clusterClass = VEXA_CLUSTER.getString();
    const String& fileSystemClass = VEXA_FILESYSTEM.getString();
    const String& filesetClass = VEXA_FILESET.getString();
    const String clusterName(cluster->clusterName);
    const String fileSystemName(fileset->fsName);
    const String name(fileset->name);
    const String id(fileset->id);

    CIMInstance instance(VEXA_FILESET);
    addProperty(instance, "CSCreationClassName", clusterClass);
    addProperty(instance, "CSName", clusterName);
    addProperty(instance, "FSCreationClassName", fileSystemClass);
    addProperty(instance, "FSName", fileSystemName);
    addProperty(instance, "CreationClassName", filesetClass);
    addProperty(instance, "Name", name);
    addProperty(instance, "vexaFilesetClusterName", clusterName);
    addProperty(instance, "vexaFilesetVersion", CIMValue(Uint32(fileset->version)));
    addProperty(instance, "vexaFilesetName", name);
    addProperty(instance, "vexaFilesetID", id);
    addProperty(instance, "vexaFilesetRootINode", fileset->rootInode);
    addProperty(instance, "vexaFilesetParentID", fileset->parentId);
    addProperty(instance, "vexaFilesetINodes", CIMValue(Uint64(fileset->inodes)));
    addProperty(instance, "vexaFilesetDataInKB", CIMValue(Uint64(fileset->dataKB)));
    if (isEmptyQuotedComment(fileset->comment)) {
        addProperty(instance, "vexaFilesetComment", CIMValue(CIMTYPE_STRING, false));
    } else {
        addProperty(instance, "vexaFilesetComment", fileset->comment);
    }
    addProperty(instance, "vexaFilesetStatus", fileset->status);
    addProperty(instance, "vexaFileSystemName", fileSystemName);
    addProperty(instance, "vexaFilesetPath", fileset->path);
    addProperty(instance, "vexaFilesetCreated", creationTime(fileset));

    // The published class has no "ID" property: the id lives in the path
    // only.
    Array<CIMKeyBinding> keys;
    keys.reserveCapacity(7);
    appendKey(keys, "CSCreationClassName", clusterClass);
    appendKey(keys, "CSName", clusterName);
    appendKey(keys, "FSCreationClassName", fileSystemClass);
    appendKey(keys, "FSName", fileSystemName);
    appendKey(keys, "CreationClassName", filesetClass);
    appendKey(keys, "Name", name);
    appendKey(keys, "ID", id);
    instances::setInstancePath(instance, VEXA_FILESET, keys);
    return instance;
}

int VexaProvider::buildFileSetInstances(FilesystemInfo* fs, int fsIndex) {
    ts_log(0, "VexaProvider::buildFileSetInstances", "ENTER\n");
    FileSetRecords records;
    int rc;
    {
        PollingLock polling(pollingHandler);
        rc = pollingHandler->getFileSets(fs->name, &records.list);
    }
    ts_log(0, "VexaProvider::buildFileSetInstances", "enter for fs %s\n", fs->name);

    int filesetCount = static_cast<int>(records.list.size());
    if (rc != 0 || filesetCount < 0) {
        return 1;
    }

    fsFilesets.clear();
    for (int i = 0; i < filesetCount; i++) {
        FileSet* fileset = records.list.at(static_cast<size_t>(i));
        ts_log(0, "VexaProvider::buildFileSetInstances", "FS=%s - Fileset=%s.\n", fs->name,
               fileset->name);
        const CIMInstance instance = createFileSetInstance(fileset, clusterInfo);
        filesets.append(instance);
        // The scratch list shares the instance just built. The line repeats the
        // one of that build, so the log reads as when each list built its own
        // copy.
        ts_log(
            0, "VexaProvider::createFileSetInstance", "stgId = %s\n",
            instances::joinKey(clusterInfo->clusterName, fileset->fsName, fileset->name).c_str());
        fsFilesets.append(instance);
        ts_log(0, "VexaProvider::buildFileSetInstances",
               "creating association between FS=%s and Fileset=%s.\n", fs->name, fileset->name);
        associatedFilesets.append(
            createVexaAssociatedFileset(fileSystems[static_cast<Uint32>(fsIndex)].getPath(),
                                        fsFilesets[fsFilesets.size() - 1].getPath()));
    }

    ts_log(0, "VexaProvider::buildFileSetInstances", "EXIT\n");
    return 0;
}

int VexaProvider::buildFileSetInstanceList() {
    ts_log(0, "VexaProvider::buildFileSetInstanceList", "ENTER\n");
    filesets.clear();
    associatedFilesets.clear();
    for (size_t i = 0; i < clusterInfo->fsList.size(); i++) {
        // A file system whose filesets cannot be read keeps none; the others
        // are still published.
        buildFileSetInstances(clusterInfo->fsList.at(i), static_cast<int>(i));
    }
    ts_log(0, "VexaProvider::buildFileSetInstanceList", "EXIT\n");
    return 0;
}
