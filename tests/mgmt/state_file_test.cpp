// With QZSIM_STATE_FILE set, every change is on disk before it is reported
// done, a restarted library shows exactly those changes, and a change that
// cannot be saved is not made.

#include "SimTestSupport.h"

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

std::string fileText(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

int ignoreCompletion(void*) { return 0; }

class StateFileTest : public SimTest {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/qzsim-state-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(pattern));
        dir = pattern;
        state = dir + "/state.json";
        setenv("QZSIM_STATE_FILE", state.c_str(), 1);
        SimTest::SetUp();
    }
    void TearDown() override {
        SimTest::TearDown();
        unsetenv("QZSIM_STATE_FILE");
        std::system(("rm -rf " + dir).c_str());
    }
    void restart() {
        qzsim::reset();
        ASSERT_EQ(0, PollingHandler::init(static_cast<MgmtProtocol>(1), 0, 1));
        handler = thePollingHandler;
    }
    std::string filesetsOf(const char* fs) {
        std::vector<FileSet*> sets;
        EXPECT_EQ(0, handler->getFileSets(fs, &sets));
        std::string text;
        for (FileSet* s : sets) {
            text += std::string(s->name) + "|" + s->id + "|" + s->path + "|" + s->comment + "|" +
                    s->created + "|" + s->status + "\n";
            delete s;
        }
        return text;
    }

    std::string dir;
    std::string state;
};

TEST_F(StateFileTest, ChangesSurviveARestartAndTheFileIsNeverTorn) {
    std::atomic<bool> writing{true};
    std::atomic<int> torn{0};
    std::thread reader([&] {
        while (writing) {
            std::string text = fileText(state);
            if (!text.empty() && (text.front() != '{' || text.substr(text.size() - 2) != "}\n"))
                ++torn;
        }
    });
    std::string message;
    for (int i = 0; i < 40; i++) {
        ASSERT_EQ(0, handler->createFileSet(filesetRecord("fs1", ("f" + std::to_string(i)).c_str()),
                                            &message, true))
            << message;
    }
    ASSERT_EQ(0, handler->deleteFileSet(filesetRecord("fs1", "f3"), false, &message));
    ASSERT_EQ(0, handler->linkFileSet(filesetRecord("fs1", "f7"), &message)) << message;
    ASSERT_EQ(0, handler->editFileset("fs1", "fileset", "f8", "eight", "\"renamed\"", &message));
    unsigned long long blockHard = 4096;
    ASSERT_EQ(0, handler->editQuota("fs1", "user", "batch", nullptr, nullptr, nullptr, &blockHard,
                                    "7days", &message));
    FileOrDirOwner who;
    std::snprintf(who.path, sizeof who.path, "/qz/fs1/projects");
    std::snprintf(who.owner, sizeof who.owner, "batch");
    who.isJunction = 1;
    ASSERT_EQ(0, handler->changeOwnerAndOrGroup(who));
    ASSERT_EQ(0, handler->addExecutionTask("qzchconfig", "pagepool=8G -N node2", ignoreCompletion,
                                           nullptr));
    ASSERT_TRUE(qzsim::waitForTasks(1, 5000));
    writing = false;
    reader.join();
    EXPECT_EQ(0, torn.load());

    const std::string filesets = filesetsOf("fs1");
    Quota quota;
    ASSERT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, "fs1", "batch", &quota));
    restart();
    EXPECT_EQ(filesets, filesetsOf("fs1"));
    Quota reloaded;
    ASSERT_EQ(0, handler->getQuota(MGMT_QUOTA_USER, "fs1", "batch", &reloaded));
    EXPECT_EQ(4096u, reloaded.blockLimit);
    EXPECT_EQ(quota.blockGrace, reloaded.blockGrace);
    ClusterInfo cluster;
    refresh(cluster);
    EXPECT_EQ(8ULL << 30, nodeNamed(cluster, "node2")->pagePool);
    EXPECT_NE(8ULL << 30, nodeNamed(cluster, "node1")->pagePool);
    // The owner moved with the junction's fileset: a copy from it carries it.
    std::snprintf(who.owner, sizeof who.owner, "%s", "");
    FileOrDirOwner target = who;
    std::snprintf(target.path, sizeof target.path, "/qz/fs1/f7");
    EXPECT_EQ(0, handler->changeFileOrDirOwnership(who, target, &message));
    EXPECT_NE(std::string::npos, message.find("batch")) << message;
}

TEST_F(StateFileTest, AChangeThatCannotBeSavedIsNotMade) {
    std::string message;
    ASSERT_EQ(0, handler->createFileSet(filesetRecord("fs1", "kept"), &message, true));
    const std::string saved = fileText(state);
    const std::string filesets = filesetsOf("fs1");

    // A directory where the temporary file must go: not even root can write.
    ASSERT_EQ(0, mkdir((state + ".tmp").c_str(), 0755));
    message.clear();
    EXPECT_EQ(MGMT_E_STATE_WRITE,
              handler->createFileSet(filesetRecord("fs1", "lost"), &message, true));
    EXPECT_NE(std::string::npos, message.find("could not be saved")) << message;
    EXPECT_EQ(MGMT_E_STATE_WRITE,
              handler->deleteFileSet(filesetRecord("fs1", "kept"), true, &message));
    EXPECT_EQ(filesets, filesetsOf("fs1"));
    EXPECT_EQ(saved, fileText(state));

    ASSERT_EQ(0, rmdir((state + ".tmp").c_str()));
    EXPECT_EQ(0, handler->createFileSet(filesetRecord("fs1", "later"), &message, true));

    // A state file that is not a model stops the start, naming the file.
    std::ofstream(state) << "{ \"cluster\": ";
    qzsim::reset();
    EXPECT_EQ(MGMT_E_MODEL_LOAD, PollingHandler::init(static_cast<MgmtProtocol>(1), 0, 1));
}

} // namespace
