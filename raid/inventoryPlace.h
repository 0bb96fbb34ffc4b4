// Where the inventory parser is reading, so that a line it cannot use is
// reported with its file and line number: the parse runs through the
// provider's designed member functions, whose signatures carry no place.
#ifndef VEXA_RAID_INVENTORYPLACE_H
#define VEXA_RAID_INVENTORYPLACE_H

#include <string>

namespace raid {

// The file being parsed on this thread (empty when it is not known) and the
// number of the line being read (0 while no file is parsed).
struct InventoryPlace {
    std::string file;
    int line = 0;
};

InventoryPlace& currentInventoryPlace();

// "<file>:<line>: ", "line <line>: " for a file of unknown name, or empty.
std::string describeInventoryPlace();

// Names the file for the lifetime of the scope and forgets it on every way
// out, so that a later parse is never reported under a stale name.
class InventoryFileScope {
public:
    explicit InventoryFileScope(const std::string& file) { currentInventoryPlace().file = file; }
    ~InventoryFileScope() { currentInventoryPlace() = InventoryPlace(); }
    InventoryFileScope(const InventoryFileScope&) = delete;
    InventoryFileScope& operator=(const InventoryFileScope&) = delete;
};

} // namespace raid

#endif
