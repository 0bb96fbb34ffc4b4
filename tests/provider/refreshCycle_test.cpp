// Cache passes: when they run, what they rebuild, and what a failing library
// call leaves behind.
#include <cstdio>

#include "readModelSupport.h"
#include "smallClusterModels.h"

PEGASUS_USING_PEGASUS;

namespace {

using RefreshCycleTest = ReadModelTest;

const char* const PASS_STARTED = "L0 VexaProvider::buildAllVexaInstanceList: refresh this time";
const char* const PASS_SKIPPED =
    "L0 VexaProvider::buildAllVexaInstanceList: Don't do refresh this time";
const char* const ACCOUNTS_REBUILT =
    "L0 VexaProvider::buildAllVexaInstanceList:  building user and group instance list...";

TEST_F(RefreshCycleTest, PassesAreThrottledToOneEveryThreeMinutes) {
    start(SMALL_CLUSTER);
    qzsim::clearCapturedLog();
    enumerate("KOR_VEXA_Node");
    enumerate("KOR_VEXA_Node");
    EXPECT_EQ(countLines(logLines(), PASS_STARTED), 0);
    EXPECT_EQ(countLines(logLines(), PASS_SKIPPED), 2);

    // Names never trigger a pass, however old the cache.
    ageCache();
    qzsim::clearCapturedLog();
    names("KOR_VEXA_Node");
    EXPECT_EQ(countLines(logLines(), PASS_STARTED), 0);

    enumerate("KOR_VEXA_Node");
    std::vector<std::string> lines = logLines();
    EXPECT_EQ(countLines(lines, PASS_STARTED), 1);
    // Users and groups keep their own fifteen-minute clock.
    EXPECT_EQ(countLines(lines, ACCOUNTS_REBUILT), 0);
}

TEST_F(RefreshCycleTest, AFullPassLogsItsStepsInOrder) {
    start(SMALL_CLUSTER);
    qzsim::clearCapturedLog();
    provider->lastUserGroupRefresh.tv_sec -= 901;
    ageCache();
    enumerate("KOR_VEXA_Cluster");

    const char* sequence[] = {
        PASS_STARTED,
        "L0 VexaProvider::buildAllVexaInstanceList: buildClusterInstanceList",
        "L0 VexaProvider::buildClusterInstanceList: refreshClusterRecipe",
        "L0 VexaProvider::buildClusterInstanceList: updateClusterInfo",
        "L0 VexaProvider::buildClusterInstanceList: getClusterInfo",
        "L0 VexaProvider::buildAllVexaInstanceListz: buildNodeInstanceList",
        "L0 VexaProvider::buildAllVexaInstanceList: buildFileSystemInstanceList",
        "L0 VexaProvider::buildFileSystemInstanceList: ENTER",
        "L0 VexaProvider::buildFileSystemInstanceList: nMountedNode = 1",
        "L0 VexaProvider::buildFileSystemInstanceList: nPolicy = 0",
        "L0 VexaProvider::buildFileSystemInstanceList: EXIT",
        "L0 VexaProvider::buildAllVexaInstanceList: buildFreeDiskInstanceList",
        "L0 VexaProvider::buildAllVexaInstanceList: buildDiskAccessAssoicationList",
        ACCOUNTS_REBUILT,
        "L0 VexaProvider::buildUserInstanceList: building user instances",
        "L0 VexaProvider::buildGroupInstanceList: building group instances",
        // The cluster class runs a second, throttled pass of its own.
        "L0 VexaProvider::enumerateInstances: cluster",
        PASS_SKIPPED,
    };
    std::vector<std::string> lines = logLines();
    int at = 0;
    for (const char* line : sequence) {
        int found = findLine(lines, line, at);
        ASSERT_NE(found, -1) << "missing or out of order: " << line;
        at = found + 1;
    }
}

TEST_F(RefreshCycleTest, AFailingNodeUpdateKeepsTheCachedNodes) {
    start(SMALL_CLUSTER);
    ASSERT_EQ(enumerate("KOR_VEXA_Node").size(), 2u);
    Array<CIMInstance> before = enumerate("KOR_VEXA_ComponentCS");

    qzsim::failOperation("updateNodeInfo", 5, 1);
    ageCache();
    EXPECT_EQ(enumerate("KOR_VEXA_Node").size(), 2u);
    EXPECT_EQ(enumerate("KOR_VEXA_ComponentCS").size(), before.size());
    EXPECT_EQ(enumerate("KOR_VEXA_Config_Manager").size(), 1u);

    // The failed pass still counts as a pass: the next one is three minutes
    // away, and then the nodes are read again.
    qzsim::clearCapturedLog();
    enumerate("KOR_VEXA_Node");
    EXPECT_EQ(countLines(logLines(), PASS_SKIPPED), 1);
}

TEST_F(RefreshCycleTest, AFailingFileSystemUpdateKeepsEveryFileSystemList) {
    start(SMALL_CLUSTER);
    const char* lists[] = {"KOR_VEXA_FileSystem", "KOR_VEXA_StoragePool",      "KOR_VEXA_Fileset",
                           "KOR_VEXA_Mounted",    "KOR_VEXA_StorageComponent", "KOR_VEXA_NSD",
                           "KOR_VEXA_FreeNSD",    "KOR_VEXA_NodeServingNSD"};
    std::vector<Uint32> before;
    for (const char* className : lists)
        before.push_back(enumerate(className).size());

    // Two failed passes in a row: the free disks and their servers are not
    // appended again to the kept lists.
    qzsim::failOperation("updateFilesystemInfo", 5, 2);
    for (int pass = 0; pass < 2; pass++) {
        ageCache();
        for (size_t i = 0; i < std::size(lists); i++)
            EXPECT_EQ(enumerate(lists[i]).size(), before[i]) << lists[i] << " pass " << pass;
    }
    EXPECT_EQ(qzsim::injectedFailures("updateFilesystemInfo"), 2);
}

TEST_F(RefreshCycleTest, AClusterWithoutFileSystemsClearsTheirListsButKeepsAccounts) {
    start(SMALL_CLUSTER);
    ASSERT_EQ(enumerate("KOR_VEXA_FileSystem").size(), 1u);

    std::string error;
    ASSERT_EQ(qzsim::loadModelFromString(NO_FILESYSTEM_CLUSTER, &error), 0) << error;
    provider->lastUserGroupRefresh.tv_sec -= 901;
    ageCache();
    qzsim::clearCapturedLog();
    EXPECT_EQ(enumerate("KOR_VEXA_FileSystem").size(), 0u);
    EXPECT_EQ(enumerate("KOR_VEXA_StoragePool").size(), 0u);
    EXPECT_EQ(enumerate("KOR_VEXA_Fileset").size(), 0u);
    EXPECT_EQ(enumerate("KOR_VEXA_Mounted").size(), 0u);
    // No primary-server node: no configuration manager.
    EXPECT_EQ(enumerate("KOR_VEXA_Config_Manager").size(), 0u);
    std::vector<std::string> lines = logLines();
    EXPECT_NE(findLine(lines, "L0 VexaProvider::buildUserInstanceList: ENTER"), -1);
    EXPECT_EQ(findLine(lines, "L0 VexaProvider::buildUserInstanceList: building user instances"),
              -1);
}

TEST_F(RefreshCycleTest, MountsOfNodesWithoutInstanceAreSkipped) {
    // The first pass cannot read the nodes, so n1's mount has no node
    // instance to point at.
    qzsim::failOperation("updateNodeInfo", 5, 1);
    start(SMALL_CLUSTER);
    EXPECT_EQ(enumerate("KOR_VEXA_Node").size(), 0u);
    EXPECT_EQ(enumerate("KOR_VEXA_Mounted").size(), 0u);
    EXPECT_EQ(enumerate("KOR_VEXA_FileSystem_Manager").size(), 0u);
    ageCache();
    EXPECT_EQ(enumerate("KOR_VEXA_Mounted").size(), 1u);
}

TEST_F(RefreshCycleTest, DiskAccessNamesTheDeviceOrTheServingNode) {
    start(SMALL_CLUSTER);
    Array<CIMInstance> access = enumerate("KOR_VEXA_NodeAccessesNSD");
    ASSERT_EQ(access.size(), 2u);
    EXPECT_EQ(text(access[0], "vexaNsdLocalAccess"), "TRUE");
    EXPECT_EQ(text(access[0], "vexaNsdLocalDeviceName"), "/dev/sdb");
    EXPECT_EQ(text(access[0], "vexaNsdServerName"), "");
    EXPECT_EQ(text(access[1], "vexaNsdLocalAccess"), "FALSE");
    EXPECT_EQ(text(access[1], "vexaNsdLocalDeviceName"), "");
    EXPECT_EQ(text(access[1], "vexaNsdServerName"), "small+n1");
    EXPECT_EQ(access[0].getProperty(2).getType(), CIMTYPE_BOOLEAN);
    // The node end is the node at the record's position.
    CIMObjectPath node;
    access[1].getProperty(0).getValue().get(node);
    EXPECT_TRUE(node == enumerate("KOR_VEXA_Node")[1].getPath());
}

TEST_F(RefreshCycleTest, ServerOrderSkipsUnknownServersAcrossBothLists) {
    start(SMALL_CLUSTER);
    // A disk record whose first primary server left the cluster.
    DiskInfo info;
    std::snprintf(info.name, sizeof info.name, "%s", "b9");
    DiskServerInfo gone, first, backup;
    std::snprintf(gone.name, sizeof gone.name, "%s", "nobody");
    std::snprintf(first.name, sizeof first.name, "%s", "n2");
    std::snprintf(backup.name, sizeof backup.name, "%s", "n1");
    info.serverList = {&gone, &first};
    info.backupServerList = {&backup};

    provider->getWriteLock();
    provider->nodeServingNsds.clear();
    provider->buildDiskServerAssociationList(provider->disks[0], &info);
    Array<CIMInstance> serving = provider->nodeServingNsds;
    provider->releaseLock();
    info.serverList.clear();
    info.backupServerList.clear();

    ASSERT_EQ(serving.size(), 2u);
    EXPECT_EQ(serving[0].getProperty(2).getType(), CIMTYPE_UINT32);
    EXPECT_EQ(text(serving[0], "vexaNsdServerOrder"), "0");
    EXPECT_EQ(text(serving[1], "vexaNsdServerOrder"), "1");
    CIMObjectPath node;
    serving[0].getProperty(1).getValue().get(node);
    EXPECT_TRUE(node == provider->nodes[1].getPath());
    serving[1].getProperty(1).getValue().get(node);
    EXPECT_TRUE(node == provider->nodes[0].getPath());

    // In the model, servers are numbered per disk.
    ageCache();
    Array<CIMInstance> fromModel = enumerate("KOR_VEXA_NodeServingNSD");
    ASSERT_EQ(fromModel.size(), 4u); // b1: n1, n2; b2: n2; spare: n2
    const char* orders[] = {"0", "1", "0", "0"};
    for (Uint32 i = 0; i < 4; i++)
        EXPECT_EQ(text(fromModel[i], "vexaNsdServerOrder"), orders[i]);
}

TEST_F(RefreshCycleTest, FreeDisksJoinTheDiskListWithTheirClusterAssociation) {
    start(SMALL_CLUSTER);
    Array<CIMInstance> disks = enumerate("KOR_VEXA_NSD");
    ASSERT_EQ(disks.size(), 3u);
    EXPECT_EQ(text(disks[2], "vexaDiskName"), "spare");
    EXPECT_EQ(text(disks[2], "vexaFreeDisk"), "TRUE");
    Array<CIMInstance> free = enumerate("KOR_VEXA_FreeNSD");
    ASSERT_EQ(free.size(), 1u);
    CIMObjectPath cluster, disk;
    free[0].getProperty(0).getValue().get(cluster);
    free[0].getProperty(1).getValue().get(disk);
    EXPECT_TRUE(cluster == enumerate("KOR_VEXA_Cluster")[0].getPath());
    EXPECT_TRUE(disk == disks[2].getPath());
}

TEST_F(RefreshCycleTest, TheClusterEnumerationReadsAChangedModelOnceStale) {
    start(SMALL_CLUSTER);
    ASSERT_EQ(enumerate("KOR_VEXA_Node").size(), 2u);
    std::string error;
    ASSERT_EQ(qzsim::loadModelFromString(NO_FILESYSTEM_CLUSTER, &error), 0) << error;
    // Fresh cache: the old content is served.
    EXPECT_EQ(text(enumerate("KOR_VEXA_Cluster")[0], "Name"), "small");
    ageCache();
    EXPECT_EQ(text(enumerate("KOR_VEXA_Cluster")[0], "Name"), "bare");
    EXPECT_EQ(enumerate("KOR_VEXA_Node").size(), 1u);
}

TEST_F(RefreshCycleTest, PerformanceRebuildSkipsAPoolWhoseDisksCannotBeRead) {
    start(SMALL_CLUSTER);
    qzsim::failOperation("updateDiskInfo", 7, 1);
    qzsim::clearCapturedLog();
    EXPECT_EQ(enumerate("KOR_VEXA_FileSystemPerf").size(), 1u);
    EXPECT_EQ(enumerate("KOR_VEXA_DiskPerf").size(), 0u);
    EXPECT_NE(findLine(logLines(),
                       "L2 VexaProvider::buildFileSystemPerfInstanceList: updateDiskInfo failed"),
              -1);
    // The next rebuild reads the pool again.
    EXPECT_EQ(enumerate("KOR_VEXA_FileSystemPerf").size(), 1u);
    EXPECT_EQ(enumerate("KOR_VEXA_DiskPerf").size(), 2u);
}

TEST_F(RefreshCycleTest, GetInstanceLeavesTheCounterRebuildToTheNextPerformanceRead) {
    const char* const perfRebuilt = "L0 VexaProvider::buildFileSystemPerfInstanceList: enter";
    start(SMALL_CLUSTER);
    enumerate("KOR_VEXA_FileSystemPerf");
    Array<CIMInstance> before = enumerate("KOR_VEXA_DiskPerf");
    ASSERT_EQ(before.size(), 2u);
    const CIMObjectPath node = names("KOR_VEXA_Node")[0];
    qzsim::clearCapturedLog();
    EXPECT_EQ(get(node).size(), 1u);
    EXPECT_EQ(get(node).size(), 1u);
    EXPECT_EQ(countLines(logLines(), perfRebuilt), 0);

    // A class that is not rebuilt on enumeration still sees counters sampled since, once.
    Array<CIMInstance> after = enumerate("KOR_VEXA_DiskPerf");
    names("KOR_VEXA_FileSystemPerNodePerf");
    EXPECT_EQ(countLines(logLines(), perfRebuilt), 1);
    ASSERT_EQ(after.size(), 2u);
    EXPECT_FALSE(after[0].identical(before[0]));
}

} // namespace
