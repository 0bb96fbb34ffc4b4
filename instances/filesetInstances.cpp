// Fileset instances and the per-file-system walk that publishes them with
// their file-system associations.
#include "cimProvider.h"
#include "lockGuards.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <qzantras/ts_log.h>

#include <cstring>
#include <string>
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

// A record text and its value, made again only when the text changes.
class RepeatedText {
public:
    const String& of(const char* bytes) {
        if (!made_ || bytes_ != bytes) {
            bytes_ = bytes;
            text_ = String(bytes);
            value_ = CIMValue(text_);
            made_ = true;
        }
        return text_;
    }
    const CIMValue& value() const { return value_; }

private:
    bool made_ = false;
    std::string bytes_;
    String text_;
    CIMValue value_;
};

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

    // Names, and values used more than once, are made once: the path's keys
    // then share the properties' texts, and a large cluster's filesets share
    // one copy of each class name and of the names.
    struct Names {
        const CIMName csCreationClassName{"CSCreationClassName"};
        const CIMName csName{"CSName"};
        const CIMName fsCreationClassName{"FSCreationClassName"};
        const CIMName fsName{"FSName"};
        const CIMName creationClassName{"CreationClassName"};
        const CIMName name{"Name"};
        const CIMName clusterName{"vexaFilesetClusterName"};
        const CIMName version{"vexaFilesetVersion"};
        const CIMName filesetName{"vexaFilesetName"};
        const CIMName filesetId{"vexaFilesetID"};
        const CIMName rootInode{"vexaFilesetRootINode"};
        const CIMName parentId{"vexaFilesetParentID"};
        const CIMName inodes{"vexaFilesetINodes"};
        const CIMName dataKB{"vexaFilesetDataInKB"};
        const CIMName comment{"vexaFilesetComment"};
        const CIMName status{"vexaFilesetStatus"};
        const CIMName fileSystemName{"vexaFileSystemName"};
        const CIMName path{"vexaFilesetPath"};
        const CIMName created{"vexaFilesetCreated"};
        const CIMName id{"ID"};
        const CIMValue clusterClass{VEXA_CLUSTER.getString()};
        const CIMValue fileSystemClass{VEXA_FILESYSTEM.getString()};
        const CIMValue filesetClass{VEXA_FILESET.getString()};
    };
    static const Names names;
    // The cluster's and the file system's names, and the status, repeat from
    // one fileset to the next: each thread keeps the last one made.
    thread_local RepeatedText clusterText;
    thread_local RepeatedText fileSystemText;
    thread_local RepeatedText statusText;
    const String& clusterName = clusterText.of(cluster->clusterName);
    const String& fileSystemName = fileSystemText.of(fileset->fsName);
    const CIMValue& clusterNameValue = clusterText.value();
    const CIMValue& fileSystemNameValue = fileSystemText.value();
    statusText.of(fileset->status);
    const String name(fileset->name);
    const String id(fileset->id);
    const CIMValue nameValue(name);

    CIMInstance instance(VEXA_FILESET);
    addProperty(instance, names.csCreationClassName, names.clusterClass);
    addProperty(instance, names.csName, clusterNameValue);
    addProperty(instance, names.fsCreationClassName, names.fileSystemClass);
    addProperty(instance, names.fsName, fileSystemNameValue);
    addProperty(instance, names.creationClassName, names.filesetClass);
    addProperty(instance, names.name, nameValue);
    addProperty(instance, names.clusterName, clusterNameValue);
    addProperty(instance, names.version, CIMValue(Uint32(fileset->version)));
    addProperty(instance, names.filesetName, nameValue);
    addProperty(instance, names.filesetId, CIMValue(id));
    addProperty(instance, names.rootInode, CIMValue(String(fileset->rootInode)));
    addProperty(instance, names.parentId, CIMValue(String(fileset->parentId)));
    addProperty(instance, names.inodes, CIMValue(Uint64(fileset->inodes)));
    addProperty(instance, names.dataKB, CIMValue(Uint64(fileset->dataKB)));
    if (isEmptyQuotedComment(fileset->comment)) {
        addProperty(instance, names.comment, CIMValue(CIMTYPE_STRING, false));
    } else {
        addProperty(instance, names.comment, CIMValue(String(fileset->comment)));
    }
    addProperty(instance, names.status, statusText.value());
    addProperty(instance, names.fileSystemName, fileSystemNameValue);
    addProperty(instance, names.path, CIMValue(String(fileset->path)));
    addProperty(instance, names.created, creationTime(fileset));

    // The published class has no "ID" property: the id lives in the path
    // only.
    Array<CIMKeyBinding> keys;
    keys.reserveCapacity(7);
    appendKey(keys, names.csCreationClassName, VEXA_CLUSTER.getString());
    appendKey(keys, names.csName, clusterName);
    appendKey(keys, names.fsCreationClassName, VEXA_FILESYSTEM.getString());
    appendKey(keys, names.fsName, fileSystemName);
    appendKey(keys, names.creationClassName, VEXA_FILESET.getString());
    appendKey(keys, names.name, name);
    appendKey(keys, names.id, id);
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
