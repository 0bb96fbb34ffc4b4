// The response handlers of the streamed operations: each delivered object
// is written into the answer at once, while the provider still holds it, so
// nothing is copied or kept. They refuse what a CIM server refuses on
// delivery (uninitialised objects, paths without a class), as the
// collectors do.
#ifndef VEXA_HOST_STREAMINGHANDLERS_H
#define VEXA_HOST_STREAMINGHANDLERS_H

#include <vexa/cimxml/Codec.h>

#include "vexa/host/ResponseCollectors.h"

namespace vexa::host {

class InstanceStreamer : public Pegasus::InstanceResponseHandler, public CompletionTracker {
public:
    InstanceStreamer(cimxml::AnswerStream& answer, const cimxml::PropertySelection& selection)
        : answer_(answer), selection_(selection) {}
    void deliver(const Pegasus::CIMInstance& instance) override;
    void deliver(const Pegasus::Array<Pegasus::CIMInstance>& instances) override;

private:
    cimxml::AnswerStream& answer_;
    cimxml::PropertySelection selection_;
};

class PathStreamer : public Pegasus::ObjectPathResponseHandler, public CompletionTracker {
public:
    // INSTANCENAME for EnumerateInstanceNames, OBJECTPATH for the
    // association name requests.
    enum class Form { InstanceName, ObjectPath };
    PathStreamer(cimxml::AnswerStream& answer, Form form) : answer_(answer), form_(form) {}
    void deliver(const Pegasus::CIMObjectPath& path) override;
    void deliver(const Pegasus::Array<Pegasus::CIMObjectPath>& paths) override;

private:
    cimxml::AnswerStream& answer_;
    Form form_;
};

class ObjectStreamer : public Pegasus::ObjectResponseHandler, public CompletionTracker {
public:
    ObjectStreamer(cimxml::AnswerStream& answer, const cimxml::PropertySelection& selection)
        : answer_(answer), selection_(selection) {}
    void deliver(const Pegasus::CIMObject& object) override;
    void deliver(const Pegasus::Array<Pegasus::CIMObject>& objects) override;

private:
    cimxml::AnswerStream& answer_;
    cimxml::PropertySelection selection_;
};

} // namespace vexa::host

#endif
