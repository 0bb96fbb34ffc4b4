#include "providerTestSupport.h"

#include <qzantras/EventsHandler.h>
#include <qzsim/SimControl.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <thread>

#include "cimProvider.h"
#include "processFlags.h"

void ProviderTest::SetUp() {
    unsetenv("QZSIM_CLUSTER_MODEL");
    setenv("QZSIM_LOG_FILE", "/dev/null", 1);
    qzsim::reset();
    qzsim::setLogLevel(0);
    qzsim::startLogCapture();
    storeFlag(NeedEventHandler, false);
}

void ProviderTest::TearDown() {
    stopEventThread();
    qzsim::reset();
    storeFlag(theVexaProvider, static_cast<VexaProvider*>(0));
    storeFlag(KeepRunning, 0);
    storeFlag(IndicationEnabled, 0);
    storeFlag(IndicationHandler, static_cast<Pegasus::IndicationResponseHandler*>(0));
}

void ProviderTest::stopEventThread() {
    if (theEventsHandler == 0) {
        return;
    }
    qzsim::endEventStream();
    for (int i = 0; i < 500 && !loadFlag(NeedEventHandler); i++) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

std::vector<std::string> ProviderTest::logLines() {
    std::vector<std::string> result;
    for (const std::string& raw : qzsim::capturedLog()) {
        // "<date> <time> L<level> T<thread> <function>: <text>"
        std::istringstream in(raw);
        std::string date, time, level, thread;
        in >> date >> time >> level >> thread;
        std::string rest;
        std::getline(in, rest);
        if (!rest.empty() && rest[0] == ' ') {
            rest.erase(0, 1);
        }
        result.push_back(level + " " + rest);
    }
    return result;
}

int ProviderTest::findLine(const std::vector<std::string>& lines, const std::string& line,
                           int from) {
    for (int i = from; i < static_cast<int>(lines.size()); i++) {
        if (lines[static_cast<size_t>(i)] == line) {
            return i;
        }
    }
    return -1;
}

int ProviderTest::countLines(const std::vector<std::string>& lines, const std::string& line) {
    int count = 0;
    for (const std::string& each : lines) {
        count += each == line ? 1 : 0;
    }
    return count;
}
