// Extrinsic methods of the cluster configuration service.
#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

void VexaProvider::invokeMethod(const OperationContext&, const CIMObjectPath&, const CIMName&,
                                const Array<CIMParamValue>&, MethodResultResponseHandler& handler) {
    handler.processing();
    handler.complete();
}
