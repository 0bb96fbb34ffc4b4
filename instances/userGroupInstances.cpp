// User and group instances of one file system. Their key values live in the
// path only; the properties carry what the library knows of the account.
#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addProperty;
using instances::appendKey;

namespace {

// The keys of users and groups: the file system they were seen on, within
// its cluster, and the account name.
Array<CIMKeyBinding> accountKeys(const char* clusterName, const char* fsName,
                                 const char* creationClassName, const char* name) {
    Array<CIMKeyBinding> keys;
    appendKey(keys, "CSCreationClassName", "KOR_VEXA_Cluster");
    appendKey(keys, "CSName", clusterName);
    appendKey(keys, "FSCreationClassName", "KOR_VEXA_FileSystem");
    appendKey(keys, "FSName", fsName);
    appendKey(keys, "CreationClassName", creationClassName);
    appendKey(keys, "Name", name);
    return keys;
}

} // namespace

CIMInstance VexaProvider::createUserInstance(User* user) {
    ts_log(0, "VexaProvider::createUserInstance",
           "vexaUser=%s, vexaUserUID=%d,vexaUserFileSystem=%s\n", user->name,
           static_cast<int>(user->uid), user->fsName);

    CIMInstance instance(VEXA_USER);
    addProperty(instance, "vexaUser", user->name);
    addProperty(instance, "vexaUserUID", CIMValue(Uint32(user->uid)));
    addProperty(instance, "vexaUserFileSystem", user->fsName);
    addProperty(instance, "vexaUserCluster", user->clusterName);
    // Without account details the home path and group are not known; a
    // typed null says so where an empty text or 0 would be a wrong answer.
    if (user->detailsKnown != 0) {
        addProperty(instance, "vexaUserHomePath", user->homePath);
        addProperty(instance, "vexaUserMainGroupId", CIMValue(Uint32(user->gid)));
    } else {
        addProperty(instance, "vexaUserHomePath", CIMValue(CIMTYPE_STRING, false));
        addProperty(instance, "vexaUserMainGroupId", CIMValue(CIMTYPE_UINT32, false));
    }

    instances::setInstancePath(
        instance, VEXA_USER,
        accountKeys(user->clusterName, user->fsName, "KOR_VEXA_User", user->name));
    return instance;
}

CIMInstance VexaProvider::createGroupInstance(Group* group) {
    // Logged under the user builder's label: both are one account listing.
    ts_log(0, "VexaProvider::createUserInstance",
           "vexaGroupName=%s, vexaGroupGID=%d,vexaGroupFileSystem=%s\n", group->name,
           static_cast<int>(group->gid), group->fsName);

    CIMInstance instance(VEXA_GROUP);
    addProperty(instance, "vexaGroupName", group->name);
    addProperty(instance, "vexaGroupGID", CIMValue(Uint32(group->gid)));
    addProperty(instance, "vexaGroupFileSystem", group->fsName);
    addProperty(instance, "vexaGroupCluster", group->clusterName);

    instances::setInstancePath(
        instance, VEXA_GROUP,
        accountKeys(group->clusterName, group->fsName, "KOR_VEXA_Group", group->name));
    return instance;
}

// Users are not published yet: the refresh calls this for every mounted file
// system, it builds nothing, and the result 1 ("nothing built") says so. The
// instance builder above is ready for when user records are read.
int VexaProvider::buildUserInstances(FilesystemInfo* fs, int) {
    ts_log(0, "VexaProvider::buildUserInstances", "ENTER\n");
    if (fs == 0) {
        ts_log(2, "VexaProvider::buildUserInstances", "FS is null\n");
        return 1;
    }
    ts_log(0, "VexaProvider::buildUserInstances", "FS=%s @ %s err %d nUsers %d\n", fs->name,
           fs->defaultMountPoint, 1, 0);
    return 1;
}

// The group counterpart of buildUserInstances, equally building nothing. Its
// callers pass records of the snapshot, never null.
int VexaProvider::buildGroupInstances(FilesystemInfo* fs, int) {
    ts_log(0, "VexaProvider::buildGroupInstances", "ENTER\n");
    ts_log(0, "VexaProvider::buildGroupInstances", "FS=%s @ %s err %d nGroups %d\n", fs->name,
           fs->defaultMountPoint, 1, 0);
    return 1;
}
