// Association instances, made from the object paths of their two ends.
//
// Every association has the same shape: two reference properties typed by
// the class the schema declares for each role (not always the class of the
// end passed in), and a path keyed by both roles with the ends' text forms as
// REFERENCE key bindings. The builders store nothing and look nothing up.
#include "cimProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

PEGASUS_USING_PEGASUS;

namespace {

// One role of an association: its name and the class the schema declares
// for it.
struct Role {
    const char* name;
    const CIMName& declaredClass;
};

CIMInstance makeAssociation(const CIMName& associationClass, const Role& firstRole,
                            const CIMObjectPath& first, const Role& secondRole,
                            const CIMObjectPath& second) {
    const CIMName firstName(firstRole.name);
    const CIMName secondName(secondRole.name);
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
    return makeAssociation(VEXA_ASSOC_STORAGE_COMP, {"GroupComponent", VEXA_STORAGE_POOL}, pool,
                           {"PartComponent", VEXA_DISK}, disk);
}

CIMInstance VexaProvider::createVexaComponentCS(CIMObjectPath cluster, CIMObjectPath node) {
    return makeAssociation(VEXA_COMPONENTCS, {"GroupComponent", VEXA_CLUSTER}, cluster,
                           {"PartComponent", VEXA_NODE}, node);
}

// The schema declares the managed element of the system's conformance as the
// cluster class, although the discovery list passes the computer system.
CIMInstance VexaProvider::createAssocCS(CIMObjectPath profile, CIMObjectPath system) {
    return makeAssociation(ELEMENT_CONFORMS_TO_PROFILE, {"ConformantStandard", REGISTERED_PROFILE},
                           profile, {"ManagedElement", VEXA_CLUSTER}, system);
}

CIMInstance VexaProvider::createAssocObjMgr(CIMObjectPath profile, CIMObjectPath objectManager) {
    return makeAssociation(ELEMENT_CONFORMS_TO_PROFILE, {"ConformantStandard", REGISTERED_PROFILE},
                           profile, {"ManagedElement", CIM_OBJECT_MANAGER_CLASS}, objectManager);
}

CIMInstance VexaProvider::createVexaFSPolicy(CIMObjectPath fileSystem, CIMObjectPath policy) {
    return makeAssociation(VEXA_FILESYSTEM_POLICY, {"Antecedent", VEXA_FILESYSTEM}, fileSystem,
                           {"Dependent", VEXA_POLICY}, policy);
}

CIMInstance VexaProvider::createVexaFileSystemMgr(CIMObjectPath fileSystem, CIMObjectPath node) {
    return makeAssociation(VEXA_FILESYSTEM_MGR, {"Antecedent", VEXA_FILESYSTEM}, fileSystem,
                           {"Dependent", VEXA_NODE}, node);
}

CIMInstance VexaProvider::createVexaConfigMgr(CIMObjectPath cluster, CIMObjectPath node) {
    return makeAssociation(VEXA_CONFIG_MGR, {"Antecedent", VEXA_CLUSTER}, cluster,
                           {"Dependent", VEXA_NODE}, node);
}

CIMInstance VexaProvider::createVexaMounted(CIMObjectPath node, CIMObjectPath fileSystem) {
    return makeAssociation(VEXA_MOUNTED, {"Antecedent", VEXA_NODE}, node,
                           {"Dependent", VEXA_FILESYSTEM}, fileSystem);
}

CIMInstance VexaProvider::createVexaFreeNsd(CIMObjectPath cluster, CIMObjectPath disk) {
    return makeAssociation(VEXA_FREE_NSD, {"Antecedent", VEXA_CLUSTER}, cluster,
                           {"Dependent", VEXA_DISK}, disk);
}

CIMInstance VexaProvider::createVexaNodeAccessNsd(CIMObjectPath node, CIMObjectPath disk,
                                                  DiskAccessInfo* access, ClusterInfo* cluster) {
    CIMInstance association = makeAssociation(VEXA_NODE_ACCESSES_NSD, {"Antecedent", VEXA_NODE},
                                              node, {"Dependent", VEXA_DISK}, disk);
    // A node reaches a disk either through its own device or through a
    // serving node; the other of the two texts stays empty.
    const bool local = access->localAccess != 0;
    association.addProperty(CIMProperty(CIMName("vexaNsdLocalAccess"), CIMValue(local)));
    association.addProperty(
        CIMProperty(CIMName("vexaNsdLocalDeviceName"),
                    CIMValue(local ? String(access->localDeviceName) : handlerText)));
    association.addProperty(CIMProperty(
        CIMName("vexaNsdServerName"),
        CIMValue(local ? handlerText
                       : String(cluster->clusterName) + "+" + String(access->serverName))));
    setCompletePath(association);
    return association;
}

CIMInstance VexaProvider::createVexaNodeServNsd(CIMObjectPath disk, CIMObjectPath node,
                                                unsigned int order) {
    CIMInstance association = makeAssociation(VEXA_NODE_SERVING_NSD, {"Antecedent", VEXA_DISK},
                                              disk, {"Dependent", VEXA_NODE}, node);
    association.addProperty(
        CIMProperty(CIMName("vexaNsdServerOrder"), CIMValue(static_cast<Uint32>(order))));
    setCompletePath(association);
    return association;
}

CIMInstance VexaProvider::createAssocGroupQuotaInstances(CIMObjectPath fileSystem,
                                                         CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESYSTEM_GROUPQUOTAS, {"Antecedent", VEXA_FILESYSTEM},
                           fileSystem, {"Dependent", VEXA_GROUP_QUOTA}, quota);
}

CIMInstance VexaProvider::createAssocUserQuotaInstances(CIMObjectPath fileSystem,
                                                        CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESYSTEM_USERQUOTAS, {"Antecedent", VEXA_FILESYSTEM},
                           fileSystem, {"Dependent", VEXA_USER_QUOTA}, quota);
}

CIMInstance VexaProvider::createAssocFilesetQuotaInstances(CIMObjectPath fileSystem,
                                                           CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESYSTEM_FILESETQUOTAS, {"Antecedent", VEXA_FILESYSTEM},
                           fileSystem, {"Dependent", VEXA_FILESET_QUOTA}, quota);
}

CIMInstance VexaProvider::createGroupAssocInstance(CIMObjectPath fileSystem, CIMObjectPath group) {
    return makeAssociation(VEXA_ASSOC_GROUP, {"Antecedent", VEXA_FILESYSTEM}, fileSystem,
                           {"Dependent", VEXA_GROUP}, group);
}

CIMInstance VexaProvider::createUserAssocInstance(CIMObjectPath fileSystem, CIMObjectPath user) {
    return makeAssociation(VEXA_ASSOC_USER, {"Antecedent", VEXA_FILESYSTEM}, fileSystem,
                           {"Dependent", VEXA_USER}, user);
}

// Declared exactly like the group-quota association: the schema gives the
// user quota's owner end the group class.
CIMInstance VexaProvider::createVexaAssociatedUserQuota(CIMObjectPath owner, CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_USER_QUOTA, {"Antecedent", VEXA_GROUP}, owner,
                           {"Dependent", VEXA_USER_QUOTA}, quota);
}

CIMInstance VexaProvider::createVexaAssociatedGroupQuota(CIMObjectPath group, CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_GROUP_QUOTA, {"Antecedent", VEXA_GROUP}, group,
                           {"Dependent", VEXA_GROUP_QUOTA}, quota);
}

CIMInstance VexaProvider::createVexaAssociatedFilesetQuota(CIMObjectPath fileset,
                                                           CIMObjectPath quota) {
    return makeAssociation(VEXA_ASSOC_FILESET_QUOTA, {"Antecedent", VEXA_FILESET}, fileset,
                           {"Dependent", VEXA_FILESET_QUOTA}, quota);
}

CIMInstance VexaProvider::createVexaAssociatedFileset(CIMObjectPath fileSystem,
                                                      CIMObjectPath fileset) {
    return makeAssociation(VEXA_ASSOC_FILESET, {"Antecedent", VEXA_FILESYSTEM}, fileSystem,
                           {"Dependent", VEXA_FILESET}, fileset);
}

CIMInstance VexaProvider::createVexaAssocSP(CIMObjectPath fileSystem, CIMObjectPath pool) {
    return makeAssociation(VEXA_ASSOC_STORAGE, {"Antecedent", VEXA_FILESYSTEM}, fileSystem,
                           {"Dependent", VEXA_STORAGE_POOL}, pool);
}

CIMInstance VexaProvider::createVexaHostedFS(CIMObjectPath cluster, CIMObjectPath fileSystem) {
    return makeAssociation(VEXA_HOSTED_FILESYSTEM, {"GroupComponent", VEXA_CLUSTER}, cluster,
                           {"PartComponent", VEXA_FILESYSTEM}, fileSystem);
}
