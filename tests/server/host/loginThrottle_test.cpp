// Failed logins slow their peer down, and only their peer; what a client
// sends reaches the log without forging lines or carrying credentials.
#include <gtest/gtest.h>

#include "vexa/host/LoginThrottle.h"
#include "vexa/host/ServerLog.h"

using namespace vexa::host;
using std::chrono::milliseconds;

namespace {

TEST(LoginThrottleTest, TheWaitDoublesPerPeerUpToItsBoundAndEndsOnSuccess) {
    LoginThrottle throttle(milliseconds(1000), milliseconds(5000));
    LoginThrottle::Clock::time_point now{};
    throttle.failed("10.0.0.1", now);
    EXPECT_EQ(throttle.waitLeft("10.0.0.1", now).count(), 0) << "a first typo costs nothing";
    std::vector<long long> waits;
    for (int i = 0; i < 5; ++i) {
        throttle.failed("10.0.0.1", now);
        waits.push_back(throttle.waitLeft("10.0.0.1", now).count());
    }
    EXPECT_EQ(waits, (std::vector<long long>{1000, 2000, 4000, 5000, 5000}));
    EXPECT_EQ(throttle.waitLeft("10.0.0.2", now).count(), 0);
    EXPECT_EQ(throttle.waitLeft("10.0.0.1", now + milliseconds(4999)).count(), 1);

    throttle.succeeded("10.0.0.1");
    EXPECT_EQ(throttle.waitLeft("10.0.0.1", now).count(), 0);
    // After a long pause the count starts over.
    throttle.failed("10.0.0.2", now);
    throttle.failed("10.0.0.2", now + milliseconds(60000));
    EXPECT_EQ(throttle.waitLeft("10.0.0.2", now + milliseconds(60000)).count(), 0);
}

TEST(LoggableTest, ClientTextCannotForgeLinesOrLeakUserInfo) {
    EXPECT_EQ(loggable("/cimom\n2026 stopped"), "/cimom\\x0a2026 stopped");
    EXPECT_EQ(loggable("http://alice:se:cret@host:5988/cimom"), "http://host:5988/cimom");
    EXPECT_EQ(loggable(std::string(300, 'a'), 10), "aaaaaaaaaa...");
}

} // namespace
