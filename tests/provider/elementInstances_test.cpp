// The element builders as a client sees their output: status rules, values,
// keys and the path text (names and types are held to the schema elsewhere).
#include <qzantras/ClusterInfo.h>
#include <qzsim/SimControl.h>

#include <string>

#include "cimProvider.h"
#include "instanceInspection.h"
#include "providerTestSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

class ElementInstancesTest : public ProviderTest {
protected:
    VexaProvider provider;
    ClusterInfo cluster;
    void SetUp() override {
        ProviderTest::SetUp();
        setText(cluster.clusterName, "c1");
    }
    bool logged(const std::string& line) { return findLine(logLines(), line) != -1; }
};

TEST_F(ElementInstancesTest, ClusterIsAlwaysOkAndKeyedByItsName) {
    setText(cluster.primaryServer, "n1");
    cluster.tcpPort = 1191;
    CIMInstance instance = provider.createClusterInstance(&cluster);
    EXPECT_EQ(textOf(instance, "vexaClusterPrimaryServer"), "n1");
    EXPECT_EQ(textOf(instance, "vexaClusterTCPPort"), "1191");
    EXPECT_EQ(statusOf(instance), 2);
    EXPECT_EQ(pathOf(instance),
              "root/cimv2:KOR_VEXA_Cluster.CreationClassName=\"KOR_VEXA_Cluster\",Name=\"c1\"");
}

TEST_F(ElementInstancesTest, NodeIsOkOnlyWhenExactlyUpAndKeyedWithinItsCluster) {
    NodeInfo node;
    setText(node.name, "n1");
    setText(node.unmountOnDiskFail, "yes");
    node.pagePool = 1ULL << 40;
    node.nsdServerWaitTimeForMount = 24;

    setText(node.status, "up");
    CIMInstance up = provider.createNodeInstance(&cluster, &node);
    EXPECT_EQ(textOf(up, "vexaNodePagePool"), "1099511627776");
    EXPECT_EQ(textOf(up, "vexaNodeNsdServerWaitTimeForMount"), "24");
    EXPECT_EQ(textOf(up, "vexaNodeUnmountOnDiskFall"), "yes");
    EXPECT_EQ(textOf(up, "Name"), "c1+n1");
    EXPECT_EQ(statusOf(up), 2);
    EXPECT_EQ(pathOf(up), "root/cimv2:KOR_VEXA_Node.CreationClassName=\"KOR_VEXA_Node\","
                          "Name=\"c1+n1\"");

    for (const char* status : {"Up", "down", "", "up "}) {
        setText(node.status, status);
        EXPECT_EQ(statusOf(provider.createNodeInstance(&cluster, &node)), 6) << status;
    }

    ClusterInfo other;
    setText(other.clusterName, "c2");
    EXPECT_NE(provider.createNodeInstance(&other, &node).getPath(), up.getPath());
}

TEST_F(ElementInstancesTest, FileSystemStatusTextsAndTheirOperationalStatus) {
    FilesystemInfo fs;
    setText(fs.name, "fs1");
    setText(fs.xstatus, "ill-replicated");
    setText(fs.fsVersion, "13.01");

    setText(fs.status, "recovered");
    CIMInstance recovered = provider.createFileSystemInstance(&fs, &cluster);
    EXPECT_EQ(textOf(recovered, "vexaFilesystemVersion"), "13.01");
    EXPECT_EQ(statusOf(recovered), 2);
    EXPECT_EQ(pathOf(recovered),
              "root/cimv2:KOR_VEXA_FileSystem.CreationClassName=\"KOR_VEXA_FileSystem\","
              "CSCreationClassName=\"KOR_VEXA_Cluster\",CSName=\"c1\",Name=\"fs1\"");

    // "state" is shown readably but still counts as healthy.
    setText(fs.status, "state");
    CIMInstance state = provider.createFileSystemInstance(&fs, &cluster);
    EXPECT_EQ(textOf(state, "vexaFileSystemStatus"), "state unknown");
    EXPECT_EQ(textOf(state, "vexaFileSystemXstatus"), "ill-replicated");
    EXPECT_EQ(statusOf(state), 2);

    setText(fs.status, "unknown");
    CIMInstance unknown = provider.createFileSystemInstance(&fs, &cluster);
    EXPECT_EQ(textOf(unknown, "vexaFileSystemStatus"), "unknown");
    EXPECT_EQ(textOf(unknown, "vexaFileSystemXstatus"), "unknown");
    EXPECT_EQ(statusOf(unknown), 6);

    setText(fs.status, "panicked");
    EXPECT_EQ(statusOf(provider.createFileSystemInstance(&fs, &cluster)), 6);
}

TEST_F(ElementInstancesTest, PoolIsDegradedFromNinetyPercentAndSurvivesZeroCapacity) {
    FilesystemInfo fs;
    setText(fs.name, "fs1");
    StoragePoolInfo pool;
    setText(pool.name, "system");
    pool.totalSpace = 1000;

    pool.freeSpace = 110; // 89 %
    CIMInstance at89 = provider.createStgPoolInstance(&pool, &fs, &cluster);
    EXPECT_EQ(statusOf(at89), 2);
    EXPECT_EQ(textOf(at89, "vexaStgPoolName"), "fs1+system");
    EXPECT_EQ(pathOf(at89), "root/cimv2:KOR_VEXA_StoragePool.InstanceID=\"c1+fs1+system\"");
    EXPECT_TRUE(logged("L0 VexaProvider::createStgPoolInstance: stgId = c1+fs1+system"));
    EXPECT_TRUE(logged("L0 VexaProvider::createStgPoolInstance: utilPer = 89"));

    pool.freeSpace = 100; // 90 %
    EXPECT_EQ(statusOf(provider.createStgPoolInstance(&pool, &fs, &cluster)), 3);
    pool.freeSpace = 0;
    EXPECT_EQ(statusOf(provider.createStgPoolInstance(&pool, &fs, &cluster)), 3);

    // A pool without capacity holds nothing: 0 %, not a division by zero.
    qzsim::clearCapturedLog();
    pool.totalSpace = 0;
    CIMInstance empty = provider.createStgPoolInstance(&pool, &fs, &cluster);
    EXPECT_EQ(statusOf(empty), 2);
    EXPECT_TRUE(logged("L0 VexaProvider::createStgPoolInstance: utilPer = 0"));

    // Free space above the total cannot overflow the percentage.
    pool.totalSpace = 1;
    pool.freeSpace = ~0ULL;
    EXPECT_EQ(statusOf(provider.createStgPoolInstance(&pool, &fs, &cluster)), 2);
}

TEST_F(ElementInstancesTest, DiskStatusFollowsTheAvailabilityShown) {
    DiskInfo disk;
    setText(disk.name, "d1");
    setText(disk.status, "ready");
    disk.freeDisk = 1;

    struct Case {
        const char* status;
        const char* availability;
        const char* shown;
        int operational;
    };
    for (const Case& c :
         {Case{"ready", "OK", "OK", 2}, Case{"ready", "Unavailable", "Unavailable", 6},
          Case{"unknown", "OK", "unknown", 0}, Case{"ready", "unknown", "unknown", 0},
          Case{"ready", "Recovering", "Recovering", 3}, Case{"ready", "", "", 3}}) {
        setText(disk.status, c.status);
        setText(disk.availability, c.availability);
        CIMInstance instance = provider.createDiskInstance(&cluster, &disk);
        EXPECT_EQ(textOf(instance, "vexaDiskAvailability"), c.shown)
            << c.status << "/" << c.availability;
        EXPECT_EQ(statusOf(instance), c.operational) << c.status << "/" << c.availability;
    }

    CIMInstance instance = provider.createDiskInstance(&cluster, &disk);
    EXPECT_EQ(textOf(instance, "vexaFreeDisk"), "TRUE");
    EXPECT_EQ(pathOf(instance),
              "root/cimv2:KOR_VEXA_NSD.CreationClassName=\"KOR_VEXA_NSD\","
              "DeviceID=\"d1\",SystemCreationClassName=\"KOR_VEXA_ManagementSystem\","
              "SystemName=\"c1\"");
}

} // namespace
