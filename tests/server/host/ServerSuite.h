// A test suite that shares one vexa-cimserver: started before the suite's
// first test, and required to stop cleanly after its last.
#ifndef VEXA_TESTS_HOST_SERVERSUITE_H
#define VEXA_TESTS_HOST_SERVERSUITE_H

#include <gtest/gtest.h>

#include "ProcessRunner.h"

namespace hosttest {

class ServerSuite : public ::testing::Test {
protected:
    // A suite that needs other server options hides this with its own,
    // calling start with them.
    static void SetUpTestSuite() { start(); }
    static void TearDownTestSuite() {
        EXPECT_EQ(server->stop(), 0) << server->err();
        delete server;
        server = nullptr;
    }
    static void start(const std::vector<std::string>& arguments = {}) {
        server = new ServerProcess(arguments);
    }

    // Suites run one after the other, so one server at a time is enough.
    inline static ServerProcess* server = nullptr;
};

} // namespace hosttest

#endif
