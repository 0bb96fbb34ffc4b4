// Indication instances: the common properties every indication carries, the
// event's own values by class, and the object paths of the elements the
// event names.
#include "indicationInstance.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

#include <cstdio>
#include <vector>

#include "cimProvider.h"
#include "classNames.h"
#include "lockGuards.h"
#include "processFlags.h"

PEGASUS_USING_PEGASUS;

namespace {

// One property copied from the event.
struct EventProperty {
    const char* name;
    CIMValue (*value)(const Event&);
};

CIMValue text(const char* field) { return CIMValue(String(field)); }

const EventProperty NODE_IP = {"vexaNodeIP", [](const Event& e) { return text(e.nodeIpAddr); }};
const EventProperty NODE_NAME = {"vexaNodeName", [](const Event& e) { return text(e.nodeName); }};
const EventProperty FS_NAME = {"vexaFileSystemName", [](const Event& e) { return text(e.fsName); }};
const EventProperty DISK_NAME = {"vexaDiskName", [](const Event& e) { return text(e.diskName); }};
const EventProperty SGMGR_IP = {"vexaSgmgrIpAddress",
                                [](const Event& e) { return text(e.sgmgrIpAddr); }};

// How a path property finds its element in the instance store.
enum class Find {
    NodeByIp,
    FileSystem,
    Disk,
    PoolOfDisk, // the pool that holds the event's disk in the event's file system
    PoolByName  // the event's pool in the event's file system
};

struct PathLookup {
    const char* property;
    Find find;
    // The key for NodeByIp, FileSystem and Disk; the pool look-ups read the
    // file system, disk and pool names themselves.
    char* (*key)(Event&);
};

char* nodeIp(Event& e) { return e.nodeIpAddr; }
char* sgmgrIp(Event& e) { return e.sgmgrIpAddr; }
char* prevSgmgrIp(Event& e) { return e.prevSgmgrIpAddr; }
char* fsName(Event& e) { return e.fsName; }
char* diskName(Event& e) { return e.diskName; }

const PathLookup NODE_PATH = {"vexaNodeInstancePath", Find::NodeByIp, nodeIp};
const PathLookup FS_PATH = {"vexaFileSystemInstancePath", Find::FileSystem, fsName};
const PathLookup DISK_POOL_PATH = {"vexaStoragePoolInstancePath", Find::PoolOfDisk, 0};
const PathLookup DISK_PATH = {"vexaNsdInstancePath", Find::Disk, diskName};

// What one indication class carries beyond the common properties.
struct IndicationShape {
    const CIMName& className;
    const char* indicationType;
    const char* indicationName;
    std::vector<EventProperty> properties;
    // Empty for the command indications: they name no stored element and
    // take no lock.
    std::vector<PathLookup> lookups;
};

// In the order the classes are compared; the first equal one is used.
const std::vector<IndicationShape>& indicationShapes() {
    static const std::vector<EventProperty> mountProperties = {NODE_IP, FS_NAME};
    static const std::vector<PathLookup> mountLookups = {NODE_PATH, FS_PATH};
    static const std::vector<EventProperty> diskProperties = {NODE_IP, FS_NAME, DISK_NAME};
    static const std::vector<PathLookup> diskLookups = {NODE_PATH, FS_PATH, DISK_POOL_PATH,
                                                        DISK_PATH};
    static const std::vector<EventProperty> fsProperties = {SGMGR_IP, FS_NAME};
    static const std::vector<PathLookup> fsLookups = {
        {"vexaNodeInstancePath", Find::NodeByIp, sgmgrIp}, FS_PATH};
    static const std::vector<EventProperty> commandProperties = {
        NODE_NAME,
        FS_NAME,
        DISK_NAME,
        {"vexaCommand", [](const Event& e) { return text(e.command); }},
        {"vexaCommandStatus", [](const Event& e) { return text(e.commandStatus); }},
        {"vexaCommandResult",
         [](const Event& e) { return CIMValue(static_cast<Sint32>(e.commandResult)); }}};

    static const std::vector<IndicationShape> shapes = {
        {VEXA_IND_MOUNT, "internal", "mount", mountProperties, mountLookups},
        {VEXA_IND_UNMOUNT, "internal", "unmount", mountProperties, mountLookups},
        {VEXA_IND_ADDDISK, "internal", "adddisk", diskProperties, diskLookups},
        {VEXA_IND_DELDISK, "internal", "deldisk", diskProperties, diskLookups},
        {VEXA_IND_CHDISK,
         "internal",
         "chdisk",
         {NODE_IP,
          FS_NAME,
          DISK_NAME,
          {"vexaDiskStatus", [](const Event& e) { return text(e.diskStatus); }},
          {"vexaDiskAvailability", [](const Event& e) { return text(e.diskAvailability); }},
          {"vexaDiskFailureGroupName", [](const Event& e) { return text(e.failureGroup); }},
          {"vexaDiskMetadata", [](const Event& e) { return text(e.metadata); }},
          {"vexaDiskData", [](const Event& e) { return text(e.data); }}},
         diskLookups},
        {VEXA_IND_MGR_TAKEOVER,
         "internal",
         "sgmgr_takeover",
         {SGMGR_IP,
          {"vexaPrevSgmgrIpAddress", [](const Event& e) { return text(e.prevSgmgrIpAddr); }},
          FS_NAME},
         {{"vexaNodeInstancePath", Find::NodeByIp, sgmgrIp},
          {"vexaPrevNodeInstancePath", Find::NodeByIp, prevSgmgrIp},
          FS_PATH}},
        {VEXA_IND_NODE_FAILURE, "internal", "node_failure", {NODE_IP}, {NODE_PATH}},
        {VEXA_IND_NODE_RECOVERY, "internal", "node_recovery", {NODE_IP}, {NODE_PATH}},
        {VEXA_IND_CRFS, "internal", "crfs", fsProperties, fsLookups},
        {VEXA_IND_DELFS, "internal", "delfs", fsProperties, fsLookups},
        {VEXA_IND_CHFS,
         "internal",
         "chfs",
         {FS_NAME,
          {"vexaUserUnbalanced", [](const Event& e) { return text(e.userUnbalanced); }},
          {"vexaMetaUnbalanced", [](const Event& e) { return text(e.metaUnbalanced); }},
          {"vexaUserIllReplicated", [](const Event& e) { return text(e.userIllReplicated); }},
          {"vexaMetaIllReplicated", [](const Event& e) { return text(e.metaIllReplicated); }},
          {"vexaUserExposed", [](const Event& e) { return text(e.userExposed); }},
          {"vexaMetaExposed", [](const Event& e) { return text(e.metaExposed); }}},
         {FS_PATH}},
        {VEXA_IND_NEW_CONN, "internal", "new_conn", {NODE_IP}, {NODE_PATH}},
        {VEXA_IND_EVT_OVERFLOW, "internal", "event_overflow", {NODE_IP}, {NODE_PATH}},
        {VEXA_IND_HUNGTHREAD,
         "internal",
         "hungthread",
         {NODE_IP,
          {"vexaWaitTime",
           [](const Event& e) { return CIMValue(static_cast<Uint32>(e.waitTime)); }},
          {"vexaDiagnosis", [](const Event& e) { return text(e.diagnosis); }}},
         {NODE_PATH}},
        {VEXA_IND_STGPOOL_UTIL,
         "internal",
         "stgpool_util",
         {FS_NAME,
          {"vexaStgPoolName", [](const Event& e) { return text(e.poolName); }},
          {"vexaStgPoolUtil",
           [](const Event& e) { return CIMValue(static_cast<Uint32>(e.utilization)); }}},
         {FS_PATH, {"vexaStoragePoolInstancePath", Find::PoolByName, 0}}},
        {VEXA_IND_QZADDDISK, "command", "qzadddisk", commandProperties, {}},
        {VEXA_IND_QZDELDISK, "command", "qzdeldisk", commandProperties, {}},
    };
    return shapes;
}

const IndicationShape* shapeOf(const CIMName& className) {
    for (const IndicationShape& shape : indicationShapes()) {
        if (shape.className == className) {
            return &shape;
        }
    }
    return 0;
}

// The stored element a look-up names, or null. Runs under the read lock.
CIMInstance* findElement(VexaProvider& provider, const PathLookup& lookup, Event& event) {
    // Two names of at most MGMT_TEXT_LEN - 1 characters, "+" and the NUL.
    char generated[2 * MGMT_TEXT_LEN];
    char* buffer = generated;
    switch (lookup.find) {
    case Find::NodeByIp:
        return provider.findVexaInstance(VexaProvider::VEXA_INST_NODE_BY_IP, lookup.key(event));
    case Find::FileSystem:
        return provider.findVexaInstance(VexaProvider::VEXA_INST_FILESYSTEM, lookup.key(event));
    case Find::Disk:
        return provider.findVexaInstance(VexaProvider::VEXA_INST_DISK, lookup.key(event));
    case Find::PoolOfDisk: {
        char* poolName = provider.getStgPoolName(event.fsName, event.diskName);
        if (poolName == 0) {
            return 0;
        }
        return provider.findVexaInstance(VexaProvider::VEXA_INST_STORAGE_POOL,
                                         provider.genStgPoolName(&buffer, event.fsName, poolName));
    }
    case Find::PoolByName:
        return provider.findVexaInstance(
            VexaProvider::VEXA_INST_STORAGE_POOL,
            provider.genStgPoolName(&buffer, event.fsName, event.poolName));
    }
    return 0;
}

void addPaths(CIMInstance& indication, const IndicationShape& shape, Event& event) {
    // Null before initialize publishes the provider and once terminate has
    // withdrawn it: the indication then goes out without paths.
    VexaProvider* provider = loadFlag(theVexaProvider);
    if (provider == 0 || shape.lookups.empty()) {
        return;
    }
    CacheReadLock lock(*provider);
    for (const PathLookup& lookup : shape.lookups) {
        CIMInstance* element = findElement(*provider, lookup, event);
        if (element != 0) {
            indication.addProperty(
                CIMProperty(CIMName(lookup.property), CIMValue(element->getPath().toString())));
        }
    }
}

} // namespace

CIMInstance createVexaIndicationInstance(const CIMName& className, Event* event, void*) {
    CIMInstance indication(className);
    // Indications carry the source namespace and their class, and no keys:
    // the server routes them by that namespace.
    CIMObjectPath path;
    path.setNameSpace(NAMESPACE);
    path.setClassName(className);
    indication.setPath(path);

    char identifier[32];
    snprintf(identifier, sizeof(identifier), "%llu",
             CIMDateTime::getCurrentDateTime().toMicroSeconds());
    indication.addProperty(
        CIMProperty(CIMName("IndicationIdentifier"), CIMValue(String(identifier))));
    indication.addProperty(
        CIMProperty(CIMName("IndicationTime"), CIMValue(CIMDateTime::getCurrentDateTime())));
    indication.addProperty(
        CIMProperty(CIMName("CorrelatedIndications"), CIMValue(Array<String>())));
    indication.addProperty(CIMProperty(CIMName("vexaEventCreationTimeInSeconds"),
                                       CIMValue(static_cast<Uint64>(event->tvSec))));
    indication.addProperty(CIMProperty(CIMName("vexaEventCreationTimeInMicroseconds"),
                                       CIMValue(static_cast<Uint64>(event->tvUsec))));
    indication.addProperty(CIMProperty(CIMName("vexaSeverity"), CIMValue(String(event->severity))));

    const IndicationShape* shape = shapeOf(className);
    if (shape == 0) {
        // Logged under the member-style name although this is a free
        // function: the unsupported-class lines of all read operations share
        // that prefix, and log filters for them match it.
        ts_log(2, "VexaProvider::createVexaIndicationInstance", "%s is not supported.\n",
               (const char*)className.getString().getCString());
        return indication;
    }
    indication.addProperty(
        CIMProperty(CIMName("vexaIndicationType"), CIMValue(String(shape->indicationType))));
    indication.addProperty(
        CIMProperty(CIMName("vexaIndicationName"), CIMValue(String(shape->indicationName))));
    for (const EventProperty& property : shape->properties) {
        indication.addProperty(CIMProperty(CIMName(property.name), property.value(*event)));
    }
    addPaths(indication, *shape, *event);
    return indication;
}
