#ifndef QZANTRAS_MGMT_TYPES_H
#define QZANTRAS_MGMT_TYPES_H

// Value types shared by every part of the management library interface.

typedef int MErrno;

// How the library reaches the file-system daemon. Callers pass 1.
enum MgmtProtocol { MGMT_PROTOCOL_NONE = 0, MGMT_PROTOCOL_LOCAL = 1, MGMT_PROTOCOL_REMOTE = 2 };

// Size of the fixed text fields of the records, terminator included.
constexpr int MGMT_TEXT_LEN = 256;
// Policy rule texts are longer than names.
constexpr int MGMT_RULE_TEXT_LEN = 1024;

// Results of the library's operations. 0 is success; 1 is never returned
// so that callers can keep it for failures of their own.
enum MgmtError {
    MGMT_OK = 0,
    MGMT_E_MODEL_LOAD = 2,         // the cluster model could not be loaded
    MGMT_E_NOT_INITIALIZED = 3,    // PollingHandler::init has not run
    MGMT_E_DAEMON_DOWN = 4,        // the file-system daemon is not running
    MGMT_E_INVALID_ARG = 5,        // null pointer, empty or malformed value
    MGMT_E_NAME_TOO_LONG = 6,      // a name does not fit its record field
    MGMT_E_NO_FILESYSTEM = 7,      // unknown file system (or mount point)
    MGMT_E_NO_POOL = 8,            // unknown storage pool
    MGMT_E_NO_FILESET = 9,         // unknown fileset or junction
    MGMT_E_FILESET_EXISTS = 10,    // a fileset of that name exists already
    MGMT_E_FILESET_LINKED = 11,    // the fileset is linked (link twice, delete without force)
    MGMT_E_FILESET_UNLINKED = 12,  // the fileset is not linked
    MGMT_E_ROOT_FILESET = 13,      // the root fileset cannot be unlinked or deleted
    MGMT_E_JUNCTION_IN_USE = 14,   // another fileset is linked at that path
    MGMT_E_NOT_MOUNTED = 15,       // the file system's mount point is not known
    MGMT_E_NO_ENTITY = 16,         // unknown user, group or fileset for a quota or owner
    MGMT_E_BAD_LIMITS = 17,        // a soft limit above its hard limit
    MGMT_E_NOT_JUNCTION = 18,      // the path is no fileset junction
    MGMT_E_UNKNOWN_COMMAND = 19,   // addExecutionTask with a command the library does not run
    MGMT_E_UNKNOWN_ATTRIBUTE = 20, // a configuration attribute the library does not know
    MGMT_E_NO_NODE = 21,           // unknown node
    MGMT_E_BAD_VALUE = 22,         // an attribute value that does not parse or is out of range
    MGMT_E_INTERNAL = 23,          // the library itself failed (out of memory)
    MGMT_E_STATE_WRITE = 24        // the change could not be saved to the state file; nothing changed
};

// File-system daemon states reported by PollingHandler::getDaemonState().
enum MgmtDaemonState {
    MGMT_DAEMON_ACTIVE = 0,
    MGMT_DAEMON_DOWN = 1,
    MGMT_DAEMON_ARBITRATING = 2,
    MGMT_DAEMON_UNKNOWN = 3
};

// Quota kinds of getQuota.
enum MgmtQuotaKind { MGMT_QUOTA_GROUP = 1, MGMT_QUOTA_USER = 2, MGMT_QUOTA_FILESET = 3 };

// Event types delivered by EventsHandler; Event::type holds one of them.
enum MgmtEventType {
    MGMT_EVENT_MOUNT = 0,
    MGMT_EVENT_UNMOUNT = 1,
    MGMT_EVENT_ADD_DISK = 2,
    MGMT_EVENT_DELETE_DISK = 3,
    MGMT_EVENT_CHANGE_DISK = 4,
    MGMT_EVENT_SGMGR_TAKEOVER = 5,
    MGMT_EVENT_NODE_FAILURE = 6,
    MGMT_EVENT_NODE_RECOVERY = 7,
    MGMT_EVENT_FS_CREATION = 8,
    MGMT_EVENT_FS_DELETION = 9,
    MGMT_EVENT_FS_STATE_CHANGE = 10,
    MGMT_EVENT_NEW_CONNECTION = 11,
    MGMT_EVENT_BUFFER_OVERFLOW = 12,
    MGMT_EVENT_CONSOLE_MESSAGE = 13,
    MGMT_EVENT_HUNG_THREAD = 14,
    MGMT_EVENT_STGPOOL_UTILIZATION = 15,
    MGMT_EVENT_CONFIG_CHANGE = 16,
    MGMT_EVENT_QZADDDISK = 17,
    MGMT_EVENT_QZDELDISK = 18,
    MGMT_EVENT_TYPE_COUNT = 19
};

#endif
