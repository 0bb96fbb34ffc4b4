// EditQuota: the limits of a user, group or fileset quota, changed through
// the mount point of the quota's file system.
#include "cimProvider.h"
#include "lockGuards.h"

#include <qzantras/ts_log.h>

#include <cstring>
#include <optional>

#include "methodParameters.h"

PEGASUS_USING_PEGASUS;

using methods::addMessage;
using methods::ParamCopy;
using methods::utf8;

namespace {

const char* const FN = "VexaProvider::invokeMethod";

} // namespace

Uint32 VexaProvider::editQuota(const Array<CIMParamValue>& in, Array<CIMParamValue>& out) {
    ts_log(0, FN, "EditQuota!\n");
    std::string message;
    bool typesOk = true;
    ParamCopy fsName, entityType, entityId;
    std::optional<Uint64> blockSoft, blockHard, fileSoft, fileHard;
    for (Uint32 i = 0; i < in.size(); i++) {
        String name = in[i].getParameterName();
        CIMValue value = in[i].getValue();
        ts_log(0, FN, "EditQuota in parameter %d name = %s\n", static_cast<int>(i),
               utf8(name).c_str());
        ts_log(0, FN, "EditQuota value = %s\n", utf8(value.toString()).c_str());
        if (name == "vexaFileSystem") {
            CIMObjectPath ref;
            typesOk &= methods::readReference(value, "vexaFileSystem", ref, &message);
            String key;
            if (!value.isNull() && methods::findKey(ref, "Name", &key)) {
                fsName.take(key);
                ts_log(0, "VexaProvider::extractParamValueFromOP", "%s = %s\n",
                       "EditQuota vexaFileSystem Name", fsName.get());
            } else if (!value.isNull() && typesOk) {
                methods::reportMissingKey("vexaFileSystem", "Name", &message);
                typesOk = false;
            }
        } else if (name == "entityType") {
            typesOk &= methods::readString(value, "entityType", entityType, &message);
        } else if (name == "entityId") {
            typesOk &= methods::readString(value, "entityId", entityId, &message);
        } else if (name == "newBlockSoftLimitKB") {
            typesOk &= methods::readUint64(value, "newBlockSoftLimitKB", blockSoft, &message);
        } else if (name == "newBlockHardLimitKB") {
            typesOk &= methods::readUint64(value, "newBlockHardLimitKB", blockHard, &message);
        } else if (name == "newFileSoftLimit") {
            std::optional<Uint64> given;
            typesOk &= methods::readUint64(value, "newFileSoftLimit", given, &message);
            // Kept as it always was: a supplied file soft limit reaches the
            // library as a zero, not as the caller's value.
            if (given) {
                fileSoft = 0;
            }
        } else if (name == "newFileHardLimit") {
            typesOk &= methods::readUint64(value, "newFileHardLimit", fileHard, &message);
        }
    }
    if (!typesOk) {
        addMessage(out, message);
        return 1;
    }

    char scratch[MGMT_TEXT_LEN];
    Uint32 rc = 1;
    if (validateAndAcceptMandatoryParam(fsName.get(), "vexaFileSystem", scratch, &message) == 0 &&
        validateAndAcceptMandatoryParam(entityType.get(), "entityType", scratch, &message) == 0 &&
        validateAndAcceptMandatoryParam(entityId.get(), "entityId", scratch, &message) == 0) {
        rc = 0;
    }

    bool found = false;
    bool mountPointKnown = false;
    std::string mountPoint;
    if (rc == 0) {
        PollingLock polling(pollingHandler);
        for (FilesystemInfo* fs : clusterInfo->fsList) {
            if (std::strcmp(fs->name, fsName.get()) == 0) {
                found = true;
                mountPointKnown = fs->mountPointKnown != 0;
                mountPoint = fs->mountPoint;
                ts_log(0, FN, "EditQuota: using... fs=%s, mp=%s\n", fs->name, fs->mountPoint);
                break;
            }
        }
    }
    if (!found) {
        message += "Internal provider error @ EditQuota, could not find the file system!";
        // The log line names the likelier cause; the message stays as clients know it.
        ts_log(2, FN,
               "Internal provider error @ EditQuota, could not get mount point for file system. "
               "Please wait for provider to update it.\n");
    } else if (!mountPointKnown) {
        message += "Internal provider error @ EditQuota, could not get mount point for file "
                   "system. Please wait for provider to update it.";
        ts_log(1, FN,
               "Internal provider error @ EditQuota, could not get mount point for file system. "
               "Please wait for provider to update it.\n");
    } else {
        unsigned long long blockSoftCell = blockSoft.value_or(0);
        unsigned long long blockHardCell = blockHard.value_or(0);
        unsigned long long fileSoftCell = fileSoft.value_or(0);
        unsigned long long fileHardCell = fileHard.value_or(0);
        PollingLock polling(pollingHandler);
        rc = pollingHandler->editQuota(mountPoint.c_str(), entityType.get(), entityId.get(),
                                       fileSoft ? &fileSoftCell : nullptr,
                                       fileHard ? &fileHardCell : nullptr,
                                       blockSoft ? &blockSoftCell : nullptr,
                                       blockHard ? &blockHardCell : nullptr, nullptr, &message);
    }
    // A file system that is not found or not mounted answers 0 with the error
    // in Message: clients have always read the outcome from the text there.
    addMessage(out, message);
    return rc;
}
