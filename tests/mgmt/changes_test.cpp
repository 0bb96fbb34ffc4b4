// Changes made through the library are visible to later queries and
// snapshots; rejected changes say why and change nothing.

#include "SimTestSupport.h"

#include <atomic>
#include <functional>

namespace {

int countFilesets(PollingHandler* handler, const char* fs, const char* name, FileSet* found) {
    std::vector<FileSet*> sets;
    handler->getFileSets(fs, &sets);
    int count = 0;
    for (FileSet* set : sets) {
        if (std::strcmp(set->name, name) == 0) {
            ++count;
            *found = *set;
        }
        delete set;
    }
    return count;
}

std::atomic<int> completions{0};
int countCompletion(void* context) {
    ++*static_cast<std::atomic<int>*>(context);
    return 0;
}

} // namespace

class ChangesTest : public SimTest {};

TEST_F(ChangesTest, FilesetLifecycle) {
    std::string message;
    FileSet record = filesetRecord("fs1", "nightly");
    std::snprintf(record.comment, sizeof record.comment, "\"nightly builds\"");
    ASSERT_EQ(0, handler->createFileSet(record, &message, false)) << message;
    EXPECT_NE(std::string::npos, message.find("nightly")) << message;

    FileSet found;
    ASSERT_EQ(1, countFilesets(handler, "fs1", "nightly", &found));
    EXPECT_STREQ("nightly builds", found.comment);
    EXPECT_STREQ("Unlinked", found.status);
    EXPECT_STREQ("4", found.id);                // after root, 1, 2 and 3
    EXPECT_EQ(25u, std::strlen(found.created)); // CIM datetime

    message.clear();
    ASSERT_EQ(0,
              handler->linkFileSet(filesetRecord("fs1", "nightly", "/qz/fs1/nightly"), &message));
    ASSERT_EQ(0, handler->getFileSet("fs1", "nightly", &found));
    EXPECT_EQ(1, found.linked);
    EXPECT_STREQ("/qz/fs1/nightly", found.path);

    // Rename through the junction; quotas follow the fileset.
    ASSERT_EQ(0, handler->editQuota("fs1", "fileset", "nightly", nullptr, nullptr, nullptr, nullptr,
                                    nullptr, &message));
    ASSERT_EQ(
        0, handler->editFileset("fs1", "junction", "/qz/fs1/nightly", "builds", nullptr, &message));
    EXPECT_EQ(MGMT_E_NO_FILESET, handler->getFileSet("fs1", "nightly", &found));
    ASSERT_EQ(0, handler->getFileSet("fs1", "builds", &found));
    EXPECT_STREQ("4", found.id);
    Quota quota;
    EXPECT_EQ(0, handler->getQuota(MGMT_QUOTA_FILESET, "fs1", "builds", &quota));
    EXPECT_EQ(4u, quota.id);

    EXPECT_EQ(MGMT_E_FILESET_LINKED,
              handler->deleteFileSet(filesetRecord("fs1", "builds"), false, &message));
    ASSERT_EQ(0, handler->unlinkFileSet("fs1", "builds", true, false, &message));
    EXPECT_EQ(MGMT_E_FILESET_UNLINKED,
              handler->unlinkFileSet("fs1", "builds", true, false, &message));
    ASSERT_EQ(0, handler->deleteFileSet(filesetRecord("fs1", "builds"), false, &message));
    EXPECT_EQ(0, countFilesets(handler, "fs1", "builds", &found));
}

TEST_F(ChangesTest, RejectedFilesetChangesGiveDistinctCodesAndMessages) {
    struct Case {
        int expected;
        std::function<int(std::string*)> call;
        const char* text;
    };
    std::string tooLong(300, 'x');
    std::vector<Case> cases = {
        {MGMT_E_NO_FILESYSTEM,
         [&](std::string* m) {
             return handler->createFileSet(filesetRecord("nofs", "a"), m, true);
         },
         "File system nofs not found."},
        {MGMT_E_FILESET_EXISTS,
         [&](std::string* m) {
             return handler->createFileSet(filesetRecord("fs1", "projects"), m, true);
         },
         "already exists"},
        {MGMT_E_INVALID_ARG,
         [&](std::string* m) {
             return handler->createFileSet(filesetRecord("fs1", "a b"), m, true);
         },
         "contains the character ' '"},
        {MGMT_E_NAME_TOO_LONG,
         [&](std::string* m) {
             return handler->editFileset("fs1", "fileset", "archive", tooLong.c_str(), nullptr, m);
         },
         "longer than 255"},
        {MGMT_E_NO_FILESET,
         [&](std::string* m) { return handler->linkFileSet(filesetRecord("fs1", "nope"), m); },
         "Fileset nope not found"},
        {MGMT_E_NOT_MOUNTED,
         [&](std::string* m) { return handler->linkFileSet(filesetRecord("fs2", "incoming"), m); },
         "mount point of file system fs2 is not known"},
        {MGMT_E_JUNCTION_IN_USE,
         [&](std::string* m) {
             return handler->linkFileSet(filesetRecord("fs1", "archive", "/qz/fs1/projects"), m);
         },
         "already linked at /qz/fs1/projects"},
        {MGMT_E_ROOT_FILESET,
         [&](std::string* m) { return handler->unlinkFileSet("fs1", "root", true, true, m); },
         "root fileset"},
    };
    for (const Case& c : cases) {
        std::string message;
        EXPECT_EQ(c.expected, c.call(&message)) << c.text;
        EXPECT_NE(std::string::npos, message.find(c.text)) << message;
    }
    FileSet unterminated = filesetRecord("fs1", "");
    std::memset(unterminated.name, 'n', sizeof unterminated.name);
    std::string message;
    EXPECT_EQ(MGMT_E_NAME_TOO_LONG, handler->createFileSet(unterminated, &message, true));
    FileSet ignored;
    EXPECT_EQ(0, countFilesets(handler, "fs1", "a", &ignored));
}

TEST_F(ChangesTest, QuotaEditsByNameOrMountPoint) {
    unsigned long long blockSoft = 2048, blockHard = 4096, fileHard = 900;
    std::string message;
    ASSERT_EQ(0, handler->editQuota("/qz/fs1", "user", "batch", nullptr, &fileHard, &blockSoft,
                                    &blockHard, nullptr, &message))
        << message;
    Quota quota;
    ASSERT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, "fs1", "batch", &quota));
    EXPECT_EQ(2001u, quota.id);
    EXPECT_EQ(2048u, quota.blockQuota);
    EXPECT_EQ(4096u, quota.blockLimit);
    EXPECT_EQ(900u, quota.filesLimit);
    EXPECT_EQ("fs1", quota.fsName);

    // A null limit keeps the old one; a soft limit above the hard one is refused.
    unsigned long long tooHigh = 5000;
    EXPECT_EQ(MGMT_E_BAD_LIMITS, handler->editQuota("fs1", "user", "batch", nullptr, nullptr,
                                                    &tooHigh, nullptr, nullptr, &message));
    ASSERT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, "fs1", "batch", &quota));
    EXPECT_EQ(2048u, quota.blockQuota);

    EXPECT_EQ(MGMT_E_NO_ENTITY, handler->editQuota("fs1", "group", "nogroup", nullptr, nullptr,
                                                   nullptr, nullptr, nullptr, &message));
    EXPECT_EQ(MGMT_E_INVALID_ARG, handler->editQuota("fs1", "planet", "x", nullptr, nullptr,
                                                     nullptr, nullptr, nullptr, &message));
    EXPECT_EQ(MGMT_E_NO_FILESYSTEM, handler->getQuota(MGMT_QUOTA_USER, "nofs", "alice", &quota));
    EXPECT_EQ(MGMT_E_INVALID_ARG, handler->getQuota(4, "fs1", "alice", &quota));
}

TEST_F(ChangesTest, NodeSettingsChangeThroughTheExecutionThread) {
    completions = 0;
    ASSERT_EQ(
        0, handler->addExecutionTask("qzchconfig", "pagepool=8G", countCompletion, &completions));
    ASSERT_EQ(0, handler->addExecutionTask("qzchconfig", "maxFilesToCache=5000 -N node2",
                                           countCompletion, &completions));
    ASSERT_EQ(0, handler->addExecutionTask("qzreboot", "", countCompletion, &completions));
    ASSERT_TRUE(qzsim::waitForTasks(3, 5000));
    ASSERT_EQ(0, qzsim::setDaemonState(MGMT_DAEMON_DOWN));
    ASSERT_EQ(
        0, handler->addExecutionTask("qzchconfig", "pagepool=1G", countCompletion, &completions));
    ASSERT_TRUE(qzsim::waitForTasks(4, 5000));
    EXPECT_EQ(4, completions.load());
    ASSERT_EQ(0, qzsim::setDaemonState(MGMT_DAEMON_ACTIVE));

    std::vector<qzsim::TaskRecord> tasks = qzsim::completedTasks();
    EXPECT_EQ(0, tasks[0].result);
    EXPECT_EQ(0, tasks[1].result);
    EXPECT_EQ(MGMT_E_UNKNOWN_COMMAND, tasks[2].result);
    EXPECT_EQ(MGMT_E_DAEMON_DOWN, tasks[3].result);

    ClusterInfo cluster;
    refresh(cluster);
    for (NodeInfo* node : cluster.nodeList) {
        EXPECT_EQ(8ULL << 30, node->pagePool) << node->name;
    }
    EXPECT_EQ(5000u, nodeNamed(cluster, "node2")->maxFilesToCache);
    EXPECT_EQ(10000u, nodeNamed(cluster, "node1")->maxFilesToCache);
}

TEST_F(ChangesTest, DaemonDownRefusesClusterCalls) {
    ASSERT_EQ(0, qzsim::setDaemonState(MGMT_DAEMON_DOWN));
    EXPECT_EQ(MGMT_DAEMON_DOWN, handler->getDaemonState());
    ClusterInfo cluster;
    EXPECT_EQ(MGMT_E_DAEMON_DOWN, handler->updateNodeInfo(&cluster, 0));
    std::string message;
    EXPECT_EQ(MGMT_E_DAEMON_DOWN,
              handler->createFileSet(filesetRecord("fs1", "x"), &message, true));
    EXPECT_EQ("The file system daemon is not running.\n", message);
    ASSERT_EQ(0, qzsim::setDaemonState(MGMT_DAEMON_ACTIVE));
    EXPECT_EQ(0, handler->updateNodeInfo(&cluster, 0));
}

TEST_F(ChangesTest, SnapshotListsAreReplacedNotAppended) {
    ClusterInfo cluster;
    refresh(cluster);
    const std::size_t nodes = cluster.nodeList.size();
    const std::size_t pools = cluster.fsList[0]->poolList.size();
    refresh(cluster);
    ASSERT_EQ(0, handler->updateStoragePoolInfo(&cluster, "fs1"));
    ASSERT_EQ(0, handler->updateStoragePoolInfo(&cluster, "fs1"));
    EXPECT_EQ(nodes, cluster.nodeList.size());
    EXPECT_EQ(pools, cluster.fsList[0]->poolList.size());
    EXPECT_EQ(MGMT_E_NO_POOL, handler->updateDiskInfo(&cluster, "fs1", "nopool", 0));
    EXPECT_EQ(MGMT_E_NO_FILESYSTEM, handler->updateStoragePoolInfo(&cluster, "nofs"));
}
