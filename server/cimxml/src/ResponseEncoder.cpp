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

// Opens SIMPLERSP, the (I)METHODRESPONSE and, for intrinsic answers,
// IRETURNVALUE; closeMessage() closes them all.
XmlWriter openResult(const Request& request) {
    XmlWriter out = openMessage(request.messageId);
    out.open("SIMPLERSP");
    if (request.extrinsic) {
        out.open("METHODRESPONSE").attribute("NAME", request.methodName);
    } else {
        out.open("IMETHODRESPONSE").attribute("NAME", request.methodName);
        out.open("IRETURNVALUE");
    }
    return out;
}

std::string errorMessage(const std::string& messageId, const std::string& methodName,
                         bool extrinsic, CIMStatusCode status, const std::string& description) {
    XmlWriter out = openMessage(messageId);
    out.open("SIMPLERSP");
    out.open(extrinsic ? "METHODRESPONSE" : "IMETHODRESPONSE").attribute("NAME", methodName);
    out.open("ERROR")
        .attribute("CODE", std::to_string(static_cast<int>(status)))
        .attribute("DESCRIPTION", description)
        .close();
    return closeMessage(out);
}

std::string hostOf(const CIMObjectPath& path) {
    const std::string host = utf8(path.getHost());
    return host.empty() ? defaultHost() : host;
}

std::string namespaceOf(const CIMObjectPath& path, const Request& request) {
    const std::string nameSpace = utf8(path.getNameSpace().getString());
    return nameSpace.empty() ? request.nameSpace : nameSpace;
}

void writeParamValue(XmlWriter& out, const CIMParamValue& parameter) {
    const CIMValue value = parameter.getValue();
    // wbemcli crashes on an out-parameter without a value.
    if (value.isNull())
        return;
    out.open("PARAMVALUE")
        .attribute("NAME", utf8(parameter.getParameterName()))
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

std::string encodeNamedInstances(const Request& request, const Array<CIMInstance>& instances) {
    XmlWriter out = openResult(request);
    for (Uint32 i = 0; i < instances.size(); i++) {
        out.open("VALUE.NAMEDINSTANCE");
        writeInstanceName(out, instances[i].getPath());
        writeInstance(out, instances[i], request.includeClassOrigin);
        out.close();
    }
    return closeMessage(out);
}

std::string encodeInstanceNames(const Request& request, const Array<CIMObjectPath>& names) {
    XmlWriter out = openResult(request);
    for (Uint32 i = 0; i < names.size(); i++)
        writeInstanceName(out, names[i]);
    return closeMessage(out);
}

std::string encodeObjectsWithPath(const Request& request, const Array<CIMObject>& objects) {
    XmlWriter out = openResult(request);
    for (Uint32 i = 0; i < objects.size(); i++) {
        const CIMObject& object = objects[i];
        const CIMObjectPath& path = object.getPath();
        out.open("VALUE.OBJECTWITHPATH");
        if (object.isClass()) {
            writeClassPath(out, path, hostOf(path), namespaceOf(path, request));
            writeClass(out, CIMClass(object));
        } else {
            writeInstancePath(out, path, hostOf(path), namespaceOf(path, request));
            writeInstance(out, CIMInstance(object), request.includeClassOrigin);
        }
        out.close();
    }
    return closeMessage(out);
}

std::string encodeObjectPaths(const Request& request, const Array<CIMObjectPath>& paths) {
    XmlWriter out = openResult(request);
    for (Uint32 i = 0; i < paths.size(); i++) {
        out.open("OBJECTPATH");
        if (request.objectNameIsClass)
            writeClassPath(out, paths[i], hostOf(paths[i]), namespaceOf(paths[i], request));
        else
            writeInstancePath(out, paths[i], hostOf(paths[i]), namespaceOf(paths[i], request));
        out.close();
    }
    return closeMessage(out);
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
        out.open("CLASSNAME").attribute("NAME", utf8(names[i].getString())).closeEmpty();
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
