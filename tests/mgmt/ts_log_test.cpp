// ts_log: level threshold, line format and destinations.

#include <qzantras/ts_log.h>
#include <qzsim/SimControl.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

class TsLogTest : public ::testing::Test {
protected:
    void SetUp() override {
        unsetenv("QZSIM_LOG_LEVEL");
        unsetenv("QZSIM_LOG_FILE");
        qzsim::reset();
        qzsim::startLogCapture();
    }
    void TearDown() override {
        unsetenv("QZSIM_LOG_LEVEL");
        unsetenv("QZSIM_LOG_FILE");
        qzsim::reset();
    }
};

} // namespace

TEST_F(TsLogTest, DefaultThresholdHidesTraces) {
    ts_log(0, "T::f", "trace\n");
    ts_log(1, "T::f", "soft\n");
    ts_log(2, "T::f", "error\n");
    std::vector<std::string> lines = qzsim::capturedLog();
    ASSERT_EQ(2u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("soft"));
    EXPECT_NE(std::string::npos, lines[1].find("error"));

    setenv("QZSIM_LOG_LEVEL", "0", 1);
    qzsim::reloadLogSettings();
    ts_log(0, "T::f", "trace\n");
    EXPECT_EQ(3u, qzsim::capturedLog().size());

    setenv("QZSIM_LOG_LEVEL", "2", 1);
    qzsim::reloadLogSettings();
    ts_log(1, "T::f", "soft\n");
    EXPECT_EQ(3u, qzsim::capturedLog().size());
}

TEST_F(TsLogTest, LineCarriesTimeLevelThreadFunctionAndText) {
    ts_log(2, "VexaProvider::initialize", "err = %d, %s\n", 7, "gone");
    ts_log(1, "::free", "no newline");
    ts_log(1, "::free", "two\n\n");
    std::vector<std::string> lines = qzsim::capturedLog();
    ASSERT_EQ(3u, lines.size());
    std::regex format(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6} L2 T\d+ )"
                      R"(VexaProvider::initialize: err = 7, gone)");
    EXPECT_TRUE(std::regex_match(lines[0], format)) << lines[0];
    EXPECT_EQ("::free: no newline", lines[1].substr(lines[1].find("::free")));
    // Only the one newline the line gets anyway is absorbed.
    EXPECT_EQ("::free: two\n", lines[2].substr(lines[2].find("::free")));
}

TEST_F(TsLogTest, FileDestinationGetsWholeLinesFromManyThreads) {
    char path[] = "/tmp/qzsim_log_XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    setenv("QZSIM_LOG_FILE", path, 1);
    qzsim::reloadLogSettings();

    std::string payload(3000, 'p'); // longer than the formatting buffer on the stack
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i) {
                ts_log(1, "T::worker", "thread %d line %d %s\n", t, i, payload.c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    unsetenv("QZSIM_LOG_FILE");
    qzsim::reloadLogSettings(); // closes the file

    std::ifstream in(path);
    std::string line;
    int count = 0;
    while (std::getline(in, line)) {
        ++count;
        EXPECT_NE(std::string::npos, line.find(" T::worker: thread "));
        EXPECT_EQ(payload, line.substr(line.size() - payload.size()));
    }
    EXPECT_EQ(200, count);
    std::remove(path);
}
