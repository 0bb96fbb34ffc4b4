// Response handlers that record what a provider operation did with them.
#ifndef VEXA_TESTS_RECORDINGHANDLERS_H
#define VEXA_TESTS_RECORDINGHANDLERS_H

#include <Pegasus/Common/ResponseHandler.h>

#include <atomic>

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
    Pegasus::Array<Pegasus::CIMObject> objects;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
    void deliver(const Pegasus::CIMObject& object) override {
        calls.delivered++;
        objects.append(object);
    }
    void deliver(const Pegasus::Array<Pegasus::CIMObject>& list) override {
        for (Pegasus::Uint32 i = 0; i < list.size(); i++) {
            deliver(list[i]);
        }
    }
};

class RecordingPlainHandler : public Pegasus::ResponseHandler {
public:
    HandlerCalls calls;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
};

class RecordingIndicationHandler : public Pegasus::IndicationResponseHandler {
public:
    HandlerCalls calls;
    void processing() override { calls.processing++; }
    void complete() override { calls.complete++; }
    void deliver(const Pegasus::CIMIndication&) override { calls.delivered++; }
    void deliver(const Pegasus::Array<Pegasus::CIMIndication>& list) override {
        calls.delivered += static_cast<int>(list.size());
    }
    void deliver(const Pegasus::OperationContext&, const Pegasus::CIMIndication&) override {
        calls.delivered++;
    }
    void deliver(const Pegasus::OperationContext&,
                 const Pegasus::Array<Pegasus::CIMIndication>& list) override {
        calls.delivered += static_cast<int>(list.size());
    }
};

#endif
