#include "vexa/host/ResponseCollectors.h"

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_USING_PEGASUS;

namespace vexa::host {

void refuseUninitialized() { throw CIMException(CIM_ERR_FAILED, "The object is not initialized."); }

void InstanceCollector::deliver(const CIMInstance& instance) {
    if (instance.isUninitialized()) {
        refuseUninitialized();
    }
    if (atMostOne_ && instances.size() == 1) {
        throw CIMException(CIM_ERR_FAILED, "Too many objects delivered.");
    }
    instances.append(instance.clone());
}

void InstanceCollector::deliver(const Array<CIMInstance>& many) {
    for (Uint32 i = 0; i < many.size(); ++i) {
        deliver(many[i]);
    }
}

void MethodResultCollector::deliverParamValue(const CIMParamValue& parameter) {
    if (parameter.isUninitialized()) {
        refuseUninitialized();
    }
    outParameters.append(parameter.clone());
}

void MethodResultCollector::deliverParamValue(const Array<CIMParamValue>& parameters) {
    for (Uint32 i = 0; i < parameters.size(); ++i) {
        deliverParamValue(parameters[i]);
    }
}

void MethodResultCollector::deliver(const CIMValue& value) {
    if (value.isNull()) {
        throw CIMException(CIM_ERR_FAILED, "A method may not return a null value.");
    }
    returnValue = value;
}

} // namespace vexa::host
