// Event intake: the management library's event stream, run on a thread of
// its own, turned into indications while the CIM server has them enabled.
#include "cimProvider.h"

#include <qzantras/EventsHandler.h>
#include <qzantras/ts_log.h>

#include <pthread.h>

#include "exceptionBarrier.h"
#include "indicationGate.h"
#include "indicationInstance.h"
#include "processFlags.h"

PEGASUS_USING_PEGASUS;

namespace {

// The event types the provider publishes, each with its indication class.
// Console messages (13) and configuration changes (16) are not published.
struct EventRegistration {
    int eventType;
    const CIMName* indicationClass;
};

const EventRegistration EVENT_REGISTRATIONS[] = {
    {0, &VEXA_IND_MOUNT},         {1, &VEXA_IND_UNMOUNT},       {2, &VEXA_IND_ADDDISK},
    {3, &VEXA_IND_DELDISK},       {4, &VEXA_IND_CHDISK},        {5, &VEXA_IND_MGR_TAKEOVER},
    {6, &VEXA_IND_NODE_FAILURE},  {7, &VEXA_IND_NODE_RECOVERY}, {8, &VEXA_IND_CRFS},
    {9, &VEXA_IND_DELFS},         {10, &VEXA_IND_CHFS},         {11, &VEXA_IND_NEW_CONN},
    {12, &VEXA_IND_EVT_OVERFLOW}, {14, &VEXA_IND_HUNGTHREAD},   {15, &VEXA_IND_STGPOOL_UTIL},
    {17, &VEXA_IND_QZADDDISK},    {18, &VEXA_IND_QZDELDISK},
};

} // namespace

int VexaProvider::initEvents(PollingHandler* handler) {
    EventsHandler::init(handler, 0);
    for (const EventRegistration& registration : EVENT_REGISTRATIONS) {
        // The library hands the context back untouched; the class constant
        // is only ever read through it.
        theEventsHandler->registerEventCallback(registration.eventType, genVexaIndication,
                                                const_cast<CIMName*>(registration.indicationClass));
    }
    return 0;
}

int VexaProvider::initEventHandler() {
    // The previous event thread left the stream before asking for a new one;
    // joining it here releases it.
    joinEventThread();
    initEvents(0);
    if (pthread_create(&eventThreadId, 0, eventThread, 0) != 0) {
        ts_log(2, "VexaProvider::initEventHandler",
               "Couldn't start event handler thread, exiting...\n");
        return 1;
    }
    eventThreadJoinable = true;
    return 0;
}

// When the stream ends the refresh thread notices NeedEventHandler and
// starts intake again on its next pass.
void* VexaProvider::eventThread(void*) {
    containFailure("VexaProvider::eventThread", [] { theEventsHandler->run(); });
    ts_log(0, "VexaProvider::eventThread", "exit\n");
    containFailure("VexaProvider::eventThread", [] { EventsHandler::term(); });
    storeFlag(NeedEventHandler, true);
    pthread_exit(0);
    return 0;
}

int genVexaIndication(Event* event, void* userData) {
    ts_log(0, "::genVexaIndication", "VEXA event\n");
    ts_log(0, "::genVexaIndication", "tv_sec = %llu\n", event->tvSec);
    ts_log(0, "::genVexaIndication", "tv_usec = %llu\n", event->tvUsec);

    if (!loadFlag(IndicationEnabled)) {
        return 0;
    }
    const CIMName& className = *static_cast<const CIMName*>(userData);
    ts_log(0, "::genVexaIndication", "VEXA event class name = %s\n",
           (const char*)className.getString().getCString());

    // Runs on the library's event thread: an event that cannot be turned
    // into an indication is lost, the stream is not.
    containFailure("::genVexaIndication", [&] {
        deliverIndication(createVexaIndicationInstance(className, event, userData));
    });
    return 0;
}

// The server's handler stays valid until indications are disabled.
void VexaProvider::enableIndications(IndicationResponseHandler& handler) {
    ts_log(0, "VexaProvider::enableIndications", "enter\n");
    openIndicationGate(&handler);
}

// complete() hands the handler back to the server; an event callback that
// passed the enabled test before the flag was cleared is waited for first.
void VexaProvider::disableIndications() {
    ts_log(0, "VexaProvider::disableIndications", "enter\n");
    IndicationResponseHandler* handler = closeIndicationGate();
    if (handler != 0) {
        handler->complete();
    }
}
