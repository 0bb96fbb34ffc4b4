#include <qzsim/SimControl.h>

#include "DemoModel.h"
#include "EventHub.h"
#include "EventSocket.h"
#include "FaultTable.h"
#include "LogSink.h"
#include "ModelLoader.h"
#include "SimState.h"
#include "TaskRunner.h"

#include <qzantras/EventsHandler.h>
#include <qzantras/MgmtTypes.h>
#include <qzantras/PollingHandler.h>
#include <qzantras/ts_log.h>

namespace qzsim {

namespace {

int install(const std::string& text, const std::string& source, const std::string& file,
            std::string* error) {
    ClusterModel model;
    std::string problem;
    if (!loadModel(text, source, &model, &problem)) {
        ts_log(2, "qzsim::loadModel", "cannot load cluster model: %s\n", problem.c_str());
        if (error != nullptr) {
            *error = problem;
        }
        return MGMT_E_MODEL_LOAD;
    }
    SimState::instance().install(std::move(model), source, file, text);
    return MGMT_OK;
}

} // namespace

int loadModelFromString(const std::string& json, std::string* error) {
    return install(json, "<string>", "", error);
}

int loadModelFromFile(const std::string& path, std::string* error) {
    std::string text, problem;
    if (!readFileText(path, &text, &problem)) {
        ts_log(2, "qzsim::loadModel", "cannot load cluster model: %s\n", problem.c_str());
        if (error != nullptr) {
            *error = problem;
        }
        return MGMT_E_MODEL_LOAD;
    }
    return install(text, path, path, error);
}

void failOperation(const std::string& operation, int code, int times) {
    FaultTable::instance().set(operation, code, times);
}

void clearFaults() { FaultTable::instance().clear(); }

int injectedFailures(const std::string& operation) {
    return FaultTable::instance().failures(operation);
}

void postEvent(const Event& event) { EventHub::instance().post(event); }

void endEventStream() { EventHub::instance().endStream(); }

bool waitForEventsDelivered(int timeoutMs) { return EventHub::instance().waitDelivered(timeoutMs); }

std::string eventSocketPath() { return EventSocket::instance().path(); }

int setDaemonState(int state) {
    std::lock_guard<std::mutex> lock(SimState::instance().mutex());
    ClusterModel* model = SimState::instance().model();
    if (model == nullptr) {
        return MGMT_E_NOT_INITIALIZED;
    }
    model->daemonState = state;
    return MGMT_OK;
}

int daemonState() {
    std::lock_guard<std::mutex> lock(SimState::instance().mutex());
    ClusterModel* model = SimState::instance().model();
    return model == nullptr ? MGMT_DAEMON_UNKNOWN : model->daemonState;
}

std::vector<TaskRecord> completedTasks() { return TaskRunner::instance().completed(); }

bool waitForTasks(std::size_t count, int timeoutMs) {
    return TaskRunner::instance().waitFor(count, timeoutMs);
}

void startLogCapture() { LogSink::instance().startCapture(); }
void stopLogCapture() { LogSink::instance().stopCapture(); }
std::vector<std::string> capturedLog() { return LogSink::instance().captured(); }
void clearCapturedLog() { LogSink::instance().clearCapture(); }
void reloadLogSettings() { LogSink::instance().reloadSettings(); }
void setLogLevel(int level) { LogSink::instance().setLevel(level); }

void reset() {
    EventsHandler::term();
    PollingHandler::term();
    EventHub::instance().reset();
    TaskRunner::instance().forget();
    FaultTable::instance().clear();
    SimState::instance().drop();
    LogSink::instance().stopCapture();
    LogSink::instance().clearCapture();
    LogSink::instance().reloadSettings();
}

} // namespace qzsim
