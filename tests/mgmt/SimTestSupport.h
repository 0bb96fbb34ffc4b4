#ifndef MGMT_SIM_TEST_SUPPORT_H
#define MGMT_SIM_TEST_SUPPORT_H

#include <qzantras/ClusterInfo.h>
#include <qzantras/PollingHandler.h>
#include <qzsim/SimControl.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

// Every test starts from a freshly reset library with the demo cluster
// loaded and the polling handler up.
class SimTest : public ::testing::Test {
protected:
    void SetUp() override {
        qzsim::reset();
        ASSERT_EQ(0, PollingHandler::init(static_cast<MgmtProtocol>(1), 0, 1));
        handler = thePollingHandler;
        ASSERT_NE(nullptr, handler);
    }
    void TearDown() override { qzsim::reset(); }

    // A snapshot refreshed the way the provider's full pass does it.
    void refresh(ClusterInfo& cluster, int withPerf = 0) {
        ASSERT_EQ(0, handler->updateClusterInfo(&cluster, 0));
        ASSERT_EQ(0, handler->getClusterInfo(&cluster));
        ASSERT_EQ(0, handler->updateNodeInfo(&cluster, 0));
        ASSERT_EQ(0, handler->updateFilesystemInfo(&cluster, withPerf));
        ASSERT_EQ(0, handler->updateMountedNodeInfo(&cluster));
        ASSERT_EQ(0, handler->updateFilesystemMountPointInfo(&cluster));
    }

    static FilesystemInfo* fsNamed(ClusterInfo& cluster, const char* name) {
        for (FilesystemInfo* fs : cluster.fsList) {
            if (std::strcmp(fs->name, name) == 0) {
                return fs;
            }
        }
        return nullptr;
    }

    static NodeInfo* nodeNamed(ClusterInfo& cluster, const char* name) {
        for (NodeInfo* node : cluster.nodeList) {
            if (std::strcmp(node->name, name) == 0) {
                return node;
            }
        }
        return nullptr;
    }

    static FileSet filesetRecord(const char* fs, const char* name, const char* path = "") {
        FileSet record;
        std::snprintf(record.fsName, sizeof record.fsName, "%s", fs);
        std::snprintf(record.name, sizeof record.name, "%s", name);
        std::snprintf(record.path, sizeof record.path, "%s", path);
        return record;
    }

    PollingHandler* handler = nullptr;
};

#endif
