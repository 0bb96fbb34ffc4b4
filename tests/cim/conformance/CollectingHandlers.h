// Response handlers of the kind a CIM server hands to a provider: they keep
// what is delivered and apply the server's checks on each delivery.
#ifndef CONFORMANCE_COLLECTING_HANDLERS_H
#define CONFORMANCE_COLLECTING_HANDLERS_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

// Counts the two life-cycle calls every operation makes.
class CompletionHandler : virtual public ResponseHandler {
public:
    CompletionHandler() : processingCalls(0), completeCalls(0) {}
    virtual void processing() { ++processingCalls; }
    virtual void complete() { ++completeCalls; }
    // The server's view of the context it attached with setContext().
    OperationContext attachedContext() const { return getContext(); }

    int processingCalls;
    int completeCalls;
};

inline void tooMany() { throw CIMException(CIM_ERR_FAILED, "Too many objects delivered."); }
inline void tooFew() { throw CIMException(CIM_ERR_FAILED, "Too few objects delivered."); }

class InstanceCollector : public InstanceResponseHandler, public CompletionHandler {
public:
    // With exactlyOne the handler behaves as getInstance's does.
    explicit InstanceCollector(bool exactlyOne = false) : _exactlyOne(exactlyOne) {}

    virtual void deliver(const CIMInstance& instance) {
        if (instance.isUninitialized()) {
            throw CIMException(CIM_ERR_FAILED, "The object is not initialized.");
        }
        if (_exactlyOne && instances.size() == 1) {
            tooMany();
        }
        instances.append(instance);
    }
    virtual void deliver(const Array<CIMInstance>& many) {
        for (Uint32 i = 0; i < many.size(); i++) {
            deliver(many[i]);
        }
    }
    virtual void complete() {
        if (_exactlyOne && instances.size() == 0) {
            tooFew();
        }
        CompletionHandler::complete();
    }

    Array<CIMInstance> instances;

private:
    bool _exactlyOne;
};

class PathCollector : public ObjectPathResponseHandler, public CompletionHandler {
public:
    // With exactlyOne the handler behaves as createInstance's does.
    explicit PathCollector(bool exactlyOne = false) : _exactlyOne(exactlyOne) {}

    virtual void deliver(const CIMObjectPath& path) {
        if (path.getClassName().isNull()) {
            throw CIMException(CIM_ERR_FAILED, "The object path has no class name.");
        }
        if (_exactlyOne && paths.size() == 1) {
            tooMany();
        }
        paths.append(path);
    }
    virtual void deliver(const Array<CIMObjectPath>& many) {
        for (Uint32 i = 0; i < many.size(); i++) {
            deliver(many[i]);
        }
    }
    virtual void complete() {
        if (_exactlyOne && paths.size() == 0) {
            tooFew();
        }
        CompletionHandler::complete();
    }

    Array<CIMObjectPath> paths;

private:
    bool _exactlyOne;
};

class ObjectCollector : public ObjectResponseHandler, public CompletionHandler {
public:
    virtual void deliver(const CIMObject& object) {
        if (object.isUninitialized()) {
            throw CIMException(CIM_ERR_FAILED, "The object is not initialized.");
        }
        objects.append(object);
    }
    virtual void deliver(const Array<CIMObject>& many) {
        for (Uint32 i = 0; i < many.size(); i++) {
            deliver(many[i]);
        }
    }

    Array<CIMObject> objects;
};

class MethodResultCollector : public MethodResultResponseHandler, public CompletionHandler {
public:
    MethodResultCollector() : returnValues(0) {}

    virtual void deliverParamValue(const CIMParamValue& outParamValue) {
        if (outParamValue.isUninitialized()) {
            throw CIMException(CIM_ERR_FAILED, "The object is not initialized.");
        }
        outParameters.append(outParamValue);
    }
    virtual void deliverParamValue(const Array<CIMParamValue>& outParamValues) {
        for (Uint32 i = 0; i < outParamValues.size(); i++) {
            deliverParamValue(outParamValues[i]);
        }
    }
    virtual void deliver(const CIMValue& value) {
        if (value.isNull()) {
            throw CIMException(CIM_ERR_FAILED, "A method may not return a null value.");
        }
        returnValue = value;
        ++returnValues;
    }

    // The out-parameter of that name, or a null value.
    CIMValue out(const String& name) const {
        for (Uint32 i = 0; i < outParameters.size(); i++) {
            if (String::equalNoCase(outParameters[i].getParameterName(), name)) {
                return outParameters[i].getValue();
            }
        }
        return CIMValue();
    }

    Array<CIMParamValue> outParameters;
    CIMValue returnValue;
    int returnValues;
};

// Indications arrive on the provider's threads; the driver waits for them.
class IndicationCollector : public IndicationResponseHandler, public CompletionHandler {
public:
    struct Received {
        CIMIndication indication;
        bool hadContext;
        Array<CIMObjectPath> subscriptions;
        std::thread::id thread;
    };

    virtual void deliver(const CIMIndication& indication) { record(indication, nullptr); }
    virtual void deliver(const Array<CIMIndication>& indications) {
        for (Uint32 i = 0; i < indications.size(); i++) {
            record(indications[i], nullptr);
        }
    }
    virtual void deliver(const OperationContext& context, const CIMIndication& indication) {
        record(indication, &context);
    }
    virtual void deliver(const OperationContext& context, const Array<CIMIndication>& indications) {
        for (Uint32 i = 0; i < indications.size(); i++) {
            record(indications[i], &context);
        }
    }

    bool waitFor(size_t count, std::chrono::milliseconds timeout) {
        std::unique_lock<std::mutex> lock(_mutex);
        return _arrived.wait_for(lock, timeout, [&] { return _received.size() >= count; });
    }

    std::vector<Received> received() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _received;
    }

private:
    void record(const CIMIndication& indication, const OperationContext* context) {
        if (indication.isUninitialized()) {
            throw CIMException(CIM_ERR_FAILED, "The object is not initialized.");
        }
        Received entry;
        entry.indication = indication;
        entry.hadContext = context != nullptr;
        if (context && context->contains(SubscriptionInstanceNamesContainer::NAME)) {
            SubscriptionInstanceNamesContainer names(
                context->get(SubscriptionInstanceNamesContainer::NAME));
            entry.subscriptions = names.getInstanceNames();
        }
        entry.thread = std::this_thread::get_id();
        {
            std::lock_guard<std::mutex> lock(_mutex);
            _received.push_back(entry);
        }
        _arrived.notify_all();
    }

    std::mutex _mutex;
    std::condition_variable _arrived;
    std::vector<Received> _received;
};

#endif
