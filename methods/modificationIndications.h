// Completion of asynchronous jobs and the instance-modification indications
// that announce changed jobs and declustered-RAID elements. Free functions:
// the management library calls notifyMethodCompletion on its own thread.
#ifndef VEXA_METHODS_MODIFICATIONINDICATIONS_H
#define VEXA_METHODS_MODIFICATIONINDICATIONS_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

// The library's completion callback; context is the job's element in the
// provider's jobElements. Marks the job completed ("JobState" 7) under the
// cache's write lock, whatever the command's outcome, and announces it while
// indications are enabled. Does nothing once the provider is withdrawn from
// theVexaProvider. Returns 0.
int notifyMethodCompletion(void* context);

Pegasus::CIMInstance createVexaInstModification(const Pegasus::CIMInstance& previous,
                                                const Pegasus::CIMInstance& source);
Pegasus::CIMInstance createCorvaneInstModification(const Pegasus::CIMName& className,
                                                   const Pegasus::CIMInstance& previous,
                                                   const Pegasus::CIMInstance& source);

// Sets the element's "OperationalStatus" to status and announces the change.
// 0 when done (changed or unchanged), -1 when the element is of no RAID class
// (the status is set all the same). The element is replaced by a changed
// copy, not edited in place; when it lives in the instance cache the caller
// holds the cache's write lock. Takes no lock itself.
int genCorvaneIndication(Pegasus::CIMInstance* element, Pegasus::String deviceName,
                         unsigned int status);

#endif
