// Asynchronous jobs and the instance-modification indications that announce
// a completed job or a declustered-RAID element whose status a method set.
#include "modificationIndications.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzantras/ts_log.h>

#include <cstdio>
#include <cstdlib>

#include "cimProvider.h"
#include "exceptionBarrier.h"
#include "indicationGate.h"
#include "lockGuards.h"
#include "processFlags.h"

PEGASUS_USING_PEGASUS;

namespace {

const Uint16 JOB_STATE_NEW = 3;
const Uint16 JOB_STATE_COMPLETED = 7;

// Microseconds since the epoch as decimal text. Two calls within the same
// microsecond give the same text; nothing makes it more unique.
String currentMicroseconds() {
    char text[32];
    snprintf(text, sizeof(text), "%llu", CIMDateTime::getCurrentDateTime().toMicroSeconds());
    return String(text);
}

// Replaces a property by one of the same name with a new value; the property
// moves to the end of the instance.
void replaceProperty(CIMInstance& instance, const char* name, const CIMValue& value) {
    Uint32 at = instance.findProperty(CIMName(name));
    if (at != PEG_NOT_FOUND) {
        instance.removeProperty(at);
    }
    instance.addProperty(CIMProperty(CIMName(name), value));
}

CIMInstance createInstModification(const CIMName& className, const CIMInstance& previous,
                                   const CIMInstance& source) {
    CIMInstance indication(className);
    CIMObjectPath path;
    path.setNameSpace(NAMESPACE);
    path.setClassName(className);
    indication.setPath(path);
    indication.addProperty(
        CIMProperty(CIMName("IndicationIdentifier"), CIMValue(currentMicroseconds())));
    indication.addProperty(
        CIMProperty(CIMName("IndicationTime"), CIMValue(CIMDateTime::getCurrentDateTime())));
    indication.addProperty(
        CIMProperty(CIMName("CorrelatedIndications"), CIMValue(Array<String>())));
    indication.addProperty(CIMProperty(CIMName("PreviousInstance"), CIMValue(CIMObject(previous))));
    indication.addProperty(CIMProperty(CIMName("SourceInstance"), CIMValue(CIMObject(source))));
    return indication;
}

void logProperties(const CIMInstance& instance) {
    for (Uint32 i = 0; i < instance.getPropertyCount(); i++) {
        CIMConstProperty property = instance.getProperty(i);
        ts_log(0, "::notifyMethodCompletion", "property name = %s. value = %s\n",
               (const char*)property.getName().getString().getCString(),
               (const char*)property.getValue().toString().getCString());
    }
}

// Position of a job element in the provider's job list, or -1 when the
// element is not one of this provider's (a task queued by a provider that
// has since been replaced).
long jobIndex(const VexaProvider& provider, const CIMInstance* element) {
    for (size_t i = 0; i < provider.jobElements.size(); i++) {
        if (&provider.jobElements[i] == element) {
            return static_cast<long>(i);
        }
    }
    return -1;
}

const CIMName* modificationClassFor(const CIMName& elementClass) {
    if (elementClass == CORVANE_PHYSICAL_DISK) {
        return &CORVANE_IND_PD;
    }
    if (elementClass == CORVANE_VIRTUAL_DISK) {
        return &CORVANE_IND_VD;
    }
    if (elementClass == CORVANE_DECLUSTERED_ARRAY) {
        return &CORVANE_IND_DA;
    }
    return 0;
}

} // namespace

CIMInstance VexaProvider::createConcreteJobInstance(String name) {
    CIMInstance job(VEXA_CONCRETE_JOB);
    job.addProperty(CIMProperty(CIMName("Name"), CIMValue(name)));
    job.addProperty(CIMProperty(CIMName("JobState"), CIMValue(JOB_STATE_NEW)));
    // "InstanceID" is a key of the path only, not a property of the instance.
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("InstanceID"), currentMicroseconds(), CIMKeyBinding::STRING));
    CIMObjectPath path(String(), CIMNamespaceName(), VEXA_CONCRETE_JOB, keys);
    path.setNameSpace(NAMESPACE);
    job.setPath(path);
    return job;
}

namespace {

// The completed job replaces the stored one rather than being changed in
// place, so a copy that a request thread is still encoding keeps reading a
// whole instance.
void completeJob(void* context) {
    VexaProvider* provider = loadFlag(theVexaProvider);
    if (provider == 0) {
        // The provider was terminated while the task ran; its job list is gone.
        ts_log(1, "::notifyMethodCompletion", "no provider, job not updated\n");
        return;
    }
    CIMInstance* element = static_cast<CIMInstance*>(context);
    CIMInstance previous;
    CIMInstance completed;
    {
        CacheWriteLock lock(*provider);
        long index = jobIndex(*provider, element);
        if (index < 0) {
            ts_log(1, "::notifyMethodCompletion", "unknown job, not updated\n");
            return;
        }
        previous = element->clone();
        completed = element->clone();
        replaceProperty(completed, "JobState", CIMValue(JOB_STATE_COMPLETED));
        *element = completed;
        provider->concreteJobs[static_cast<Uint32>(index)] = completed;
    }
    CIMInstance source = completed.clone();

    logProperties(completed);
    logProperties(previous);
    logProperties(source);

    // The command's own result is not looked at: every job ends in state 7.
    if (loadFlag(IndicationEnabled)) {
        deliverIndication(createVexaInstModification(previous, source));
    }
}

} // namespace

int notifyMethodCompletion(void* context) {
    ts_log(0, "::notifyMethodCompletion", "enter\n");
    // Runs on the library's execution thread, which must outlive a job
    // whose completion fails.
    containFailure("::notifyMethodCompletion", [&] { completeJob(context); });
    return 0;
}

CIMInstance createVexaInstModification(const CIMInstance& previous, const CIMInstance& source) {
    return createInstModification(VEXA_INST_MODIFICATION, previous, source);
}

CIMInstance createCorvaneInstModification(const CIMName& className, const CIMInstance& previous,
                                          const CIMInstance& source) {
    return createInstModification(className, previous, source);
}

int genCorvaneIndication(CIMInstance* element, String, unsigned int status) {
    ts_log(0, "::genCorvaneIndication", "enter\n");
    CIMInstance previous = element->clone();
    unsigned int current = 0;
    Uint32 at = previous.findProperty(CIMName("OperationalStatus"));
    if (at != PEG_NOT_FOUND) {
        CString text = previous.getProperty(at).getValue().toString().getCString();
        // Text that is no number reads as 0, as strtol makes it.
        current = static_cast<unsigned int>(strtol((const char*)text, 0, 10));
    }
    if (current == status) {
        ts_log(0, "::genCorvaneIndication", "no change...\n");
        return 0;
    }

    CIMInstance changed = element->clone();
    Array<Uint16> operationalStatus;
    operationalStatus.append(static_cast<Uint16>(status));
    replaceProperty(changed, "OperationalStatus", CIMValue(operationalStatus));
    // Replaced, not edited in place: copies already handed to a response
    // handler share the old instance and must not change under it.
    *element = changed;
    CIMInstance source = changed.clone();

    const CIMName* indicationClass = modificationClassFor(element->getClassName());
    if (indicationClass == 0) {
        return -1;
    }
    if (loadFlag(IndicationEnabled)) {
        deliverIndication(createCorvaneInstModification(*indicationClass, previous, source));
    }
    return 0;
}
