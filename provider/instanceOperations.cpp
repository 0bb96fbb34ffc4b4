// Instance read operations of the CIM server, answered from the instance
// cache. A class the cache does not serve for an operation is logged and
// answered with an empty result, never with an error.
#include "cimProvider.h"
#include "instanceByPath.h"
#include "lockGuards.h"
#include "providerNamespace.h"

#include <Pegasus/Common/CIMName.h>

#include <qzantras/ts_log.h>

PEGASUS_USING_PEGASUS;

namespace {

// What an operation does before it delivers from a class's array.
enum class Rebuild {
    None,
    FullPass,    // the cluster: a throttled pass right before delivery
    Performance, // performance counters are rebuilt on every enumeration
    // Served from the last performance rebuild, which is run first when none
    // has run yet: a CIM server enumerating a superclass asks for every
    // subclass at once, so the per-disk and per-node lists cannot rely on an
    // enumeration of the file-system counters having come before.
    LastPerformance,
    Users, // users and groups are rebuilt and delivered under one write lock
    Groups
};

// One row of the class dispatch table. The asymmetries between the three
// operations (policies only by enumeration, jobs only by getInstance, the
// extra rebuilds only in enumerateInstances) are part of the published
// behaviour.
struct ClassRoute {
    const CIMName& className;
    Array<CIMInstance> VexaProvider::*instances;
    bool byEnumerate;
    bool byNames;
    bool byGet;
    Rebuild rebuild;
};

const ClassRoute ROUTES[] = {
    {REGISTERED_PROFILE, &VexaProvider::registeredProfiles, true, true, true, Rebuild::None},
    {OBJECT_MANAGER, &VexaProvider::objectManagers, true, true, true, Rebuild::None},
    {INDICATION_FILTER, &VexaProvider::indicationFilters, true, true, true, Rebuild::None},
    {VEXA_CLUSTER, &VexaProvider::clusters, true, true, true, Rebuild::FullPass},
    {VEXA_NODE, &VexaProvider::nodes, true, true, true, Rebuild::None},
    {VEXA_FILESYSTEM, &VexaProvider::fileSystems, true, true, true, Rebuild::None},
    {VEXA_DISK, &VexaProvider::disks, true, true, true, Rebuild::None},
    {VEXA_STORAGE_POOL, &VexaProvider::storagePools, true, true, true, Rebuild::None},
    {VEXA_POLICY, &VexaProvider::policies, true, false, false, Rebuild::None},
    {VEXA_COMPONENTCS, &VexaProvider::componentCS, true, true, true, Rebuild::None},
    {VEXA_HOSTED_FILESYSTEM, &VexaProvider::hostedFileSystems, true, true, true, Rebuild::None},
    {VEXA_ASSOC_STORAGE, &VexaProvider::associatedStoragePools, true, true, true, Rebuild::None},
    {VEXA_ASSOC_STORAGE_COMP, &VexaProvider::storageComponents, true, true, true, Rebuild::None},
    {VEXA_NODE_SERVING_NSD, &VexaProvider::nodeServingNsds, true, true, true, Rebuild::None},
    {VEXA_NODE_ACCESSES_NSD, &VexaProvider::nodeAccessesNsds, true, true, true, Rebuild::None},
    {VEXA_FREE_NSD, &VexaProvider::freeNsds, true, true, true, Rebuild::None},
    {VEXA_MOUNTED, &VexaProvider::mounteds, true, true, true, Rebuild::None},
    {VEXA_CONFIG_MGR, &VexaProvider::configManagers, true, true, true, Rebuild::None},
    {VEXA_FILESYSTEM_MGR, &VexaProvider::fileSystemManagers, true, true, true, Rebuild::None},
    {VEXA_PERF_FILESYSTEM, &VexaProvider::fileSystemPerfs, true, true, true, Rebuild::Performance},
    {VEXA_PERF_DISK, &VexaProvider::diskPerfs, true, true, true, Rebuild::LastPerformance},
    {VEXA_PERF_FS_PER_NODE, &VexaProvider::fsPerNodePerfs, true, true, true,
     Rebuild::LastPerformance},
    {VEXA_CONCRETE_JOB, &VexaProvider::concreteJobs, false, false, true, Rebuild::None},
    {VEXA_FILESET, &VexaProvider::filesets, true, true, true, Rebuild::None},
    {VEXA_ASSOC_FILESET, &VexaProvider::associatedFilesets, true, true, true, Rebuild::None},
    {VEXA_USER, &VexaProvider::users, true, true, true, Rebuild::Users},
    {VEXA_GROUP, &VexaProvider::groups, true, true, true, Rebuild::Groups},
};

const ClassRoute* findRoute(const CIMName& className) {
    for (const ClassRoute& route : ROUTES) {
        if (route.className == className)
            return &route;
    }
    return 0;
}

void logUnsupportedClass(const char* function, const CIMName& className) {
    ts_log(2, function, "%s is not supported.\n", (const char*)className.getString().getCString());
}

} // namespace

void VexaProvider::serveEnumerateInstances(const CIMObjectPath& classReference,
                                           InstanceResponseHandler& handler) {
    static const char* const fn = "VexaProvider::enumerateInstances";
    if (!inProviderNamespace(classReference, fn))
        return;
    const CIMName className = classReference.getClassName();
    ts_log(0, fn, "checking for %s\n", (const char*)className.getString().getCString());
    handler.processing();

    {
        CacheWriteLock lock(*this);
        buildAllVexaInstanceList(0);
    }

    const ClassRoute* route = findRoute(className);
    if (route == 0 || !route->byEnumerate) {
        logUnsupportedClass(fn, className);
        handler.complete();
        return;
    }
    switch (route->rebuild) {
    case Rebuild::FullPass: {
        CacheWriteLock lock(*this);
        ts_log(0, fn, "cluster\n");
        buildAllVexaInstanceList(0);
        break;
    }
    case Rebuild::Performance: {
        CacheWriteLock lock(*this);
        buildFileSystemPerfInstanceList();
        break;
    }
    case Rebuild::LastPerformance: {
        CacheWriteLock lock(*this);
        if (!performanceListsBuilt)
            buildFileSystemPerfInstanceList();
        else
            rebuildStalePerfLists();
        break;
    }
    case Rebuild::Users:
    case Rebuild::Groups: {
        {
            CacheWriteLock lock(*this);
            if (route->rebuild == Rebuild::Users)
                buildUserInstanceList();
            else
                buildGroupInstanceList();
            enumerateVexaInstancesSync(this->*route->instances, handler);
        }
        handler.complete();
        return;
    }
    case Rebuild::None:
        if (readsPerfList(this->*route->instances)) {
            CacheWriteLock lock(*this);
            rebuildStalePerfLists();
        }
        break;
    }
    enumerateVexaInstances(this->*route->instances, handler);
    handler.complete();
}

void VexaProvider::serveEnumerateInstanceNames(const CIMObjectPath& classReference,
                                               ObjectPathResponseHandler& handler) {
    static const char* const fn = "VexaProvider::enumerateInstanceNames";
    if (!inProviderNamespace(classReference, fn))
        return;
    handler.processing();

    // Names come from the cache as it stands: no pass is run for them.
    const CIMName className = classReference.getClassName();
    const ClassRoute* route = findRoute(className);
    if (route == 0 || !route->byNames) {
        logUnsupportedClass(fn, className);
    } else if (route->rebuild == Rebuild::Users || route->rebuild == Rebuild::Groups) {
        CacheWriteLock lock(*this);
        if (route->rebuild == Rebuild::Users)
            buildUserInstanceList();
        else
            buildGroupInstanceList();
        enumerateVexaInstanceNamesSync(this->*route->instances, handler);
    } else {
        if (readsPerfList(this->*route->instances)) {
            CacheWriteLock lock(*this);
            rebuildStalePerfLists();
        }
        enumerateVexaInstanceNames(this->*route->instances, handler);
    }
    handler.complete();
}

void VexaProvider::serveGetInstance(const CIMObjectPath& instanceReference,
                                    InstanceResponseHandler& handler) {
    static const char* const fn = "VexaProvider::getInstance";
    if (!inProviderNamespace(instanceReference, fn))
        return;

    // Cached paths carry no host and the provider's namespace; whatever the
    // client wrote there must not prevent a match on class and keys.
    CIMObjectPath lookupPath(String(), CIMNamespaceName(), instanceReference.getClassName(),
                             instanceReference.getKeyBindings());
    lookupPath.setNameSpace(NAMESPACE);

    handler.processing();
    ts_log(0, fn, "enter\n");
    const CIMName className = instanceReference.getClassName();
    ts_log(0, fn, "class name = %s\n", (const char*)className.getString().getCString());

    const ClassRoute* route = findRoute(className);
    {
        CacheWriteLock lock(*this);
        buildAllVexaInstanceList(0);
        // Every getInstance resamples the counters, but only a read of a
        // performance list pays for it: on a cluster of thousands of nodes a
        // rebuild of every counter instance costs far more than the look-up.
        perfListsStale = true;
        if (route != 0 && route->byGet && readsPerfList(this->*route->instances))
            rebuildStalePerfLists();
    }

    if (route == 0 || !route->byGet)
        logUnsupportedClass(fn, className);
    else
        getVexaInstance(this->*route->instances, lookupPath, handler);
    handler.complete();
    ts_log(0, fn, "exit\n");
}

bool VexaProvider::readsPerfList(const Array<CIMInstance>& array) const {
    return &array == &fileSystemPerfs || &array == &diskPerfs || &array == &fsPerNodePerfs;
}

void VexaProvider::rebuildStalePerfLists() {
    if (perfListsStale)
        buildFileSystemPerfInstanceList();
}

void VexaProvider::enumerateVexaInstances(const Array<CIMInstance>& array,
                                          InstanceResponseHandler& handler) {
    CacheReadLock lock(*this);
    enumerateVexaInstancesSync(array, handler);
}

void VexaProvider::enumerateVexaInstanceNames(const Array<CIMInstance>& array,
                                              ObjectPathResponseHandler& handler) {
    CacheReadLock lock(*this);
    enumerateVexaInstanceNamesSync(array, handler);
}

void VexaProvider::enumerateVexaInstancesSync(const Array<CIMInstance>& array,
                                              InstanceResponseHandler& handler) {
    for (Uint32 i = 0; i < array.size(); i++)
        handler.deliver(array[i]);
}

void VexaProvider::enumerateVexaInstanceNamesSync(const Array<CIMInstance>& array,
                                                  ObjectPathResponseHandler& handler) {
    for (Uint32 i = 0; i < array.size(); i++)
        handler.deliver(array[i].getPath());
}

void VexaProvider::getVexaInstance(const Array<CIMInstance>& array, CIMObjectPath path,
                                   InstanceResponseHandler& handler) {
    {
        CacheReadLock lock(*this);
        const int found = firstWithPath(*this, array, path);
        if (found >= 0) {
            handler.deliver(array[static_cast<Uint32>(found)]);
            return;
        }
    }
    ts_log(2, "VexaProvider::getVexaInstance", "Not found.\n");
}
