// The provider object: one instance serves every CIM request of the server.
//
// VexaProvider is deliberately one large class. Its member functions are
// defined in the folder of the subsystem they belong to (instances/,
// associations/, indications/, raid/, methods/); this header and the files of
// provider/ hold the frame: lifecycle, the cache of ready instances and the
// lock that guards it.
#ifndef VEXA_PROVIDER_CIMPROVIDER_H
#define VEXA_PROVIDER_CIMPROVIDER_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>

#include <qzantras/ClusterInfo.h>
#include <qzantras/PollingHandler.h>

#include <pthread.h>
#include <sys/time.h>

#include <cstdio>
#include <deque>
#include <string>

#include "cacheIndexes.h"
#include "classNames.h"

class VexaProvider : public Pegasus::CIMInstanceProvider,
                     public Pegasus::CIMAssociationProvider,
                     public Pegasus::CIMIndicationProvider,
                     public Pegasus::CIMMethodProvider {
public:
    // Selects the array and the key property that the look-ups compare.
    enum VexaInstanceType {
        VEXA_INST_CLUSTER = 0,
        VEXA_INST_NODE_BY_NAME = 1,
        VEXA_INST_NODE_BY_IP = 2,
        VEXA_INST_FILESYSTEM = 3,
        VEXA_INST_STORAGE_POOL = 4,
        VEXA_INST_DISK = 5
    };

    // Selects the declustered-RAID element list and its look-up property.
    enum CorvaneInstanceType {
        CORVANE_INST_PHYSICAL_DISK = 0,
        CORVANE_INST_VIRTUAL_DISK = 1,
        CORVANE_INST_DECLUSTERED_ARRAY = 2
    };

    VexaProvider();
    virtual ~VexaProvider();

    // CIMProvider
    virtual void initialize(Pegasus::CIMOMHandle& cimom);
    virtual void terminate();

    // CIMInstanceProvider
    virtual void getInstance(const Pegasus::OperationContext& context,
                             const Pegasus::CIMObjectPath& instanceReference,
                             const Pegasus::Boolean includeQualifiers,
                             const Pegasus::Boolean includeClassOrigin,
                             const Pegasus::CIMPropertyList& propertyList,
                             Pegasus::InstanceResponseHandler& handler);
    virtual void enumerateInstances(const Pegasus::OperationContext& context,
                                    const Pegasus::CIMObjectPath& classReference,
                                    const Pegasus::Boolean includeQualifiers,
                                    const Pegasus::Boolean includeClassOrigin,
                                    const Pegasus::CIMPropertyList& propertyList,
                                    Pegasus::InstanceResponseHandler& handler);
    virtual void enumerateInstanceNames(const Pegasus::OperationContext& context,
                                        const Pegasus::CIMObjectPath& classReference,
                                        Pegasus::ObjectPathResponseHandler& handler);
    virtual void modifyInstance(const Pegasus::OperationContext& context,
                                const Pegasus::CIMObjectPath& instanceReference,
                                const Pegasus::CIMInstance& instanceObject,
                                const Pegasus::Boolean includeQualifiers,
                                const Pegasus::CIMPropertyList& propertyList,
                                Pegasus::ResponseHandler& handler);
    virtual void createInstance(const Pegasus::OperationContext& context,
                                const Pegasus::CIMObjectPath& instanceReference,
                                const Pegasus::CIMInstance& instanceObject,
                                Pegasus::ObjectPathResponseHandler& handler);
    virtual void deleteInstance(const Pegasus::OperationContext& context,
                                const Pegasus::CIMObjectPath& instanceReference,
                                Pegasus::ResponseHandler& handler);

    // CIMAssociationProvider
    virtual void
    associators(const Pegasus::OperationContext& context, const Pegasus::CIMObjectPath& objectName,
                const Pegasus::CIMName& associationClass, const Pegasus::CIMName& resultClass,
                const Pegasus::String& role, const Pegasus::String& resultRole,
                const Pegasus::Boolean includeQualifiers, const Pegasus::Boolean includeClassOrigin,
                const Pegasus::CIMPropertyList& propertyList,
                Pegasus::ObjectResponseHandler& handler);
    virtual void associatorNames(const Pegasus::OperationContext& context,
                                 const Pegasus::CIMObjectPath& objectName,
                                 const Pegasus::CIMName& associationClass,
                                 const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                                 const Pegasus::String& resultRole,
                                 Pegasus::ObjectPathResponseHandler& handler);
    virtual void references(const Pegasus::OperationContext& context,
                            const Pegasus::CIMObjectPath& objectName,
                            const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                            const Pegasus::Boolean includeQualifiers,
                            const Pegasus::Boolean includeClassOrigin,
                            const Pegasus::CIMPropertyList& propertyList,
                            Pegasus::ObjectResponseHandler& handler);
    virtual void referenceNames(const Pegasus::OperationContext& context,
                                const Pegasus::CIMObjectPath& objectName,
                                const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                                Pegasus::ObjectPathResponseHandler& handler);

    // CIMIndicationProvider
    virtual void enableIndications(Pegasus::IndicationResponseHandler& handler);
    virtual void disableIndications();
    virtual void createSubscription(const Pegasus::OperationContext& context,
                                    const Pegasus::CIMObjectPath& subscriptionName,
                                    const Pegasus::Array<Pegasus::CIMObjectPath>& classNames,
                                    const Pegasus::CIMPropertyList& propertyList,
                                    const Pegasus::Uint16 repeatNotificationPolicy);
    virtual void modifySubscription(const Pegasus::OperationContext& context,
                                    const Pegasus::CIMObjectPath& subscriptionName,
                                    const Pegasus::Array<Pegasus::CIMObjectPath>& classNames,
                                    const Pegasus::CIMPropertyList& propertyList,
                                    const Pegasus::Uint16 repeatNotificationPolicy);
    virtual void deleteSubscription(const Pegasus::OperationContext& context,
                                    const Pegasus::CIMObjectPath& subscriptionName,
                                    const Pegasus::Array<Pegasus::CIMObjectPath>& classNames);

    // The read operations behind the server's entry points, which turn any
    // failure into a CIM error (provider/operationEntries.cpp); defined in
    // provider/instanceOperations.cpp and provider/associationOperations.cpp.
    void serveEnumerateInstances(const Pegasus::CIMObjectPath& classReference,
                                 Pegasus::InstanceResponseHandler& handler);
    void serveEnumerateInstanceNames(const Pegasus::CIMObjectPath& classReference,
                                     Pegasus::ObjectPathResponseHandler& handler);
    void serveGetInstance(const Pegasus::CIMObjectPath& instanceReference,
                          Pegasus::InstanceResponseHandler& handler);
    void serveAssociators(const Pegasus::CIMObjectPath& objectName,
                          const Pegasus::CIMName& associationClass,
                          const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                          const Pegasus::String& resultRole,
                          Pegasus::ObjectResponseHandler& handler);
    void serveAssociatorNames(const Pegasus::CIMObjectPath& objectName,
                              const Pegasus::CIMName& associationClass,
                              const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                              const Pegasus::String& resultRole,
                              Pegasus::ObjectPathResponseHandler& handler);

    // CIMMethodProvider
    virtual void invokeMethod(const Pegasus::OperationContext& context,
                              const Pegasus::CIMObjectPath& objectReference,
                              const Pegasus::CIMName& methodName,
                              const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                              Pegasus::MethodResultResponseHandler& handler);

    // Method bodies the dispatch of invokeMethod hands whole calls to:
    // methods/modifyNode.cpp and methods/modifyRaidElement.cpp. Each returns
    // the method's return code.
    Pegasus::Uint32 modifyNode(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                               Pegasus::MethodResultResponseHandler& handler);
    Pegasus::Uint32 modifyRaidElement(const Pegasus::CIMName& methodName,
                                      const Pegasus::Array<Pegasus::CIMParamValue>& inParameters);

    // Asynchronous jobs: methods/modificationIndications.cpp. A new job reads
    // "JobState" 3; the library's completion callback sets it to 7.
    Pegasus::CIMInstance createConcreteJobInstance(Pegasus::String name);

    // Method parameters: methods/methodParameters.cpp. dst is always a
    // 256-byte record field.
    bool extractParamValueFromOP(Pegasus::CIMObjectPath path, const char* keyName,
                                 const char* label, char* dst);
    void validateAndAcceptOptionalParam(const char* src, const char* name, char* dst);
    int validateAndAcceptMandatoryParam(const char* src, const char* name, char* dst,
                                        std::string* message);
    void freeCharMemory(char* p);

    // Fileset methods: methods/filesetMethods.cpp. Each body appends its
    // out-parameters to out and returns the method's return code.
    Pegasus::Uint32 createFileset(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                                  Pegasus::Array<Pegasus::CIMParamValue>& out);
    Pegasus::Uint32 deleteFileset(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                                  Pegasus::Array<Pegasus::CIMParamValue>& out);
    Pegasus::Uint32 editFileset(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                                Pegasus::Array<Pegasus::CIMParamValue>& out);
    Pegasus::Uint32 linkFileset(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                                Pegasus::Array<Pegasus::CIMParamValue>& out);
    Pegasus::Uint32 unlinkFileset(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                                  Pegasus::Array<Pegasus::CIMParamValue>& out);

    // The cached fileset instances kept true after a method changed them:
    // methods/filesetCache.cpp. Called with the write lock held.
    int addFilesetToInstanceList(Pegasus::CIMObjectPath fileSystemPath,
                                 Pegasus::CIMInstance fileset);
    int deleteFilesetFromInstanceList(Pegasus::String fileSystemName, Pegasus::String filesetName);
    // Adds fileset under the cached file system named fsName; false, and the
    // cache unchanged, when that file system is not cached.
    bool addFilesetToOwningFileSystem(const char* fsName, Pegasus::CIMInstance fileset);

    // Quota, ownership and ACL methods: methods/quotaMethods.cpp and
    // methods/junctionMethods.cpp.
    Pegasus::Uint32 editQuota(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                              Pegasus::Array<Pegasus::CIMParamValue>& out);
    Pegasus::Uint32
    changeOwnerAndOrGroup(const Pegasus::Array<Pegasus::CIMParamValue>& inParameters);
    // Both junction methods; acl selects the ACL copy instead of the owner.
    Pegasus::Uint32
    changeFilesetJunction(bool acl, const Pegasus::Array<Pegasus::CIMParamValue>& inParameters,
                          Pegasus::Array<Pegasus::CIMParamValue>& out);
    // Called with the write lock held.
    bool findLinkedFileset(FileSet* fileset, std::string* message);

    // Connection to the management library.
    int initVexaHandler();
    int cleanupVexaHandler();

    // Instance store: look-ups by key text and the cache lock.
    int findVexaInstIdx(VexaInstanceType type, char* key);
    Pegasus::CIMInstance* findVexaInstance(VexaInstanceType type, char* key);
    int getReadLock();
    int getWriteLock();
    int releaseLock();

    // Delivery from the cache. The plain forms take the read lock; the Sync
    // forms serve callers that already hold the write lock.
    void enumerateVexaInstances(const Pegasus::Array<Pegasus::CIMInstance>& array,
                                Pegasus::InstanceResponseHandler& handler);
    void enumerateVexaInstanceNames(const Pegasus::Array<Pegasus::CIMInstance>& array,
                                    Pegasus::ObjectPathResponseHandler& handler);
    void enumerateVexaInstancesSync(const Pegasus::Array<Pegasus::CIMInstance>& array,
                                    Pegasus::InstanceResponseHandler& handler);
    void enumerateVexaInstanceNamesSync(const Pegasus::Array<Pegasus::CIMInstance>& array,
                                        Pegasus::ObjectPathResponseHandler& handler);
    void getVexaInstance(const Pegasus::Array<Pegasus::CIMInstance>& array,
                         Pegasus::CIMObjectPath path, Pegasus::InstanceResponseHandler& handler);

    // Refresh cycle: every member below runs under the write lock.
    int buildAllVexaInstanceList(int force);
    bool shouldRefresh();
    bool shouldRefreshUsersAndGroups();
    int buildClusterInstanceList();
    int buildNodeInstanceList();
    int buildFileSystemInstanceList();
    int buildUserInstanceList();
    int buildGroupInstanceList();
    int buildFileSystemPerfInstanceList();
    // Performance lists left stale by getInstance are rebuilt before they are read
    // (provider/instanceOperations.cpp).
    bool readsPerfList(const Pegasus::Array<Pegasus::CIMInstance>& array) const;
    void rebuildStalePerfLists();
    static void* refreshThread(void* arg);

    // Element instances: cluster and nodes.
    Pegasus::CIMInstance createClusterInstance(ClusterInfo* cluster);
    Pegasus::CIMInstance createNodeInstance(ClusterInfo* cluster, NodeInfo* node);

    // File systems, storage pools and disks.
    Pegasus::CIMInstance createFileSystemInstance(FilesystemInfo* fs, ClusterInfo* cluster);
    Pegasus::CIMInstance createStgPoolInstance(StoragePoolInfo* pool, FilesystemInfo* fs,
                                               ClusterInfo* cluster);
    Pegasus::CIMInstance createDiskInstance(ClusterInfo* cluster, DiskInfo* disk);
    int buildStgPoolInstanceList(FilesystemInfo* fs, int fsIndex);
    int buildDiskInstanceList(FilesystemInfo* fs, StoragePoolInfo* pool, int poolIndex);
    char* genStgPoolName(char** buffer, char* fsName, char* poolName);
    char* getStgPoolName(char* fsName, char* diskName);

    // Filesets, users, groups and policies.
    Pegasus::CIMInstance createFileSetInstance(FileSet* fileset, ClusterInfo* cluster);
    Pegasus::CIMInstance createUserInstance(User* user);
    Pegasus::CIMInstance createGroupInstance(Group* group);
    Pegasus::CIMInstance createPolicyInstance(ClusterInfo* cluster, PolicyInfo* policy);
    int buildFileSetInstances(FilesystemInfo* fs, int fsIndex);
    int buildUserInstances(FilesystemInfo* fs, int fsIndex);
    int buildGroupInstances(FilesystemInfo* fs, int fsIndex);
    int buildFileSetInstanceList();

    // Quota instances, built on demand for one user, group or fileset:
    // instances/quotaInstances.cpp.
    Pegasus::CIMInstance createUserQuotaInstance(Quota* quota, const char* clusterName);
    Pegasus::CIMInstance createGroupQuotaInstance(Quota* quota, const char* clusterName);
    Pegasus::CIMInstance createQuotaInstance(Quota* quota, const char* clusterName);
    int buildQuotaInstance(Pegasus::CIMObjectPath source, int kind);
    int buildQuotaInstances(Pegasus::CIMObjectPath fileSystem, int kind);

    // Performance counters.
    Pegasus::CIMInstance createFileSystemPerfInstance(ClusterInfo* cluster, FilesystemInfo* fs);
    Pegasus::CIMInstance createFsPerNodePerfInstance(ClusterInfo* cluster, FilesystemPerf* perf);
    Pegasus::CIMInstance createDiskPerfInstance(FilesystemInfo* fs, StoragePoolInfo* pool,
                                                DiskInfo* disk);

    // Discovery: registered profiles, object manager, computer system.
    Pegasus::CIMInstance
    createRegProfile(const Pegasus::CIMName& className, const Pegasus::String& registeredName,
                     const Pegasus::String& registeredVersion, Pegasus::Uint16 advertiseTypes,
                     Pegasus::Uint16 registeredOrganization, const Pegasus::String& instanceId);
    Pegasus::CIMInstance
    createRegProfile(const Pegasus::CIMName& className, const Pegasus::String& name,
                     const Pegasus::String& systemName, const Pegasus::String& elementName,
                     const Pegasus::String& description, const Pegasus::String& creationClassName,
                     const Pegasus::String& systemCreationClassName);
    Pegasus::CIMInstance createComputerSystemInstance(const Pegasus::CIMName& className,
                                                      const Pegasus::String& name,
                                                      const Pegasus::String& creationClassName);

    // Association instances, made from the paths of their two ends.
    void setCompletePath(Pegasus::CIMInstance& instance);
    Pegasus::CIMInstance createVexaStorageComp(Pegasus::CIMObjectPath pool,
                                               Pegasus::CIMObjectPath disk);
    Pegasus::CIMInstance createVexaComponentCS(Pegasus::CIMObjectPath cluster,
                                               Pegasus::CIMObjectPath node);
    Pegasus::CIMInstance createAssocCS(Pegasus::CIMObjectPath profile,
                                       Pegasus::CIMObjectPath system);
    Pegasus::CIMInstance createAssocObjMgr(Pegasus::CIMObjectPath profile,
                                           Pegasus::CIMObjectPath objectManager);
    Pegasus::CIMInstance createVexaFSPolicy(Pegasus::CIMObjectPath fileSystem,
                                            Pegasus::CIMObjectPath policy);
    Pegasus::CIMInstance createVexaFileSystemMgr(Pegasus::CIMObjectPath fileSystem,
                                                 Pegasus::CIMObjectPath node);
    Pegasus::CIMInstance createVexaConfigMgr(Pegasus::CIMObjectPath cluster,
                                             Pegasus::CIMObjectPath node);
    Pegasus::CIMInstance createVexaMounted(Pegasus::CIMObjectPath node,
                                           Pegasus::CIMObjectPath fileSystem);
    Pegasus::CIMInstance createVexaFreeNsd(Pegasus::CIMObjectPath cluster,
                                           Pegasus::CIMObjectPath disk);
    Pegasus::CIMInstance createVexaNodeAccessNsd(Pegasus::CIMObjectPath node,
                                                 Pegasus::CIMObjectPath disk,
                                                 DiskAccessInfo* access, ClusterInfo* cluster);
    Pegasus::CIMInstance createVexaNodeServNsd(Pegasus::CIMObjectPath disk,
                                               Pegasus::CIMObjectPath node, unsigned int order);
    Pegasus::CIMInstance createAssocGroupQuotaInstances(Pegasus::CIMObjectPath fileSystem,
                                                        Pegasus::CIMObjectPath quota);
    Pegasus::CIMInstance createAssocUserQuotaInstances(Pegasus::CIMObjectPath fileSystem,
                                                       Pegasus::CIMObjectPath quota);
    Pegasus::CIMInstance createAssocFilesetQuotaInstances(Pegasus::CIMObjectPath fileSystem,
                                                          Pegasus::CIMObjectPath quota);
    Pegasus::CIMInstance createGroupAssocInstance(Pegasus::CIMObjectPath fileSystem,
                                                  Pegasus::CIMObjectPath group);
    Pegasus::CIMInstance createUserAssocInstance(Pegasus::CIMObjectPath fileSystem,
                                                 Pegasus::CIMObjectPath user);
    Pegasus::CIMInstance createVexaAssociatedUserQuota(Pegasus::CIMObjectPath owner,
                                                       Pegasus::CIMObjectPath quota);
    Pegasus::CIMInstance createVexaAssociatedGroupQuota(Pegasus::CIMObjectPath group,
                                                        Pegasus::CIMObjectPath quota);
    Pegasus::CIMInstance createVexaAssociatedFilesetQuota(Pegasus::CIMObjectPath fileset,
                                                          Pegasus::CIMObjectPath quota);
    Pegasus::CIMInstance createVexaAssociatedFileset(Pegasus::CIMObjectPath fileSystem,
                                                     Pegasus::CIMObjectPath fileset);
    Pegasus::CIMInstance createVexaAssocSP(Pegasus::CIMObjectPath fileSystem,
                                           Pegasus::CIMObjectPath pool);
    Pegasus::CIMInstance createVexaHostedFS(Pegasus::CIMObjectPath cluster,
                                            Pegasus::CIMObjectPath fileSystem);

    // Association traversal behind associators and associatorNames:
    // provider/associationOperations.cpp. The plain delivery forms take the
    // read lock; the Sync forms serve callers that hold the write lock.
    Pegasus::Array<Pegasus::CIMInstance>
    filterAssociationInstancesByRole(const Pegasus::Array<Pegasus::CIMInstance>& assocs,
                                     const Pegasus::CIMObjectPath& objectPath,
                                     const Pegasus::String& role);
    Pegasus::Array<Pegasus::CIMObjectPath>
    filterAssociationInstances(Pegasus::CIMInstance& assoc,
                               const Pegasus::CIMObjectPath& objectPath,
                               Pegasus::CIMName resultClass, Pegasus::String resultRole);
    void vexaAssociatorNames(const Pegasus::Array<Pegasus::CIMInstance>& assocs,
                             const Pegasus::CIMObjectPath& objectPath, const Pegasus::String& role,
                             const Pegasus::CIMName& resultClass, const Pegasus::String& resultRole,
                             Pegasus::ObjectPathResponseHandler& handler);
    void vexaAssociatorNamesSync(const Pegasus::Array<Pegasus::CIMInstance>& assocs,
                                 const Pegasus::CIMObjectPath& objectPath,
                                 const Pegasus::String& role, const Pegasus::CIMName& resultClass,
                                 const Pegasus::String& resultRole,
                                 Pegasus::ObjectPathResponseHandler& handler);
    void vexaAssociators(const Pegasus::Array<Pegasus::CIMInstance>& assocs,
                         const Pegasus::CIMObjectPath& objectPath, const Pegasus::String& role,
                         const Pegasus::CIMName& resultClass, const Pegasus::String& resultRole,
                         Pegasus::ObjectResponseHandler& handler);
    void vexaAssociatorsSync(const Pegasus::Array<Pegasus::CIMInstance>& assocs,
                             const Pegasus::CIMObjectPath& objectPath, const Pegasus::String& role,
                             const Pegasus::CIMName& resultClass, const Pegasus::String& resultRole,
                             Pegasus::ObjectResponseHandler& handler);

    // Association lists.
    int buildFreeDiskInstanceList();
    int buildDiskServerAssociationList(Pegasus::CIMInstance disk, DiskInfo* info);
    int buildDiskAccessAssociationList();
    int buildQuotaAssocInstance(Pegasus::CIMObjectPath source, int quotaType);
    int buildUserAssocInstances(Pegasus::CIMObjectPath fileSystem);
    int buildGroupAssocInstances(Pegasus::CIMObjectPath fileSystem);

    // Discovery instances and indication filters, built once at start.
    int buildDiscoveryInstanceList();
    int buildIndicationFilterList();
    Pegasus::CIMInstance createIndicationFilter(const Pegasus::String& name,
                                                const Pegasus::String& query,
                                                const Pegasus::String& queryLanguage,
                                                const Pegasus::String& sourceNamespace);

    // Declustered-RAID elements read from the inventory files: tokens and
    // values in raid/inventoryTokens.cpp, the parsers and list builders in
    // raid/inventoryFiles.cpp, the look-up in raid/corvaneLookup.cpp. The
    // list builders run under the write lock, like every cache pass.
    char* getNextToken(char* line, char** savePointer);
    Pegasus::String setCorvaneInstanceProperty(char** line, char** savePointer,
                                               Pegasus::CIMInstance* instance, char* name);
    int createCorvanePhysicalDiskInstanceFromFile(FILE* file);
    int createCorvaneVirtualDiskInstanceFromFile(FILE* file);
    int createCorvaneDeclusteredArrayInstanceFromFile(FILE* file);
    int buildCorvanePhysicalDiskList();
    int buildCorvaneVirtualDiskList();
    int buildCorvaneDeclusteredArrayList();
    int getCorvaneInstIdx(CorvaneInstanceType type, Pegasus::String value);

    // Event intake.
    int initEvents(PollingHandler* handler);
    int initEventHandler();
    static void* eventThread(void* arg);

    // Stopping the provider's threads (provider/providerThreads.cpp): the
    // host unmaps the library after terminate, so nothing of ours may still
    // run then. Each wait is bounded.
    void stopThreads();
    static void wakeRefreshThread();
    void joinEventThread();

    // Time of the last rebuild of user and group instances.
    struct timeval lastUserGroupRefresh;
    // Forces the next cache pass even when the timers say no.
    bool refreshForced;
    // The performance lists no longer reflect the counters and are rebuilt
    // before their next read. Changed only under the write lock.
    bool perfListsStale;
    // Time of the last full cache pass.
    struct timeval lastRefresh;
    // Whether a performance rebuild has run (successful or not) since start.
    bool performanceListsBuilt;
    // The management library's polling facade; owned by the library.
    PollingHandler* pollingHandler;
    // The cluster snapshot that every update call fills; owned.
    ClusterInfo* clusterInfo;
    // Guards every instance array below.
    pthread_rwlock_t instanceLock;
    // Empty text, used where an association carries no device or server name.
    Pegasus::String handlerText;
    pthread_t eventThreadId;
    pthread_t refreshThreadId;
    // Whether the thread of the id above was started and not yet joined.
    bool eventThreadJoinable;
    bool refreshThreadJoinable;

    // The instance cache: one array per served class or association list.
    Pegasus::Array<Pegasus::CIMInstance> registeredProfiles;
    Pegasus::Array<Pegasus::CIMInstance> objectManagers;
    Pegasus::Array<Pegasus::CIMInstance> computerSystems;
    Pegasus::Array<Pegasus::CIMInstance> indicationFilters;
    Pegasus::Array<Pegasus::CIMInstance> clusters;
    Pegasus::Array<Pegasus::CIMInstance> nodes;
    Pegasus::Array<Pegasus::CIMInstance> fileSystems;
    Pegasus::Array<Pegasus::CIMInstance> storagePools;
    Pegasus::Array<Pegasus::CIMInstance> disks;
    Pegasus::Array<Pegasus::CIMInstance> fileSystemPerfs;
    Pegasus::Array<Pegasus::CIMInstance> diskPerfs;
    Pegasus::Array<Pegasus::CIMInstance> fsPerNodePerfs;
    Pegasus::Array<Pegasus::CIMInstance> policies;
    // Every job started, in order; never emptied. getInstance answers from
    // it. jobElements holds the same jobs at addresses that stay put while
    // the list grows: the management library keeps a pointer to a job's
    // element until its completion callback has run. Both change only under
    // the write lock.
    Pegasus::Array<Pegasus::CIMInstance> concreteJobs;
    std::deque<Pegasus::CIMInstance> jobElements;
    Pegasus::Array<Pegasus::CIMInstance> objMgrConformsToProfile;
    Pegasus::Array<Pegasus::CIMInstance> csConformsToProfile;
    Pegasus::Array<Pegasus::CIMInstance> componentCS;
    Pegasus::Array<Pegasus::CIMInstance> hostedFileSystems;
    Pegasus::Array<Pegasus::CIMInstance> associatedStoragePools;
    Pegasus::Array<Pegasus::CIMInstance> storageComponents;
    Pegasus::Array<Pegasus::CIMInstance> nodeServingNsds;
    Pegasus::Array<Pegasus::CIMInstance> nodeAccessesNsds;
    Pegasus::Array<Pegasus::CIMInstance> freeNsds;
    Pegasus::Array<Pegasus::CIMInstance> mounteds;
    Pegasus::Array<Pegasus::CIMInstance> configManagers;
    Pegasus::Array<Pegasus::CIMInstance> fileSystemManagers;
    Pegasus::Array<Pegasus::CIMInstance> fileSystemPolicies;
    Pegasus::Array<Pegasus::CIMInstance> raidPhysicalDisks;
    Pegasus::Array<Pegasus::CIMInstance> raidVirtualDisks;
    Pegasus::Array<Pegasus::CIMInstance> raidDeclusteredArrays;
    // Scratch lists of the file system, pool and fileset being built.
    Pegasus::Array<Pegasus::CIMInstance> fsStoragePools;
    Pegasus::Array<Pegasus::CIMInstance> poolDisks;
    Pegasus::Array<Pegasus::CIMInstance> fsFilesets;
    // Reserved slots of the published object layout; nothing fills them.
    Pegasus::Array<Pegasus::CIMInstance> spareList1;
    Pegasus::Array<Pegasus::CIMInstance> spareList2;
    Pegasus::Array<Pegasus::CIMInstance> userQuotas;
    Pegasus::Array<Pegasus::CIMInstance> groupQuotas;
    Pegasus::Array<Pegasus::CIMInstance> filesetQuotas;
    Pegasus::Array<Pegasus::CIMInstance> filesets;
    Pegasus::Array<Pegasus::CIMInstance> users;
    Pegasus::Array<Pegasus::CIMInstance> groups;
    Pegasus::Array<Pegasus::CIMInstance> spareList3;
    Pegasus::Array<Pegasus::CIMInstance> spareList4;
    Pegasus::Array<Pegasus::CIMInstance> userQuotaAssocs;
    Pegasus::Array<Pegasus::CIMInstance> groupQuotaAssocs;
    Pegasus::Array<Pegasus::CIMInstance> filesetQuotaAssocs;
    Pegasus::Array<Pegasus::CIMInstance> userAssocs;
    Pegasus::Array<Pegasus::CIMInstance> groupAssocs;
    Pegasus::Array<Pegasus::CIMInstance> associatedFilesets;
    Pegasus::Array<Pegasus::CIMInstance> spareList5;
    Pegasus::Array<Pegasus::CIMInstance> spareList6;
    Pegasus::Array<Pegasus::CIMInstance> spareList7;
    Pegasus::Array<Pegasus::CIMInstance> fileSystemFilesetQuotaAssocs;
    Pegasus::Array<Pegasus::CIMInstance> fileSystemUserQuotaAssocs;
    Pegasus::Array<Pegasus::CIMInstance> fileSystemGroupQuotaAssocs;

    // Look-up indexes beside the arrays above: provider/cacheIndexes.cpp.
    // Brought up to date when the write lock is released; look-ups made by
    // the write-lock holder update a stale index first, other look-ups walk
    // the array when its index is stale. Read elements through a const
    // reference where you can: a non-const access to an array an index
    // shares copies the array once and makes the index stale.
    CacheIndexes cacheIndexes{*this};
    // The index of the array to use now, or null when the array must be
    // walked (provider/instanceStore.cpp).
    ArrayIndex* usableIndex(const Pegasus::Array<Pegasus::CIMInstance>& array,
                            ArrayIndex::Kind kind, const Pegasus::CIMName* keyProperty = 0);

private:
    // The array that a look-up type searches, and the property it compares.
    const Pegasus::Array<Pegasus::CIMInstance>& lookupArray(VexaInstanceType type) const;
    static const char* lookupKeyProperty(VexaInstanceType type);
};

// Process-wide state shared with the refresh and event threads and with the
// management library's callbacks. Plain variables, read without a lock.
extern int KeepRunning;
extern bool NeedEventHandler;
extern VexaProvider* theVexaProvider;
extern int IndicationEnabled;
extern Pegasus::IndicationResponseHandler* IndicationHandler;

// The management library's event callback.
int genVexaIndication(Event* event, void* userData);

#endif
