// Quota instances of one user, group or fileset, built on demand from the
// management library's quota record. Nothing keeps them across refreshes:
// each request replaces the single result of its kind.
#include "cimProvider.h"
#include "lockGuards.h"

#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addProperty;

namespace {

// Positions of the keys in a user, group or fileset path. Paths keep their
// keys sorted by name, so CreationClassName, CSCreationClassName, CSName,
// FSCreationClassName, FSName, then ID (filesets only) and Name.
const Uint32 CLUSTER_NAME_KEY = 2;
const Uint32 FILESYSTEM_NAME_KEY = 4;
const Uint32 ACCOUNT_NAME_KEY = 5;
const Uint32 FILESET_NAME_KEY = 6;

// A path too short for the positions read above fails like a quota the
// library does not know; the library itself never answers 1.
const int QUOTA_KEYS_MISSING = 1;

// The three quota classes share every property; only the class differs.
CIMInstance makeQuotaInstance(const CIMName& className, const char* label, Quota* quota,
                              const char* clusterName) {
    const std::string quotaId =
        instances::joinKey(clusterName, quota->fsName.c_str(), quota->entityName.c_str());
    ts_log(0, label, "quotaId=%s\n", quotaId.c_str());

    const String classText = className.getString();
    CIMInstance instance(className);
    addProperty(instance, "CSCreationClassName", "KOR_VEXA_Cluster");
    addProperty(instance, "CSName", clusterName);
    addProperty(instance, "FSCreationClassName", "KOR_VEXA_FileSystem");
    addProperty(instance, "FSName", quota->fsName);
    addProperty(instance, "CreationClassName", CIMValue(classText));
    addProperty(instance, "Name", quota->entityName);
    addProperty(instance, "vexaQuotaClusterName", clusterName);
    addProperty(instance, "vexaQuotaHeader", CIMValue(Uint32(quota->header)));
    addProperty(instance, "vexaQuotaVersion", CIMValue(Uint32(quota->version)));
    addProperty(instance, "vexaQuotaFileSystemName", quota->fsName);
    addProperty(instance, "vexaQuotaType", CIMValue(Uint16(quota->type)));
    addProperty(instance, "vexaQuotaID", CIMValue(Uint32(quota->id)));
    addProperty(instance, "vexaQuotaEntityName", quota->entityName);
    addProperty(instance, "vexaQuotaBlockUsage", CIMValue(Uint64(quota->blockUsage)));
    addProperty(instance, "vexaQuotaBlockQuota", CIMValue(Uint64(quota->blockQuota)));
    addProperty(instance, "vexaQuotaBlockLimit", CIMValue(Uint64(quota->blockLimit)));
    addProperty(instance, "vexaQuotaBlockInDoubt", CIMValue(Uint64(quota->blockInDoubt)));
    addProperty(instance, "vexaQuotaBlockGrace", quota->blockGrace);
    addProperty(instance, "vexaQuotaFilesUsage", CIMValue(Uint64(quota->filesUsage)));
    addProperty(instance, "vexaQuotaFilesQuota", CIMValue(Uint64(quota->filesQuota)));
    addProperty(instance, "vexaQuotaFilesLimit", CIMValue(Uint64(quota->filesLimit)));
    addProperty(instance, "vexaQuotaFilesInDoubt", CIMValue(Uint64(quota->filesInDoubt)));
    addProperty(instance, "vexaQuotaFilesGrace", quota->filesGrace);
    // The library writes two double quotes for "no remarks"; both that and
    // an empty text mean there are none, which a null value says.
    if (quota->remarks.empty() || quota->remarks == "\"\"")
        addProperty(instance, "vexaQuotaRemarks", CIMValue(CIMTYPE_STRING, false));
    else
        addProperty(instance, "vexaQuotaRemarks", quota->remarks);

    // The id is the only key and lives in the path alone: the published
    // classes have no "InstanceID" property.
    Array<CIMKeyBinding> keys;
    instances::appendKey(keys, "InstanceID", quotaId);
    instances::setInstancePath(instance, className, keys);
    return instance;
}

} // namespace

CIMInstance VexaProvider::createUserQuotaInstance(Quota* quota, const char* clusterName) {
    return makeQuotaInstance(VEXA_USER_QUOTA, "VexaProvider::createUserQuotaInstance", quota,
                             clusterName);
}

CIMInstance VexaProvider::createGroupQuotaInstance(Quota* quota, const char* clusterName) {
    return makeQuotaInstance(VEXA_GROUP_QUOTA, "VexaProvider::createGroupQuotaInstance", quota,
                             clusterName);
}

CIMInstance VexaProvider::createQuotaInstance(Quota* quota, const char* clusterName) {
    return makeQuotaInstance(VEXA_FILESET_QUOTA, "VexaProvider::createQuotaInstance", quota,
                             clusterName);
}

int VexaProvider::buildQuotaInstance(CIMObjectPath source, int kind) {
    static const char* const fn = "VexaProvider::buildQuotaInstance";
    ts_log(0, fn, "ENTER\n");
    if (kind != MGMT_QUOTA_GROUP && kind != MGMT_QUOTA_USER && kind != MGMT_QUOTA_FILESET) {
        ts_log(0, fn, "EXIT\n");
        return 0;
    }

    const Array<CIMKeyBinding>& keys = source.getKeyBindings();
    const Uint32 nameKey = kind == MGMT_QUOTA_FILESET ? FILESET_NAME_KEY : ACCOUNT_NAME_KEY;
    if (keys.size() <= nameKey)
        return QUOTA_KEYS_MISSING;
    const CString fsName = keys[FILESYSTEM_NAME_KEY].getValue().getCString();
    const CString entityName = keys[nameKey].getValue().getCString();
    const CString clusterName = keys[CLUSTER_NAME_KEY].getValue().getCString();

    Quota quota;
    int rc;
    {
        PollingLock polling(pollingHandler);
        rc = pollingHandler->getQuota(kind, fsName, entityName, &quota);
    }
    if (rc != 0)
        return rc;

    CIMInstance built;
    Array<CIMInstance>* results;
    switch (kind) {
    case MGMT_QUOTA_USER:
        ts_log(0, fn, "building quota for user: %s\n", quota.entityName.c_str());
        built = createUserQuotaInstance(&quota, clusterName);
        results = &userQuotas;
        break;
    case MGMT_QUOTA_GROUP:
        ts_log(0, fn, "building quota for group: %s\n", quota.entityName.c_str());
        built = createGroupQuotaInstance(&quota, clusterName);
        results = &groupQuotas;
        break;
    default:
        ts_log(0, fn, "building quota for file set: %s\n", quota.entityName.c_str());
        built = createQuotaInstance(&quota, clusterName);
        results = &filesetQuotas;
        break;
    }
    results->clear();
    results->append(built);
    ts_log(0, fn, "EXIT\n");
    return 0;
}

// The quotas of a whole file system are not read: the library has no call
// that lists them. The file-system quota associations therefore stay empty
// and their requests report the failure.
int VexaProvider::buildQuotaInstances(CIMObjectPath, int) {
    ts_log(0, "VexaProvider::buildQuotaInstances", "EXIT err %d\n", 1);
    return 1;
}
