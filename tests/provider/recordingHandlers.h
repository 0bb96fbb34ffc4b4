// Response handlers that record what a provider operation did with them.
#ifndef VEXA_TESTS_RECORDINGHANDLERS_H
#define VEXA_TESTS_RECORDINGHANDLERS_H

#include <Pegasus/Common/CIMIndication.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

struct HandlerCalls {
    std::atomic<int> processing{0};
    std::atomic<int> complete{0};
    std::atomic<int> delivered{0};
    int total() const { return processing + complete + delivered; }
};

class RecordingInstanceHandler : public Pegasus::InstanceResponseHandler {
public:
    HandlerCalls calls;
    Pegasus::Array<Pegasus::CIMInstance> instances;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
    void deliver(const Pegasus::CIMInstance& instance) override {
        calls.delivered++;
        instances.append(instance);
    }
    void deliver(const Pegasus::Array<Pegasus::CIMInstance>& list) override {
        for (Pegasus::Uint32 i = 0; i < list.size(); i++) {
            deliver(list[i]);
        }
    }
};

class RecordingPathHandler : public Pegasus::ObjectPathResponseHandler {
public:
    HandlerCalls calls;
    Pegasus::Array<Pegasus::CIMObjectPath> paths;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
    void deliver(const Pegasus::CIMObjectPath& path) override {
        calls.delivered++;
        paths.append(path);
    }
    void deliver(const Pegasus::Array<Pegasus::CIMObjectPath>& list) override {
        for (Pegasus::Uint32 i = 0; i < list.size(); i++) {
            deliver(list[i]);
        }
    }
};

class RecordingObjectHandler : public Pegasus::ObjectResponseHandler {
public:
    HandlerCalls calls;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
    void deliver(const Pegasus::CIMObject&) override { calls.delivered++; }
    void deliver(const Pegasus::Array<Pegasus::CIMObject>& list) override {
        calls.delivered += static_cast<int>(list.size());
    }
};

class RecordingPlainHandler : public Pegasus::ResponseHandler {
public:
    HandlerCalls calls;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
};

// Indications arrive on the event and execution threads; a test waits for
// them with waitFor and reads them once they are there.
class RecordingIndicationHandler : public Pegasus::IndicationResponseHandler {
public:
    HandlerCalls calls;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
    void deliver(const Pegasus::CIMIndication& indication) override {
        std::lock_guard<std::mutex> hold(lock_);
        indications_.append(indication.clone());
        calls.delivered++;
        arrived_.notify_all();
    }
    void deliver(const Pegasus::Array<Pegasus::CIMIndication>& list) override {
        for (Pegasus::Uint32 i = 0; i < list.size(); i++) {
            deliver(list[i]);
        }
    }
    void deliver(const Pegasus::OperationContext&,
                 const Pegasus::CIMIndication& indication) override {
        deliver(indication);
    }
    void deliver(const Pegasus::OperationContext&,
                 const Pegasus::Array<Pegasus::CIMIndication>& list) override {
        deliver(list);
    }
    bool waitFor(int count, int timeoutMs = 5000) {
        std::unique_lock<std::mutex> hold(lock_);
        return arrived_.wait_for(hold, std::chrono::milliseconds(timeoutMs),
                                 [&] { return calls.delivered >= count; });
    }
    Pegasus::Array<Pegasus::CIMInstance> indications() {
        std::lock_guard<std::mutex> hold(lock_);
        return indications_;
    }

private:
    std::mutex lock_;
    std::condition_variable arrived_;
    Pegasus::Array<Pegasus::CIMInstance> indications_;
};

// Records a method's answer: the out-parameters by name, every return value
// in delivery order, and the order of the handler calls ("processing",
// "params", "param", "value", "complete").
class RecordingMethodHandler : public Pegasus::MethodResultResponseHandler {
public:
    std::vector<std::string> order;
    Pegasus::Array<Pegasus::CIMParamValue> outParameters;
    Pegasus::Array<Pegasus::CIMValue> returnValues;
    void processing() override { order.push_back("processing"); }
    void complete() override { order.push_back("complete"); }
    void deliverParamValue(const Pegasus::CIMParamValue& value) override {
        order.push_back("param");
        outParameters.append(value);
    }
    void deliverParamValue(const Pegasus::Array<Pegasus::CIMParamValue>& values) override {
        order.push_back("params");
        outParameters.appendArray(values);
    }
    void deliver(const Pegasus::CIMValue& value) override {
        order.push_back("value");
        returnValues.append(value);
    }
    // The out-parameter's value as text, or "<none>".
    std::string out(const char* name) const {
        for (Pegasus::Uint32 i = 0; i < outParameters.size(); i++) {
            if (outParameters[i].getParameterName() == name)
                return (const char*)outParameters[i].getValue().toString().getCString();
        }
        return "<none>";
    }
};

#endif
