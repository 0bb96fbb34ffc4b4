// Keeps the cached fileset instances and their file-system associations true
// right after a method changed a fileset, without waiting for the next refresh.
#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include <cstring>

#include "methodParameters.h"

PEGASUS_USING_PEGASUS;

namespace {

String propertyText(const CIMInstance& instance, const char* name) {
    Uint32 at = instance.findProperty(CIMName(name));
    if (at == PEG_NOT_FOUND) {
        return String();
    }
    return instance.getProperty(at).getValue().toString();
}

} // namespace

int VexaProvider::addFilesetToInstanceList(CIMObjectPath fileSystemPath, CIMInstance fileset) {
    String id = propertyText(fileset, "vexaFilesetID");
    String fsName = propertyText(fileset, "vexaFileSystemName");
    // The identifier stays when a fileset is renamed, so a renamed fileset
    // replaces its old instance in place.
    for (Uint32 i = 0; i < filesets.size(); i++) {
        if (propertyText(filesets[i], "vexaFileSystemName") == fsName &&
            propertyText(filesets[i], "vexaFilesetID") == id) {
            filesets[i] = fileset;
            if (i < associatedFilesets.size()) {
                associatedFilesets[i] =
                    createVexaAssociatedFileset(fileSystemPath, fileset.getPath());
            }
            return 0;
        }
    }
    ts_log(0, "VexaProvider::addFilesetToInstanceList",
           "adding instance & assoc for %s to the cache \n",
           methods::utf8(fileset.getPath().toString()).c_str());
    filesets.append(fileset);
    associatedFilesets.append(createVexaAssociatedFileset(fileSystemPath, fileset.getPath()));
    return 0;
}

int VexaProvider::deleteFilesetFromInstanceList(String fileSystemName, String filesetName) {
    for (Uint32 i = 0; i < filesets.size(); i++) {
        if (propertyText(filesets[i], "vexaFilesetName") == filesetName &&
            propertyText(filesets[i], "vexaFileSystemName") == fileSystemName) {
            ts_log(0, "VexaProvider::deleteFilesetFromInstanceList",
                   "deleting instance & assoc for %s from cache \n",
                   methods::utf8(filesets[i].getPath().toString()).c_str());
            filesets.remove(i);
            if (i < associatedFilesets.size()) {
                associatedFilesets.remove(i);
            }
            return 0;
        }
    }
    ts_log(1, "VexaProvider::deleteFilesetFromInstanceList",
           "Failed to delete from cache, instance not found!\n");
    return 1;
}

bool VexaProvider::addFilesetToOwningFileSystem(const char* fsName, CIMInstance fileset) {
    for (Uint32 i = 0; i < fileSystems.size(); i++) {
        const CIMInstance& fs = fileSystems[i];
        for (Uint32 p = 0; p < fs.getPropertyCount(); p++) {
            CIMConstProperty property = fs.getProperty(p);
            if (!property.getName().equal(CIMName("vexaFileSystemName"))) {
                continue;
            }
            if (std::strcmp(methods::utf8(property.getValue().toString()).c_str(), fsName) == 0) {
                addFilesetToInstanceList(fs.getPath(), fileset);
                return true;
            }
        }
    }
    return false;
}
