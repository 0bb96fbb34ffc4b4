// The discovery instances through which a client finds the provider:
// registered profiles, the object manager, the computer system and their
// conformance associations. Built once at start; the lists are not cleared,
// so a second call appends a second set.
#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include "deploymentSettings.h"

PEGASUS_USING_PEGASUS;

int VexaProvider::buildDiscoveryInstanceList() {
    const Uint16 advertisedToSlp = 2;
    const Uint16 organizationOther = 1;
    registeredProfiles.append(createRegProfile(REGISTERED_PROFILE, "Server", "1.0.0",
                                               advertisedToSlp, organizationOther,
                                               "KOR:Server_1.0.0"));
    registeredProfiles.append(createRegProfile(REGISTERED_PROFILE, "KOR VEXA Cluster", "1.0.0",
                                               advertisedToSlp, organizationOther,
                                               "KOR:VEXA_1.0.0"));
    registeredProfiles.append(createRegProfile(REGISTERED_PROFILE, "KOR VEXA Provider", "1.0.0",
                                               advertisedToSlp, organizationOther,
                                               "KOR:VEXA_Provider_110509_1.0.0"));

    const String managementNode(VEXA_MANAGEMENT_NODE_IP);
    objectManagers.append(createRegProfile(OBJECT_MANAGER, String("KOR:") + managementNode,
                                           managementNode, "CIM Server", "KOR VEXA CIMOM",
                                           "KOR_VEXA_ObjectManager", "KOR_VEXA_ManagementSystem"));

    computerSystems.append(createComputerSystemInstance(COMPUTER_SYSTEM, "KOR_VEXA", "VEXA"));

    objMgrConformsToProfile.append(
        createAssocObjMgr(registeredProfiles[0].getPath(), objectManagers[0].getPath()));
    csConformsToProfile.append(
        createAssocCS(registeredProfiles[1].getPath(), computerSystems[0].getPath()));
    return 0;
}
