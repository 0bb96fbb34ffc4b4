#include "vexa/host/StreamingHandlers.h"

#include <Pegasus/Common/Exception.h>

PEGASUS_USING_PEGASUS;

namespace vexa::host {

void InstanceStreamer::deliver(const CIMInstance& instance) {
    if (instance.isUninitialized()) {
        refuseUninitialized();
    }
    answer_.addNamedInstance(instance, selection_);
}

void InstanceStreamer::deliver(const Array<CIMInstance>& many) {
    for (Uint32 i = 0; i < many.size(); ++i) {
        deliver(many[i]);
    }
}

void PathStreamer::deliver(const CIMObjectPath& path) {
    if (path.getClassName().isNull()) {
        throw CIMException(CIM_ERR_FAILED, "The object path has no class name.");
    }
    if (form_ == Form::InstanceName) {
        answer_.addInstanceName(path);
    } else {
        answer_.addObjectPath(path);
    }
}

void PathStreamer::deliver(const Array<CIMObjectPath>& many) {
    for (Uint32 i = 0; i < many.size(); ++i) {
        deliver(many[i]);
    }
}

void ObjectStreamer::deliver(const CIMObject& object) {
    if (object.isUninitialized()) {
        refuseUninitialized();
    }
    answer_.addObjectWithPath(object, selection_);
}

void ObjectStreamer::deliver(const Array<CIMObject>& many) {
    for (Uint32 i = 0; i < many.size(); ++i) {
        deliver(many[i]);
    }
}

} // namespace vexa::host
