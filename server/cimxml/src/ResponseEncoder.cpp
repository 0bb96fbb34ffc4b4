// Answers to operation requests, in the forms both wbemcli and cimcli
// accept: the request's MESSAGE ID and method name repeated, explicit end
// tags everywhere, INSTANCEPATH with a non-empty HOST in association
// results, and NULL out-parameters left out.
#include "Envelope.h"
#include "ObjectWriter.h"
#include "ValueText.h"

#include <vexa/cimxml/Codec.h>

#include <Pegasus/Common/CIMObject.h>

namespace vexa::cimxml {

using namespace detail;
using namespace Pegasus;

namespace {

void writeParamValue(XmlWriter& out, const CIMParamValue& parameter) {
    const CIMValue value = parameter.getValue();
    // wbemcli crashes on an out-parameter without a value.
    if (value.isNull())
        return;
    out.open("PARAMVALUE")
        .attribute("NAME", parameter.getParameterName())
        .attribute("PARAMTYPE", wireTypeName(value.getType()));
    if (const char* kind = embeddedObjectKind(value.getType()))
        out.attribute("EmbeddedObject", kind);
    writeValue(out, value);
    out.close();
}

} // namespace

std::string encodeInstance(const Request& request, const CIMInstance& instance) {
    XmlWriter out = openResult(request);
    writeInstance(out, instance, request.includeClassOrigin);
    return closeMessage(out);
}

namespace {

// The whole answer of an enumeration as one text.
template <class Objects, class Add>
std::string wholeAnswer(const Request& request, const Objects& objects, Add add) {
    std::string body;
    AnswerStream answer(
        request, [&body](std::string_view text) { body.append(text); }, SIZE_MAX);
    for (Uint32 i = 0; i < objects.size(); i++)
        add(answer, objects[i]);
    answer.finish();
    return body;
}

} // namespace

std::string encodeNamedInstances(const Request& request, const Array<CIMInstance>& instances) {
    return wholeAnswer(request, instances, [](AnswerStream& answer, const CIMInstance& instance) {
        answer.addNamedInstance(instance);
    });
}

std::string encodeInstanceNames(const Request& request, const Array<CIMObjectPath>& names) {
    return wholeAnswer(request, names, [](AnswerStream& answer, const CIMObjectPath& name) {
        answer.addInstanceName(name);
    });
}

std::string encodeObjectsWithPath(const Request& request, const Array<CIMObject>& objects) {
    return wholeAnswer(request, objects, [](AnswerStream& answer, const CIMObject& object) {
        answer.addObjectWithPath(object);
    });
}

std::string encodeObjectPaths(const Request& request, const Array<CIMObjectPath>& paths) {
    return wholeAnswer(request, paths, [](AnswerStream& answer, const CIMObjectPath& path) {
        answer.addObjectPath(path);
    });
}

std::string encodeClass(const Request& request, const CIMClass& cimClass) {
    XmlWriter out = openResult(request);
    writeClass(out, cimClass);
    return closeMessage(out);
}

std::string encodeClasses(const Request& request, const Array<CIMClass>& classes) {
    XmlWriter out = openResult(request);
    for (Uint32 i = 0; i < classes.size(); i++)
        writeClass(out, classes[i]);
    return closeMessage(out);
}

std::string encodeClassNames(const Request& request, const Array<CIMName>& names) {
    XmlWriter out = openResult(request);
    for (Uint32 i = 0; i < names.size(); i++)
        out.open("CLASSNAME").attribute("NAME", names[i].getString()).closeEmpty();
    return closeMessage(out);
}

std::string encodeEmpty(const Request& request) {
    XmlWriter out = openResult(request);
    return closeMessage(out);
}

std::string encodeMethodResult(const Request& request, const CIMValue& returnValue,
                               const Array<CIMParamValue>& outParameters) {
    XmlWriter out = openResult(request);
    if (!returnValue.isNull()) {
        // No EmbeddedObject here: wbemcli refuses the attribute on RETURNVALUE.
        out.open("RETURNVALUE").attribute("PARAMTYPE", wireTypeName(returnValue.getType()));
        writeValue(out, returnValue);
        out.close();
    }
    for (Uint32 i = 0; i < outParameters.size(); i++)
        writeParamValue(out, outParameters[i]);
    return closeMessage(out);
}

std::string encodeError(const Request& request, CIMStatusCode status,
                        const std::string& description) {
    return errorMessage(request.messageId, request.methodName, request.extrinsic, status,
                        description);
}

std::string encodeError(CIMStatusCode status, const std::string& description) {
    return errorMessage("0", "Unknown", false, status, description);
}

std::string encodeError(const RequestError& error) {
    if (error.messageId().empty() || error.methodName().empty())
        return encodeError(error.cimStatus(), error.what());
    return errorMessage(error.messageId(), error.methodName(), error.extrinsic(), error.cimStatus(),
                        error.what());
}

} // namespace vexa::cimxml
