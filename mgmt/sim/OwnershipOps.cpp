// Owner, group and ACL of fileset junctions. The simulation keeps them with
// the fileset whose junction the path is.

#include "OpScope.h"
#include "TextCopy.h"

#include <qzantras/PollingHandler.h>

using namespace qzsim;

namespace {

SimFileset* findJunction(ClusterModel& model, const std::string& path) {
    for (SimFilesystem& fs : model.filesystems) {
        if (SimFileset* set = findFilesetByJunction(fs, path)) {
            return set;
        }
    }
    return nullptr;
}

int junctionOf(OpScope& op, const FileOrDirOwner& who, const char* role, SimFileset** set) {
    if (fieldOverflows(who.path)) {
        return op.fail(MGMT_E_NAME_TOO_LONG, "The %s path is longer than %d characters.", role,
                       MGMT_TEXT_LEN - 1);
    }
    std::string path = fieldText(who.path);
    if (path.empty()) {
        return op.fail(MGMT_E_INVALID_ARG, "No %s path.", role);
    }
    *set = findJunction(op.model(), path);
    if (*set == nullptr) {
        return op.fail(MGMT_E_NOT_JUNCTION, "%s is not the junction of a linked fileset.",
                       path.c_str());
    }
    return 0;
}

} // namespace

int PollingHandler::changeOwnerAndOrGroup(FileOrDirOwner target) {
    OpScope op("changeOwnerAndOrGroup", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (!target.isJunction) {
        return op.fail(MGMT_E_NOT_JUNCTION, "Only fileset junctions can change owner or group.");
    }
    SimFileset* set = nullptr;
    if (int rc = junctionOf(op, target, "target", &set)) {
        return rc;
    }
    std::string owner = fieldText(target.owner);
    std::string group = fieldText(target.group);
    if (owner.empty() && group.empty()) {
        return op.fail(MGMT_E_INVALID_ARG, "Neither owner nor group given.");
    }
    if (!owner.empty() && op.model().findUser(owner) == nullptr) {
        return op.fail(MGMT_E_NO_ENTITY, "Unknown user %s.", owner.c_str());
    }
    if (!group.empty() && op.model().findGroup(group) == nullptr) {
        return op.fail(MGMT_E_NO_ENTITY, "Unknown group %s.", group.c_str());
    }
    op.beginChange();
    if (!owner.empty()) {
        set->owner = owner;
    }
    if (!group.empty()) {
        set->group = group;
    }
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Owner of %s is now %s:%s.", set->record.path, set->owner.c_str(), set->group.c_str());
    return MGMT_OK;
}

int PollingHandler::changeFileOrDirOwnership(FileOrDirOwner source, FileOrDirOwner target,
                                             std::string* message) {
    OpScope op("changeFileOrDirOwnership", message);
    if (op.status() != 0) {
        return op.status();
    }
    SimFileset* from = nullptr;
    SimFileset* to = nullptr;
    if (int rc = junctionOf(op, source, "source", &from)) {
        return rc;
    }
    if (int rc = junctionOf(op, target, "target", &to)) {
        return rc;
    }
    op.beginChange();
    to->owner = from->owner;
    to->group = from->group;
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Owner of %s set to %s:%s from %s.", to->record.path, to->owner.c_str(),
           to->group.c_str(), from->record.path);
    return MGMT_OK;
}

int PollingHandler::changeFileOrDirACL(FileOrDirOwner source, FileOrDirOwner target, int option,
                                       std::string* message) {
    OpScope op("changeFileOrDirACL", message);
    if (op.status() != 0) {
        return op.status();
    }
    if (option != 0 && option != 1) {
        return op.fail(MGMT_E_INVALID_ARG, "Unknown ACL option %d.", option);
    }
    SimFileset* from = nullptr;
    SimFileset* to = nullptr;
    if (int rc = junctionOf(op, source, "source", &from)) {
        return rc;
    }
    if (int rc = junctionOf(op, target, "target", &to)) {
        return rc;
    }
    op.beginChange();
    to->acl = from->acl;
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("ACL of %s copied from %s.", to->record.path, from->record.path);
    return MGMT_OK;
}
