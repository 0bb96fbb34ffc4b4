// CreateFileset, DeleteFileset, EditFileset, LinkFileset and UnlinkFileset.
// Each reads its parameters, makes one library call and, on success, puts
// the fileset as the library now reports it into the cache at once.
#include "cimProvider.h"
#include "lockGuards.h"

#include <qzantras/ts_log.h>

#include <cstdio>
#include <cstring>

#include "methodParameters.h"

PEGASUS_USING_PEGASUS;

using methods::addMessage;
using methods::fitsRecordField;
using methods::logParameter;
using methods::ParamCopy;
using methods::reportMissingKey;
using methods::utf8;

namespace {

const char* const FN = "VexaProvider::invokeMethod";

// Reads key into a heap copy; a reference without the key is refused.
bool takeKey(const CIMObjectPath& path, const char* key, const char* parameter, ParamCopy& dst,
             std::string* message) {
    String value;
    if (!methods::findKey(path, key, &value)) {
        reportMissingKey(parameter, key, message);
        return false;
    }
    dst.take(value);
    return true;
}

// Reads key into a 256-byte buffer through extractParamValueFromOP, after
// refusing a reference that lacks the key or whose value would not fit.
bool extractKey(VexaProvider& provider, const CIMObjectPath& path, const char* key,
                const char* parameter, const char* label, char* dst, std::string* message) {
    String value;
    if (!methods::findExactKey(path, key, &value)) {
        reportMissingKey(parameter, key, message);
        return false;
    }
    if (!fitsRecordField(utf8(value).size(), parameter, message)) {
        return false;
    }
    return provider.extractParamValueFromOP(path, key, label, dst);
}

} // namespace

Uint32 VexaProvider::createFileset(const Array<CIMParamValue>& in, Array<CIMParamValue>& out) {
    ts_log(0, FN, "CreateFileset\n");
    std::string message;
    bool accepted = true;
    CIMObjectPath fileSystemRef;
    ParamCopy fsName, filesetName, comment;
    for (Uint32 i = 0; i < in.size(); i++) {
        logParameter("CreateFileset in parameter %d name = %s\n", "CreateFileset value = %s\n", i,
                     in[i]);
        String name = in[i].getParameterName();
        CIMValue value = in[i].getValue();
        if (name == "vexaFileSystem") {
            accepted &= methods::readReference(value, "vexaFileSystem", fileSystemRef, &message) &&
                        (value.isNull() ||
                         takeKey(fileSystemRef, "Name", "vexaFileSystem", fsName, &message));
        } else if (name == "vexaFilesetName") {
            accepted &= methods::readString(value, "vexaFilesetName", filesetName, &message);
        } else if (name == "vexaFilesetComment") {
            accepted &= methods::readString(value, "vexaFilesetComment", comment, &message);
        }
    }

    FileSet record;
    if (!fsName.given()) {
        message += "Expected vexaFileSystemName field.\n";
        ts_log(2, FN, "Expected vexaFileSystemName field.\n");
    }
    if (!filesetName.given()) {
        message += "Expected vexaFilesetName field.\n";
        ts_log(2, FN, "Expected vexaFilesetName field.\n");
    }
    accepted = accepted && fitsRecordField(fsName.length(), "vexaFileSystem", &message) &&
               fitsRecordField(filesetName.length(), "vexaFilesetName", &message) &&
               // The comment travels inside a pair of double quotes.
               fitsRecordField(comment.length() + 2, "vexaFilesetComment", &message);
    Uint32 rc = 1;
    if (accepted && fsName.given() && filesetName.given()) {
        methods::copyToField(record.fsName, fsName.get());
        methods::copyToField(record.name, filesetName.get());
        if (comment.given()) {
            std::snprintf(record.comment, sizeof record.comment, "%c%s%c", '"', comment.get(), '"');
        }
        {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->createFileSet(record, &message, !comment.given());
        }
        FileSet created;
        if (rc == 0) {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->getFileSet(fsName.get(), filesetName.get(), &created);
            if (rc != 0) {
                message += "Internal provider error @ CreateFileset, failed to create instance.";
                // The trailing comma in the function name is what log filters
                // for this line have always matched.
                ts_log(2, "VexaProvider::invokeMethod,",
                       "CreateFileset - Internal provider error @ CreateFileset, failed to "
                       "create instance.\n");
            }
        }
        if (rc == 0) {
            CacheWriteLock lock(*this);
            CIMInstance instance = createFileSetInstance(&created, clusterInfo);
            out.append(CIMParamValue("ObjectPath", CIMValue(instance.getPath())));
            addFilesetToInstanceList(fileSystemRef, instance);
        }
    }
    addMessage(out, message);
    return rc;
}

Uint32 VexaProvider::deleteFileset(const Array<CIMParamValue>& in, Array<CIMParamValue>& out) {
    ts_log(0, FN, "DeleteFileset!\n");
    std::string message;
    bool accepted = true;
    bool force = false;
    char fsName[MGMT_TEXT_LEN] = "";
    char filesetName[MGMT_TEXT_LEN] = "";
    for (Uint32 i = 0; i < in.size(); i++) {
        logParameter("DeleteFileset in parameter # %d name = %s\n", "DeleteFileset value = %s\n", i,
                     in[i]);
        String name = in[i].getParameterName();
        CIMValue value = in[i].getValue();
        if (name == "vexaFileset") {
            CIMObjectPath ref;
            accepted &= methods::readReference(value, "vexaFileset", ref, &message) &&
                        (value.isNull() ||
                         (extractKey(*this, ref, "FSName", "vexaFileset",
                                     "DeleteFileset FileSystemName", fsName, &message) &&
                          extractKey(*this, ref, "Name", "vexaFileset", "DeleteFileset FileSetName",
                                     filesetName, &message)));
        } else if (name == "force") {
            accepted &= methods::readBoolean(value, "force", force, &message);
        }
    }

    Uint32 rc = 1;
    FileSet record;
    if (accepted &&
        validateAndAcceptMandatoryParam(fsName, "vexaFileSystemName", record.fsName, &message) ==
            0 &&
        validateAndAcceptMandatoryParam(filesetName, "vexaFileSetName", record.name, &message) ==
            0) {
        {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->deleteFileSet(record, force, &message);
        }
        if (rc == 0) {
            CacheWriteLock lock(*this);
            deleteFilesetFromInstanceList(String(fsName), String(filesetName));
        }
    }
    addMessage(out, message);
    return rc;
}

Uint32 VexaProvider::editFileset(const Array<CIMParamValue>& in, Array<CIMParamValue>& out) {
    ts_log(0, FN, "EditFileset!\n");
    std::string message;
    bool accepted = true;
    ParamCopy filesetName, fsName, targetType, nameOrPath, newName, newComment;
    for (Uint32 i = 0; i < in.size(); i++) {
        logParameter("EditFileset in parameter %d name = %s\n", "EditFileset value = %s\n", i,
                     in[i]);
        String name = in[i].getParameterName();
        CIMValue value = in[i].getValue();
        if (name == "vexaFileset") {
            CIMObjectPath ref;
            accepted &=
                methods::readReference(value, "vexaFileset", ref, &message) &&
                (value.isNull() || (takeKey(ref, "Name", "vexaFileset", filesetName, &message) &&
                                    takeKey(ref, "FSName", "vexaFileset", fsName, &message)));
            if (filesetName.given()) {
                ts_log(0, "VexaProvider::extractParamValueFromOP", "%s = %s\n",
                       "EditFileset vexaFileset Name", filesetName.get());
            }
            if (fsName.given()) {
                ts_log(0, "VexaProvider::extractParamValueFromOP", "%s = %s\n",
                       "EditFileset vexaFileset FSName", fsName.get());
            }
        } else if (name == "targetType") {
            accepted &= methods::readString(value, "targetType", targetType, &message);
        } else if (name == "vexaFsetNameOrJnxnPath") {
            accepted &= methods::readString(value, "vexaFsetNameOrJnxnPath", nameOrPath, &message);
        } else if (name == "newFilesetName") {
            accepted &= methods::readString(value, "newFilesetName", newName, &message);
        } else if (name == "newFilesetComment") {
            accepted &= methods::readString(value, "newFilesetComment", newComment, &message);
        }
    }

    // The checks only validate: the library receives the heap copies.
    char scratch[MGMT_TEXT_LEN];
    Uint32 rc = 1;
    if (accepted &&
        validateAndAcceptMandatoryParam(filesetName.get(), "vexaFileset", scratch, &message) == 0 &&
        validateAndAcceptMandatoryParam(targetType.get(), "targetType", scratch, &message) == 0 &&
        validateAndAcceptMandatoryParam(nameOrPath.get(), "vexaFsetNameOrJnxnPath", scratch,
                                        &message) == 0 &&
        (!newName.given() || validateAndAcceptMandatoryParam(newName.get(), "newFilesetName",
                                                             scratch, &message) == 0)) {
        {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->editFileset(fsName.orNull(), targetType.orNull(),
                                             nameOrPath.orNull(), newName.orNull(),
                                             newComment.orNull(), &message);
        }
        FileSet changed;
        if (rc == 0) {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->getFileSet(
                fsName.get(), newName.given() ? newName.get() : filesetName.get(), &changed);
            if (rc != 0) {
                message += "Internal provider error @ EditFileset, failed to create instance.";
                ts_log(0, FN,
                       "Internal provider error @ EditFileset, failed to create instance.\n");
            }
        }
        if (rc == 0) {
            CacheWriteLock lock(*this);
            CIMInstance instance = createFileSetInstance(&changed, clusterInfo);
            out.append(CIMParamValue("ObjectPath", CIMValue(instance.getPath())));
            addFilesetToOwningFileSystem(changed.fsName, instance);
        }
    }
    addMessage(out, message);
    return rc;
}

Uint32 VexaProvider::linkFileset(const Array<CIMParamValue>& in, Array<CIMParamValue>& out) {
    ts_log(0, FN, "LinkFileset!\n");
    std::string message;
    bool accepted = true;
    ParamCopy fsName, filesetName, junctionPath;
    for (Uint32 i = 0; i < in.size(); i++) {
        logParameter("LinkFileset in parameter # %d name = %s\n", "LinkFileset value = %s\n", i,
                     in[i]);
        String name = in[i].getParameterName();
        CIMValue value = in[i].getValue();
        if (name == "vexaFileSystem") {
            CIMObjectPath ref;
            accepted &=
                methods::readReference(value, "vexaFileSystem", ref, &message) &&
                (value.isNull() || takeKey(ref, "Name", "vexaFileSystem", fsName, &message));
        } else if (name == "vexaFileset") {
            CIMObjectPath ref;
            accepted &=
                methods::readReference(value, "vexaFileset", ref, &message) &&
                (value.isNull() || takeKey(ref, "Name", "vexaFileset", filesetName, &message));
        } else if (name == "vexaJunctionPath") {
            accepted &= methods::readString(value, "vexaJunctionPath", junctionPath, &message);
        }
    }
    accepted = accepted && fitsRecordField(fsName.length(), "vexaFileSystem", &message) &&
               fitsRecordField(filesetName.length(), "vexaFileset", &message) &&
               fitsRecordField(junctionPath.length(), "vexaJunctionPath", &message);

    Uint32 rc = 1;
    FileSet record;
    if (accepted) {
        int fsRejected = validateAndAcceptMandatoryParam(fsName.get(), "vexaFileSystemName",
                                                         record.fsName, &message);
        int nameRejected = fsRejected;
        if (fsRejected == 0) {
            nameRejected = validateAndAcceptMandatoryParam(filesetName.get(), "vexaFileSetName",
                                                           record.name, &message);
            validateAndAcceptOptionalParam(junctionPath.orNull(), "vexaJunctionPath", record.path);
        }
        accepted = fsRejected == 0 && nameRejected == 0;
    }
    if (accepted) {
        ts_log(0, FN, "LinkFileset: invoking method to link FILESET: %s, %s, %s ...\n",
               record.fsName, record.name, record.path);
        {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->linkFileSet(record, &message);
        }
        FileSet linked;
        if (rc == 0) {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->getFileSet(record.fsName, record.name, &linked);
            if (rc != 0) {
                message += "Internal provider error @ LinkFileset, failed to create instance.";
                ts_log(2, FN,
                       "Internal provider error @ LinkFileset, failed to create instance.\n");
            }
        }
        if (rc == 0) {
            CacheWriteLock lock(*this);
            addFilesetToOwningFileSystem(linked.fsName,
                                         createFileSetInstance(&linked, clusterInfo));
        }
    }
    addMessage(out, message);
    return rc;
}

namespace {

// The checks of targetType and vexaFsetNameOrJnxnPath; false ends the call.
bool checkUnlinkTarget(const char* name, const std::string& value, bool isTargetType,
                       std::string* message) {
    if (!fitsRecordField(value.size(), name, message)) {
        return false;
    }
    if (isTargetType && value != "fileset" && value != "junction") {
        *message += "ERROR! Input parameter ";
        *message += name;
        *message += " has invalid value: ";
        *message += value;
        *message += "\n";
        return false;
    }
    return true;
}

} // namespace

Uint32 VexaProvider::unlinkFileset(const Array<CIMParamValue>& in, Array<CIMParamValue>& out) {
    ts_log(0, FN, "UnlinkFileset!\n");
    std::string message;
    bool accepted = true;
    bool force = false;
    bool isFileset = true;
    char fsName[MGMT_TEXT_LEN] = "";
    char filesetName[MGMT_TEXT_LEN] = "";
    char nameOrPath[MGMT_TEXT_LEN] = "";
    for (Uint32 i = 0; i < in.size() && accepted; i++) {
        logParameter("UnlinkFileset in parameter # %d name = %s\n", "UnlinkFileset value = %s\n", i,
                     in[i]);
        String name = in[i].getParameterName();
        CIMValue value = in[i].getValue();
        if (name == "vexaFileset") {
            CIMObjectPath ref;
            accepted = methods::readReference(value, "vexaFileset", ref, &message) &&
                       (value.isNull() ||
                        (extractKey(*this, ref, "FSName", "vexaFileset",
                                    "UnlinkFileset FileSystemName", fsName, &message) &&
                         extractKey(*this, ref, "Name", "vexaFileset", "UnlinkFileset FileSetName",
                                    filesetName, &message)));
        } else if (name == "targetType" || name == "vexaFsetNameOrJnxnPath") {
            bool isTargetType = name == "targetType";
            const char* label = isTargetType ? "targetType" : "vexaFsetNameOrJnxnPath";
            ParamCopy text;
            accepted = methods::readString(value, label, text, &message) &&
                       checkUnlinkTarget(label, text.get(), isTargetType, &message);
            if (accepted && isTargetType) {
                isFileset = std::strcmp(text.get(), "fileset") == 0;
            } else if (accepted) {
                methods::copyToField(nameOrPath, text.get());
            }
        } else if (name == "force") {
            accepted = methods::readBoolean(value, "force", force, &message);
        }
    }

    Uint32 rc = 1;
    FileSet record;
    if (accepted && validateAndAcceptMandatoryParam(fsName, "vexaFileSystemName", record.fsName,
                                                    &message) == 0) {
        validateAndAcceptOptionalParam(nameOrPath, "vexaFilesetNameOrJunctionPath", record.path);
        ts_log(0, FN, "UnlinkFileset: invoking method to unlink FILESET: %s, %s, %s, %s ...\n",
               fsName, nameOrPath, isFileset ? "true" : "false", force ? "true" : "false");
        {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->unlinkFileSet(fsName, nameOrPath, isFileset, force, &message);
        }
        FileSet unlinked;
        if (rc == 0) {
            PollingLock polling(pollingHandler);
            rc = pollingHandler->getFileSet(fsName, filesetName, &unlinked);
            if (rc != 0) {
                message += "Internal provider error @ UnlinkFileset, failed to create instance.";
                ts_log(2, FN,
                       "Internal provider error @ UnlinkFileset, failed to create instance.\n");
            }
        }
        if (rc == 0) {
            CacheWriteLock lock(*this);
            addFilesetToOwningFileSystem(unlinked.fsName,
                                         createFileSetInstance(&unlinked, clusterInfo));
        }
    }
    addMessage(out, message);
    return rc;
}
