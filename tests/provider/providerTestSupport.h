// Shared set-up of the provider tests: a fresh simulated cluster per test,
// the management library's log captured at every level, and the log lines in
// a form that ignores time and thread ("L<level> <function>: <text>").
#ifndef VEXA_TESTS_PROVIDERTESTSUPPORT_H
#define VEXA_TESTS_PROVIDERTESTSUPPORT_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

class VexaProvider;

class ProviderTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The captured log lines without time stamp and thread id.
    static std::vector<std::string> logLines();
    // Position of the first line equal to `line` at or after `from`, or -1.
    static int findLine(const std::vector<std::string>& lines, const std::string& line,
                        int from = 0);
    static int countLines(const std::vector<std::string>& lines, const std::string& line);

    // Ends the event stream and waits until the provider's event thread has
    // left it, so that the next test starts without a thread in the library.
    static void stopEventThread();
};

#endif
