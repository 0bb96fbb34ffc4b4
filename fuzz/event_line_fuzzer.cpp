// One event line as the event socket takes it, and the indication the
// provider builds from the event: a bad line may only be refused with
// std::invalid_argument, and every accepted event must become an indication
// without any exception, whatever its texts name.
#include <Pegasus/Common/CIMInstance.h>

#include <qzsim/SimControl.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "classNames.h"
#include "indicationInstance.h"
#include "startedProvider.h"

PEGASUS_USING_PEGASUS;

namespace {

// Indexed by event type; null for the types that are not published.
const CIMName* const INDICATION_CLASSES[] = {&VEXA_IND_MOUNT,
                                             &VEXA_IND_UNMOUNT,
                                             &VEXA_IND_ADDDISK,
                                             &VEXA_IND_DELDISK,
                                             &VEXA_IND_CHDISK,
                                             &VEXA_IND_MGR_TAKEOVER,
                                             &VEXA_IND_NODE_FAILURE,
                                             &VEXA_IND_NODE_RECOVERY,
                                             &VEXA_IND_CRFS,
                                             &VEXA_IND_DELFS,
                                             &VEXA_IND_CHFS,
                                             &VEXA_IND_NEW_CONN,
                                             &VEXA_IND_EVT_OVERFLOW,
                                             nullptr,
                                             &VEXA_IND_HUNGTHREAD,
                                             &VEXA_IND_STGPOOL_UTIL,
                                             nullptr,
                                             &VEXA_IND_QZADDDISK,
                                             &VEXA_IND_QZDELDISK};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    startedProvider();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Event event;
    try {
        event = qzsim::eventFromJson(std::string(reinterpret_cast<const char*>(data), size));
    } catch (const std::invalid_argument&) {
        return 0;
    }
    const CIMName* className = INDICATION_CLASSES[event.type];
    if (className != nullptr) {
        createVexaIndicationInstance(*className, &event, const_cast<CIMName*>(className));
    }
    return 0;
}
