#include "OpScope.h"

#include "FaultTable.h"
#include "SimState.h"
#include "StateFile.h"

#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

#include <cstdarg>
#include <cstdio>

namespace qzsim {

namespace {

// Callers pass their own printf-style format on; the attribute lets the
// compiler check those calls instead of this one.
__attribute__((format(printf, 1, 0))) std::string formatText(const char* format, va_list args) {
    char buffer[1024];
    std::vsnprintf(buffer, sizeof buffer, format, args);
    return buffer;
}

} // namespace

OpScope::OpScope(const char* operation, std::string* message, bool needsDaemon)
    : function_(std::string("PollingHandler::") + operation), message_(message) {
    ts_log(0, function_.c_str(), "enter\n");
    if (int code = FaultTable::instance().take(operation)) {
        if (message_ != nullptr) {
            char text[256];
            std::snprintf(text, sizeof text, "%s failed (injected error %d).\n", operation, code);
            message_->append(text);
        }
        status_ = code;
        return;
    }
    lock_ = std::unique_lock<std::mutex>(SimState::instance().mutex());
    model_ = SimState::instance().model();
    if (model_ == nullptr || !pollingHandlerActive()) {
        status_ = fail(MGMT_E_NOT_INITIALIZED, "The management library is not initialized.");
        return;
    }
    if (needsDaemon && model_->daemonState == MGMT_DAEMON_DOWN) {
        status_ = fail(MGMT_E_DAEMON_DOWN, "The file system daemon is not running.");
    }
}

int OpScope::fail(int code, const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = formatText(format, args);
    va_end(args);
    ts_log(1, function_.c_str(), "error %d: %s\n", code, text.c_str());
    if (message_ != nullptr) {
        message_->append(text);
        message_->append("\n");
    }
    return code;
}

void OpScope::beginChange() {
    if (!stateFilePath().empty()) {
        undo_.reset(new ClusterModel(*model_));
    }
}

int OpScope::commitChange() {
    const std::string path = stateFilePath();
    if (path.empty() || undo_ == nullptr) {
        return 0;
    }
    std::string error;
    if (FaultTable::instance().take("saveState") != 0) {
        error = path + ": injected failure";
    } else if (SimState::instance().saveState(path, *model_, &error)) {
        undo_.reset();
        return 0;
    }
    *model_ = std::move(*undo_);
    undo_.reset();
    return fail(MGMT_E_STATE_WRITE, "The change could not be saved and was not made: %s",
                error.c_str());
}

void OpScope::say(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = formatText(format, args);
    va_end(args);
    ts_log(0, function_.c_str(), "%s\n", text.c_str());
    if (message_ != nullptr) {
        message_->append(text);
        message_->append("\n");
    }
}

} // namespace qzsim
