// Construction of one indication instance from one management-library event.
#ifndef VEXA_INDICATIONS_INDICATIONINSTANCE_H
#define VEXA_INDICATIONS_INDICATIONINSTANCE_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>

#include <qzantras/ClusterInfo.h>

// userData is the class name again, as registered with the event callback.
Pegasus::CIMInstance createVexaIndicationInstance(const Pegasus::CIMName& className, Event* event,
                                                  void* userData);

#endif
