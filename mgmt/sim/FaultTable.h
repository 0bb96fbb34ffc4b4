#ifndef QZSIM_FAULT_TABLE_H
#define QZSIM_FAULT_TABLE_H

#include <map>
#include <mutex>
#include <string>

namespace qzsim {

// Injected failures, by operation name. An entry fails the next `remaining`
// calls of its operation (or every call when remaining is negative).
class FaultTable {
public:
    static FaultTable& instance();

    void set(const std::string& operation, int code, int times);
    void clear();
    // The code to fail this call with, or 0. Consumes one of a limited entry.
    int take(const std::string& operation);
    int failures(const std::string& operation) const;

private:
    struct Entry {
        int code = 0;
        int remaining = 0;
    };
    mutable std::mutex mutex_;
    std::map<std::string, Entry> entries_;
    std::map<std::string, int> failures_;
};

} // namespace qzsim

#endif
