#include "FaultTable.h"

#include <qzantras/ts_log.h>

namespace qzsim {

FaultTable& FaultTable::instance() {
    static FaultTable table;
    return table;
}

void FaultTable::set(const std::string& operation, int code, int times) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (code == 0 || times == 0) {
        entries_.erase(operation);
        return;
    }
    entries_[operation] = Entry{code, times};
}

void FaultTable::clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    entries_.clear();
    failures_.clear();
}

int FaultTable::take(const std::string& operation) {
    int code = 0;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        auto it = entries_.find(operation);
        if (it == entries_.end()) {
            return 0;
        }
        code = it->second.code;
        if (it->second.remaining > 0 && --it->second.remaining == 0) {
            entries_.erase(it);
        }
        ++failures_[operation];
    }
    ts_log(1, "qzsim::FaultTable::take", "injected failure of %s, code %d\n", operation.c_str(),
           code);
    return code;
}

int FaultTable::failures(const std::string& operation) const {
    std::lock_guard<std::mutex> lock(mutex_);
    auto it = failures_.find(operation);
    return it == failures_.end() ? 0 : it->second;
}

} // namespace qzsim
