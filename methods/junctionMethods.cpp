// Owner, group and ACL of fileset junctions: ChangeOwnerAndOrGroup,
// ChangeFilesetJnxnOwnership and ChangeFilesetJnxnACL, and the cache look-up
// that yields a linked fileset's junction path.
#include "cimProvider.h"
#include "lockGuards.h"

#include <qzantras/ts_log.h>

#include <cstdio>
#include <cstring>

#include "methodParameters.h"

PEGASUS_USING_PEGASUS;

using methods::addMessage;
using methods::copyToField;
using methods::ParamCopy;
using methods::utf8;

namespace {

const char* const FN = "VexaProvider::invokeMethod";

// The text of a positional string parameter; false when it is of another
// type or does not fit a record field.
bool positionalText(const CIMParamValue& parameter, const char* role, ParamCopy& dst) {
    std::string ignored;
    if (!methods::readString(parameter.getValue(), role, dst, &ignored)) {
        return false;
    }
    if (dst.length() > methods::RECORD_TEXT_MAX) {
        ts_log(2, FN, "ChangeOwnerAndOrGroup: %s exceeds expected length\n", role);
        return false;
    }
    return true;
}

} // namespace

Uint32 VexaProvider::changeOwnerAndOrGroup(const Array<CIMParamValue>& in) {
    ts_log(0, FN, "ChangeOwnerAndOrGroup!\n");
    // The parameters are taken by position; a short list is refused before
    // anything is read past its end.
    if (in.size() < 4) {
        ts_log(2, FN, "ChangeOwnerAndOrGroup: expected 4 parameters, got %u\n", in.size());
        return 1;
    }
    ParamCopy owner, group, path;
    bool isJunction = false;
    std::string ignored;
    if (!positionalText(in[0], "owner", owner) || !positionalText(in[1], "group", group) ||
        !methods::readBoolean(in[2].getValue(), "isFilesetJunction", isJunction, &ignored) ||
        !positionalText(in[3], "path", path)) {
        return 1;
    }
    ts_log(0, FN, "ChangeOwnerAndOrGroup: %s, %s, %s, %s\n", owner.get(), group.get(),
           isJunction ? "true" : "false", path.get());
    if (!isJunction) {
        ts_log(2, FN, "method can only be used for fileset junction names\n");
        return 1;
    }
    FileOrDirOwner record;
    if (owner.given()) {
        copyToField(record.owner, owner.get());
    } else {
        ts_log(2, FN, "ChangeOwnerAndOrGroup: NULL OWNER\n");
    }
    if (group.given()) {
        copyToField(record.group, group.get());
    } else {
        ts_log(2, FN, "ChangeOwnerAndOrGroup: NULL GROUP\n");
    }
    record.isJunction = 1;
    copyToField(record.path, path.get());
    ts_log(0, FN, "ChangeOwnerAndOrGroup: CHOWN %s, %s, %s, %s\n", record.owner, record.group,
           "true", record.path);
    // This call has always run without the polling lock; the library keeps
    // its own model consistent.
    return static_cast<Uint32>(pollingHandler->changeOwnerAndOrGroup(record));
}

Uint32 VexaProvider::changeFilesetJunction(bool acl, const Array<CIMParamValue>& in,
                                           Array<CIMParamValue>& out) {
    const char* method = acl ? "ChangeFilesetJnxnACL" : "ChangeFilesetJnxnOwnership";
    ts_log(0, FN, "%s!\n", method);
    std::string message;
    bool accepted = true;
    char srcFsName[MGMT_TEXT_LEN] = "";
    char srcId[MGMT_TEXT_LEN] = "";
    char tgtFsName[MGMT_TEXT_LEN] = "";
    char tgtId[MGMT_TEXT_LEN] = "";
    for (Uint32 i = 0; i < in.size(); i++) {
        String name = in[i].getParameterName();
        CIMValue value = in[i].getValue();
        ts_log(0, FN, "%s in parameter # %d name = %s\n", method, static_cast<int>(i),
               utf8(name).c_str());
        ts_log(0, FN, "%s value = %s\n", method, utf8(value.toString()).c_str());
        bool isSource = name == "vexaSourceFileset";
        if (!isSource && name != "vexaTargetFileset") {
            continue;
        }
        const char* parameter = isSource ? "vexaSourceFileset" : "vexaTargetFileset";
        CIMObjectPath ref;
        if (!methods::readReference(value, parameter, ref, &message)) {
            accepted = false;
            continue;
        }
        if (value.isNull()) {
            continue;
        }
        std::string fsLabel =
            std::string(method) + (isSource ? " SourceFileSystemName" : " TargetFileSystemName");
        std::string idLabel =
            std::string(method) + (isSource ? " SourceFileSetID" : " TargetFileSetID");
        const char* keys[2] = {"FSName", "ID"};
        char* dsts[2] = {isSource ? srcFsName : tgtFsName, isSource ? srcId : tgtId};
        const std::string* labels[2] = {&fsLabel, &idLabel};
        for (int k = 0; k < 2; k++) {
            String keyValue;
            if (!methods::findExactKey(ref, keys[k], &keyValue)) {
                methods::reportMissingKey(parameter, keys[k], &message);
                accepted = false;
            } else if (!methods::fitsRecordField(utf8(keyValue).size(), parameter, &message)) {
                accepted = false;
            } else {
                extractParamValueFromOP(ref, keys[k], labels[k]->c_str(), dsts[k]);
            }
        }
    }

    ts_log(0, FN, "%s ... performing parameter validation ..\n", method);
    FileSet source;
    FileSet target;
    if (!accepted ||
        validateAndAcceptMandatoryParam(srcFsName, "vexaSourceFileSystemName", source.fsName,
                                        &message) != 0 ||
        validateAndAcceptMandatoryParam(srcId, "vexaSourceFileSetID", source.id, &message) != 0 ||
        validateAndAcceptMandatoryParam(tgtFsName, "vexaTargetFileSystemName", target.fsName,
                                        &message) != 0 ||
        validateAndAcceptMandatoryParam(tgtId, "vexaTargetFileSetID", target.id, &message) != 0) {
        addMessage(out, message);
        return 1;
    }
    ts_log(0, FN, "%s ... SRC fileset: (FSys name, Fset id) : (%s, %s)\n", method, source.fsName,
           source.id);
    ts_log(0, FN, "%s ... TGT fileset: (FSys name, Fset id) : (%s, %s)\n", method, target.fsName,
           target.id);

    ts_log(0, FN, "%s ... attempting to getWriteLock() for SRC ..\n", method);
    bool found;
    {
        CacheWriteLock lock(*this);
        found = findLinkedFileset(&source, &message);
    }
    // Two blanks after the equals sign, as log readers expect.
    ts_log(0, FN, "%s ... SRC fileset: found=%s, path =  %s\n", method, found ? "true" : "false",
           source.path);
    if (!found) {
        ts_log(0, FN, "%s ... findLinkedFileset(TGT fileset) NOT executed\n", method);
        addMessage(out, message);
        return 1;
    }
    FileOrDirOwner sourceOwner;
    copyToField(sourceOwner.path, source.path);
    sourceOwner.isJunction = 1;

    ts_log(0, FN, "%s ... attempting to getWriteLock() for TGT ..\n", method);
    {
        CacheWriteLock lock(*this);
        found = findLinkedFileset(&target, &message);
    }
    ts_log(0, FN, "%s ... released locks ..\n", method);
    if (!found) {
        ts_log(0, FN, "%s ... findLinkedFileset(TGT fileset) returned FALSE!\n", method);
        addMessage(out, message);
        return 1;
    }
    FileOrDirOwner targetOwner;
    copyToField(targetOwner.path, target.path);
    targetOwner.isJunction = 1;

    // Both methods share this wording, the ACL one included.
    ts_log(0, FN, "%s: invoking method to change JUNCTION ownership: %s (src), %s(tgt)...\n",
           method, sourceOwner.path, targetOwner.path);
    int rc;
    {
        PollingLock polling(pollingHandler);
        rc = acl ? pollingHandler->changeFileOrDirACL(sourceOwner, targetOwner, 0, &message)
                 : pollingHandler->changeFileOrDirOwnership(sourceOwner, targetOwner, &message);
    }
    addMessage(out, message);
    return static_cast<Uint32>(rc);
}

bool VexaProvider::findLinkedFileset(FileSet* fileset, std::string* message) {
    static const char* const fn = "VexaProvider::findLinkedFileset";
    ts_log(0, fn, "ENTER .. trying to find fileset with id %s in filesystem %s ...\n", fileset->id,
           fileset->fsName);
    for (Uint32 i = 0; i < filesets.size(); i++) {
        const CIMInstance& entry = filesets[i];
        Uint32 fsAt = entry.findProperty(CIMName("vexaFileSystemName"));
        Uint32 idAt = entry.findProperty(CIMName("vexaFilesetID"));
        if (fsAt == PEG_NOT_FOUND || idAt == PEG_NOT_FOUND ||
            utf8(entry.getProperty(fsAt).getValue().toString()) != fileset->fsName ||
            utf8(entry.getProperty(idAt).getValue().toString()) != fileset->id) {
            continue;
        }
        ts_log(0, fn, "\tFound fileset with id %s ...\n", fileset->id);
        Uint32 pathAt = entry.findProperty(CIMName("vexaFilesetPath"));
        if (pathAt == PEG_NOT_FOUND) {
            return false;
        }
        CIMValue path = entry.getProperty(pathAt).getValue();
        if (path.getType() != CIMTYPE_STRING || path.isArray() || path.isNull()) {
            fileset->linked = 0;
            char text[1024];
            std::snprintf(text, sizeof text,
                          "ERROR! Fileset with ID %s in file system %s is not linked! \n",
                          fileset->id, fileset->fsName);
            *message += text;
            ts_log(2, fn, "\tERROR! Fileset is not linked !\n");
            return false;
        }
        // Whatever the path, its presence is what counts as linked.
        fileset->linked = 1;
        copyToField(fileset->path, utf8(path.toString()).c_str());
        ts_log(0, fn, "\tFileset is linked, path = %s\n", fileset->path);
        return true;
    }
    ts_log(2, fn, "\t Could not find fileset with id %s \n", fileset->id);
    char text[1024];
    std::snprintf(text, sizeof text,
                  "ERROR! Could not find Fileset with ID %s in file system %s! \n", fileset->id,
                  fileset->fsName);
    *message += text;
    return false;
}
