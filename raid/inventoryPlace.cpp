// The per-thread place of the inventory parser; builds on separate threads
// never see each other's file.
#include "inventoryPlace.h"

namespace raid {

InventoryPlace& currentInventoryPlace() {
    thread_local InventoryPlace place;
    return place;
}

std::string describeInventoryPlace() {
    const InventoryPlace& place = currentInventoryPlace();
    if (place.line == 0) {
        return std::string();
    }
    const std::string line = std::to_string(place.line);
    return place.file.empty() ? "line " + line + ": " : place.file + ":" + line + ": ";
}

} // namespace raid
