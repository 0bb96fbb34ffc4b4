// Generated cluster models load, list what their options asked for, and
// come out the same for the same seed.

#include <qzantras/ClusterInfo.h>
#include <qzantras/PollingHandler.h>
#include <qzsim/SimControl.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "ModelGenerator.h"

namespace {

class GeneratedModel : public ::testing::Test {
protected:
    void TearDown() override { qzsim::reset(); }

    // Loads the model and lists it the way the provider's full pass does.
    void load(const GeneratorOptions& options) {
        qzsim::reset();
        std::string error;
        ASSERT_EQ(0, qzsim::loadModelFromString(generateModel(options), &error)) << error;
        ASSERT_EQ(0, PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1));
        MErrno err = 0;
        cluster.reset(new ClusterInfo(&err));
        ASSERT_EQ(0, thePollingHandler->updateNodeInfo(cluster.get(), 0));
        ASSERT_EQ(0, thePollingHandler->updateFilesystemInfo(cluster.get(), 0));
    }

    void expectListedCounts(const GeneratorOptions& options) {
        const GeneratedCounts want = countsOf(options);
        GeneratedCounts got{};
        got.nodes = cluster->nodeList.size();
        for (const NodeInfo* node : cluster->nodeList) {
            got.accessRecords += node->diskAccessList.size();
        }
        got.filesystems = cluster->fsList.size();
        for (const FilesystemInfo* fs : cluster->fsList) {
            got.pools += fs->poolList.size();
            for (const StoragePoolInfo* pool : fs->poolList) {
                got.disks += pool->diskList.size();
            }
            std::vector<FileSet*> filesets;
            ASSERT_EQ(0, thePollingHandler->getFileSets(fs->name, &filesets));
            got.filesets += filesets.size();
            for (FileSet* set : filesets) {
                delete set;
            }
        }
        got.freeDisks = cluster->freeDiskList.size();
        EXPECT_EQ(want.nodes, got.nodes);
        EXPECT_EQ(want.accessRecords, got.accessRecords);
        EXPECT_EQ(want.filesystems, got.filesystems);
        EXPECT_EQ(want.pools, got.pools);
        EXPECT_EQ(want.disks, got.disks);
        EXPECT_EQ(want.freeDisks, got.freeDisks);
        EXPECT_EQ(want.filesets, got.filesets);
    }

    std::unique_ptr<ClusterInfo> cluster;
};

} // namespace

TEST_F(GeneratedModel, SmallPresetAndEveryCountOptionListAsAsked) {
    GeneratorOptions small;
    ASSERT_TRUE(applySizePreset("small", &small));
    load(small);
    expectListedCounts(small);

    GeneratorOptions odd;
    odd.nodes = 9;
    odd.filesystems = 3;
    odd.poolsPerFilesystem = 2;
    odd.disksPerPool = 3;
    odd.freeDisks = 1;
    odd.serversPerDisk = 3;
    odd.accessAll = false;
    odd.accessPerNode = 19; // every disk, wrapping round from a random first one
    odd.filesetsPerFilesystem = 5;
    odd.users = 4;
    odd.groups = 2;
    odd.quotasPerFilesystem = 11;
    load(odd);
    expectListedCounts(odd);
    Quota quota;
    // Quota entries go to users, groups and filesets in turn, the ones left over
    // to the filesets.
    ASSERT_EQ(0, thePollingHandler->getQuota(MGMT_QUOTA_FILESET, "fs3", "fset5", &quota));
    EXPECT_NE(0u, quota.blockLimit);
}

TEST_F(GeneratedModel, DuplicatesDifferInCaseOrRepeatExactly) {
    GeneratorOptions options;
    options.duplicateNames = 2;
    load(options);
    expectListedCounts(options);
    const std::vector<NodeInfo*>& nodes = cluster->nodeList;
    EXPECT_STREQ("NODE1", nodes[nodes.size() - 2]->name);
    EXPECT_STREQ(nodes[0]->ipAddr, nodes[nodes.size() - 2]->ipAddr);
    const std::vector<DiskInfo*>& lastDisks = cluster->fsList.back()->poolList.back()->diskList;
    EXPECT_STREQ("NSD2", lastDisks.back()->name);
    FileSet variant;
    EXPECT_EQ(0, thePollingHandler->getFileSet("fs1", "FSET1", &variant));
    std::vector<User*> users;
    ASSERT_EQ(0, thePollingHandler->getUsers("fs1", &users));
    EXPECT_STREQ(users[0]->name, users[users.size() - 2]->name);
    for (User* user : users) {
        delete user;
    }
}

TEST_F(GeneratedModel, SameSeedSameTextAndImpossibleOptionsAreRefused) {
    GeneratorOptions a, b;
    b.seed = 2;
    EXPECT_EQ(generateModel(a), generateModel(a));
    EXPECT_NE(generateModel(a), generateModel(b));

    GeneratorOptions tooManyQuotas;
    tooManyQuotas.quotasPerFilesystem = 16 + 4 + 256 + 1;
    EXPECT_NE("", checkGeneratorOptions(tooManyQuotas));
    GeneratorOptions tooMuchAccess;
    tooMuchAccess.accessAll = false;
    tooMuchAccess.accessPerNode = 2 * 4 * 16 + 4 + 1;
    EXPECT_NE("", checkGeneratorOptions(tooMuchAccess));
    GeneratorOptions tooManyServers;
    tooManyServers.serversPerDisk = 65;
    EXPECT_NE("", checkGeneratorOptions(tooManyServers));
}
