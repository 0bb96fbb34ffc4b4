// Several threads refreshing snapshots and changing the cluster at once,
// some of them holding the polling lock. Meant to run under ThreadSanitizer.

#include "SimTestSupport.h"

#include <atomic>
#include <thread>
#include <vector>

class ConcurrencyTest : public SimTest {};

TEST_F(ConcurrencyTest, RefreshesAndChangesInterleaveSafely) {
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&, t] {
            ClusterInfo cluster;
            for (int i = 0; i < 40; ++i) {
                bool locked = (i + t) % 2 == 0;
                if (locked) {
                    handler->getPollingLock();
                }
                failures += handler->updateNodeInfo(&cluster, 0) != 0;
                failures += handler->updateFilesystemInfo(&cluster, i % 3 == 0) != 0;
                failures += handler->updateDiskInfo(&cluster, "fs1", "data", 1) != 0;
                if (locked) {
                    handler->releasePollingLock();
                }
            }
        });
    }
    for (int t = 0; t < 2; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 25; ++i) {
                std::string name = "t" + std::to_string(t) + "_" + std::to_string(i);
                std::string message;
                failures +=
                    handler->createFileSet(filesetRecord("fs1", name.c_str()), &message, true) != 0;
                unsigned long long soft = 500, hard = 1000 + i;
                failures += handler->editQuota("fs1", "user", "alice", nullptr, nullptr, &soft,
                                               &hard, nullptr, &message) != 0;
                failures += handler->deleteFileSet(filesetRecord("fs1", name.c_str()), false,
                                                   &message) != 0;
            }
        });
    }
    threads.emplace_back([&] {
        for (int i = 0; i < 20; ++i) {
            failures +=
                handler->addExecutionTask("qzchconfig", "maxStatCache=2000", nullptr, nullptr) != 0;
        }
    });
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(0, failures.load());
    ASSERT_TRUE(qzsim::waitForTasks(20, 10000));

    ClusterInfo cluster;
    refresh(cluster);
    std::vector<FileSet*> sets;
    ASSERT_EQ(0, handler->getFileSets("fs1", &sets));
    EXPECT_EQ(4u, sets.size()); // every created fileset was deleted again
    for (FileSet* set : sets) {
        delete set;
    }
    Quota quota;
    ASSERT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, "fs1", "alice", &quota));
    EXPECT_EQ(1024u, quota.blockLimit);
}

TEST_F(ConcurrencyTest, PollingLockExcludesOtherHolders) {
    std::atomic<int> inside{0};
    std::atomic<bool> overlap{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                handler->getPollingLock();
                handler->getPollingLock(); // the holder may take it again
                if (++inside != 1) {
                    overlap = true;
                }
                --inside;
                handler->releasePollingLock();
                handler->releasePollingLock();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(overlap.load());
    EXPECT_EQ(MGMT_E_INVALID_ARG, handler->releasePollingLock());
}
