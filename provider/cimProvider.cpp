// Lifecycle of the provider object: construction, start-up against the
// management library, shutdown, and the operations the provider declines.
#include "cimProvider.h"
#include "lockGuards.h"

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>

#include <qzantras/EventsHandler.h>
#include <qzantras/MgmtTypes.h>
#include <qzantras/ts_log.h>

#include <cstdio>
#include <cstring>

#include "exceptionBarrier.h"
#include "processFlags.h"

PEGASUS_USING_PEGASUS;

int KeepRunning = 0;
bool NeedEventHandler = false;
VexaProvider* theVexaProvider = 0;
int IndicationEnabled = 0;
IndicationResponseHandler* IndicationHandler = 0;

// Scalars get safe values here although initialize() sets every one it
// relies on: a provider that is created and never initialised must still be
// harmless to destroy or to probe.
VexaProvider::VexaProvider()
    : refreshForced(false), perfListsStale(false), performanceListsBuilt(false), pollingHandler(0),
      clusterInfo(0), eventThreadId(), refreshThreadId(), eventThreadJoinable(false),
      refreshThreadJoinable(false) {
    memset(&lastUserGroupRefresh, 0, sizeof(lastUserGroupRefresh));
    memset(&lastRefresh, 0, sizeof(lastRefresh));
    memset(&instanceLock, 0, sizeof(instanceLock));
}

// Releases the cache arrays, and stops the threads when terminate() did not:
// a thread left running would use a deleted object.
VexaProvider::~VexaProvider() { stopThreads(); }

void VexaProvider::initialize(CIMOMHandle&) {
    fprintf(stderr, "VexaProvider::initialize, enter\n");

    if (initVexaHandler() != 0) {
        ts_log(2, "VexaProvider::initialize", "Couldn't initialize VexaHandler, exiting...\n");
        // No code and no text of our own: the server answers the request that
        // loaded us with its own "provider initialization failed", and the
        // log line above says why.
        throw CIMException(CIM_ERR_SUCCESS, String());
    }

    buildDiscoveryInstanceList();
    buildIndicationFilterList();
    initEvents(0);

    if (pthread_create(&eventThreadId, 0, eventThread, 0) != 0) {
        ts_log(2, "VexaProvider::initialize", "Couldn't start event handler thread, exiting...\n");
        return;
    }
    // Both threads stay joinable: terminate() waits for them (see
    // stopThreads()).
    eventThreadJoinable = true;

    storeFlag(KeepRunning, 1);
    if (pthread_create(&refreshThreadId, 0, refreshThread, 0) != 0) {
        ts_log(2, "VexaProvider::initialize",
               "Couldn't start node list refresh thread, exiting...\n");
        return;
    }
    refreshThreadJoinable = true;

    // Both clocks at zero make the first pass rebuild everything.
    lastRefresh.tv_sec = 0;
    lastRefresh.tv_usec = 0;
    lastUserGroupRefresh.tv_sec = 0;
    lastUserGroupRefresh.tv_usec = 0;

    // A first pass that fails part-way leaves the clocks at zero, so the
    // first request tries again; the provider still starts.
    containFailure("VexaProvider::initialize", [this] {
        CacheWriteLock lock(*this);
        buildAllVexaInstanceList(1);
    });

    // Published last: the threads and callbacks only ever see a provider
    // whose cache holds a complete first pass.
    storeFlag(theVexaProvider, this);
    ts_log(0, "VexaProvider::initialize", "exit\n");
}

// The server does not delete providers; the object deletes itself.
//
// Beyond releasing the object, terminate stops the refresh and event threads,
// waits for them and releases the management library. The server disables,
// unloads and reloads provider modules and unmaps the library afterwards: a
// thread of ours still sleeping then wakes up in unmapped code and takes the
// whole provider agent down, and a library connection left open leaks one
// per reload. Every other effect of terminate is unchanged.
void VexaProvider::terminate() {
    ts_log(0, "VexaProvider::terminate", "enter\n");
    // The global pointer is withdrawn first, so that no thread or callback
    // picks the object up again while it goes.
    VexaProvider* self = this;
    __atomic_compare_exchange_n(&theVexaProvider, &self, static_cast<VexaProvider*>(0), false,
                                __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE);
    stopThreads();
    cleanupVexaHandler();
    delete this;
}

int VexaProvider::initVexaHandler() {
    ts_log(0, "VexaProvider::initVexaHandler", "enter\n");
    MErrno err = 0;

    int rc = PollingHandler::init(static_cast<MgmtProtocol>(1), 0, 1);
    if (rc != 0) {
        ts_log(2, "VexaProvider::initVexaHandler", "Couldn't initialize PollingHandler, err = %d\n",
               rc);
        return rc;
    }

    // The record reports its own construction failure through err.
    clusterInfo = new ClusterInfo(&err);
    pollingHandler = thePollingHandler;
    pthread_rwlock_init(&instanceLock, 0);
    handlerText = String();
    return err;
}

// Safe to call twice, and on a provider that never connected.
int VexaProvider::cleanupVexaHandler() {
    if (pollingHandler == 0 && clusterInfo == 0) {
        return 0;
    }
    // The threads that call into the library go first, then the library:
    // its execution thread runs the queued tasks to the end, and their
    // completions still take the cache lock.
    stopThreads();
    EventsHandler::term();
    PollingHandler::term();
    pollingHandler = 0;
    pthread_rwlock_destroy(&instanceLock);
    if (clusterInfo != 0) {
        delete clusterInfo;
        clusterInfo = 0;
    }
    return 0;
}

// Write operations are not part of the published model. They answer nothing
// and throw nothing, so a client sees the server's own reaction to a handler
// that was never completed.
void VexaProvider::createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                                  ObjectPathResponseHandler&) {
    ts_log(2, "VexaProvider::createInstance", "Not supported.\n");
}

void VexaProvider::modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                                  const Boolean, const CIMPropertyList&, ResponseHandler&) {
    ts_log(2, "VexaProvider::modifyInstance", "Not supported.\n");
}

void VexaProvider::deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) {
    ts_log(2, "VexaProvider::deleteInstance", "Not supported.\n");
}

void VexaProvider::references(const OperationContext&, const CIMObjectPath&, const CIMName&,
                              const String&, const Boolean, const Boolean, const CIMPropertyList&,
                              ObjectResponseHandler&) {}

void VexaProvider::referenceNames(const OperationContext&, const CIMObjectPath&, const CIMName&,
                                  const String&, ObjectPathResponseHandler&) {}

// Indications go to every subscriber through the handler given to
// enableIndications; individual subscriptions need no bookkeeping here.
void VexaProvider::createSubscription(const OperationContext&, const CIMObjectPath&,
                                      const Array<CIMObjectPath>&, const CIMPropertyList&,
                                      const Uint16) {}

void VexaProvider::modifySubscription(const OperationContext&, const CIMObjectPath&,
                                      const Array<CIMObjectPath>&, const CIMPropertyList&,
                                      const Uint16) {}

void VexaProvider::deleteSubscription(const OperationContext&, const CIMObjectPath&,
                                      const Array<CIMObjectPath>&) {}
