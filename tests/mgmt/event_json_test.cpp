// Events written as JSON: type names and numbers, the fields they fill, and
// errors that tell the sender what to write instead.

#include "SimTestSupport.h"

#include <qzantras/MgmtTypes.h>

#include <stdexcept>
#include <string>
#include <sys/time.h>

namespace {

// The error text of eventFromJson, or "" when the text is accepted.
std::string problemWith(const std::string& json) {
    try {
        qzsim::eventFromJson(json);
    } catch (const std::invalid_argument& e) {
        return e.what();
    }
    return "";
}

} // namespace

TEST(EventJsonTest, TypesAreAcceptedByNameAndByNumber) {
    for (int type = 0; type < MGMT_EVENT_TYPE_COUNT; ++type) {
        const char* name = qzsim::eventTypeName(type);
        ASSERT_NE(nullptr, name) << type;
        EXPECT_EQ(type, qzsim::eventFromJson(std::string("{\"type\": \"") + name + "\"}").type);
        EXPECT_EQ(type, qzsim::eventFromJson("{\"type\": " + std::to_string(type) + "}").type);
    }
    EXPECT_EQ(MGMT_EVENT_SGMGR_TAKEOVER,
              qzsim::eventFromJson(R"({"type": "sgmgr_takeover"})").type);
    EXPECT_EQ(MGMT_EVENT_QZDELDISK, qzsim::eventFromJson(R"({"type": "qzdeldisk"})").type);
    EXPECT_EQ(nullptr, qzsim::eventTypeName(MGMT_EVENT_TYPE_COUNT));
    EXPECT_EQ(nullptr, qzsim::eventTypeName(-1));
}

TEST(EventJsonTest, MembersFillTheirOwnFields) {
    Event e = qzsim::eventFromJson(R"({
        "type": "change_disk", "seconds": 1700000000, "microseconds": 42, "severity": "warning",
        "node": "n", "nodeIp": "192.0.2.1", "fs": "fs9", "disk": "d9", "pool": "p9",
        "diskStatus": "suspended", "diskAvailability": "Unavailable", "failureGroup": "4",
        "metadata": "no", "data": "yes", "sgmgrIp": "192.0.2.2", "prevSgmgrIp": "192.0.2.3",
        "userUnbalanced": "uu", "metaUnbalanced": "mu", "userIllReplicated": "ui",
        "metaIllReplicated": "mi", "userExposed": "ue", "metaExposed": "me",
        "waitTime": 4294967295, "diagnosis": "stuck", "utilization": 100,
        "command": "qzadddisk fs9 d9", "commandStatus": "done", "commandResult": -7})");
    EXPECT_EQ(MGMT_EVENT_CHANGE_DISK, e.type);
    EXPECT_EQ(1700000000u, e.tvSec);
    EXPECT_EQ(42u, e.tvUsec);
    EXPECT_EQ(4294967295u, e.waitTime);
    EXPECT_EQ(100u, e.utilization);
    EXPECT_EQ(-7, e.commandResult);
    std::string texts;
    for (const char* field :
         {e.severity,          e.nodeName,       e.nodeIpAddr,     e.fsName,
          e.diskName,          e.poolName,       e.diskStatus,     e.diskAvailability,
          e.failureGroup,      e.metadata,       e.data,           e.sgmgrIpAddr,
          e.prevSgmgrIpAddr,   e.userUnbalanced, e.metaUnbalanced, e.userIllReplicated,
          e.metaIllReplicated, e.userExposed,    e.metaExposed,    e.diagnosis,
          e.command,           e.commandStatus}) {
        texts += std::string(field) + "|";
    }
    EXPECT_EQ("warning|n|192.0.2.1|fs9|d9|p9|suspended|Unavailable|4|no|yes|192.0.2.2|192.0.2.3|"
              "uu|mu|ui|mi|ue|me|stuck|qzadddisk fs9 d9|done|",
              texts);

    // A text of exactly the field's capacity still fits, terminated.
    std::string longest(MGMT_TEXT_LEN - 1, 'x');
    Event full = qzsim::eventFromJson(R"({"type": 0, "fs": ")" + longest + "\"}");
    EXPECT_EQ(longest, std::string(full.fsName));
}

TEST(EventJsonTest, MissingTimesMeanNow) {
    timeval before;
    gettimeofday(&before, nullptr);
    Event now = qzsim::eventFromJson(R"({"type": "mount"})");
    timeval after;
    gettimeofday(&after, nullptr);
    EXPECT_GE(now.tvSec, static_cast<unsigned long long>(before.tv_sec));
    EXPECT_LE(now.tvSec, static_cast<unsigned long long>(after.tv_sec));

    Event secondsOnly = qzsim::eventFromJson(R"({"type": "mount", "seconds": 5})");
    EXPECT_EQ(5u, secondsOnly.tvSec);
    EXPECT_EQ(0u, secondsOnly.tvUsec);
}

TEST(EventJsonTest, ErrorsNameTheMemberAndWhatItAllows) {
    std::string unknown = problemWith(R"({"type": "mount", "filesystem": "fs1"})");
    EXPECT_NE(std::string::npos, unknown.find("member \"filesystem\": unknown member")) << unknown;
    EXPECT_NE(std::string::npos, unknown.find("allowed: type, seconds,")) << unknown;
    EXPECT_NE(std::string::npos, unknown.find(", fs,")) << unknown;

    std::string badName = problemWith(R"({"type": "mout"})");
    EXPECT_NE(std::string::npos, badName.find("member \"type\": unknown event type \"mout\""))
        << badName;
    EXPECT_NE(std::string::npos, badName.find("allowed: mount, unmount, add_disk")) << badName;
    EXPECT_NE(std::string::npos, badName.find("or a number from 0 to 18")) << badName;

    EXPECT_NE(std::string::npos, problemWith(R"({"type": 19})").find("no event type has the"));
    EXPECT_NE(std::string::npos, problemWith(R"({"type": -1})").find("member \"type\""));
    EXPECT_NE(std::string::npos, problemWith(R"({"type": 2.0})").find("member \"type\""));
    EXPECT_NE(std::string::npos, problemWith(R"({"type": true})").find("found the value true"));
    EXPECT_NE(std::string::npos, problemWith(R"({"fs": "fs1"})").find("\"type\": missing"));

    EXPECT_EQ("member \"fs\": found the number 7; allowed: a text of at most 255 bytes",
              problemWith(R"({"type": 0, "fs": 7})"));
    std::string tooLong =
        problemWith(R"({"type": 0, "disk": ")" + std::string(MGMT_TEXT_LEN, 'd') + "\"}");
    EXPECT_NE(std::string::npos, tooLong.find("member \"disk\": text of 256 bytes is too long"))
        << tooLong;

    EXPECT_EQ("member \"utilization\": found the number 101; allowed: a whole number from 0 to 100",
              problemWith(R"({"type": 15, "utilization": 101})"));
    EXPECT_NE(std::string::npos,
              problemWith(R"({"type": 0, "seconds": 1, "microseconds": 1000000})")
                  .find("from 0 to 999999"));
    EXPECT_NE(std::string::npos,
              problemWith(R"({"type": 0, "waitTime": -1})").find("member \"waitTime\""));
    EXPECT_NE(std::string::npos,
              problemWith(R"({"type": 0, "commandResult": 2147483648})").find("-2147483648"));
    EXPECT_NE(std::string::npos,
              problemWith(R"({"type": 0, "microseconds": 5})").find("given without \"seconds\""));

    std::string notJson = problemWith(R"({"type": "mount",})");
    EXPECT_EQ(0u, notJson.find("not valid JSON at byte ")) << notJson;
    EXPECT_EQ(std::string::npos, notJson.find("json.exception")) << notJson;
    EXPECT_NE(std::string::npos, problemWith(R"(["mount"])").find("found an array"));
    EXPECT_NE(std::string::npos, problemWith("").find("not valid JSON"));
    // Found by fuzzing: a number no JSON type holds escaped as another exception.
    EXPECT_EQ("not valid JSON at byte 25: number overflow parsing '1e999'",
              problemWith(R"({"type": 0, "waitTime": 1e999})"));
}

class EventJsonModelTest : public SimTest {};

TEST_F(EventJsonModelTest, TheMissingHalfOfNodeNameAndAddressComesFromTheModel) {
    Event byName = qzsim::eventFromJson(R"({"type": "mount", "node": "node2"})");
    EXPECT_STREQ("10.0.0.12", byName.nodeIpAddr);

    Event byIp = qzsim::eventFromJson(R"({"type": "qzadddisk", "nodeIp": "10.0.0.13"})");
    EXPECT_STREQ("node3", byIp.nodeName);

    // What the sender wrote is never replaced, and strangers stay strangers.
    Event both = qzsim::eventFromJson(R"({"type": 0, "node": "node2", "nodeIp": ""})");
    EXPECT_STREQ("", both.nodeIpAddr);
    Event unknown = qzsim::eventFromJson(R"({"type": 0, "node": "node99"})");
    EXPECT_STREQ("", unknown.nodeIpAddr);

    qzsim::reset(); // no model at all
    Event noModel = qzsim::eventFromJson(R"({"type": 0, "node": "node2"})");
    EXPECT_STREQ("", noModel.nodeIpAddr);
}
