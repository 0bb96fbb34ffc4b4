// ModifyNode: a node setting changed by the cluster's configuration command,
// run as an asynchronous job.
#include "cimProvider.h"

#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzantras/ts_log.h>

#include <cstdio>

#include "lockGuards.h"
#include "modificationIndications.h"

PEGASUS_USING_PEGASUS;

// Only the first in-parameter is applied: one job carries one setting, and
// further parameters are ignored rather than refused. The return code is 0
// however the command ends; its outcome arrives later through the job. Only
// a task the library refuses to queue returns the library's code.
Uint32 VexaProvider::modifyNode(const Array<CIMParamValue>& inParameters,
                                MethodResultResponseHandler& handler) {
    // The dispatch in invokeMethod has logged the method's name.
    static const char* const fn = "VexaProvider::modifyNode";

    // Empty when no parameter is given; the command then reports the error.
    char argBuf[1024] = {};
    if (inParameters.size() > 0) {
        const CIMParamValue& first = inParameters[0];
        CString name = first.getParameterName().getCString();
        CString value = first.getValue().toString().getCString();
        ts_log(0, fn, "parameter name = %s\n", (const char*)name);
        ts_log(0, fn, "value = %s\n", (const char*)value);
        snprintf(argBuf, sizeof(argBuf), "%s=%s", (const char*)name, (const char*)value);
        ts_log(0, fn, "argBuf = %s\n", argBuf);
    }

    CIMInstance* element = 0;
    CIMObjectPath jobPath;
    {
        CacheWriteLock lock(*this);
        CIMInstance job = createConcreteJobInstance(String("qzchconfig"));
        concreteJobs.append(job);
        jobElements.push_back(job);
        element = &jobElements.back();
        jobPath = job.getPath();
    }

    ts_log(0, fn, "add execution task to QZANTRAS\n");
    // The library's own queue: no polling lock is needed to add to it.
    int rc =
        pollingHandler->addExecutionTask("qzchconfig", argBuf, notifyMethodCompletion, element);
    if (rc != 0) {
        // No callback will come for a task the library refused: the job ends
        // here, as a failed command's job does, and the caller gets the code.
        ts_log(2, fn, "addExecutionTask failed, err = %d\n", rc);
        notifyMethodCompletion(element);
    }

    handler.deliverParamValue(CIMParamValue(String("Job"), CIMValue(jobPath)));
    return static_cast<Uint32>(rc);
}
