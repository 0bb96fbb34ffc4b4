// One event as one JSON object: what the event socket reads and what tools
// write. Every mistake is reported with the member at fault and what it may
// hold, because the sender is usually a person typing at a shell.

#include <qzsim/SimControl.h>

#include "JsonReader.h"
#include "SimState.h"
#include "TextCopy.h"

#include <nlohmann/json.hpp>

#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <sys/time.h>

namespace qzsim {

namespace {

using nlohmann::json;

// Indexed by MgmtEventType: the enumerator's name without its prefix.
const char* const kTypeNames[MGMT_EVENT_TYPE_COUNT] = {
    "mount",           "unmount",         "add_disk",        "delete_disk",
    "change_disk",     "sgmgr_takeover",  "node_failure",    "node_recovery",
    "fs_creation",     "fs_deletion",     "fs_state_change", "new_connection",
    "buffer_overflow", "console_message", "hung_thread",     "stgpool_utilization",
    "config_change",   "qzadddisk",       "qzdeldisk"};

using TextField = char (Event::*)[MGMT_TEXT_LEN];

struct TextMember {
    const char* name;
    TextField field;
};

const TextMember kTextMembers[] = {
    {"severity", &Event::severity},
    {"node", &Event::nodeName},
    {"nodeIp", &Event::nodeIpAddr},
    {"fs", &Event::fsName},
    {"disk", &Event::diskName},
    {"pool", &Event::poolName},
    {"diskStatus", &Event::diskStatus},
    {"diskAvailability", &Event::diskAvailability},
    {"failureGroup", &Event::failureGroup},
    {"metadata", &Event::metadata},
    {"data", &Event::data},
    {"sgmgrIp", &Event::sgmgrIpAddr},
    {"prevSgmgrIp", &Event::prevSgmgrIpAddr},
    {"userUnbalanced", &Event::userUnbalanced},
    {"metaUnbalanced", &Event::metaUnbalanced},
    {"userIllReplicated", &Event::userIllReplicated},
    {"metaIllReplicated", &Event::metaIllReplicated},
    {"userExposed", &Event::userExposed},
    {"metaExposed", &Event::metaExposed},
    {"diagnosis", &Event::diagnosis},
    {"command", &Event::command},
    {"commandStatus", &Event::commandStatus},
};

const char* const kNumberMembers[] = {"seconds", "microseconds", "waitTime", "utilization",
                                      "commandResult"};

std::string allowedTypes() {
    std::string list;
    for (const char* name : kTypeNames) {
        list += name;
        list += ", ";
    }
    return list + "or a number from 0 to " + std::to_string(MGMT_EVENT_TYPE_COUNT - 1);
}

std::string allowedMembers() {
    std::string list = "type";
    for (const char* name : kNumberMembers) {
        list += std::string(", ") + name;
    }
    for (const TextMember& member : kTextMembers) {
        list += std::string(", ") + member.name;
    }
    return list;
}

[[noreturn]] void fail(const std::string& member, const std::string& problem,
                       const std::string& allowed) {
    throw std::invalid_argument("member \"" + member + "\": " + problem + "; allowed: " + allowed);
}

// "a text" rather than nlohmann's "string", for people who do not write JSON daily.
std::string describe(const json& value) {
    const char* kind = value.is_string()    ? "a text"
                       : value.is_number()  ? "the number"
                       : value.is_boolean() ? "the value"
                       : value.is_null()    ? "null"
                       : value.is_array()   ? "an array"
                                            : "an object";
    if (value.is_null() || value.is_array() || value.is_object()) {
        return kind;
    }
    return std::string(kind) + " " + value.dump();
}

long long wholeNumber(const json& value, const std::string& member, long long low, long long high) {
    std::string allowed =
        "a whole number from " + std::to_string(low) + " to " + std::to_string(high);
    if (value.is_number_unsigned()) {
        unsigned long long number = value.get<unsigned long long>();
        if (number <= static_cast<unsigned long long>(high)) {
            return static_cast<long long>(number);
        }
    } else if (value.is_number_integer()) {
        long long number = value.get<long long>();
        if (number >= low && number <= high) {
            return number;
        }
    }
    fail(member, "found " + describe(value), allowed);
}

int eventType(const json& value) {
    if (value.is_string()) {
        std::string name = value.get<std::string>();
        for (int type = 0; type < MGMT_EVENT_TYPE_COUNT; ++type) {
            if (name == kTypeNames[type]) {
                return type;
            }
        }
        fail("type", "unknown event type " + value.dump(), allowedTypes());
    }
    if (!value.is_number_integer()) {
        fail("type", "found " + describe(value), allowedTypes());
    }
    if (value.is_number_unsigned() &&
        value.get<unsigned long long>() < static_cast<unsigned long long>(MGMT_EVENT_TYPE_COUNT)) {
        return static_cast<int>(value.get<unsigned long long>());
    }
    fail("type", "no event type has the number " + value.dump(), allowedTypes());
}

const TextMember* findTextMember(const std::string& name) {
    for (const TextMember& member : kTextMembers) {
        if (name == member.name) {
            return &member;
        }
    }
    return nullptr;
}

void storeText(Event& event, const TextMember& member, const json& value) {
    std::string allowed = "a text of at most " + std::to_string(MGMT_TEXT_LEN - 1) + " bytes";
    if (!value.is_string()) {
        fail(member.name, "found " + describe(value), allowed);
    }
    const std::string& text = value.get_ref<const std::string&>();
    if (text.size() >= static_cast<std::size_t>(MGMT_TEXT_LEN)) {
        fail(member.name, "text of " + std::to_string(text.size()) + " bytes is too long", allowed);
    }
    copyText(event.*member.field, text);
}

// Most event consumers identify a node by its address, people by its name:
// whichever of the two the sender left out is taken from the cluster model.
void completeNode(Event& event, bool haveName, bool haveIp) {
    if (haveName == haveIp) {
        return;
    }
    std::lock_guard<std::mutex> lock(SimState::instance().mutex());
    ClusterModel* model = SimState::instance().model();
    if (model == nullptr) {
        return;
    }
    for (const SimNode& node : model->nodes) {
        if (haveName && std::strcmp(node.info.name, event.nodeName) == 0) {
            copyText(event.nodeIpAddr, node.info.ipAddr);
            return;
        }
        if (haveIp && std::strcmp(node.info.ipAddr, event.nodeIpAddr) == 0) {
            copyText(event.nodeName, node.info.name);
            return;
        }
    }
}

std::string parseProblem(const json::parse_error& e) {
    // "[json.exception.parse_error.101] parse error at line 1, column 5: syntax error ..."
    std::string what = e.what();
    std::size_t column = what.find("column ");
    std::size_t colon = what.find(": ", column == std::string::npos ? 0 : column);
    std::string problem = colon == std::string::npos ? what : what.substr(colon + 2);
    return "not valid JSON at byte " + std::to_string(e.byte) + ": " + problem;
}

} // namespace

Event eventFromJson(const std::string& text) {
    json root;
    try {
        root = json::parse(text);
    } catch (const json::parse_error& e) {
        throw std::invalid_argument(parseProblem(e));
    } catch (const json::exception& e) {
        std::string problem;
        const std::size_t byte = overflowPlace(text, e, &problem);
        throw std::invalid_argument(
            "not valid JSON" + (byte == 0 ? std::string() : " at byte " + std::to_string(byte)) +
            ": " + problem);
    }
    if (!root.is_object()) {
        throw std::invalid_argument("expected one JSON object such as {\"type\": \"mount\", "
                                    "\"node\": \"node1\", \"fs\": \"fs1\"}, found " +
                                    describe(root));
    }

    Event event;
    bool haveType = false, haveName = false, haveIp = false;
    bool haveSeconds = false, haveMicroseconds = false;
    for (auto it = root.begin(); it != root.end(); ++it) {
        const std::string& name = it.key();
        const json& value = it.value();
        if (name == "type") {
            event.type = eventType(value);
            haveType = true;
        } else if (const TextMember* member = findTextMember(name)) {
            storeText(event, *member, value);
            haveName = haveName || member->field == &Event::nodeName;
            haveIp = haveIp || member->field == &Event::nodeIpAddr;
        } else if (name == "seconds") {
            event.tvSec = static_cast<unsigned long long>(
                wholeNumber(value, name, 0, std::numeric_limits<long long>::max()));
            haveSeconds = true;
        } else if (name == "microseconds") {
            event.tvUsec = static_cast<unsigned long long>(wholeNumber(value, name, 0, 999999));
            haveMicroseconds = true;
        } else if (name == "waitTime") {
            event.waitTime = static_cast<unsigned int>(
                wholeNumber(value, name, 0, std::numeric_limits<unsigned int>::max()));
        } else if (name == "utilization") {
            event.utilization = static_cast<unsigned int>(wholeNumber(value, name, 0, 100));
        } else if (name == "commandResult") {
            event.commandResult = static_cast<int>(wholeNumber(
                value, name, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
        } else {
            fail(name, "unknown member", allowedMembers());
        }
    }
    if (!haveType) {
        fail("type", "missing", allowedTypes());
    }
    if (haveMicroseconds && !haveSeconds) {
        fail("microseconds", "given without \"seconds\"",
             "both \"seconds\" and \"microseconds\", \"seconds\" alone, or neither (now)");
    }
    if (!haveSeconds) {
        struct timeval now;
        gettimeofday(&now, nullptr);
        event.tvSec = static_cast<unsigned long long>(now.tv_sec);
        event.tvUsec = static_cast<unsigned long long>(now.tv_usec);
    }
    completeNode(event, haveName, haveIp);
    return event;
}

const char* eventTypeName(int type) {
    return type >= 0 && type < MGMT_EVENT_TYPE_COUNT ? kTypeNames[type] : nullptr;
}

} // namespace qzsim
