#ifndef QZSIM_OP_SCOPE_H
#define QZSIM_OP_SCOPE_H

// The common frame of a library operation: injected fault, handler and
// model present, daemon running, then the model mutex for the rest of the
// operation. Failures go to the log and, when the operation has one, to the
// caller's message text.

#include "SimModel.h"

#include <memory>
#include <mutex>
#include <string>

namespace qzsim {

class OpScope {
public:
    OpScope(const char* operation, std::string* message, bool needsDaemon = true);
    OpScope(const OpScope&) = delete;
    OpScope& operator=(const OpScope&) = delete;

    // 0 when the operation may go on.
    int status() const { return status_; }
    ClusterModel& model() { return *model_; }

    // Records a failure: log line (level 1) and message text. Returns code.
    int fail(int code, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // Brackets the change of the model, once every check has passed: when a
    // state file is kept, commitChange writes the changed model through to
    // it and, when that fails, puts the model back as it was before
    // beginChange and returns MGMT_E_STATE_WRITE. 0 when the change stands.
    void beginChange();
    int commitChange();

    // Output of a successful change for the caller's message.
    void say(const char* format, ...) __attribute__((format(printf, 2, 3)));

private:
    std::string function_;
    std::string* message_;
    std::unique_lock<std::mutex> lock_;
    ClusterModel* model_ = nullptr;
    std::unique_ptr<ClusterModel> undo_;
    int status_ = 0;
};

// Whether PollingHandler::init has created the handler.
bool pollingHandlerActive();

} // namespace qzsim

#endif
