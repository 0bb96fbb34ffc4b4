// The one way out for indications. Deliveries go through the handler the CIM
// server gave enableIndications, and never overlap or follow the complete()
// with which disableIndications hands that handler back: the server may
// release the handler as soon as complete() returns.
#ifndef VEXA_PROVIDER_INDICATIONGATE_H
#define VEXA_PROVIDER_INDICATIONGATE_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>

// Delivers the indication while indications are enabled; drops it otherwise.
// Exceptions of the server's deliver() pass to the caller.
void deliverIndication(const Pegasus::CIMInstance& indication);

// Saves the handler and lets deliveries through.
void openIndicationGate(Pegasus::IndicationResponseHandler* handler);

// Stops new deliveries and waits until those under way have returned; the
// handler may then be completed. Returns the saved handler (kept saved).
Pegasus::IndicationResponseHandler* closeIndicationGate();

// While one of these lives on a thread, the thread's deliveries are held in
// it and go out when it ends. Declared before a lock guard, it sends what was
// built under the lock once the lock is released, so that no client's
// handler runs while the cache lock is held.
class HeldIndications {
public:
    HeldIndications();
    ~HeldIndications();
    HeldIndications(const HeldIndications&) = delete;
    HeldIndications& operator=(const HeldIndications&) = delete;

    void hold(const Pegasus::CIMInstance& indication) { held_.append(indication); }

private:
    HeldIndications* outer_;
    Pegasus::Array<Pegasus::CIMInstance> held_;
};

#endif
