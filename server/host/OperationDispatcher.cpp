#include "vexa/host/OperationDispatcher.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>

#include <strings.h>

#include "vexa/host/ProviderLibrary.h"
#include "vexa/host/ResponseCollectors.h"
#include "vexa/host/StreamingHandlers.h"

PEGASUS_USING_PEGASUS;

namespace vexa::host {

const char* const SERVED_NAMESPACE = "root/cimv2";

namespace {

using cimxml::Request;
using cimxml::RequestError;

std::string text(const String& value) { return (const char*)value.getCString(); }
std::string text(const CIMName& name) { return text(name.getString()); }

bool sameName(const std::string& a, const char* b) { return strcasecmp(a.c_str(), b) == 0; }

[[noreturn]] void fail(CIMStatusCode code, const std::string& description) {
    throw RequestError::cim(code, description);
}

// A provider exception as the client sees it.
[[noreturn]] void failFromProvider() {
    try {
        throw;
    } catch (const CIMException& error) {
        CIMStatusCode code = error.getCode() == CIM_ERR_SUCCESS ? CIM_ERR_FAILED : error.getCode();
        std::string message = text(error.getMessage());
        fail(code, message.empty() ? std::string(cimStatusCodeToString(code)) : message);
    } catch (const RequestError&) {
        throw;
    } catch (...) {
        fail(CIM_ERR_FAILED, currentExceptionText());
    }
}

template <class Call>
void callProvider(Call call) {
    try {
        call();
    } catch (...) {
        failFromProvider();
    }
}

OperationContext contextFor(const std::string& user) {
    OperationContext context;
    context.insert(IdentityContainer(String(user.c_str())));
    context.insert(AcceptLanguageListContainer(AcceptLanguageList()));
    context.insert(ContentLanguageListContainer(ContentLanguageList()));
    return context;
}

// Filters properties by the request's property list and, for instances of a
// subclass asked for with DeepInheritance=FALSE, to those of `shallowClass`.
template <class Object>
void trimProperties(Object& object, const CIMPropertyList& propertyList,
                    const CIMClass* shallowClass) {
    for (Uint32 i = object.getQualifierCount(); i > 0; --i) {
        object.removeQualifier(i - 1);
    }
    for (Uint32 i = object.getPropertyCount(); i > 0; --i) {
        CIMName name = object.getProperty(i - 1).getName();
        bool listed = propertyList.isNull() || propertyList.contains(name);
        bool declared =
            shallowClass == nullptr || shallowClass->findProperty(name) != PEG_NOT_FOUND;
        if (!listed || !declared) {
            object.removeProperty(i - 1);
        }
    }
}

// The key properties of `cimClass` that `keys` do not bind, comma-separated.
// The provider looks instances up by their keys and can only answer "not
// found" for a path that lacks one, without saying which.
std::string unboundKeys(const CIMClass& cimClass, const Array<CIMKeyBinding>& keys) {
    std::string missing;
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i) {
        CIMConstProperty property = cimClass.getProperty(i);
        Uint32 index = property.findQualifier(CIMName("Key"));
        Boolean isKey = false;
        if (index == PEG_NOT_FOUND || property.getQualifier(index).getValue().isNull()) {
            continue;
        }
        property.getQualifier(index).getValue().get(isKey);
        bool bound = false;
        for (Uint32 k = 0; k < keys.size() && !bound; ++k) {
            bound = keys[k].getName().equal(property.getName());
        }
        if (isKey && !bound) {
            missing += (missing.empty() ? "" : ", ") + text(property.getName());
        }
    }
    return missing;
}

} // namespace

OperationDispatcher::OperationDispatcher(ProviderInterfaces provider,
                                         const schema::SchemaRepository& schema,
                                         const ServedClasses& served, std::string systemName)
    : provider_(provider), schema_(schema), served_(served), systemName_(std::move(systemName)) {}

bool OperationDispatcher::streams(const Request& request) {
    if (request.extrinsic) {
        return false;
    }
    const std::string& name = request.methodName;
    return sameName(name, "EnumerateInstances") || sameName(name, "EnumerateInstanceNames") ||
           sameName(name, "Associators") || sameName(name, "AssociatorNames") ||
           sameName(name, "References") || sameName(name, "ReferenceNames");
}

StreamOutcome OperationDispatcher::stream(const Request& request, const Caller& caller,
                                          const cimxml::AnswerStream::Flush& flush,
                                          size_t chunkBytes) const {
    // Paths in association answers carry the host the client used and the
    // served namespace where the provider left them out.
    cimxml::AnswerStream answer(request, flush, chunkBytes, caller.hostInAnswer, SERVED_NAMESPACE);
    StreamOutcome outcome;
    try {
        checkNamespace(request);
        const std::string& name = request.methodName;
        if (sameName(name, "EnumerateInstances")) {
            enumerateInstances(request, caller, answer);
        } else if (sameName(name, "EnumerateInstanceNames")) {
            enumerateInstanceNames(request, caller, answer);
        } else if (sameName(name, "Associators") || sameName(name, "AssociatorNames")) {
            associators(request, caller, sameName(name, "AssociatorNames"), answer);
        } else {
            references(request, caller, sameName(name, "ReferenceNames"), answer);
        }
        answer.finish();
        return outcome;
    } catch (const RequestError& error) {
        outcome.status = error.cimStatus() == CIM_ERR_SUCCESS ? CIM_ERR_FAILED : error.cimStatus();
        outcome.description = error.what();
    } catch (...) {
        outcome.status = CIM_ERR_FAILED;
        outcome.description = currentExceptionText();
    }
    // Throws again when it was the flush that failed.
    answer.fail(outcome.status, outcome.description);
    return outcome;
}

std::string OperationDispatcher::answer(const Request& request, const Caller& caller) const {
    if (streams(request)) {
        std::string body;
        stream(
            request, caller, [&body](std::string_view text) { body.append(text); }, SIZE_MAX);
        return body;
    }
    try {
        return dispatch(request, caller);
    } catch (const RequestError& error) {
        CIMStatusCode code =
            error.cimStatus() == CIM_ERR_SUCCESS ? CIM_ERR_FAILED : error.cimStatus();
        return cimxml::encodeError(request, code, error.what());
    } catch (...) {
        return cimxml::encodeError(request, CIM_ERR_FAILED, currentExceptionText());
    }
}

void OperationDispatcher::checkNamespace(const Request& request) {
    std::string nameSpace = request.nameSpace;
    while (!nameSpace.empty() && nameSpace[0] == '/') {
        nameSpace.erase(0, 1);
    }
    if (!sameName(nameSpace, SERVED_NAMESPACE)) {
        fail(CIM_ERR_INVALID_NAMESPACE,
             "namespace '" + request.nameSpace + "' is not served here; use " + SERVED_NAMESPACE);
    }
}

std::string OperationDispatcher::dispatch(const Request& request, const Caller& caller) const {
    checkNamespace(request);
    if (request.extrinsic) {
        return invokeMethod(request, caller);
    }
    const std::string& name = request.methodName;
    if (sameName(name, "GetInstance")) {
        return getInstance(request, caller);
    }
    if (sameName(name, "GetClass")) {
        return getClass(request);
    }
    if (sameName(name, "EnumerateClasses") || sameName(name, "EnumerateClassNames")) {
        return enumerateClasses(request, sameName(name, "EnumerateClassNames"));
    }
    fail(CIM_ERR_NOT_SUPPORTED, name + " is not supported");
}

namespace {

const CIMClass& knownClass(const schema::SchemaRepository& schema, const CIMName& name) {
    const CIMClass* declared = name.isNull() ? nullptr : schema.findClass(name);
    if (declared == nullptr) {
        fail(CIM_ERR_INVALID_CLASS,
             "class '" + text(name) + "' does not exist in " + SERVED_NAMESPACE);
    }
    return *declared;
}

CIMObjectPath pathForProvider(const std::string& host, const CIMName& className,
                              const Array<CIMKeyBinding>& keys = Array<CIMKeyBinding>()) {
    return CIMObjectPath(String(host.c_str()), CIMNamespaceName(SERVED_NAMESPACE), className, keys);
}

} // namespace

std::string OperationDispatcher::getInstance(const Request& request, const Caller& caller) const {
    const CIMObjectPath& name = request.instanceName;
    const CIMClass& cimClass = knownClass(schema_, name.getClassName());
    if (provider_.instances == nullptr) {
        fail(CIM_ERR_NOT_SUPPORTED, "the provider serves no instances");
    }
    std::string unbound = unboundKeys(cimClass, name.getKeyBindings());
    if (!unbound.empty()) {
        fail(CIM_ERR_INVALID_PARAMETER, "the instance path " + text(name.toString()) +
                                            " lacks the key property " + unbound + " of " +
                                            text(name.getClassName()));
    }
    InstanceCollector collector(true);
    OperationContext context = contextFor(caller.user);
    CIMObjectPath path = pathForProvider(systemName_, name.getClassName(), name.getKeyBindings());
    callProvider([&] {
        provider_.instances->getInstance(context, path, request.includeQualifiers,
                                         request.includeClassOrigin, request.propertyList,
                                         collector);
    });
    if (collector.instances.size() == 0) {
        fail(CIM_ERR_NOT_FOUND, "no instance " + text(name.toString()));
    }
    CIMInstance instance = collector.instances[0];
    trimProperties(instance, request.propertyList, nullptr);
    return cimxml::encodeInstance(request, instance);
}

void OperationDispatcher::enumerateInstances(const Request& request, const Caller& caller,
                                             cimxml::AnswerStream& answer) const {
    const CIMClass& requested = knownClass(schema_, request.className);
    Array<CIMName> classes = served_.instanceClassesUnder(requested.getClassName());
    if (classes.size() > 0 && provider_.instances == nullptr) {
        fail(CIM_ERR_NOT_SUPPORTED, "the provider serves no instances");
    }
    OperationContext context = contextFor(caller.user);
    for (Uint32 i = 0; i < classes.size(); ++i) {
        bool subclass = !classes[i].equal(requested.getClassName());
        cimxml::PropertySelection selection;
        selection.propertyList = &request.propertyList;
        selection.declaredIn = subclass && !request.deepInheritance ? &requested : nullptr;
        InstanceStreamer streamer(answer, selection);
        CIMObjectPath path = pathForProvider(systemName_, classes[i]);
        callProvider([&] {
            provider_.instances->enumerateInstances(context, path, request.includeQualifiers,
                                                    request.includeClassOrigin,
                                                    request.propertyList, streamer);
        });
    }
}

void OperationDispatcher::enumerateInstanceNames(const Request& request, const Caller& caller,
                                                 cimxml::AnswerStream& answer) const {
    const CIMClass& requested = knownClass(schema_, request.className);
    Array<CIMName> classes = served_.instanceClassesUnder(requested.getClassName());
    if (classes.size() > 0 && provider_.instances == nullptr) {
        fail(CIM_ERR_NOT_SUPPORTED, "the provider serves no instances");
    }
    OperationContext context = contextFor(caller.user);
    PathStreamer streamer(answer, PathStreamer::Form::InstanceName);
    for (Uint32 i = 0; i < classes.size(); ++i) {
        CIMObjectPath path = pathForProvider(systemName_, classes[i]);
        callProvider([&] { provider_.instances->enumerateInstanceNames(context, path, streamer); });
    }
}

OperationDispatcher::AssociationCall
OperationDispatcher::associationCall(const Request& request, const Caller& caller,
                                     const CIMName& associationFilter) const {
    if (request.objectNameIsClass) {
        fail(CIM_ERR_NOT_SUPPORTED, "association requests on a class are not supported; name an "
                                    "instance");
    }
    const CIMObjectPath& source = request.instanceName;
    knownClass(schema_, source.getClassName());
    if (!associationFilter.isNull()) {
        knownClass(schema_, associationFilter);
    }
    AssociationCall call{
        served_.associationClassesFor(source.getClassName(), associationFilter),
        contextFor(caller.user),
        pathForProvider(systemName_, source.getClassName(), source.getKeyBindings())};
    if (call.classes.size() > 0 && provider_.associations == nullptr) {
        fail(CIM_ERR_NOT_SUPPORTED, "the provider serves no associations");
    }
    return call;
}

void OperationDispatcher::associators(const Request& request, const Caller& caller, bool namesOnly,
                                      cimxml::AnswerStream& answer) const {
    const AssociationCall call = associationCall(request, caller, request.assocClass);
    const String role(request.role.c_str());
    const String resultRole(request.resultRole.c_str());
    CIMAssociationProvider& provider = *provider_.associations;
    cimxml::PropertySelection selection;
    selection.propertyList = &request.propertyList;
    PathStreamer paths(answer, PathStreamer::Form::ObjectPath);
    ObjectStreamer objects(answer, selection);
    for (Uint32 i = 0; i < call.classes.size(); ++i) {
        callProvider([&] {
            if (namesOnly) {
                provider.associatorNames(call.context, call.path, call.classes[i],
                                         request.resultClass, role, resultRole, paths);
            } else {
                provider.associators(call.context, call.path, call.classes[i], request.resultClass,
                                     role, resultRole, request.includeQualifiers,
                                     request.includeClassOrigin, request.propertyList, objects);
            }
        });
    }
}

void OperationDispatcher::references(const Request& request, const Caller& caller, bool namesOnly,
                                     cimxml::AnswerStream& answer) const {
    // For References the result class is the association class.
    const AssociationCall call = associationCall(request, caller, request.resultClass);
    const String role(request.role.c_str());
    CIMAssociationProvider& provider = *provider_.associations;
    cimxml::PropertySelection selection;
    selection.propertyList = &request.propertyList;
    PathStreamer paths(answer, PathStreamer::Form::ObjectPath);
    ObjectStreamer objects(answer, selection);
    for (Uint32 i = 0; i < call.classes.size(); ++i) {
        callProvider([&] {
            if (namesOnly) {
                provider.referenceNames(call.context, call.path, call.classes[i], role, paths);
            } else {
                provider.references(call.context, call.path, call.classes[i], role,
                                    request.includeQualifiers, request.includeClassOrigin,
                                    request.propertyList, objects);
            }
        });
    }
}

std::string OperationDispatcher::getClass(const Request& request) const {
    CIMClass found = request.className.isNull()
                         ? CIMClass()
                         : schema_.classForRequest(
                               request.className, request.localOnly, request.includeQualifiers,
                               request.includeClassOrigin, request.propertyList);
    if (found.isUninitialized()) {
        fail(CIM_ERR_NOT_FOUND,
             "class '" + text(request.className) + "' does not exist in " + SERVED_NAMESPACE);
    }
    return cimxml::encodeClass(request, found);
}

std::string OperationDispatcher::enumerateClasses(const Request& request, bool namesOnly) const {
    CIMName parent;
    if (!request.className.isNull()) {
        parent = knownClass(schema_, request.className).getClassName();
    }
    Array<CIMName> names = schema_.subclassNames(parent, request.deepInheritance);
    if (namesOnly) {
        return cimxml::encodeClassNames(request, names);
    }
    Array<CIMClass> classes;
    for (Uint32 i = 0; i < names.size(); ++i) {
        classes.append(schema_.classForRequest(names[i], request.localOnly,
                                               request.includeQualifiers,
                                               request.includeClassOrigin, CIMPropertyList()));
    }
    return cimxml::encodeClasses(request, classes);
}

std::string OperationDispatcher::invokeMethod(const Request& request, const Caller& caller) const {
    const CIMObjectPath& target = request.target;
    const CIMClass& declared = knownClass(schema_, target.getClassName());
    String methodText(request.methodName.c_str());
    Uint32 methodIndex =
        CIMName::legal(methodText) ? declared.findMethod(CIMName(methodText)) : PEG_NOT_FOUND;
    if (methodIndex == PEG_NOT_FOUND) {
        fail(CIM_ERR_METHOD_NOT_FOUND, "class " + text(declared.getClassName()) +
                                           " has no method '" + request.methodName + "'");
    }
    CIMConstMethod method = declared.getMethod(methodIndex);

    Array<CIMParamValue> inParameters;
    std::vector<Uint32> seen;
    for (const cimxml::RawParameter& raw : request.parameters) {
        String rawName(raw.name.c_str());
        Uint32 index =
            CIMName::legal(rawName) ? method.findParameter(CIMName(rawName)) : PEG_NOT_FOUND;
        if (index == PEG_NOT_FOUND) {
            fail(CIM_ERR_INVALID_PARAMETER,
                 "method " + text(method.getName()) + " has no parameter '" + raw.name + "'");
        }
        for (Uint32 earlier : seen) {
            if (earlier == index) {
                fail(CIM_ERR_INVALID_PARAMETER, "parameter '" + raw.name + "' is given twice");
            }
        }
        seen.push_back(index);
        CIMConstParameter parameter = method.getParameter(index);
        CIMValue value = cimxml::convertParameter(
            raw, schema::SchemaRepository::valueType(parameter), parameter.isArray());
        inParameters.append(CIMParamValue(parameter.getName().getString(), value, true));
    }

    if (provider_.methods == nullptr || !served_.servesMethodsOf(declared.getClassName())) {
        fail(CIM_ERR_NOT_SUPPORTED,
             "the provider takes no method calls for class " + text(declared.getClassName()));
    }
    MethodResultCollector collector;
    OperationContext context = contextFor(caller.user);
    CIMObjectPath path =
        pathForProvider(systemName_, declared.getClassName(), target.getKeyBindings());
    callProvider([&] {
        provider_.methods->invokeMethod(context, path, method.getName(), inParameters, collector);
    });
    // A null out-parameter is left out: it is absent to the client.
    Array<CIMParamValue> outParameters;
    for (Uint32 i = 0; i < collector.outParameters.size(); ++i) {
        if (!collector.outParameters[i].getValue().isNull()) {
            outParameters.append(collector.outParameters[i]);
        }
    }
    return cimxml::encodeMethodResult(request, collector.returnValue, outParameters);
}

} // namespace vexa::host
