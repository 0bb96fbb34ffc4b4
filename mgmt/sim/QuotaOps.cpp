// Quota queries and changes.

#include "OpScope.h"
#include "QuotaKind.h"

#include <qzantras/PollingHandler.h>

#include <cctype>
#include <cstdlib>
#include <cstring>

using namespace qzsim;

namespace {

int kindFromText(const char* text) {
    if (text == nullptr) {
        return 0;
    }
    std::string t;
    for (const char* p = text; *p != '\0'; ++p) {
        t += static_cast<char>(std::tolower(static_cast<unsigned char>(*p)));
    }
    if (t == "user" || t == "usr" || t == "u" || t == "2") {
        return MGMT_QUOTA_USER;
    }
    if (t == "group" || t == "grp" || t == "g" || t == "1") {
        return MGMT_QUOTA_GROUP;
    }
    if (t == "fileset" || t == "fset" || t == "j" || t == "3") {
        return MGMT_QUOTA_FILESET;
    }
    return 0;
}

// Resolves the entity to its canonical name and id.
int resolveEntity(OpScope& op, SimFilesystem& fs, int kind, const std::string& entity,
                  std::string* name, unsigned int* id) {
    ClusterModel& model = op.model();
    if (kind == MGMT_QUOTA_USER) {
        if (const SimUser* user = model.findUser(entity)) {
            *name = user->name;
            *id = user->uid;
            return 0;
        }
    } else if (kind == MGMT_QUOTA_GROUP) {
        if (const SimGroup* group = model.findGroup(entity)) {
            *name = group->name;
            *id = group->gid;
            return 0;
        }
    } else if (SimFileset* set = findFileset(fs, entity)) {
        *name = set->record.name;
        *id = static_cast<unsigned int>(std::strtoul(set->record.id, nullptr, 10));
        return 0;
    }
    return op.fail(MGMT_E_NO_ENTITY, "Unknown %s %s in file system %s.", qzsim::quotaKindName(kind),
                   entity.c_str(), fs.info.name);
}

Quota* findQuota(SimFilesystem& fs, int kind, const std::string& name) {
    for (Quota& quota : fs.quotas) {
        if (quota.type == kind && quota.entityName == name) {
            return &quota;
        }
    }
    return nullptr;
}

Quota emptyQuota(SimFilesystem& fs, int kind, const std::string& name, unsigned int id) {
    Quota quota;
    quota.header = 1;
    quota.version = 1;
    quota.id = id;
    quota.type = static_cast<unsigned short>(kind);
    quota.fsName = fs.info.name;
    quota.entityName = name;
    quota.blockGrace = "none";
    quota.filesGrace = "none";
    return quota;
}

} // namespace

int PollingHandler::getQuota(int kind, const char* fsName, const char* name, Quota* quota) {
    OpScope op("getQuota", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (fsName == nullptr || name == nullptr || quota == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No file system, entity or quota record.");
    }
    if (kind != MGMT_QUOTA_USER && kind != MGMT_QUOTA_GROUP && kind != MGMT_QUOTA_FILESET) {
        return op.fail(MGMT_E_INVALID_ARG, "Unknown quota kind %d.", kind);
    }
    SimFilesystem* fs = op.model().findFilesystem(fsName);
    if (fs == nullptr) {
        return op.fail(MGMT_E_NO_FILESYSTEM, "File system %s not found.", fsName);
    }
    std::string entity;
    unsigned int id = 0;
    if (int rc = resolveEntity(op, *fs, kind, name, &entity, &id)) {
        return rc;
    }
    const Quota* found = findQuota(*fs, kind, entity);
    *quota = found != nullptr ? *found : emptyQuota(*fs, kind, entity, id);
    return MGMT_OK;
}

int PollingHandler::editQuota(const char* fsOrMountPoint, const char* entityType,
                              const char* entity, unsigned long long* fileSoftLimit,
                              unsigned long long* fileHardLimit,
                              unsigned long long* blockSoftLimitKB,
                              unsigned long long* blockHardLimitKB, const char* grace,
                              std::string* message) {
    OpScope op("editQuota", message);
    if (op.status() != 0) {
        return op.status();
    }
    if (fsOrMountPoint == nullptr || entity == nullptr || *entity == '\0') {
        return op.fail(MGMT_E_INVALID_ARG, "A file system and an entity are required.");
    }
    int kind = kindFromText(entityType);
    if (kind == 0) {
        return op.fail(MGMT_E_INVALID_ARG, "Unknown entity type %s (user, group, fileset).",
                       entityType != nullptr ? entityType : "(null)");
    }
    SimFilesystem* fs = op.model().findFilesystem(fsOrMountPoint);
    if (fs == nullptr) {
        return op.fail(MGMT_E_NO_FILESYSTEM, "File system %s not found.", fsOrMountPoint);
    }
    std::string name;
    unsigned int id = 0;
    if (int rc = resolveEntity(op, *fs, kind, entity, &name, &id)) {
        return rc;
    }
    Quota* existing = findQuota(*fs, kind, name);
    Quota updated = existing != nullptr ? *existing : emptyQuota(*fs, kind, name, id);
    if (fileSoftLimit != nullptr) {
        updated.filesQuota = *fileSoftLimit;
    }
    if (fileHardLimit != nullptr) {
        updated.filesLimit = *fileHardLimit;
    }
    if (blockSoftLimitKB != nullptr) {
        updated.blockQuota = *blockSoftLimitKB;
    }
    if (blockHardLimitKB != nullptr) {
        updated.blockLimit = *blockHardLimitKB;
    }
    if (grace != nullptr) {
        updated.blockGrace = grace;
        updated.filesGrace = grace;
    }
    if (updated.blockLimit != 0 && updated.blockQuota > updated.blockLimit) {
        return op.fail(MGMT_E_BAD_LIMITS,
                       "Block soft limit %llu KB is above the hard limit %llu KB.",
                       updated.blockQuota, updated.blockLimit);
    }
    if (updated.filesLimit != 0 && updated.filesQuota > updated.filesLimit) {
        return op.fail(MGMT_E_BAD_LIMITS, "File soft limit %llu is above the hard limit %llu.",
                       updated.filesQuota, updated.filesLimit);
    }
    op.beginChange();
    if (existing != nullptr) {
        *existing = updated;
    } else {
        fs->quotas.push_back(updated);
    }
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Quota of %s %s in file system %s changed.", qzsim::quotaKindName(kind), name.c_str(),
           fs->info.name);
    return MGMT_OK;
}
