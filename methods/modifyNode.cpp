// ModifyNode: a node setting changed by the cluster's configuration command,
// run as an asynchronous job.
#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

Uint32 VexaProvider::modifyNode(const Array<CIMParamValue>&, MethodResultResponseHandler&) {
    return 0;
}
