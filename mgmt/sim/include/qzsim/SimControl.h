#ifndef QZSIM_SIM_CONTROL_H
#define QZSIM_SIM_CONTROL_H

// Control of the simulated cluster behind libqzantras, for tests and tools.
// All functions are thread-safe.

#include <qzantras/ClusterInfo.h>

#include <string>
#include <vector>

namespace qzsim {

// Times argument of failOperation meaning "until cleared".
constexpr int kAlways = -1;

// Replace the cluster model. Before PollingHandler::init the model is kept
// and init uses it instead of QZSIM_CLUSTER_MODEL or the demo cluster.
// On failure the current model stays and *error (when given) receives
// "<source>: <place>: <problem>"; the result is MGMT_E_MODEL_LOAD.
int loadModelFromString(const std::string& json, std::string* error = nullptr);
int loadModelFromFile(const std::string& path, std::string* error = nullptr);
// The built-in demo cluster as JSON text.
const char* demoModelJson();

// Make the named operation (a PollingHandler or EventsHandler member name,
// "init", "ClusterInfo", or an execution-task command such as "qzchconfig")
// fail with code, for the next `times` calls or always.
void failOperation(const std::string& operation, int code, int times = kAlways);
void clearFaults();
// Number of calls of the operation failed so far by injection.
int injectedFailures(const std::string& operation);

// Queue an event for EventsHandler::run(); zero times are set to now.
void postEvent(const Event& event);
// Make run() return as if the event stream had ended.
void endEventStream();
// Wait until every queued event has been handed to its callback.
bool waitForEventsDelivered(int timeoutMs);

// One event as a JSON object, e.g. {"type": "mount", "node": "node1", "fs": "fs1"}.
// "type" is required: a name such as "mount" or "hung_thread", or 0-18. The
// other members name Event fields ("nodeIp", "disk", "waitTime", ...; see
// docs/cluster-model.md). Without "seconds" the event is stamped now; of
// "node" and "nodeIp" a missing one is filled from the loaded model.
// Throws std::invalid_argument naming the member at fault and what it allows.
Event eventFromJson(const std::string& json);
// The name eventFromJson accepts for an MgmtEventType, or null.
const char* eventTypeName(int type);

// While EventsHandler is initialised and QZSIM_EVENT_SOCKET names a path, the
// library takes events there: one JSON object per line, each answered with
// "ok" or "error: <text>". The path it listens on, or empty.
std::string eventSocketPath();
// Sends one event line and returns the reply without its newline. Throws
// std::runtime_error when nothing listens at socketPath.
std::string sendEventText(const std::string& socketPath, const std::string& jsonLine);

int setDaemonState(int state);
int daemonState();

// Execution tasks that have run, oldest first.
struct TaskRecord {
    std::string command;
    std::string arguments;
    int result = 0;
};
std::vector<TaskRecord> completedTasks();
bool waitForTasks(std::size_t count, int timeoutMs);

// Keep every line that ts_log writes (after the level test) in memory.
void startLogCapture();
void stopLogCapture();
std::vector<std::string> capturedLog();
void clearCapturedLog();
// Re-read QZSIM_LOG_FILE and QZSIM_LOG_LEVEL; setLogLevel overrides the level.
void reloadLogSettings();
void setLogLevel(int level);

// Back to the state of a freshly loaded library: handlers terminated, no
// model, no faults, no events or tasks, no capture, log settings re-read.
void reset();

} // namespace qzsim

#endif
