// Association read operations of the CIM server. Associations are cached
// instances whose reference properties name both ends; a request keeps the
// ones that refer to the given object and answers with their far ends.
// Quota associations are built on demand for the one object asked about.
// Unknown classes, unknown objects and failed quota look-ups are logged and
// answered empty, never with an error.
#include "cimProvider.h"
#include "instanceByPath.h"
#include "lockGuards.h"
#include "providerNamespace.h"

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

#include <cstdio>
#include <optional>

PEGASUS_USING_PEGASUS;

namespace {

// How a request over one association class is answered.
enum class AssociationKind {
    Cached,           // walk the cached list (or two lists)
    CachedNotByNames, // as Cached, but associatorNames treats the class as unknown
    ObjectQuota,      // build the quota of the given object, then walk its association
    FileSystemQuota   // build the quotas of a file system, then walk their associations
};

struct AssociationRoute {
    const CIMName& className;
    AssociationKind kind;
    Array<CIMInstance> VexaProvider::*assocs;
    Array<CIMInstance> VexaProvider::*moreAssocs; // a second list walked after the first
    int quotaKind;
    const char* sizeName; // names the size line associators writes to standard error
};

// Compared in this order; the first match answers.
const AssociationRoute ROUTES[] = {
    {ELEMENT_CONFORMS_TO_PROFILE, AssociationKind::CachedNotByNames,
     &VexaProvider::objMgrConformsToProfile, &VexaProvider::csConformsToProfile, 0, 0},
    {VEXA_COMPONENTCS, AssociationKind::Cached, &VexaProvider::componentCS, 0, 0, 0},
    {VEXA_HOSTED_FILESYSTEM, AssociationKind::Cached, &VexaProvider::hostedFileSystems, 0, 0, 0},
    {VEXA_ASSOC_STORAGE, AssociationKind::Cached, &VexaProvider::associatedStoragePools, 0, 0, 0},
    {VEXA_ASSOC_STORAGE_COMP, AssociationKind::Cached, &VexaProvider::storageComponents, 0, 0, 0},
    {VEXA_NODE_SERVING_NSD, AssociationKind::Cached, &VexaProvider::nodeServingNsds, 0, 0, 0},
    {VEXA_NODE_ACCESSES_NSD, AssociationKind::Cached, &VexaProvider::nodeAccessesNsds, 0, 0, 0},
    {VEXA_FREE_NSD, AssociationKind::Cached, &VexaProvider::freeNsds, 0, 0, 0},
    {VEXA_MOUNTED, AssociationKind::Cached, &VexaProvider::mounteds, 0, 0, 0},
    {VEXA_CONFIG_MGR, AssociationKind::Cached, &VexaProvider::configManagers, 0, 0, 0},
    {VEXA_FILESYSTEM_MGR, AssociationKind::Cached, &VexaProvider::fileSystemManagers, 0, 0, 0},
    {VEXA_ASSOC_FILESET, AssociationKind::Cached, &VexaProvider::associatedFilesets, 0, 0, 0},
    {VEXA_ASSOC_USER, AssociationKind::Cached, &VexaProvider::userAssocs, 0, 0, 0},
    {VEXA_ASSOC_GROUP, AssociationKind::Cached, &VexaProvider::groupAssocs, 0, 0, 0},
    {VEXA_ASSOC_FILESET_QUOTA, AssociationKind::ObjectQuota, &VexaProvider::filesetQuotaAssocs, 0,
     MGMT_QUOTA_FILESET, 0},
    {VEXA_ASSOC_GROUP_QUOTA, AssociationKind::ObjectQuota, &VexaProvider::groupQuotaAssocs, 0,
     MGMT_QUOTA_GROUP, 0},
    {VEXA_ASSOC_USER_QUOTA, AssociationKind::ObjectQuota, &VexaProvider::userQuotaAssocs, 0,
     MGMT_QUOTA_USER, 0},
    {VEXA_ASSOC_FILESYSTEM_FILESETQUOTAS, AssociationKind::FileSystemQuota,
     &VexaProvider::fileSystemFilesetQuotaAssocs, 0, MGMT_QUOTA_FILESET,
     "vexaAssociatedFileSystemFilesetQuotas"},
    {VEXA_ASSOC_FILESYSTEM_USERQUOTAS, AssociationKind::FileSystemQuota,
     &VexaProvider::fileSystemUserQuotaAssocs, 0, MGMT_QUOTA_USER,
     "vexaAssociatedFileSystemUserQuotas"},
    {VEXA_ASSOC_FILESYSTEM_GROUPQUOTAS, AssociationKind::FileSystemQuota,
     &VexaProvider::fileSystemGroupQuotaAssocs, 0, MGMT_QUOTA_GROUP,
     "vexaAssociatedFileSystemGroupQuotas"},
};

const AssociationRoute* findRoute(const CIMName& associationClass) {
    for (const AssociationRoute& route : ROUTES) {
        if (route.className == associationClass)
            return &route;
    }
    return 0;
}

// The cached arrays in which far ends are looked up, in the order the far
// end's class is compared with them. Other classes are not delivered.
struct FarEndArray {
    const CIMName& className;
    Array<CIMInstance> VexaProvider::*instances;
};

const FarEndArray FAR_END_ARRAYS[] = {
    {OBJECT_MANAGER, &VexaProvider::objectManagers},
    {COMPUTER_SYSTEM, &VexaProvider::computerSystems},
    {VEXA_CLUSTER, &VexaProvider::clusters},
    {VEXA_NODE, &VexaProvider::nodes},
    {VEXA_FILESYSTEM, &VexaProvider::fileSystems},
    {VEXA_DISK, &VexaProvider::disks},
    {VEXA_STORAGE_POOL, &VexaProvider::storagePools},
    {VEXA_FILESET, &VexaProvider::filesets},
    {VEXA_FILESET_QUOTA, &VexaProvider::filesetQuotas},
    {VEXA_USER, &VexaProvider::users},
    {VEXA_GROUP, &VexaProvider::groups},
    {VEXA_GROUP_QUOTA, &VexaProvider::groupQuotas},
    {VEXA_USER_QUOTA, &VexaProvider::userQuotas},
};

// Cached paths carry no host and the provider's namespace; whatever host or
// namespace a request wrote must not prevent a match on class and keys.
CIMObjectPath normalised(const CIMObjectPath& path) {
    CIMObjectPath result(String(), CIMNamespaceName(), path.getClassName(), path.getKeyBindings());
    result.setNameSpace(NAMESPACE);
    return result;
}

// Role names are compared as CIM names, without regard to case. Texts that
// are not valid names simply match nothing.
bool sameName(const String& text, const CIMName& name) {
    return String::equalNoCase(text, name.getString());
}

// The far ends, in association order, of the associations that refer to
// objectPath. The caller holds the lock.
Array<CIMObjectPath> farEndsOf(VexaProvider& provider, const Array<CIMInstance>& assocs,
                               const CIMObjectPath& objectPath, const String& role,
                               const CIMName& resultClass, const String& resultRole) {
    Array<CIMInstance> kept = provider.filterAssociationInstancesByRole(assocs, objectPath, role);
    Array<CIMObjectPath> ends;
    for (Uint32 i = 0; i < kept.size(); i++)
        ends.appendArray(
            provider.filterAssociationInstances(kept[i], objectPath, resultClass, resultRole));
    return ends;
}

// Delivers the cached instance a far end names, if its class is one the
// cache holds and the instance is there. The caller holds the lock.
void deliverFarEnd(VexaProvider& provider, const CIMObjectPath& end,
                   ObjectResponseHandler& handler) {
    const CIMObjectPath wanted = normalised(end);
    for (const FarEndArray& candidates : FAR_END_ARRAYS) {
        if (!(candidates.className == wanted.getClassName()))
            continue;
        const Array<CIMInstance>& instances = provider.*candidates.instances;
        const int found = firstWithPath(provider, instances, wanted);
        if (found >= 0)
            handler.deliver(CIMObject(instances[static_cast<Uint32>(found)]));
        return;
    }
}

// User and group paths carry six keys, fileset paths seven; a path with
// fewer is no quota owner and gets no answer.
const Uint32 QUOTA_OWNER_MIN_KEYS = 6;

// One walk over an association list, with or without taking the read lock.
void walk(VexaProvider& provider, const Array<CIMInstance>& assocs, const CIMObjectPath& path,
          const String& role, const CIMName& resultClass, const String& resultRole,
          ObjectResponseHandler& handler, bool writeLockHeld) {
    if (writeLockHeld)
        provider.vexaAssociatorsSync(assocs, path, role, resultClass, resultRole, handler);
    else
        provider.vexaAssociators(assocs, path, role, resultClass, resultRole, handler);
}

void walk(VexaProvider& provider, const Array<CIMInstance>& assocs, const CIMObjectPath& path,
          const String& role, const CIMName& resultClass, const String& resultRole,
          ObjectPathResponseHandler& handler, bool writeLockHeld) {
    if (writeLockHeld)
        provider.vexaAssociatorNamesSync(assocs, path, role, resultClass, resultRole, handler);
    else
        provider.vexaAssociatorNames(assocs, path, role, resultClass, resultRole, handler);
}

// The file-system quota list's size goes straight to standard error, not
// through ts_log: it is read on the CIM server's console, whatever the log
// level.
void reportSize(const AssociationRoute& route, const Array<CIMInstance>& assocs,
                ObjectResponseHandler&) {
    std::fprintf(stderr, "%s.size=%d\n", route.sizeName, static_cast<int>(assocs.size()));
}

void reportSize(const AssociationRoute&, const Array<CIMInstance>&, ObjectPathResponseHandler&) {}

// Answers one request whose association class has a route. The quota rows
// hold the write lock from the on-demand build to the end of delivery.
template <class Handler>
void answer(VexaProvider& provider, const AssociationRoute& route, const CIMName& associationClass,
            const CIMObjectPath& path, const String& role, const CIMName& resultClass,
            const String& resultRole, Handler& handler, const char* function) {
    switch (route.kind) {
    case AssociationKind::Cached:
    case AssociationKind::CachedNotByNames:
        walk(provider, provider.*route.assocs, path, role, resultClass, resultRole, handler, false);
        if (route.moreAssocs != 0)
            walk(provider, provider.*route.moreAssocs, path, role, resultClass, resultRole, handler,
                 false);
        return;
    case AssociationKind::ObjectQuota: {
        CacheWriteLock lock(provider);
        if (path.getKeyBindings().size() < QUOTA_OWNER_MIN_KEYS)
            return;
        if (provider.buildQuotaInstance(path, route.quotaKind) == 0 &&
            provider.buildQuotaAssocInstance(path, route.quotaKind) == 0)
            walk(provider, provider.*route.assocs, path, role, resultClass, resultRole, handler,
                 true);
        else
            ts_log(2, function, "%s failed to get quota.\n",
                   (const char*)associationClass.getString().getCString());
        return;
    }
    case AssociationKind::FileSystemQuota: {
        CacheWriteLock lock(provider);
        if (provider.buildQuotaInstances(path, route.quotaKind) != 0) {
            ts_log(2, function, "%s failed to get quota.\n",
                   (const char*)associationClass.getString().getCString());
            return;
        }
        reportSize(route, provider.*route.assocs, handler);
        walk(provider, provider.*route.assocs, path, role, resultClass, resultRole, handler, true);
        return;
    }
    }
}

} // namespace

Array<CIMInstance> VexaProvider::filterAssociationInstancesByRole(const Array<CIMInstance>& assocs,
                                                                  const CIMObjectPath& objectPath,
                                                                  const String& role) {
    Array<CIMInstance> result;
    auto refersTo = [&](Uint32 i) {
        const CIMInstance& association = assocs[i];
        for (Uint32 p = 0; p < association.getPropertyCount(); p++) {
            CIMConstProperty property = association.getProperty(p);
            if (property.getType() != CIMTYPE_REFERENCE || property.getValue().isNull())
                continue;
            if (role.size() != 0 && !sameName(role, property.getName()))
                continue;
            CIMObjectPath end;
            property.getValue().get(end);
            if (end.identical(objectPath))
                return true; // once is enough, even when both ends are the object
        }
        return false;
    };
    // The index lists, in order, the associations one of whose ends hashes
    // like the object; each is then checked as the walk would check it.
    if (ArrayIndex* index = usableIndex(assocs, ArrayIndex::ByReference)) {
        index->positions().forEach(pathHash(objectPath), [&](std::uint32_t i) {
            if (refersTo(i))
                result.append(assocs[i]);
            return false;
        });
        return result;
    }
    for (Uint32 i = 0; i < assocs.size(); i++) {
        if (refersTo(i))
            result.append(assocs[i]);
    }
    return result;
}

Array<CIMObjectPath> VexaProvider::filterAssociationInstances(CIMInstance& assoc,
                                                              const CIMObjectPath& objectPath,
                                                              CIMName resultClass,
                                                              String resultRole) {
    Array<CIMObjectPath> result;
    for (Uint32 p = 0; p < assoc.getPropertyCount(); p++) {
        CIMConstProperty property = assoc.getProperty(p);
        if (property.getType() != CIMTYPE_REFERENCE || property.getValue().isNull())
            continue;
        CIMObjectPath end;
        property.getValue().get(end);
        if (end.identical(objectPath))
            continue;
        if (!resultClass.isNull() && !resultClass.equal(end.getClassName()))
            continue;
        if (resultRole.size() != 0 && !sameName(resultRole, property.getName()))
            continue;
        result.append(end);
    }
    return result;
}

void VexaProvider::vexaAssociatorNames(const Array<CIMInstance>& assocs,
                                       const CIMObjectPath& objectPath, const String& role,
                                       const CIMName& resultClass, const String& resultRole,
                                       ObjectPathResponseHandler& handler) {
    CacheReadLock lock(*this);
    vexaAssociatorNamesSync(assocs, objectPath, role, resultClass, resultRole, handler);
}

void VexaProvider::vexaAssociatorNamesSync(const Array<CIMInstance>& assocs,
                                           const CIMObjectPath& objectPath, const String& role,
                                           const CIMName& resultClass, const String& resultRole,
                                           ObjectPathResponseHandler& handler) {
    Array<CIMObjectPath> ends = farEndsOf(*this, assocs, objectPath, role, resultClass, resultRole);
    for (Uint32 i = 0; i < ends.size(); i++)
        handler.deliver(ends[i]);
}

void VexaProvider::vexaAssociators(const Array<CIMInstance>& assocs,
                                   const CIMObjectPath& objectPath, const String& role,
                                   const CIMName& resultClass, const String& resultRole,
                                   ObjectResponseHandler& handler) {
    std::optional<CacheReadLock> reading(std::in_place, *this);
    Array<CIMObjectPath> ends = farEndsOf(*this, assocs, objectPath, role, resultClass, resultRole);
    for (Uint32 i = 0; i < ends.size(); i++) {
        // A computer system is looked up only after a cache pass, which
        // needs the write lock: the read lock is given up for it.
        if (ends[i].getClassName() == COMPUTER_SYSTEM) {
            reading.reset();
            {
                CacheWriteLock writing(*this);
                buildAllVexaInstanceList(0);
            }
            reading.emplace(*this);
        }
        deliverFarEnd(*this, ends[i], handler);
    }
}

// Callers hold the write lock, so the computer-system pass of
// vexaAssociators is not made here.
void VexaProvider::vexaAssociatorsSync(const Array<CIMInstance>& assocs,
                                       const CIMObjectPath& objectPath, const String& role,
                                       const CIMName& resultClass, const String& resultRole,
                                       ObjectResponseHandler& handler) {
    Array<CIMObjectPath> ends = farEndsOf(*this, assocs, objectPath, role, resultClass, resultRole);
    for (Uint32 i = 0; i < ends.size(); i++)
        deliverFarEnd(*this, ends[i], handler);
}

void VexaProvider::serveAssociators(const CIMObjectPath& objectName,
                                    const CIMName& associationClass, const CIMName& resultClass,
                                    const String& role, const String& resultRole,
                                    ObjectResponseHandler& handler) {
    static const char* const fn = "VexaProvider::associators";
    if (!inProviderNamespace(objectName, fn))
        return;
    handler.processing();
    ts_log(0, fn, "checking for %s\n", (const char*)associationClass.getString().getCString());

    const AssociationRoute* route = findRoute(associationClass);
    if (route == 0)
        ts_log(2, fn, "%s is not supported.\n",
               (const char*)associationClass.getString().getCString());
    else
        answer(*this, *route, associationClass, normalised(objectName), role, resultClass,
               resultRole, handler, fn);
    handler.complete();
}

void VexaProvider::serveAssociatorNames(const CIMObjectPath& objectName,
                                        const CIMName& associationClass, const CIMName& resultClass,
                                        const String& role, const String& resultRole,
                                        ObjectPathResponseHandler& handler) {
    static const char* const fn = "VexaProvider::associatorNames";
    if (!inProviderNamespace(objectName, fn))
        return;
    handler.processing();
    ts_log(0, fn, "checking for %s\n", (const char*)associationClass.getString().getCString());

    const AssociationRoute* route = findRoute(associationClass);
    if (route == 0 || route->kind == AssociationKind::CachedNotByNames)
        // Logged under getInstance's name: log filters and alerts written
        // for this provider match the line under that name.
        ts_log(2, "VexaProvider::getInstance", "%s is not supported.\n",
               (const char*)associationClass.getString().getCString());
    else
        answer(*this, *route, associationClass, normalised(objectName), role, resultClass,
               resultRole, handler, fn);
    handler.complete();
}
