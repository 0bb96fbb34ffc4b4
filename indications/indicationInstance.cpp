// Indication instances: the common properties every indication carries.
#include "indicationInstance.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <cstdio>

#include "classNames.h"

PEGASUS_USING_PEGASUS;

CIMInstance createVexaIndicationInstance(const CIMName& className, Event* event, void*) {
    CIMInstance indication(className);
    // Indications carry the source namespace and their class, and no keys:
    // the server routes them by that namespace.
    CIMObjectPath path;
    path.setNameSpace(NAMESPACE);
    path.setClassName(className);
    indication.setPath(path);

    char identifier[32];
    snprintf(identifier, sizeof(identifier), "%llu",
             CIMDateTime::getCurrentDateTime().toMicroSeconds());
    indication.addProperty(
        CIMProperty(CIMName("IndicationIdentifier"), CIMValue(String(identifier))));
    indication.addProperty(
        CIMProperty(CIMName("IndicationTime"), CIMValue(CIMDateTime::getCurrentDateTime())));
    indication.addProperty(
        CIMProperty(CIMName("CorrelatedIndications"), CIMValue(Array<String>())));
    indication.addProperty(CIMProperty(CIMName("vexaEventCreationTimeInSeconds"),
                                       CIMValue(static_cast<Uint64>(event->tvSec))));
    indication.addProperty(CIMProperty(CIMName("vexaEventCreationTimeInMicroseconds"),
                                       CIMValue(static_cast<Uint64>(event->tvUsec))));
    indication.addProperty(CIMProperty(CIMName("vexaSeverity"), CIMValue(String(event->severity))));
    return indication;
}
