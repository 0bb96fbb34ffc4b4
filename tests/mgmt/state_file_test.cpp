// With QZSIM_STATE_FILE set, every change is on disk, whole, before it is
// reported done; a restart shows exactly those changes; a change that cannot
// be saved is not made.

#include "SimTestSupport.h"

#include <atomic>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

std::string fileText(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

class StateFileTest : public SimTest {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/qzsim-state-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(pattern));
        dir = pattern;
        setenv("QZSIM_STATE_FILE", state().c_str(), 1);
        SimTest::SetUp();
    }
    void TearDown() override {
        SimTest::TearDown();
        unsetenv("QZSIM_STATE_FILE");
        unlink(state().c_str());
        rmdir((state() + ".tmp").c_str());
        rmdir(dir.c_str());
    }
    std::string state() const { return dir + "/state.json"; }
    std::string filesets() {
        std::vector<FileSet*> sets;
        EXPECT_EQ(0, handler->getFileSets("fs1", &sets));
        std::string text;
        for (FileSet* s : sets) {
            text += std::string(s->name) + " " + s->id + " " + s->path + " " + s->created + "\n";
            delete s;
        }
        return text;
    }
    std::string dir;
};

TEST_F(StateFileTest, ChangesSurviveARestartAndTheFileIsNeverTorn) {
    std::atomic<bool> writing{true};
    std::atomic<int> torn{0};
    std::thread reader([&] {
        // Once written, the file is never empty, missing or cut short.
        for (bool written = false; writing;) {
            std::string text = fileText(state());
            written = written || !text.empty();
            torn += written && (text.size() < 2 || text.compare(text.size() - 2, 2, "}\n") != 0);
        }
    });
    std::string message;
    for (int i = 0; i < 30; i++)
        ASSERT_EQ(0, handler->createFileSet(filesetRecord("fs1", ("f" + std::to_string(i)).c_str()),
                                            &message, true));
    ASSERT_EQ(0, handler->deleteFileSet(filesetRecord("fs1", "f3"), false, &message));
    ASSERT_EQ(0, handler->linkFileSet(filesetRecord("fs1", "f7"), &message)) << message;
    unsigned long long blockHard = 4096;
    ASSERT_EQ(0, handler->editQuota("fs1", "user", "batch", nullptr, nullptr, nullptr, &blockHard,
                                    nullptr, &message));
    ASSERT_EQ(0, handler->addExecutionTask("qzchconfig", "pagepool=8G -N node2", nullptr, nullptr));
    ASSERT_TRUE(qzsim::waitForTasks(1, 5000));
    writing = false;
    reader.join();
    EXPECT_EQ(0, torn.load());

    const std::string before = filesets();
    qzsim::reset();
    ASSERT_EQ(0, PollingHandler::init(static_cast<MgmtProtocol>(1), 0, 1));
    handler = thePollingHandler;
    EXPECT_EQ(before, filesets());
    Quota quota;
    ASSERT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, "fs1", "batch", &quota));
    EXPECT_EQ(4096u, quota.blockLimit);
    ClusterInfo cluster;
    refresh(cluster);
    EXPECT_EQ(8ULL << 30, nodeNamed(cluster, "node2")->pagePool);
    EXPECT_NE(8ULL << 30, nodeNamed(cluster, "node1")->pagePool);
}

TEST_F(StateFileTest, AChangeThatCannotBeSavedIsNotMade) {
    std::string message;
    ASSERT_EQ(0, handler->createFileSet(filesetRecord("fs1", "kept"), &message, true));
    const std::string saved = fileText(state());
    const std::string before = filesets();
    // A folder where the temporary file must go: not even root can write it.
    ASSERT_EQ(0, mkdir((state() + ".tmp").c_str(), 0755));
    EXPECT_EQ(MGMT_E_STATE_WRITE,
              handler->createFileSet(filesetRecord("fs1", "lost"), &message, true));
    EXPECT_NE(std::string::npos, message.find("could not be saved")) << message;
    EXPECT_EQ(MGMT_E_STATE_WRITE,
              handler->deleteFileSet(filesetRecord("fs1", "kept"), true, &message));
    EXPECT_EQ(before, filesets());
    EXPECT_EQ(saved, fileText(state()));
}

} // namespace
