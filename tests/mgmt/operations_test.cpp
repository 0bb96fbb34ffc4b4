// Less travelled operations: junction owners and ACLs, node configuration
// checks, lifecycle of the handler, fileset editing details.

#include "SimTestSupport.h"

namespace {

FileOrDirOwner junction(const char* path, const char* owner = "", const char* group = "") {
    FileOrDirOwner who;
    std::snprintf(who.path, sizeof who.path, "%s", path);
    std::snprintf(who.owner, sizeof who.owner, "%s", owner);
    std::snprintf(who.group, sizeof who.group, "%s", group);
    who.isJunction = 1;
    return who;
}

} // namespace

class OperationsTest : public SimTest {
protected:
    int runConfig(const char* arguments) {
        std::size_t before = qzsim::completedTasks().size();
        EXPECT_EQ(0, handler->addExecutionTask("qzchconfig", arguments, nullptr, nullptr));
        EXPECT_TRUE(qzsim::waitForTasks(before + 1, 5000));
        return qzsim::completedTasks().back().result;
    }
};

TEST_F(OperationsTest, JunctionOwnershipAndAcl) {
    EXPECT_EQ(0, handler->changeOwnerAndOrGroup(junction("/qz/fs1/projects", "bob", "")));
    EXPECT_EQ(0, handler->changeOwnerAndOrGroup(junction("/qz/fs1/scratch", "", "research")));
    EXPECT_EQ(MGMT_E_NO_ENTITY, handler->changeOwnerAndOrGroup(junction("/qz/fs1/scratch", "eve")));
    EXPECT_EQ(MGMT_E_INVALID_ARG, handler->changeOwnerAndOrGroup(junction("/qz/fs1/scratch")));
    EXPECT_EQ(MGMT_E_NOT_JUNCTION,
              handler->changeOwnerAndOrGroup(junction("/qz/fs1/projects/sub", "bob")));
    FileOrDirOwner plain = junction("/qz/fs1/projects", "bob");
    plain.isJunction = 0;
    EXPECT_EQ(MGMT_E_NOT_JUNCTION, handler->changeOwnerAndOrGroup(plain));

    std::string message;
    EXPECT_EQ(0, handler->changeFileOrDirOwnership(junction("/qz/fs1/projects"),
                                                   junction("/qz/fs1/scratch"), &message));
    EXPECT_NE(std::string::npos, message.find("bob:staff")) << message;
    message.clear();
    EXPECT_EQ(MGMT_E_NOT_JUNCTION,
              handler->changeFileOrDirACL(junction("/qz/fs1/projects"), junction("/qz/fs1/archive"),
                                          0, &message));
    EXPECT_NE(std::string::npos, message.find("/qz/fs1/archive is not the junction")) << message;
    EXPECT_EQ(MGMT_E_INVALID_ARG,
              handler->changeFileOrDirACL(junction("/qz/fs1/projects"), junction("/qz/fs1/scratch"),
                                          7, &message));
    EXPECT_EQ(0, handler->changeFileOrDirACL(junction("/qz/fs1/projects"),
                                             junction("/qz/fs1/scratch"), 0, &message));
}

TEST_F(OperationsTest, NodeConfigurationIsCheckedBeforeAnythingChanges) {
    EXPECT_EQ(MGMT_E_BAD_VALUE, runConfig("pagepool=lots"));
    EXPECT_EQ(MGMT_E_BAD_VALUE, runConfig("maxStatCache=99999999999"));
    EXPECT_EQ(MGMT_E_BAD_VALUE, runConfig("unmountOnDiskFail=maybe"));
    EXPECT_EQ(MGMT_E_BAD_VALUE, runConfig("failureDetectionTime=5"));
    EXPECT_EQ(MGMT_E_NO_NODE, runConfig("maxMbps=100 -N node1,node9"));
    EXPECT_EQ(MGMT_E_INVALID_ARG, runConfig("-N node1"));
    EXPECT_EQ(MGMT_E_INVALID_ARG, runConfig("pagepool"));
    // One bad setting spoils the whole command.
    EXPECT_EQ(MGMT_E_UNKNOWN_ATTRIBUTE, runConfig("maxMbps=100 bogus=1"));
    ClusterInfo cluster;
    refresh(cluster);
    EXPECT_EQ(4096u, nodeNamed(cluster, "node1")->maxMbps);

    EXPECT_EQ(0, runConfig("MAXMBPS=100,unmountOnDiskFail=meta -N node3 -i"));
    EXPECT_EQ(0, runConfig("failureDetectionTime=60 dmapiSessionFailureTimeout=15"));
    refresh(cluster);
    EXPECT_EQ(100u, nodeNamed(cluster, "node3")->maxMbps);
    EXPECT_STREQ("meta", nodeNamed(cluster, "node3")->unmountOnDiskFail);
    EXPECT_EQ(4096u, nodeNamed(cluster, "node1")->maxMbps);
    EXPECT_EQ(15u, nodeNamed(cluster, "node1")->dmapiSessFailureTimeout);
    EXPECT_EQ(60u, cluster.failureDetectionTime);
}

TEST_F(OperationsTest, FilesetEditingDetails) {
    std::string message;
    // Link without a path: under the mount point, named after the fileset.
    ASSERT_EQ(0, handler->linkFileSet(filesetRecord("fs1", "archive"), &message));
    FileSet record;
    ASSERT_EQ(0, handler->getFileSet("/qz/fs1", "archive", &record));
    EXPECT_STREQ("/qz/fs1/archive", record.path);
    EXPECT_STREQ("Linked", record.status);
    EXPECT_EQ(MGMT_E_FILESET_LINKED,
              handler->linkFileSet(filesetRecord("fs1", "archive"), &message));
    ASSERT_EQ(0, handler->unlinkFileSet("fs1", "/qz/fs1/archive", false, false, &message));
    EXPECT_EQ(
        MGMT_E_INVALID_ARG,
        handler->linkFileSet(filesetRecord("fs1", "archive", "/elsewhere/archive"), &message));

    ASSERT_EQ(
        0, handler->editFileset("fs1", "fileset", "archive", nullptr, "\"cold data\"", &message));
    ASSERT_EQ(0, handler->getFileSet("fs1", "archive", &record));
    EXPECT_STREQ("cold data", record.comment);
    EXPECT_EQ(MGMT_E_INVALID_ARG,
              handler->editFileset("fs1", "fileset", "archive", nullptr, nullptr, &message));
    EXPECT_EQ(MGMT_E_INVALID_ARG,
              handler->editFileset("fs1", "Fileset", "archive", "x", nullptr, &message));
    EXPECT_EQ(MGMT_E_FILESET_EXISTS,
              handler->editFileset("fs1", "fileset", "archive", "scratch", nullptr, &message));
    EXPECT_EQ(MGMT_E_ROOT_FILESET,
              handler->editFileset("fs1", "fileset", "root", "top", nullptr, &message));
    EXPECT_EQ(MGMT_E_ROOT_FILESET,
              handler->deleteFileSet(filesetRecord("fs1", "root"), true, &message));

    // Deleting a fileset takes its quota along; force deletes a linked one.
    ASSERT_EQ(0, handler->deleteFileSet(filesetRecord("fs1", "projects"), true, &message));
    Quota quota;
    EXPECT_EQ(MGMT_E_NO_ENTITY, handler->getQuota(MGMT_QUOTA_FILESET, "fs1", "projects", &quota));

    // A created fileset without a comment has none, whatever the record carried.
    FileSet fresh = filesetRecord("fs2", "landing");
    std::snprintf(fresh.comment, sizeof fresh.comment, "ignored");
    ASSERT_EQ(0, handler->createFileSet(fresh, &message, true));
    ASSERT_EQ(0, handler->getFileSet("fs2", "landing", &record));
    EXPECT_STREQ("", record.comment);
    EXPECT_STREQ("2", record.id);
}

TEST_F(OperationsTest, HandlerLifecycle) {
    PollingHandler* first = thePollingHandler;
    EXPECT_EQ(0, PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1));
    EXPECT_EQ(first, thePollingHandler);

    // Changes survive a restart of the handler; the model stays loaded.
    std::string message;
    ASSERT_EQ(0, handler->createFileSet(filesetRecord("fs1", "kept"), &message, true));
    PollingHandler::term();
    EXPECT_EQ(nullptr, thePollingHandler);
    PollingHandler::term();
    ASSERT_EQ(0, PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1));
    FileSet record;
    EXPECT_EQ(0, thePollingHandler->getFileSet("fs1", "kept", &record));

    // Without a model nothing answers.
    qzsim::reset();
    EXPECT_EQ(MGMT_E_NOT_INITIALIZED, qzsim::setDaemonState(MGMT_DAEMON_DOWN));
    EXPECT_EQ(MGMT_DAEMON_UNKNOWN, qzsim::daemonState());
}

TEST_F(OperationsTest, UsersAndGroupsPerFileSystem) {
    std::vector<Group*> groups;
    ASSERT_EQ(0, handler->getGroups("fs2", &groups));
    ASSERT_EQ(3u, groups.size());
    EXPECT_STREQ("fs2", groups[1]->fsName);
    EXPECT_STREQ("demo.qzcluster", groups[1]->clusterName);
    EXPECT_EQ(100u, groups[1]->gid);
    for (Group* group : groups) {
        delete group;
    }
    std::vector<User*> users;
    EXPECT_EQ(MGMT_E_NO_FILESYSTEM, handler->getUsers("nofs", &users));
    EXPECT_TRUE(users.empty());
    ASSERT_EQ(0, handler->getUsers("fs1", &users));
    User* batch = users.back();
    EXPECT_STREQ("batch", batch->name);
    EXPECT_EQ(0, batch->detailsKnown);
    EXPECT_STREQ("", batch->homePath);
    for (User* user : users) {
        delete user;
    }
}
