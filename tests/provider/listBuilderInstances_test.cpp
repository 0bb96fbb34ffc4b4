// The list builders against a small simulated cluster: what they publish,
// which paths their associations join, and what a failing library call
// leaves behind.
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <qzantras/PollingHandler.h>
#include <qzsim/SimControl.h>

#include <string>
#include <vector>

#include "cimProvider.h"
#include "instanceInspection.h"
#include "providerTestSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

// Two file systems so that a wrong file-system position shows. fs1 has a
// pool without disks (zero capacity) after one with two disks, and a
// fileset without a comment; one disk is free and meant for pool "data".
const char* const TWO_FILESYSTEMS = R"({
  "cluster": { "clusterName": "lab", "primaryServer": "a" },
  "nodes": [ { "name": "a", "ipAddr": "10.0.0.1" }, { "name": "b", "ipAddr": "10.0.0.2" } ],
  "filesystems": [
    { "name": "fs0", "mountPoint": "/fs0",
      "pools": [ { "name": "system", "disks": [ { "name": "d1", "totalSpace": 1000 } ] } ] },
    { "name": "fs1", "mountPoint": "/fs1",
      "pools": [ { "name": "system", "disks": [
                   { "name": "d2", "totalSpace": 1000, "fullBlockFreeSpace": 50, "servers": ["a"] },
                   { "name": "d3", "totalSpace": 1000, "availability": "Recovering" } ] },
                 { "name": "data", "disks": [] } ],
      "filesets": [ { "name": "home", "path": "/fs1/home", "comment": "\"\"" } ] }
  ],
  "freeDisks": [ { "name": "spare", "poolName": "data", "totalSpace": 500 } ]
})";

class ListBuilderInstancesTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        std::string error;
        ASSERT_EQ(qzsim::loadModelFromString(TWO_FILESYSTEMS, &error), 0) << error;
        provider->initialize(cimom);
        ASSERT_NE(provider->clusterInfo, nullptr);
        // Start from the library's file systems alone, whatever the first
        // cache pass published.
        provider->getWriteLock();
        locked = true;
        ASSERT_EQ(provider->pollingHandler->updateFilesystemInfo(provider->clusterInfo, 0), 0);
        provider->fileSystems.clear();
        for (FilesystemInfo* fs : provider->clusterInfo->fsList) {
            provider->fileSystems.append(provider->createFileSystemInstance(fs, cluster()));
        }
        Array<CIMInstance>* lists[] = {&provider->storagePools,
                                       &provider->fsStoragePools,
                                       &provider->associatedStoragePools,
                                       &provider->disks,
                                       &provider->poolDisks,
                                       &provider->storageComponents,
                                       &provider->filesets,
                                       &provider->associatedFilesets,
                                       &provider->fsFilesets};
        for (Array<CIMInstance>* list : lists) {
            list->clear();
        }
        qzsim::clearCapturedLog();
    }

    void TearDown() override {
        if (locked) {
            provider->releaseLock();
        }
        stopEventThread();
        provider->cleanupVexaHandler();
        provider->terminate();
        ProviderTest::TearDown();
    }

    ClusterInfo* cluster() { return provider->clusterInfo; }
    FilesystemInfo* fs(size_t index) { return provider->clusterInfo->fsList.at(index); }

    static std::string reference(const CIMInstance& association, const char* role) {
        CIMObjectPath path;
        valueOf(association, role).get(path);
        return text(path.toString());
    }
    static std::vector<std::string> values(const Array<CIMInstance>& list, const char* property) {
        std::vector<std::string> result;
        for (Uint32 i = 0; i < list.size(); i++) {
            result.push_back(textOf(list[i], property));
        }
        return result;
    }

    VexaProvider* provider = new VexaProvider();
    CIMOMHandle cimom;
    bool locked = false;
};

TEST_F(ListBuilderInstancesTest, PoolsAndDisksOfEachFileSystemWithTheirContainment) {
    ASSERT_EQ(provider->buildStgPoolInstanceList(fs(0), 0), 0);
    ASSERT_EQ(provider->buildStgPoolInstanceList(fs(1), 1), 0);

    EXPECT_EQ(values(provider->storagePools, "InstanceID"),
              (std::vector<std::string>{"lab+fs0+system", "lab+fs1+system", "lab+fs1+data"}));
    // The scratch list holds the pools of the file system walked last.
    EXPECT_EQ(values(provider->fsStoragePools, "InstanceID"),
              (std::vector<std::string>{"lab+fs1+system", "lab+fs1+data"}));
    // The disk-less pool has no capacity and is still published, as OK.
    EXPECT_EQ(statusOf(provider->storagePools[2]), 2);
    EXPECT_NE(findLine(logLines(), "L0 VexaProvider::createStgPoolInstance: utilPer = 0"), -1);

    ASSERT_EQ(provider->associatedStoragePools.size(), 3u);
    for (Uint32 i = 0; i < 3; i++) {
        EXPECT_EQ(reference(provider->associatedStoragePools[i], "Antecedent"),
                  pathOf(provider->fileSystems[i == 0 ? 0 : 1]));
        EXPECT_EQ(reference(provider->associatedStoragePools[i], "Dependent"),
                  pathOf(provider->storagePools[i]));
    }

    EXPECT_EQ(values(provider->disks, "DeviceID"), (std::vector<std::string>{"d1", "d2", "d3"}));
    EXPECT_EQ(statusOf(provider->disks[2]), 3);
    ASSERT_EQ(provider->storageComponents.size(), 3u);
    for (Uint32 i = 0; i < 3; i++) {
        EXPECT_EQ(reference(provider->storageComponents[i], "GroupComponent"),
                  pathOf(provider->storagePools[i == 0 ? 0 : 1]));
        EXPECT_EQ(reference(provider->storageComponents[i], "PartComponent"),
                  pathOf(provider->disks[i]));
    }
    // The disk scratch list belongs to the last pool walked, which has none.
    EXPECT_EQ(provider->poolDisks.size(), 0u);
}

TEST_F(ListBuilderInstancesTest, FailingRefreshReturnsOneAndLeavesTheListsAlone) {
    ASSERT_EQ(provider->buildStgPoolInstanceList(fs(0), 0), 0);
    ASSERT_EQ(provider->storagePools.size(), 1u);
    ASSERT_EQ(provider->disks.size(), 1u);

    qzsim::failOperation("updateStoragePoolInfo", 7, 1);
    EXPECT_EQ(provider->buildStgPoolInstanceList(fs(1), 1), 1);
    EXPECT_EQ(values(provider->storagePools, "InstanceID"),
              (std::vector<std::string>{"lab+fs0+system"}));
    EXPECT_EQ(provider->fsStoragePools.size(), 1u);
    EXPECT_EQ(provider->associatedStoragePools.size(), 1u);

    qzsim::failOperation("updateDiskInfo", 8, 1);
    EXPECT_EQ(provider->buildDiskInstanceList(fs(0), fs(0)->poolList.at(0), 0), 1);
    EXPECT_EQ(provider->disks.size(), 1u);
    EXPECT_EQ(provider->poolDisks.size(), 1u);

    // A pool whose disks cannot be read is published without them.
    qzsim::failOperation("updateDiskInfo", 8, 1);
    EXPECT_EQ(provider->buildStgPoolInstanceList(fs(1), 1), 0);
    EXPECT_EQ(provider->storagePools.size(), 3u);
    EXPECT_EQ(values(provider->fsStoragePools, "InstanceID"),
              (std::vector<std::string>{"lab+fs1+system", "lab+fs1+data"}));
    EXPECT_EQ(provider->disks.size(), 1u);
}

TEST_F(ListBuilderInstancesTest, FilesetsOfEveryFileSystemJoinTheirOwnFileSystem) {
    ASSERT_EQ(provider->buildFileSetInstanceList(), 0);
    // The library adds a root fileset to every file system.
    EXPECT_EQ(values(provider->filesets, "FSName"),
              (std::vector<std::string>{"fs0", "fs1", "fs1"}));
    EXPECT_EQ(values(provider->filesets, "Name"),
              (std::vector<std::string>{"root", "root", "home"}));
    ASSERT_EQ(provider->associatedFilesets.size(), 3u);
    for (Uint32 i = 0; i < 3; i++) {
        Uint32 owner = i == 0 ? 0 : 1;
        EXPECT_EQ(reference(provider->associatedFilesets[i], "Antecedent"),
                  pathOf(provider->fileSystems[owner]));
        EXPECT_EQ(reference(provider->associatedFilesets[i], "Dependent"),
                  pathOf(provider->filesets[i]));
    }
    EXPECT_TRUE(valueOf(provider->filesets[2], "vexaFilesetComment").isNull());

    qzsim::failOperation("getFileSets", 7, 1);
    EXPECT_EQ(provider->buildFileSetInstances(fs(1), 1), 1);
    EXPECT_EQ(provider->filesets.size(), 3u);
    EXPECT_EQ(provider->fsFilesets.size(), 2u);
}

TEST_F(ListBuilderInstancesTest, PoolNamesOfAssignedAndFreeDisks) {
    char fsName[] = "fs1", otherFs[] = "fs0", d3[] = "d3", spare[] = "spare", none[] = "none";
    char* pool = provider->getStgPoolName(fsName, d3);
    ASSERT_NE(pool, nullptr);
    EXPECT_STREQ(pool, "system");
    // d3 is not in fs0; only the free-disk list is searched next.
    EXPECT_EQ(provider->getStgPoolName(otherFs, d3), nullptr);
    pool = provider->getStgPoolName(otherFs, spare);
    ASSERT_NE(pool, nullptr);
    EXPECT_STREQ(pool, "data");
    EXPECT_EQ(provider->getStgPoolName(fsName, none), nullptr);
    std::vector<std::string> lines = logLines();
    EXPECT_NE(findLine(lines, "L0 VexaProvider::getStgPoolName: "
                              "Storage pool name from assigned disk search = system"),
              -1);
    EXPECT_NE(findLine(lines, "L0 VexaProvider::getStgPoolName: "
                              "Storage pool name from free disk search = data"),
              -1);

    char buffer[2 * MGMT_TEXT_LEN];
    char* generated = buffer;
    char poolName[] = "system";
    EXPECT_EQ(provider->genStgPoolName(&generated, fsName, poolName), buffer);
    EXPECT_STREQ(buffer, "fs1+system");
    EXPECT_EQ(provider->findVexaInstIdx(VexaProvider::VEXA_INST_STORAGE_POOL, buffer), -1);
    ASSERT_EQ(provider->buildStgPoolInstanceList(fs(1), 1), 0);
    EXPECT_EQ(provider->findVexaInstIdx(VexaProvider::VEXA_INST_STORAGE_POOL, buffer), 0);
}

} // namespace
