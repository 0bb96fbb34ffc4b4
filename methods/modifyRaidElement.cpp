// The declustered-RAID element methods, and every method name that matches
// no other: the status of a cached element changed and announced.
#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

Uint32 VexaProvider::modifyRaidElement(const CIMName&, const Array<CIMParamValue>&) { return 0; }
