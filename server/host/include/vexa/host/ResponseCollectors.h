// The response handlers the server hands the provider for a GetInstance or
// a method call (the enumerations stream, see StreamingHandlers.h). They
// keep copies of what is delivered and apply the checks a CIM server applies
// on delivery (no uninitialised objects, one instance for GetInstance, no
// null return value), throwing CIMException as such a server does.
//
// Delivered objects are cloned at once: the provider delivers handles to its
// cache, and CIM objects share state between copies, so a later change of
// the cache must not reach an answer being written.
#ifndef VEXA_HOST_RESPONSECOLLECTORS_H
#define VEXA_HOST_RESPONSECOLLECTORS_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/ResponseHandler.h>

namespace vexa::host {

// What a CIM server answers a provider that delivers an uninitialised object.
[[noreturn]] void refuseUninitialized();

class CompletionTracker : virtual public Pegasus::ResponseHandler {
public:
    void processing() override {}
    void complete() override { completed_ = true; }
    bool completed() const { return completed_; }

private:
    bool completed_ = false;
};

class InstanceCollector : public Pegasus::InstanceResponseHandler, public CompletionTracker {
public:
    // With atMostOne a second instance is refused, as for GetInstance.
    explicit InstanceCollector(bool atMostOne = false) : atMostOne_(atMostOne) {}
    void deliver(const Pegasus::CIMInstance& instance) override;
    void deliver(const Pegasus::Array<Pegasus::CIMInstance>& instances) override;

    Pegasus::Array<Pegasus::CIMInstance> instances;

private:
    bool atMostOne_;
};

class MethodResultCollector : public Pegasus::MethodResultResponseHandler,
                              public CompletionTracker {
public:
    void deliverParamValue(const Pegasus::CIMParamValue& parameter) override;
    void deliverParamValue(const Pegasus::Array<Pegasus::CIMParamValue>& parameters) override;
    // A method that delivers its value more than once answers with the last.
    void deliver(const Pegasus::CIMValue& returnValue) override;

    Pegasus::Array<Pegasus::CIMParamValue> outParameters;
    Pegasus::CIMValue returnValue;
};

} // namespace vexa::host

#endif
