#ifndef PEGASUS_PROVIDER_INTERNAL
#define PEGASUS_PROVIDER_INTERNAL
#endif

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <atomic>

PEGASUS_NAMESPACE_BEGIN

// Copies of a handle share this; providers keep copies on their own threads,
// hence the atomic counters.
class CIMOMHandleRep {
public:
    std::atomic<Uint32> references{1};
    std::atomic<Sint32> unloadGuards{0};
};

namespace {

// Nothing answers calls back into the server in this layer, so every
// operation fails the same way a server would for an unsupported request.
[[noreturn]] void notSupported(const char* operation) {
    throw CIMException(CIM_ERR_NOT_SUPPORTED,
                       String("CIMOMHandle::") + String(operation) +
                           String(" is not supported: no CIM server is attached to this handle"));
}

void release(CIMOMHandleRep* rep) {
    if (rep->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete rep;
    }
}

} // namespace

CIMOMHandle::CIMOMHandle() : _rep(new CIMOMHandleRep) {}

CIMOMHandle::CIMOMHandle(const CIMOMHandle& handle) : _rep(handle._rep) {
    _rep->references.fetch_add(1, std::memory_order_relaxed);
}

CIMOMHandle::~CIMOMHandle() { release(_rep); }

CIMOMHandle& CIMOMHandle::operator=(const CIMOMHandle& handle) {
    if (_rep != handle._rep) {
        handle._rep->references.fetch_add(1, std::memory_order_relaxed);
        release(_rep);
        _rep = handle._rep;
    }
    return *this;
}

CIMClass CIMOMHandle::getClass(const OperationContext&, const CIMNamespaceName&, const CIMName&,
                               Boolean, Boolean, Boolean, const CIMPropertyList&) {
    notSupported("getClass");
}

Array<CIMClass> CIMOMHandle::enumerateClasses(const OperationContext&, const CIMNamespaceName&,
                                              const CIMName&, Boolean, Boolean, Boolean, Boolean) {
    notSupported("enumerateClasses");
}

Array<CIMName> CIMOMHandle::enumerateClassNames(const OperationContext&, const CIMNamespaceName&,
                                                const CIMName&, Boolean) {
    notSupported("enumerateClassNames");
}

void CIMOMHandle::createClass(const OperationContext&, const CIMNamespaceName&, const CIMClass&) {
    notSupported("createClass");
}

void CIMOMHandle::modifyClass(const OperationContext&, const CIMNamespaceName&, const CIMClass&) {
    notSupported("modifyClass");
}

void CIMOMHandle::deleteClass(const OperationContext&, const CIMNamespaceName&, const CIMName&) {
    notSupported("deleteClass");
}

CIMInstance CIMOMHandle::getInstance(const OperationContext&, const CIMNamespaceName&,
                                     const CIMObjectPath&, Boolean, Boolean, Boolean,
                                     const CIMPropertyList&) {
    notSupported("getInstance");
}

Array<CIMInstance> CIMOMHandle::enumerateInstances(const OperationContext&, const CIMNamespaceName&,
                                                   const CIMName&, Boolean, Boolean, Boolean,
                                                   Boolean, const CIMPropertyList&) {
    notSupported("enumerateInstances");
}

Array<CIMObjectPath> CIMOMHandle::enumerateInstanceNames(const OperationContext&,
                                                         const CIMNamespaceName&, const CIMName&) {
    notSupported("enumerateInstanceNames");
}

CIMObjectPath CIMOMHandle::createInstance(const OperationContext&, const CIMNamespaceName&,
                                          const CIMInstance&) {
    notSupported("createInstance");
}

void CIMOMHandle::modifyInstance(const OperationContext&, const CIMNamespaceName&,
                                 const CIMInstance&, Boolean, const CIMPropertyList&) {
    notSupported("modifyInstance");
}

void CIMOMHandle::deleteInstance(const OperationContext&, const CIMNamespaceName&,
                                 const CIMObjectPath&) {
    notSupported("deleteInstance");
}

Array<CIMObject> CIMOMHandle::execQuery(const OperationContext&, const CIMNamespaceName&,
                                        const String&, const String&) {
    notSupported("execQuery");
}

Array<CIMObject> CIMOMHandle::associators(const OperationContext&, const CIMNamespaceName&,
                                          const CIMObjectPath&, const CIMName&, const CIMName&,
                                          const String&, const String&, Boolean, Boolean,
                                          const CIMPropertyList&) {
    notSupported("associators");
}

Array<CIMObjectPath> CIMOMHandle::associatorNames(const OperationContext&, const CIMNamespaceName&,
                                                  const CIMObjectPath&, const CIMName&,
                                                  const CIMName&, const String&, const String&) {
    notSupported("associatorNames");
}

Array<CIMObject> CIMOMHandle::references(const OperationContext&, const CIMNamespaceName&,
                                         const CIMObjectPath&, const CIMName&, const String&,
                                         Boolean, Boolean, const CIMPropertyList&) {
    notSupported("references");
}

Array<CIMObjectPath> CIMOMHandle::referenceNames(const OperationContext&, const CIMNamespaceName&,
                                                 const CIMObjectPath&, const CIMName&,
                                                 const String&) {
    notSupported("referenceNames");
}

CIMValue CIMOMHandle::getProperty(const OperationContext&, const CIMNamespaceName&,
                                  const CIMObjectPath&, const CIMName&) {
    notSupported("getProperty");
}

void CIMOMHandle::setProperty(const OperationContext&, const CIMNamespaceName&,
                              const CIMObjectPath&, const CIMName&, const CIMValue&) {
    notSupported("setProperty");
}

CIMValue CIMOMHandle::invokeMethod(const OperationContext&, const CIMNamespaceName&,
                                   const CIMObjectPath&, const CIMName&,
                                   const Array<CIMParamValue>&, Array<CIMParamValue>&) {
    notSupported("invokeMethod");
}

// Unloading is the server's business. Without a server the guards are only
// counted, so balanced disallow/allow pairs from a provider stay harmless.
void CIMOMHandle::disallowProviderUnload() {
    _rep->unloadGuards.fetch_add(1, std::memory_order_relaxed);
}

void CIMOMHandle::allowProviderUnload() {
    _rep->unloadGuards.fetch_sub(1, std::memory_order_relaxed);
}

PEGASUS_NAMESPACE_END
