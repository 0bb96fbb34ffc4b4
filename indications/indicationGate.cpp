// Deliveries counted in and out under a small mutex, so that
// disableIndications can wait for the ones that passed the enabled test.
#include "indicationGate.h"

#include <qzantras/ts_log.h>

#include <condition_variable>
#include <exception>
#include <mutex>

#include "cimProvider.h"
#include "exceptionBarrier.h"
#include "processFlags.h"

PEGASUS_USING_PEGASUS;

namespace {

std::mutex gateMutex;
std::condition_variable gateIdle;
// Deliveries that passed the gate and have not yet returned, on all threads.
int deliveriesUnderWay = 0;
// Of those, the ones on this thread: a server that disables indications from
// inside a delivery must not wait for itself.
thread_local int deliveriesOnThisThread = 0;
thread_local HeldIndications* heldOnThisThread = 0;

class DeliveryUnderWay {
public:
    DeliveryUnderWay() { ++deliveriesOnThisThread; }
    ~DeliveryUnderWay() {
        --deliveriesOnThisThread;
        std::lock_guard<std::mutex> lock(gateMutex);
        --deliveriesUnderWay;
        gateIdle.notify_all();
    }
    DeliveryUnderWay(const DeliveryUnderWay&) = delete;
    DeliveryUnderWay& operator=(const DeliveryUnderWay&) = delete;
};

} // namespace

void deliverIndication(const CIMInstance& indication) {
    if (heldOnThisThread != 0) {
        heldOnThisThread->hold(indication);
        return;
    }
    IndicationResponseHandler* handler = 0;
    {
        std::lock_guard<std::mutex> lock(gateMutex);
        if (!loadFlag(IndicationEnabled)) {
            return;
        }
        handler = loadFlag(IndicationHandler);
        if (handler == 0) {
            return;
        }
        ++deliveriesUnderWay;
    }
    DeliveryUnderWay underWay;
    handler->deliver(indication);
}

void openIndicationGate(IndicationResponseHandler* handler) {
    std::lock_guard<std::mutex> lock(gateMutex);
    storeFlag(IndicationHandler, handler);
    storeFlag(IndicationEnabled, 1);
}

IndicationResponseHandler* closeIndicationGate() {
    std::unique_lock<std::mutex> lock(gateMutex);
    storeFlag(IndicationEnabled, 0);
    gateIdle.wait(lock, [] { return deliveriesUnderWay == deliveriesOnThisThread; });
    return loadFlag(IndicationHandler);
}

HeldIndications::HeldIndications() : outer_(heldOnThisThread) { heldOnThisThread = this; }

HeldIndications::~HeldIndications() {
    heldOnThisThread = outer_;
    for (Uint32 i = 0; i < held_.size(); i++) {
        // A destructor must not throw; a failed delivery is logged and the
        // rest still go out.
        containFailure("::deliverIndication", [&] { deliverIndication(held_[i]); });
    }
}
