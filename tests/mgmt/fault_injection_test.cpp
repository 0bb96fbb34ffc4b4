// Injected failures, from the control API and from the model file.

#include "SimTestSupport.h"

class FaultInjectionTest : public SimTest {};

TEST_F(FaultInjectionTest, OnceNTimesAndAlways) {
    ClusterInfo cluster;
    qzsim::failOperation("updateNodeInfo", 42, 1);
    EXPECT_EQ(42, handler->updateNodeInfo(&cluster, 0));
    EXPECT_EQ(0, handler->updateNodeInfo(&cluster, 0));

    qzsim::failOperation("updateFilesystemInfo", 7, 2);
    EXPECT_EQ(7, handler->updateFilesystemInfo(&cluster, 0));
    EXPECT_EQ(7, handler->updateFilesystemInfo(&cluster, 0));
    EXPECT_EQ(0, handler->updateFilesystemInfo(&cluster, 0));

    qzsim::failOperation("getQuota", 99);
    Quota quota;
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(99, handler->getQuota(MGMT_QUOTA_USER, "fs1", "alice", &quota));
    }
    EXPECT_EQ(5, qzsim::injectedFailures("getQuota"));
    qzsim::clearFaults();
    EXPECT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, "fs1", "alice", &quota));
}

TEST_F(FaultInjectionTest, FailedCallsChangeNothingAndExplainThemselves) {
    ClusterInfo cluster;
    refresh(cluster);
    const std::size_t nodes = cluster.nodeList.size();
    qzsim::failOperation("updateNodeInfo", 5, 1);
    EXPECT_EQ(5, handler->updateNodeInfo(&cluster, 0));
    EXPECT_EQ(nodes, cluster.nodeList.size());

    qzsim::failOperation("createFileSet", 31, 1);
    std::string message;
    EXPECT_EQ(31, handler->createFileSet(filesetRecord("fs1", "x"), &message, true));
    EXPECT_EQ("createFileSet failed (injected error 31).\n", message);
    FileSet record;
    EXPECT_EQ(MGMT_E_NO_FILESET, handler->getFileSet("fs1", "x", &record));
}

TEST_F(FaultInjectionTest, StartupAndTaskFailures) {
    qzsim::failOperation("ClusterInfo", 12, 1);
    MErrno err = 0;
    ClusterInfo broken(&err);
    EXPECT_EQ(12, err);
    ClusterInfo fine(&err);
    EXPECT_EQ(0, err);

    PollingHandler::term();
    qzsim::failOperation("init", 3, 1);
    EXPECT_EQ(3, PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1));
    EXPECT_EQ(nullptr, thePollingHandler);
    ASSERT_EQ(0, PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1));

    qzsim::failOperation("addExecutionTask", 17, 1);
    EXPECT_EQ(17,
              thePollingHandler->addExecutionTask("qzchconfig", "pagepool=1G", nullptr, nullptr));
    qzsim::failOperation("qzchconfig", 23, 1);
    ASSERT_EQ(0,
              thePollingHandler->addExecutionTask("qzchconfig", "pagepool=1G", nullptr, nullptr));
    ASSERT_TRUE(qzsim::waitForTasks(1, 5000));
    EXPECT_EQ(23, qzsim::completedTasks()[0].result);
}

TEST(FaultsFromModelFile, AreInstalledWithTheModel) {
    qzsim::reset();
    ASSERT_EQ(0, qzsim::loadModelFromString(R"({"cluster": {"clusterName": "c"},
        "filesystems": [{"name": "f"}],
        "faults": {"getFileSets": {"code": 8, "times": 1},
                   "updateClusterInfo": 9,
                   "getFileSet": {"code": 10, "times": "always"}}})"));
    ASSERT_EQ(0, PollingHandler::init(MGMT_PROTOCOL_LOCAL, 0, 1));
    std::vector<FileSet*> sets;
    EXPECT_EQ(8, thePollingHandler->getFileSets("f", &sets));
    EXPECT_EQ(0, thePollingHandler->getFileSets("f", &sets));
    ASSERT_EQ(1u, sets.size()); // the root fileset
    delete sets[0];
    ClusterInfo cluster;
    EXPECT_EQ(9, thePollingHandler->updateClusterInfo(&cluster, 0));
    EXPECT_EQ(9, thePollingHandler->updateClusterInfo(&cluster, 0));
    FileSet record;
    EXPECT_EQ(10, thePollingHandler->getFileSet("f", "root", &record));

    std::string error;
    EXPECT_NE(0,
              qzsim::loadModelFromString(
                  R"({"cluster": {"clusterName": "c"}, "faults": {"x": {"times": 1}}})", &error));
    EXPECT_EQ("<string>: /faults/x: missing member \"code\"", error);
    qzsim::reset();
}
