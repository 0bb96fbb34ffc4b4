// The administration commands the execution thread knows. "qzchconfig"
// changes node settings: arguments "attribute=value ..." with an optional
// "-N node[,node...]" (all nodes when absent). The whole command is checked
// before anything changes, so a bad attribute changes nothing.

#include "OpScope.h"
#include "SizeText.h"
#include "TaskRunner.h"

#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

#include <cctype>
#include <cstring>
#include <functional>
#include <limits>
#include <sstream>
#include <vector>

namespace qzsim {

namespace {

std::string lower(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

using NodeChange = std::function<void(NodeInfoData&)>;

// Returns 0 and the change to apply, or an error code.
int parseSetting(OpScope& op, const std::string& name, const std::string& value, NodeChange* change,
                 std::function<void(ClusterInfoData&)>* clusterChange) {
    static const std::vector<std::pair<const char*, unsigned int NodeInfoData::*>> counts = {
        {"prefetchthreads", &NodeInfoData::prefetchThreads},
        {"maxmbps", &NodeInfoData::maxMbps},
        {"maxfilestocache", &NodeInfoData::maxFilesToCache},
        {"maxstatcache", &NodeInfoData::maxStatCache},
        {"worker1threads", &NodeInfoData::worker1Threads},
        {"dmapieventtimeout", &NodeInfoData::dmapiEventTimeout},
        {"dmapimounttimeout", &NodeInfoData::dmapiMountTimeout},
        {"dmapisessionfailuretimeout", &NodeInfoData::dmapiSessFailureTimeout},
        {"dmapisessfailuretimeout", &NodeInfoData::dmapiSessFailureTimeout},
        {"nsdserverwaittimewindowonmount", &NodeInfoData::nsdServerWaitTimeWindowOnMount},
        {"nsdserverwaittimeformount", &NodeInfoData::nsdServerWaitTimeForMount}};
    std::string key = lower(name);
    for (const auto& entry : counts) {
        if (key == entry.first) {
            unsigned long long number = 0;
            if (!parseUnsigned(value, &number) ||
                number > std::numeric_limits<unsigned int>::max()) {
                return op.fail(MGMT_E_BAD_VALUE, "Invalid value '%s' for attribute %s.",
                               value.c_str(), name.c_str());
            }
            unsigned int NodeInfoData::*field = entry.second;
            *change = [field, number](NodeInfoData& n) {
                n.*field = static_cast<unsigned int>(number);
            };
            return 0;
        }
    }
    if (key == "pagepool") {
        unsigned long long bytes = 0;
        if (!parseSize(value, &bytes) || bytes == 0) {
            return op.fail(MGMT_E_BAD_VALUE, "Invalid value '%s' for attribute %s.", value.c_str(),
                           name.c_str());
        }
        *change = [bytes](NodeInfoData& n) { n.pagePool = bytes; };
        return 0;
    }
    if (key == "unmountondiskfail") {
        if (value != "yes" && value != "no" && value != "meta") {
            return op.fail(MGMT_E_BAD_VALUE, "Invalid value '%s' for attribute %s (yes, no, meta).",
                           value.c_str(), name.c_str());
        }
        *change = [value](NodeInfoData& n) {
            std::snprintf(n.unmountOnDiskFail, sizeof n.unmountOnDiskFail, "%s", value.c_str());
        };
        return 0;
    }
    if (key == "failuredetectiontime") {
        unsigned long long number = 0;
        if (!parseUnsigned(value, &number) || number < 10 || number > 300) {
            return op.fail(MGMT_E_BAD_VALUE, "Invalid value '%s' for attribute %s (10 to 300).",
                           value.c_str(), name.c_str());
        }
        *clusterChange = [number](ClusterInfoData& c) {
            c.failureDetectionTime = static_cast<unsigned int>(number);
        };
        return 0;
    }
    return op.fail(MGMT_E_UNKNOWN_ATTRIBUTE, "Unknown attribute %s.", name.c_str());
}

int changeConfig(const std::string& arguments) {
    OpScope op("qzchconfig", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    ClusterModel& model = op.model();
    std::istringstream words(arguments);
    std::string word;
    std::vector<std::string> settings;
    std::vector<SimNode*> targets;
    bool nodesGiven = false;
    while (words >> word) {
        if (word == "-N") {
            std::string list;
            if (!(words >> list)) {
                return op.fail(MGMT_E_INVALID_ARG, "Option -N needs a node list.");
            }
            nodesGiven = true;
            std::istringstream names(list);
            std::string name;
            while (std::getline(names, name, ',')) {
                SimNode* node = model.findNode(name);
                if (node == nullptr) {
                    return op.fail(MGMT_E_NO_NODE, "Unknown node %s.", name.c_str());
                }
                targets.push_back(node);
            }
        } else if (word == "-i" || word == "-I") {
            // immediate or deferred: the simulation applies at once either way
        } else {
            std::istringstream parts(word);
            std::string part;
            while (std::getline(parts, part, ',')) {
                if (!part.empty()) {
                    settings.push_back(part);
                }
            }
        }
    }
    if (settings.empty()) {
        return op.fail(MGMT_E_INVALID_ARG, "No attribute to change.");
    }
    if (!nodesGiven) {
        for (SimNode& node : model.nodes) {
            targets.push_back(&node);
        }
    }
    std::vector<NodeChange> nodeChanges;
    std::vector<std::function<void(ClusterInfoData&)>> clusterChanges;
    for (const std::string& setting : settings) {
        std::size_t eq = setting.find('=');
        if (eq == std::string::npos || eq == 0) {
            return op.fail(MGMT_E_INVALID_ARG, "Expected attribute=value, found '%s'.",
                           setting.c_str());
        }
        NodeChange change;
        std::function<void(ClusterInfoData&)> clusterChange;
        if (int rc = parseSetting(op, setting.substr(0, eq), setting.substr(eq + 1), &change,
                                  &clusterChange)) {
            return rc;
        }
        if (change) {
            nodeChanges.push_back(change);
        }
        if (clusterChange) {
            clusterChanges.push_back(clusterChange);
        }
    }
    op.beginChange();
    for (SimNode* node : targets) {
        for (const NodeChange& change : nodeChanges) {
            change(node->info);
        }
    }
    for (const auto& change : clusterChanges) {
        change(model.header);
    }
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("qzchconfig: %s applied to %zu node(s).", arguments.c_str(), targets.size());
    return 0;
}

} // namespace

int runCommand(const std::string& command, const std::string& arguments) {
    if (command == "qzchconfig") {
        return changeConfig(arguments);
    }
    ts_log(2, "PollingHandler::executionThread", "unknown command %s\n", command.c_str());
    return MGMT_E_UNKNOWN_COMMAND;
}

} // namespace qzsim
