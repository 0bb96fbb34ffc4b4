// The built-in demo cluster covers every feature the provider shows, and it
// is the example file itself.

#include "SimTestSupport.h"

#include <fstream>
#include <set>
#include <sstream>

TEST(DemoCluster, EmbeddedTextIsTheExampleFile) {
    std::ifstream in(QZSIM_DEMO_MODEL_FILE);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), qzsim::demoModelJson());
}

class DemoClusterTest : public SimTest {};

TEST_F(DemoClusterTest, ClusterAndNodes) {
    ClusterInfo cluster;
    refresh(cluster);
    EXPECT_STREQ("demo.qzcluster", cluster.clusterName);
    ASSERT_NE(nullptr, nodeNamed(cluster, cluster.primaryServer));
    ASSERT_GE(cluster.nodeList.size(), 3u);

    bool down = false, local = false, remote = false;
    for (NodeInfo* node : cluster.nodeList) {
        down |= std::strcmp(node->status, "down") == 0;
        for (DiskAccessInfo* access : node->diskAccessList) {
            local |= access->localAccess != 0 && access->localDeviceName[0] != '\0';
            remote |= access->localAccess == 0 && nodeNamed(cluster, access->serverName);
        }
    }
    EXPECT_TRUE(down);
    EXPECT_TRUE(local);
    EXPECT_TRUE(remote);
    EXPECT_EQ(4ULL << 30, nodeNamed(cluster, "node1")->pagePool);
}

TEST_F(DemoClusterTest, FileSystemsPoolsAndDisks) {
    ClusterInfo cluster;
    refresh(cluster);
    ASSERT_GE(cluster.fsList.size(), 2u);
    int knownMounts = 0, unknownMounts = 0;
    bool fullPool = false;
    std::set<std::string> statuses, availabilities;
    for (FilesystemInfo* fs : cluster.fsList) {
        (fs->mountPointKnown ? knownMounts : unknownMounts)++;
        if (!fs->mountPointKnown) {
            EXPECT_STREQ("", fs->mountPoint);
        }
        EXPECT_NE(nullptr, nodeNamed(cluster, fs->managerNode)) << fs->name;
        for (StoragePoolInfo* pool : fs->poolList) {
            double used = 1.0 - static_cast<double>(pool->freeSpace) / pool->totalSpace;
            fullPool |= used >= 0.90;
            for (DiskInfo* disk : pool->diskList) {
                statuses.insert(disk->status);
                availabilities.insert(disk->availability);
                EXPECT_STREQ(pool->name, disk->poolName);
                EXPECT_EQ(0, disk->freeDisk);
            }
        }
    }
    EXPECT_GE(knownMounts, 1);
    EXPECT_GE(unknownMounts, 1);
    EXPECT_TRUE(fullPool);
    for (const char* s : {"ready", "suspended", "being emptied", "replacing", "unknown"}) {
        EXPECT_EQ(1u, statuses.count(s)) << s;
    }
    for (const char* a : {"OK", "Unavailable", "unknown", "Recovering"}) {
        EXPECT_EQ(1u, availabilities.count(a)) << a;
    }

    ASSERT_FALSE(cluster.freeDiskList.empty());
    for (DiskInfo* disk : cluster.freeDiskList) {
        EXPECT_NE(0, disk->freeDisk);
        EXPECT_STRNE("", disk->poolName);
        ASSERT_FALSE(disk->serverList.empty());
        EXPECT_NE(nullptr, nodeNamed(cluster, disk->serverList[0]->name));
    }
}

TEST_F(DemoClusterTest, FilesetsPoliciesQuotasUsersAndGroups) {
    ClusterInfo cluster;
    refresh(cluster);
    FilesystemInfo* fs1 = cluster.fsList[0];

    std::vector<FileSet*> sets;
    ASSERT_EQ(0, handler->getFileSets(fs1->name, &sets));
    int linked = 0, unlinked = 0, commented = 0;
    for (FileSet* set : sets) {
        (set->linked ? linked : unlinked)++;
        commented += set->comment[0] != '\0' && std::strcmp(set->comment, "\"\"") != 0;
        delete set;
    }
    EXPECT_GE(linked, 1);
    EXPECT_GE(unlinked, 1);
    EXPECT_GE(commented, 1);

    ASSERT_FALSE(fs1->policyList.empty());
    EXPECT_GE(fs1->policyList[0]->ruleList.size(), 2u);
    EXPECT_EQ(fs1->policyList.size(), cluster.policyList.size());

    Quota quota;
    EXPECT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, fs1->name, "alice", &quota));
    EXPECT_EQ(1001u, quota.id);
    EXPECT_GT(quota.blockLimit, 0u);
    EXPECT_EQ(0, handler->getQuota(MGMT_QUOTA_GROUP, fs1->name, "staff", &quota));
    EXPECT_EQ(100u, quota.id);
    EXPECT_EQ(0, handler->getQuota(MGMT_QUOTA_FILESET, fs1->name, "projects", &quota));
    EXPECT_EQ("projects", quota.entityName);

    std::vector<User*> users;
    ASSERT_EQ(0, handler->getUsers(fs1->name, &users));
    bool withDetails = false, withoutDetails = false;
    for (User* user : users) {
        (user->detailsKnown ? withDetails : withoutDetails) = true;
        delete user;
    }
    EXPECT_TRUE(withDetails);
    EXPECT_TRUE(withoutDetails);
}

TEST_F(DemoClusterTest, PerformanceCountersAdvanceBetweenSamples) {
    ClusterInfo cluster;
    refresh(cluster, 1);
    FilesystemInfo* fs = cluster.fsList[0];
    ASSERT_GE(fs->nodePerfList.size(), 2u);
    EXPECT_EQ(fs->nodePerfList.size(), fs->nodePerfCount);
    unsigned long long sum = 0;
    for (FilesystemPerf* perf : fs->nodePerfList) {
        EXPECT_STRNE("", perf->nodeIpAddr);
        sum += perf->counters.bytesRead;
    }
    EXPECT_EQ(sum, fs->counters.bytesRead);
    const unsigned long long bytesBefore = fs->counters.bytesRead;
    const unsigned int readsBefore = fs->counters.reads;
    const unsigned long long sec = cluster.perfSampleSec, usec = cluster.perfSampleUsec;

    ASSERT_EQ(0, handler->updateFilesystemInfo(&cluster, 1));
    fs = cluster.fsList[0];
    EXPECT_GT(fs->counters.bytesRead, bytesBefore);
    EXPECT_GT(fs->counters.reads, readsBefore);
    EXPECT_TRUE(cluster.perfSampleSec > sec ||
                (cluster.perfSampleSec == sec && cluster.perfSampleUsec > usec));

    // Without a sample the counters stand still.
    const unsigned long long sampled = fs->counters.bytesRead;
    ASSERT_EQ(0, handler->updateFilesystemInfo(&cluster, 0));
    EXPECT_EQ(sampled, cluster.fsList[0]->counters.bytesRead);

    char* fsName = cluster.fsList[0]->name;
    ASSERT_EQ(0, handler->updateDiskInfo(&cluster, fsName, const_cast<char*>("system"), 1));
    DiskInfo* disk = cluster.fsList[0]->poolList[0]->diskList[0];
    const unsigned int ops = disk->readOps;
    const double longest = disk->longestReadTime;
    ASSERT_EQ(0, handler->updateDiskInfo(&cluster, fsName, const_cast<char*>("system"), 1));
    disk = cluster.fsList[0]->poolList[0]->diskList[0];
    EXPECT_GT(disk->readOps, ops);
    EXPECT_GE(disk->longestReadTime, longest);
    EXPECT_LE(disk->shortestReadTime, disk->longestReadTime);
}
