// Association instances, made from the object paths of their two ends.
//
// Every association has the same shape: two reference properties typed by
// the class the schema declares for each role (not always the class of the
// end passed in), and a path keyed by both roles with the ends' text forms as
// REFERENCE key bindings. The builders store nothing and look nothing up.
#include "cimProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <string>
#include <unordered_map>

PEGASUS_USING_PEGASUS;

namespace {

// One role of an association: its name and the class the schema declares
// for it.
struct Role {
    const CIMName& name;
    const CIMName& declaredClass;
};

// The role names, made once for the hundreds of thousands of associations
// of a large cluster.
const CIMName ANTECEDENT("Antecedent");
const CIMName DEPENDENT("Dependent");
const CIMName GROUP_COMPONENT("GroupComponent");
const CIMName PART_COMPONENT("PartComponent");
const CIMName CONFORMANT_STANDARD("ConformantStandard");
const CIMName MANAGED_ELEMENT("ManagedElement");

CIMInstance makeAssociation(const CIMName& associationClass, const Role& firstRole,
                            const CIMObjectPath& first, const Role& secondRole,
                            const CIMObjectPath& second) {
    const CIMName& firstName = firstRole.name;
    const CIMName& secondName = secondRole.name;
    const CIMValue firstValue(first);
    const CIMValue secondValue(second);
    CIMInstance association(associationClass);
    association.addProperty(
        CIMProperty(firstName, firstValue, 0, firstRole.declaredClass, CIMName(), false));
    association.addProperty(
        CIMProperty(secondName, secondValue, 0, secondRole.declaredClass, CIMName(), false));

    // Keys made from the values take the ends' text forms as REFERENCE keys;
    // the library can then share one text among all keys naming an end.
    Array<CIMKeyBinding> keys;
    keys.reserveCapacity(2);
    keys.append(CIMKeyBinding(firstName, firstValue));
    keys.append(CIMKeyBinding(secondName, secondValue));
    CIMObjectPath path(String(), CIMNamespaceName(), associationClass, keys);
    path.setNameSpace(NAMESPACE);
    association.setPath(path);
    return association;
}

const CIMName CIM_OBJECT_MANAGER_CLASS("CIM_ObjectManager");

// The value of a text that many associations repeat (a node reaches tens of
// disks through the same device names and serving nodes): each thread keeps
// the values it made, up to a bound past which it starts again, so a large
// cluster holds one copy of each instead of one per association.
typedef std::unordered_map<std::string, CIMValue> TextValues;

// `key` names the text by its record bytes; `text` makes it on first use.
template <class MakeText>
CIMValue sharedText(TextValues& made, const std::string& key, MakeText text) {
    const auto found = made.find(key);
    if (found != made.end())
        return found->second;
    if (made.size() >= 65536)
        made.clear();
    const CIMValue value{text()};
    made.emplace(key, value);
    return value;
}

} // namespace

void VexaProvider::setCompletePath(CIMInstance& instance) {
    // Storing an equal path again would only copy it.
    if (instance.getPath().getNameSpace() == NAMESPACE)
        return;
    CIMObjectPath path = instance.getPath();
    path.setNameSpace(NAMESPACE);
    instance.setPath(path);
}

CIMInstance VexaProvider::createVexaStorageComp(CIMObjectPath pool, CIMObjectPath disk) {
    return makeAssociation(VEXA_ASSOC_STORAGE_COMP, {GROUP_COMPONENT, VEXA_STORAGE_POOL}, pool,
                           {PART_COMPONENT, VEXA_DISK}, disk);
}

CIMInstance VexaProvider::createVexaComponentCS(CIMObjectPath cluster, CIMObjectPath node) {
    return makeAssociation(VEXA_COMPONENTCS, {GROUP_COMPONENT, VEXA_CLUSTER}, cluster,
                           {PART_COMPONENT, VEXA_NODE}, node);
}

// The schema declares the managed element of the system's conformance as the
// cluster class, although the discovery list passes the computer system.
CIMInstance VexaProvider::createAssocCS(CIMObjectPath profile, CIMObjectPath system) {
    return makeAssociation(ELEMENT_CONFORMS_TO_PROFILE, {CONFORMANT_STANDARD, REGISTERED_PROFILE},
                           profile, {MANAGED_ELEMENT, VEXA_CLUSTER}, system);
}

CIMInstance VexaProvider::createAssocObjMgr(CIMObjectPath profile, CIMObjectPath objectManager) {
    return makeAssociation(ELEMENT_CONFORMS_TO_PROFILE, {CONFORMANT_STANDARD, REGISTERED_PROFILE},
                           profile, {MANAGED_ELEMENT, CIM_OBJECT_MANAGER_CLASS}, objectManager);
}

CIMInstance VexaProvider::createVexaFSPolicy(CIMObjectPath fileSystem, CIMObjectPath policy) {
    return makeAssociation(VEXA_FILESYSTEM_POLICY, {ANTECEDENT, VEXA_FILESYSTEM}, fileSystem,
                           {DEPENDENT, VEXA_POLICY}, policy);
}

CIMInstance VexaProvider::createVexaFileSystemMgr(CIMObjectPath fileSystem, CIMObjectPath node) {
    return makeAssociation(VEXA_FILESYSTEM_MGR, {ANTECEDENT, VEXA_FILESYSTEM}, fileSystem,
                           {DEPENDENT, VEXA_NODE}, node);
}

CIMInstance VexaProvider::createVexaConfigMgr(CIMObjectPath cluster, CIMObjectPath node) {
    return makeAssociation(VEXA_CONFIG_MGR, {ANTECEDENT, VEXA_CLUSTER}, cluster,
                           {DEPENDENT, VEXA_NODE}, node);
}

CIMInstance VexaProvider::createVexaMounted(CIMObjectPath node, CIMObjectPath fileSystem) {
    return makeAssociation(VEXA_MOUNTED, {ANTECEDENT, VEXA_NODE}, node,
                           {DEPENDENT, VEXA_FILESYSTEM}, fileSystem);
}

CIMInstance VexaProvider::createVexaFreeNsd(CIMObjectPath cluster, CIMObjectPath disk) {
    return makeAssociation(VEXA_FREE_NSD, {ANTECEDENT, VEXA_CLUSTER}, cluster,
                           {DEPENDENT, VEXA_DISK}, disk);
}

CIMInstance VexaProvider::createVexaNodeAccessNsd(CIMObjectPath node, CIMObjectPath disk,
                                                  DiskAccessInfo* access, ClusterInfo* cluster) {
    CIMInstance association = makeAssociation(VEXA_NODE_ACCESSES_NSD, {ANTECEDENT, VEXA_NODE}, node,
                                              {DEPENDENT, VEXA_DISK}, disk);
    // A node reaches a disk either through its own device or through a
    // serving node; the other of the two texts stays empty.
    static const CIMName LOCAL_ACCESS("vexaNsdLocalAccess");
    static const CIMName LOCAL_DEVICE_NAME("vexaNsdLocalDeviceName");
    static const CIMName SERVER_NAME("vexaNsdServerName");
    thread_local TextValues deviceNames;
    thread_local TextValues serverNames;
    const bool local = access->localAccess != 0;
    CIMValue deviceName(handlerText);
    CIMValue serverName(handlerText);
    if (local) {
        deviceName = sharedText(deviceNames, access->localDeviceName,
                                [access] { return String(access->localDeviceName); });
    } else {
        // Record texts hold no NUL, so the key tells every pair apart.
        const std::string key = std::string(cluster->clusterName) + '\0' + access->serverName;
        serverName = sharedText(serverNames, key, [cluster, access] {
            return String(cluster->clusterName) + "+" + String(access->serverName);
        });
    }
    association.addProperty(CIMProperty(LOCAL_ACCESS, CIMValue(local)));
    association.addProperty(CIMProperty(LOCAL_DEVICE_NAME, deviceName));
    association.addProperty(CIMProperty(SERVER_NAME, serverName));
    setCompletePath(association);
    return association;
}

CIMInstance VexaProvider::createVexaNodeServNsd(CIMObjectPath disk, CIMObjectPath node,
                                                unsigned int order) {
    CIMInstance association = makeAssociation(VEXA_NODE_SERVING_NSD, {ANTECEDENT, VEXA_DISK}, disk,
                                              {DEPENDENT, VEXA_NODE}, node);
    association.addProperty(
        CIMProperty(CIMName("vexaNsdServerOrder"), CIMValue(static_cast<Uint32>(order))));
    setCompletePath(association);
    return association;
}

CIMInstance VexaProvider::createAssocGroupQuotaInstances(CIMObjectPath fileSystem,
                                                         CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESYSTEM_GROUPQUOTAS, {ANTECEDENT, VEXA_FILESYSTEM},
                           fileSystem, {DEPENDENT, VEXA_GROUP_QUOTA}, quota);
}

CIMInstance VexaProvider::createAssocUserQuotaInstances(CIMObjectPath fileSystem,
                                                        CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESYSTEM_USERQUOTAS, {ANTECEDENT, VEXA_FILESYSTEM},
                           fileSystem, {DEPENDENT, VEXA_USER_QUOTA}, quota);
}

CIMInstance VexaProvider::createAssocFilesetQuotaInstances(CIMObjectPath fileSystem,
                                                           CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESYSTEM_FILESETQUOTAS, {ANTECEDENT, VEXA_FILESYSTEM},
                           fileSystem, {DEPENDENT, VEXA_FILESET_QUOTA}, quota);
}

CIMInstance VexaProvider::createGroupAssocInstance(CIMObjectPath fileSystem, CIMObjectPath group) {
    return makeAssociation(VEXA_ASSOC_GROUP, {ANTECEDENT, VEXA_FILESYSTEM}, fileSystem,
                           {DEPENDENT, VEXA_GROUP}, group);
}

CIMInstance VexaProvider::createUserAssocInstance(CIMObjectPath fileSystem, CIMObjectPath user) {
    return makeAssociation(VEXA_ASSOC_USER, {ANTECEDENT, VEXA_FILESYSTEM}, fileSystem,
                           {DEPENDENT, VEXA_USER}, user);
}

// Declared exactly like the group-quota association: the schema gives the
// user quota's owner end the group class.
CIMInstance VexaProvider::createVexaAssociatedUserQuota(CIMObjectPath owner, CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_USER_QUOTA, {ANTECEDENT, VEXA_GROUP}, owner,
                           {DEPENDENT, VEXA_USER_QUOTA}, quota);
}

CIMInstance VexaProvider::createVexaAssociatedGroupQuota(CIMObjectPath group, CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_GROUP_QUOTA, {ANTECEDENT, VEXA_GROUP}, group,
                           {DEPENDENT, VEXA_GROUP_QUOTA}, quota);
}

CIMInstance VexaProvider::createVexaAssociatedFilesetQuota(CIMObjectPath fileset,
                                                           CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESET_QUOTA, {ANTECEDENT, VEXA_FILESET}, fileset,
                           {DEPENDENT, VEXA_FILESET_QUOTA}, quota);
}

CIMInstance VexaProvider::createVexaAssociatedFileset(CIMObjectPath fileSystem,
                                                      CIMObjectPath fileset) {
    return makeAssociation(VEXA_ASSOC_FILESET, {ANTECEDENT, VEXA_FILESYSTEM}, fileSystem,
                           {DEPENDENT, VEXA_FILESET}, fileset);
}

CIMInstance VexaProvider::createVexaAssocSP(CIMObjectPath fileSystem, CIMObjectPath pool) {
    return makeAssociation(VEXA_ASSOC_STORAGE, {ANTECEDENT, VEXA_FILESYSTEM}, fileSystem,
                           {DEPENDENT, VEXA_STORAGE_POOL}, pool);
}

CIMInstance VexaProvider::createVexaHostedFS(CIMObjectPath cluster, CIMObjectPath fileSystem) {
    return makeAssociation(VEXA_HOSTED_FILESYSTEM, {GROUP_COMPONENT, VEXA_CLUSTER}, cluster,
                           {PART_COMPONENT, VEXA_FILESYSTEM}, fileSystem);
}
