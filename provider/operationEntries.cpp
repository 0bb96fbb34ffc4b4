// The read operations as the CIM server calls them. Whatever goes wrong
// inside one (a text the object model refuses, a look-up out of range, a
// handler that throws) reaches the server as a CIM error, never as another
// exception; the cache lock is released on the way out by its guard.
#include "cimProvider.h"

#include "exceptionBarrier.h"

PEGASUS_USING_PEGASUS;

void VexaProvider::enumerateInstances(const OperationContext&, const CIMObjectPath& classReference,
                                      const Boolean, const Boolean, const CIMPropertyList&,
                                      InstanceResponseHandler& handler) {
    answerFailuresAsCimErrors("VexaProvider::enumerateInstances",
                              [&] { serveEnumerateInstances(classReference, handler); });
}

void VexaProvider::enumerateInstanceNames(const OperationContext&,
                                          const CIMObjectPath& classReference,
                                          ObjectPathResponseHandler& handler) {
    answerFailuresAsCimErrors("VexaProvider::enumerateInstanceNames",
                              [&] { serveEnumerateInstanceNames(classReference, handler); });
}

void VexaProvider::getInstance(const OperationContext&, const CIMObjectPath& instanceReference,
                               const Boolean, const Boolean, const CIMPropertyList&,
                               InstanceResponseHandler& handler) {
    answerFailuresAsCimErrors("VexaProvider::getInstance",
                              [&] { serveGetInstance(instanceReference, handler); });
}

void VexaProvider::associators(const OperationContext&, const CIMObjectPath& objectName,
                               const CIMName& associationClass, const CIMName& resultClass,
                               const String& role, const String& resultRole, const Boolean,
                               const Boolean, const CIMPropertyList&,
                               ObjectResponseHandler& handler) {
    answerFailuresAsCimErrors("VexaProvider::associators", [&] {
        serveAssociators(objectName, associationClass, resultClass, role, resultRole, handler);
    });
}

void VexaProvider::associatorNames(const OperationContext&, const CIMObjectPath& objectName,
                                   const CIMName& associationClass, const CIMName& resultClass,
                                   const String& role, const String& resultRole,
                                   ObjectPathResponseHandler& handler) {
    answerFailuresAsCimErrors("VexaProvider::associatorNames", [&] {
        serveAssociatorNames(objectName, associationClass, resultClass, role, resultRole, handler);
    });
}
