#include "UnlistedValues.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>

namespace {

using nlohmann::json;

struct KnownValues {
    const char* member;
    std::vector<std::string> values;
};

// The loader keeps any text so that models can carry states the provider
// has not learned yet; a value outside these lists is most often a typing
// error that would otherwise only show as an odd OperationalStatus.
const KnownValues NODE_STATUS{"status", {"up", "down", "arbitrating", "unknown"}};
const KnownValues DISK_STATUS{"status",
                              {"ready", "suspended", "being emptied", "replacing", "unknown"}};
// An empty availability is what the library reports for a disk it has not
// asked yet; the demo cluster shows one.
const KnownValues DISK_AVAILABILITY{"availability",
                                    {"OK", "Unavailable", "Recovering", "unknown", ""}};

void check(const json& object, const std::string& path, const KnownValues& known,
           std::vector<std::string>* found) {
    if (!object.is_object()) {
        return;
    }
    auto member = object.find(known.member);
    if (member == object.end() || !member->is_string()) {
        return;
    }
    std::string value = member->get<std::string>();
    if (std::find(known.values.begin(), known.values.end(), value) != known.values.end()) {
        return;
    }
    std::string list;
    for (const std::string& each : known.values) {
        list += (list.empty() ? "" : ", ") + each;
    }
    found->push_back(path + "/" + known.member + ": \"" + value +
                     "\" is none of the known values (" + list + ")");
}

const json& arrayMember(const json& object, const char* name) {
    static const json empty = json::array();
    if (!object.is_object()) {
        return empty;
    }
    auto member = object.find(name);
    return member != object.end() && member->is_array() ? *member : empty;
}

void checkDisks(const json& disks, const std::string& path, std::vector<std::string>* found) {
    for (std::size_t k = 0; k < disks.size(); ++k) {
        std::string diskPath = path + "/" + std::to_string(k);
        check(disks[k], diskPath, DISK_STATUS, found);
        check(disks[k], diskPath, DISK_AVAILABILITY, found);
    }
}

} // namespace

std::vector<std::string> unlistedValues(const std::string& modelPath) {
    std::vector<std::string> found;
    std::ifstream file(modelPath);
    json model = json::parse(file, nullptr, false);
    if (model.is_discarded() || !model.is_object()) {
        return found;
    }
    const json& nodes = arrayMember(model, "nodes");
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        check(nodes[i], "/nodes/" + std::to_string(i), NODE_STATUS, &found);
    }
    const json& filesystems = arrayMember(model, "filesystems");
    for (std::size_t f = 0; f < filesystems.size(); ++f) {
        const json& pools = arrayMember(filesystems[f], "pools");
        for (std::size_t p = 0; p < pools.size(); ++p) {
            std::string poolPath =
                "/filesystems/" + std::to_string(f) + "/pools/" + std::to_string(p) + "/disks";
            checkDisks(arrayMember(pools[p], "disks"), poolPath, &found);
        }
    }
    checkDisks(arrayMember(model, "freeDisks"), "/freeDisks", &found);
    return found;
}
