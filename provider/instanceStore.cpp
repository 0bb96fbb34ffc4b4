// Look-ups in the instance cache and the lock that guards it.
#include "cimProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

#include <qzantras/ts_log.h>

PEGASUS_USING_PEGASUS;

static const unsigned VEXA_INST_TYPE_LAST = 5;

const Array<CIMInstance>& VexaProvider::lookupArray(VexaInstanceType type) const {
    switch (type) {
    case VEXA_INST_CLUSTER:
        return clusters;
    case VEXA_INST_NODE_BY_NAME:
    case VEXA_INST_NODE_BY_IP:
        return nodes;
    case VEXA_INST_FILESYSTEM:
        return fileSystems;
    case VEXA_INST_STORAGE_POOL:
        return storagePools;
    case VEXA_INST_DISK:
    default:
        return disks;
    }
}

const char* VexaProvider::lookupKeyProperty(VexaInstanceType type) {
    switch (type) {
    case VEXA_INST_CLUSTER:
        return "vexaClusterName";
    case VEXA_INST_NODE_BY_NAME:
        return "vexaNodeName";
    case VEXA_INST_NODE_BY_IP:
        return "vexaNodeIP";
    case VEXA_INST_FILESYSTEM:
        return "vexaFileSystemName";
    case VEXA_INST_STORAGE_POOL:
        return "vexaStgPoolName";
    case VEXA_INST_DISK:
    default:
        return "vexaDiskName";
    }
}

namespace {

// The thread's provider whose write lock it holds, if any. Only that thread
// may bring an index up to date in the middle of a look-up: readers share
// the indexes and must not change them.
thread_local const VexaProvider* writeLockHolder = 0;

} // namespace

ArrayIndex* VexaProvider::usableIndex(const Array<CIMInstance>& array, ArrayIndex::Kind kind,
                                      const CIMName* keyProperty) {
    ArrayIndex* index = cacheIndexes.find(array, kind, keyProperty);
    if (index == 0)
        return 0;
    if (index->fresh())
        return index;
    if (writeLockHolder != this)
        return 0;
    index->rebuild();
    return index;
}

// Index of the first instance whose key property, as text, equals key
// exactly; later duplicates are never seen. A key that is null or not valid
// UTF-8 matches nothing. The caller holds the lock as it needs.
static int findFirstByKey(VexaProvider& provider, const Array<CIMInstance>& list,
                          const char* property, const char* key) {
    if (key == 0) {
        return -1;
    }
    String wanted;
    try {
        wanted = String(key);
    } catch (const Exception&) {
        return -1;
    }
    const CIMName propertyName(property);
    auto matches = [&](Uint32 i) {
        const CIMInstance& instance = list[i];
        Uint32 pos = instance.findProperty(propertyName);
        return pos != PEG_NOT_FOUND &&
               String::compare(instance.getProperty(pos).getValue().toString(), wanted) == 0;
    };
    int found = -1;
    if (ArrayIndex* index = provider.usableIndex(list, ArrayIndex::ByKeyText, &propertyName)) {
        index->positions().forEach(textHash(wanted), [&](std::uint32_t i) {
            if (!matches(i))
                return false;
            found = static_cast<int>(i);
            return true;
        });
        return found;
    }
    for (Uint32 i = 0; i < list.size(); i++) {
        if (matches(i)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int VexaProvider::findVexaInstIdx(VexaInstanceType type, char* key) {
    if (static_cast<unsigned>(type) > VEXA_INST_TYPE_LAST) {
        return -1;
    }
    int index = findFirstByKey(*this, lookupArray(type), lookupKeyProperty(type), key);
    ts_log(0, "VexaProvider::findVexaInstIdx", "instance index = %d\n", index);
    return index;
}

CIMInstance* VexaProvider::findVexaInstance(VexaInstanceType type, char* key) {
    if (static_cast<unsigned>(type) > VEXA_INST_TYPE_LAST) {
        return 0;
    }
    const Array<CIMInstance>& list = lookupArray(type);
    int index = findFirstByKey(*this, list, lookupKeyProperty(type), key);
    if (index < 0) {
        return 0;
    }
    // Element access through the const array: a mutable access would detach
    // shared storage, which is a write that readers must not make. The
    // pointer stays valid while the array is not changed.
    CIMInstance* found = const_cast<CIMInstance*>(&list[static_cast<Uint32>(index)]);
    ts_log(0, "VexaProvider::findVexaInstance", "instance found = %s\n",
           (const char*)found->getPath().toString().getCString());
    return found;
}

int VexaProvider::getReadLock() { return pthread_rwlock_rdlock(&instanceLock); }

int VexaProvider::getWriteLock() {
    const int result = pthread_rwlock_wrlock(&instanceLock);
    if (result == 0)
        writeLockHolder = this;
    return result;
}

// A writer leaves every index describing the arrays as it leaves them, so
// that readers find them fresh.
int VexaProvider::releaseLock() {
    if (writeLockHolder == this) {
        writeLockHolder = 0;
        try {
            cacheIndexes.refreshStale();
        } catch (...) {
            // Out of memory, most likely: look-ups then walk the arrays.
            cacheIndexes.dropAll();
        }
    }
    return pthread_rwlock_unlock(&instanceLock);
}
