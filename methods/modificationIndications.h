// Completion of asynchronous jobs and the instance-modification indications
// that announce changed jobs and declustered-RAID elements. Free functions:
// the management library calls notifyMethodCompletion on its own thread.
#ifndef VEXA_METHODS_MODIFICATIONINDICATIONS_H
#define VEXA_METHODS_MODIFICATIONINDICATIONS_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

// The library's completion callback; context is the job's element in the
// provider's job list. Returns 0.
int notifyMethodCompletion(void* context);

Pegasus::CIMInstance createVexaInstModification(const Pegasus::CIMInstance& previous,
                                                const Pegasus::CIMInstance& source);
Pegasus::CIMInstance createCorvaneInstModification(const Pegasus::CIMName& className,
                                                   const Pegasus::CIMInstance& previous,
                                                   const Pegasus::CIMInstance& source);

// Sets the element's "OperationalStatus" to status and announces the change.
// 0 when done (changed or unchanged), -1 when the element is of no RAID class.
int genCorvaneIndication(Pegasus::CIMInstance* element, Pegasus::String deviceName,
                         unsigned int status);

#endif
