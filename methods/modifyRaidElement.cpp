// The declustered-RAID element methods, and every method name that matches
// no other: the status of a cached element changed and announced.
#include "cimProvider.h"
#include "indicationGate.h"
#include "lockGuards.h"

#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzantras/ts_log.h>

#include <cstdlib>

#include "modificationIndications.h"

PEGASUS_USING_PEGASUS;

namespace {

// These lines belong to the method frame's trace, which log readers follow
// under the one function name of the frame.
const char* const FRAME_FUNCTION = "VexaProvider::invokeMethod";

struct RaidElementMethod {
    const char* name;
    VexaProvider::CorvaneInstanceType type;
    Array<CIMInstance> VexaProvider::*list;
};

// Tested in this order; a name found in none changes nothing.
const RaidElementMethod RAID_ELEMENT_METHODS[] = {
    {"ModifyCorvanePhysicalDisk", VexaProvider::CORVANE_INST_PHYSICAL_DISK,
     &VexaProvider::raidPhysicalDisks},
    {"ModifyCorvaneVirtualDisk", VexaProvider::CORVANE_INST_VIRTUAL_DISK,
     &VexaProvider::raidVirtualDisks},
    {"ModifyCorvaneDeclusteredArray", VexaProvider::CORVANE_INST_DECLUSTERED_ARRAY,
     &VexaProvider::raidDeclusteredArrays},
};

} // namespace

// Every call returns 0: an unknown device, an unknown method name and a
// status that is not a number (it reads as 0) are not the caller's error to
// hear about.
Uint32 VexaProvider::modifyRaidElement(const CIMName& methodName,
                                       const Array<CIMParamValue>& inParameters) {
    String deviceName;
    Uint32 status = 0;
    for (Uint32 i = 0; i < inParameters.size(); i++) {
        const String name = inParameters[i].getParameterName();
        const String value = inParameters[i].getValue().toString();
        ts_log(0, FRAME_FUNCTION, "in parameter %d name = %s\n", static_cast<int>(i),
               (const char*)name.getCString());
        ts_log(0, FRAME_FUNCTION, "value = %s\n", (const char*)value.getCString());
        if (name == "name") {
            deviceName = value;
        } else if (name == "status") {
            status = static_cast<Uint32>(std::strtol(value.getCString(), 0, 10));
        }
    }
    ts_log(0, FRAME_FUNCTION, "device name = %s\n", (const char*)deviceName.getCString());
    ts_log(0, FRAME_FUNCTION, "device status = %u\n", status);

    for (const RaidElementMethod& method : RAID_ELEMENT_METHODS) {
        if (!methodName.equal(CIMName(method.name))) {
            continue;
        }
        ts_log(0, FRAME_FUNCTION, "%s\n", method.name);
        // The lists are rebuilt by every cache pass; the element must not be
        // replaced while its status changes. The announcement goes out once
        // the lock is released.
        HeldIndications announcement;
        CacheWriteLock lock(*this);
        const int index = getCorvaneInstIdx(method.type, deviceName);
        if (index != -1) {
            genCorvaneIndication(&(this->*method.list)[static_cast<Uint32>(index)], deviceName,
                                 status);
        }
        break;
    }
    return 0;
}
