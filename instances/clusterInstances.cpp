// The cluster and its nodes. The node key leads with the cluster name, so
// that equally named nodes of two clusters stay apart; the association
// builders rebuild exactly these keys to point at them.
#include "cimProvider.h"

#include <cstring>

#include "instanceBuilding.h"

PEGASUS_USING_PEGASUS;

using instances::addOperationalStatus;
using instances::addProperty;
using instances::appendKey;

CIMInstance VexaProvider::createClusterInstance(ClusterInfo* cluster) {
    CIMInstance instance(VEXA_CLUSTER);
    addProperty(instance, "CreationClassName", "KOR_VEXA_Cluster");
    addProperty(instance, "Name", cluster->clusterName);
    addProperty(instance, "vexaClusterName", cluster->clusterName);
    addProperty(instance, "vexaClusterId", cluster->clusterId);
    addProperty(instance, "vexaClusterMinReleaseLevel", cluster->minReleaseLevel);
    addProperty(instance, "vexaClusterUidDomain", cluster->uidDomain);
    addProperty(instance, "vexaClusterRemoteShellCommand", cluster->remoteShellCommand);
    addProperty(instance, "vexaClusterRemoteFileCopyCommand", cluster->remoteFileCopyCommand);
    addProperty(instance, "vexaClusterPrimaryServer", cluster->primaryServer);
    addProperty(instance, "vexaClusterSecondaryServer", cluster->secondaryServer);
    addProperty(instance, "vexaClusterMaxBlockSize", CIMValue(Uint32(cluster->maxBlockSize)));
    addProperty(instance, "vexaClusterDistributeTokenServer",
                CIMValue(Uint32(cluster->distributeTokenServer)));
    addProperty(instance, "vexaClusterFailureDetectionTime",
                CIMValue(Uint32(cluster->failureDetectionTime)));
    addProperty(instance, "vexaClusterTCPPort", CIMValue(Uint32(cluster->tcpPort)));
    // A cluster we can read at all is reported healthy; trouble shows on
    // its nodes and file systems.
    addOperationalStatus(instance, instances::STATUS_OK);

    Array<CIMKeyBinding> keys;
    appendKey(keys, "CreationClassName", "KOR_VEXA_Cluster");
    appendKey(keys, "Name", cluster->clusterName);
    instances::setInstancePath(instance, VEXA_CLUSTER, keys);
    return instance;
}

CIMInstance VexaProvider::createNodeInstance(ClusterInfo* cluster, NodeInfo* node) {
    std::string nodeKey = instances::joinKey(cluster->clusterName, node->name);

    CIMInstance instance(VEXA_NODE);
    addProperty(instance, "CreationClassName", "KOR_VEXA_Node");
    addProperty(instance, "Name", nodeKey);
    addProperty(instance, "vexaNodeName", node->name);
    addProperty(instance, "vexaNodeIP", node->ipAddr);
    addProperty(instance, "vexaNodePlatform", node->platform);
    addProperty(instance, "vexaNodeStatus", node->status);
    addProperty(instance, "vexaNodeFailureCount", CIMValue(Uint32(node->failureCount)));
    addProperty(instance, "vexaNodeThreadWait", CIMValue(Uint32(node->threadWait)));
    addProperty(instance, "vexaNodeHealthy", node->healthy);
    addProperty(instance, "vexaNodeDiagnosis", node->diagnosis);
    addProperty(instance, "vexaNodeVersion", node->version);
    addProperty(instance, "vexaNodeType", node->type);
    addProperty(instance, "vexaNodeAdmin", node->admin);
    addProperty(instance, "vexaNodePagePool", CIMValue(Uint64(node->pagePool)));
    addProperty(instance, "vexaNodePrefetchThreads", CIMValue(Uint32(node->prefetchThreads)));
    addProperty(instance, "vexaNodeMaxMbps", CIMValue(Uint32(node->maxMbps)));
    addProperty(instance, "vexaNodeMaxFilesToCache", CIMValue(Uint32(node->maxFilesToCache)));
    addProperty(instance, "vexaNodeMaxStatCache", CIMValue(Uint32(node->maxStatCache)));
    addProperty(instance, "vexaNodeWorker1Threads", CIMValue(Uint32(node->worker1Threads)));
    addProperty(instance, "vexaNodeDmapiEventTimeout", CIMValue(Uint32(node->dmapiEventTimeout)));
    addProperty(instance, "vexaNodeDmapiMountTimeout", CIMValue(Uint32(node->dmapiMountTimeout)));
    addProperty(instance, "vexaNodeDmapiSessFailureTimeout",
                CIMValue(Uint32(node->dmapiSessFailureTimeout)));
    addProperty(instance, "vexaNodeNsdServerWaitTimeWindowOnMount",
                CIMValue(Uint32(node->nsdServerWaitTimeWindowOnMount)));
    addProperty(instance, "vexaNodeNsdServerWaitTimeForMount",
                CIMValue(Uint32(node->nsdServerWaitTimeForMount)));
    // "Fall", not "Fail": the published schema spells it so.
    addProperty(instance, "vexaNodeUnmountOnDiskFall", node->unmountOnDiskFail);
    // Only a node that is plainly "up" serves; arbitrating, unknown or any
    // other spelling needs an administrator's look.
    addOperationalStatus(instance, strcmp(node->status, "up") == 0 ? instances::STATUS_OK
                                                                   : instances::STATUS_ERROR);

    Array<CIMKeyBinding> keys;
    appendKey(keys, "CreationClassName", "KOR_VEXA_Node");
    appendKey(keys, "Name", nodeKey);
    instances::setInstancePath(instance, VEXA_NODE, keys);
    return instance;
}
