// Operation requests: the SIMPLEREQ envelope, intrinsic calls with their
// IPARAMVALUEs and defaults, and extrinsic calls with raw PARAMVALUEs.
#include "Envelope.h"
#include "ObjectReader.h"
#include "ValueText.h"
#include "XmlInput.h"

#include <vexa/cimxml/Codec.h>

#include <Pegasus/Common/Exception.h>

namespace vexa::cimxml {

using namespace detail;
using Pegasus::CIMName;
using Pegasus::CIMObjectPath;

namespace {

enum Param : unsigned {
    ClassName = 1u << 0,
    InstanceName = 1u << 1,
    ObjectName = 1u << 2,
    AssocClass = 1u << 3,
    ResultClass = 1u << 4,
    Role = 1u << 5,
    ResultRole = 1u << 6,
    LocalOnly = 1u << 7,
    DeepInheritance = 1u << 8,
    IncludeQualifiers = 1u << 9,
    IncludeClassOrigin = 1u << 10,
    PropertyList = 1u << 11,
};

struct ParamName {
    Param param;
    const char* name;
};

constexpr ParamName paramNames[] = {
    {ClassName, "ClassName"},
    {InstanceName, "InstanceName"},
    {ObjectName, "ObjectName"},
    {AssocClass, "AssocClass"},
    {ResultClass, "ResultClass"},
    {Role, "Role"},
    {ResultRole, "ResultRole"},
    {LocalOnly, "LocalOnly"},
    {DeepInheritance, "DeepInheritance"},
    {IncludeQualifiers, "IncludeQualifiers"},
    {IncludeClassOrigin, "IncludeClassOrigin"},
    {PropertyList, "PropertyList"},
};

// The parameters each intrinsic operation takes, which it requires, and the
// defaults of the flags whose default differs between operations.
struct Operation {
    const char* name;
    unsigned accepted;
    unsigned required;
    bool includeQualifiers;
    bool deepInheritance;
};

constexpr unsigned instanceFlags = IncludeQualifiers | IncludeClassOrigin | PropertyList;
constexpr unsigned associationFilters = AssocClass | ResultClass | Role | ResultRole;

constexpr Operation operations[] = {
    {"GetInstance", InstanceName | LocalOnly | instanceFlags, InstanceName, false, true},
    {"EnumerateInstances", ClassName | LocalOnly | DeepInheritance | instanceFlags, ClassName,
     false, true},
    {"EnumerateInstanceNames", ClassName, ClassName, false, true},
    {"Associators", ObjectName | associationFilters | instanceFlags, ObjectName, false, true},
    {"AssociatorNames", ObjectName | associationFilters, ObjectName, false, true},
    {"References", ObjectName | ResultClass | Role | instanceFlags, ObjectName, false, true},
    {"ReferenceNames", ObjectName | ResultClass | Role, ObjectName, false, true},
    {"GetClass", ClassName | LocalOnly | instanceFlags, ClassName, true, true},
    {"EnumerateClasses",
     ClassName | DeepInheritance | LocalOnly | IncludeQualifiers | IncludeClassOrigin, 0, true,
     false},
    {"EnumerateClassNames", ClassName | DeepInheritance, 0, true, false},
};

[[noreturn]] void invalidParameter(const std::string& description) {
    throw RequestError::cim(Pegasus::CIM_ERR_INVALID_PARAMETER, description);
}

const Operation* findOperation(const std::string& name) {
    for (const Operation& operation : operations)
        if (equalNoCase(name, operation.name))
            return &operation;
    return nullptr;
}

const ParamName* findParam(const std::string& name) {
    for (const ParamName& entry : paramNames)
        if (equalNoCase(name, entry.name))
            return &entry;
    return nullptr;
}

std::string namespaceOf(pugi::xml_node localNamespacePath) {
    try {
        return readLocalNamespace(localNamespacePath);
    } catch (const ValueError& e) {
        throw RequestError::cim(Pegasus::CIM_ERR_INVALID_NAMESPACE, e.what());
    }
}

ReadOptions referenceOptions(const Request& request, const DecodeLimits& limits) {
    ReadOptions options;
    options.keepReferenceHost = false;
    options.referenceNamespace = Pegasus::CIMNamespaceName(pegasusString(request.nameSpace));
    options.maxDepth = limits.maxDepth;
    options.maxBytes = limits.maxBytes;
    return options;
}

pugi::xml_node expectElement(pugi::xml_node value, const char* name, const std::string& param) {
    if (!named(value, name))
        throwNotValid("IPARAMVALUE " + param + " must hold a " + name + " element, not <" +
                      value.name() + ">");
    return value;
}

bool readFlag(pugi::xml_node value, const std::string& param) {
    const std::string text = textOf(expectElement(value, "VALUE", param));
    bool flag = false;
    if (!parseBoolean(text, flag))
        invalidParameter("parameter " + param + ": \"" + text +
                         "\" is not a boolean (TRUE or FALSE)");
    return flag;
}

Pegasus::CIMPropertyList readPropertyList(pugi::xml_node value, const std::string& param) {
    Pegasus::Array<CIMName> names;
    for (pugi::xml_node item : childElements(expectElement(value, "VALUE.ARRAY", param))) {
        if (named(item, "VALUE.NULL"))
            continue;
        if (!named(item, "VALUE"))
            throwNotValid("PropertyList may hold only VALUE elements");
        // A name that cannot be a property names nothing, and unknown names
        // are ignored anyway.
        const Pegasus::String name = pegasusString(trimmed(textOf(item)));
        if (CIMName::legal(name))
            names.append(CIMName(name));
    }
    return Pegasus::CIMPropertyList(names);
}

void readIntrinsicParameter(Param param, const std::string& paramName, pugi::xml_node value,
                            Request& request, const ReadOptions& options) {
    switch (param) {
    case ClassName:
        request.className = nameAttribute(expectElement(value, "CLASSNAME", paramName), "NAME");
        return;
    case AssocClass:
        request.assocClass = nameAttribute(expectElement(value, "CLASSNAME", paramName), "NAME");
        return;
    case ResultClass:
        request.resultClass = nameAttribute(expectElement(value, "CLASSNAME", paramName), "NAME");
        return;
    case InstanceName:
        request.instanceName =
            readInstanceName(expectElement(value, "INSTANCENAME", paramName), options);
        return;
    case ObjectName:
        if (named(value, "CLASSNAME")) {
            request.className = nameAttribute(value, "NAME");
            request.objectNameIsClass = true;
        } else {
            request.instanceName =
                readInstanceName(expectElement(value, "INSTANCENAME", paramName), options);
            if (request.instanceName.getKeyBindings().size() == 0)
                request.className = request.instanceName.getClassName();
        }
        return;
    case Role:
        request.role = trimmed(textOf(expectElement(value, "VALUE", paramName)));
        return;
    case ResultRole:
        request.resultRole = trimmed(textOf(expectElement(value, "VALUE", paramName)));
        return;
    case LocalOnly:
        request.localOnly = readFlag(value, paramName);
        return;
    case DeepInheritance:
        request.deepInheritance = readFlag(value, paramName);
        return;
    case IncludeQualifiers:
        request.includeQualifiers = readFlag(value, paramName);
        return;
    case IncludeClassOrigin:
        request.includeClassOrigin = readFlag(value, paramName);
        return;
    case PropertyList:
        request.propertyList = readPropertyList(value, paramName);
        return;
    }
}

void readIntrinsicCall(pugi::xml_node call, Request& request, const DecodeLimits& limits) {
    const std::vector<pugi::xml_node> children = childElements(call);
    if (children.empty() || !named(children[0], "LOCALNAMESPACEPATH"))
        throwNotValid(where(call) + " must start with LOCALNAMESPACEPATH");
    request.nameSpace = namespaceOf(children[0]);

    // Operations this codec does not know keep their name, so the host can
    // answer CIM_ERR_NOT_SUPPORTED; their parameters are not read.
    const Operation* operation = findOperation(request.methodName);
    if (!operation)
        return;
    request.includeQualifiers = operation->includeQualifiers;
    request.deepInheritance = operation->deepInheritance;
    const ReadOptions options = referenceOptions(request, limits);

    unsigned seen = 0, given = 0;
    for (size_t i = 1; i < children.size(); i++) {
        const pugi::xml_node parameter = children[i];
        if (!named(parameter, "IPARAMVALUE"))
            throwNotValid(where(parameter) + " where only IPARAMVALUE elements belong");
        const std::string name = requiredAttribute(parameter, "NAME");
        const ParamName* entry = findParam(name);
        if (!entry || !(operation->accepted & entry->param))
            invalidParameter(std::string(operation->name) + " has no parameter named \"" + name +
                             "\"");
        if (seen & entry->param)
            invalidParameter("parameter " + name + " is given twice");
        seen |= entry->param;
        const std::vector<pugi::xml_node> value = childElements(parameter);
        if (value.empty())
            continue; // an empty IPARAMVALUE is NULL (cimcli sends ResultClass so)
        if (value.size() > 1)
            throwNotValid("IPARAMVALUE " + name + " must hold one value element");
        try {
            readIntrinsicParameter(entry->param, entry->name, value[0], request, options);
        } catch (const ValueError& e) {
            invalidParameter("parameter " + name + ": " + e.what());
        }
        given |= entry->param;
    }
    for (const ParamName& entry : paramNames)
        if ((operation->required & entry.param) && !(given & entry.param))
            invalidParameter(std::string(operation->name) + " needs the " + entry.name +
                             " parameter");
}

RawValue readParameterValue(pugi::xml_node parameter, const std::string& name,
                            const ReadOptions& options) {
    RawValue raw;
    if (const pugi::xml_attribute type = attribute(parameter, "PARAMTYPE")) {
        Pegasus::CIMType ignored;
        if (!cimTypeFromName(type.value(), ignored))
            throwNotValid("PARAMVALUE " + name + ": PARAMTYPE \"" + type.value() +
                          "\" is not a CIM type");
        raw.typeHint = type.value();
    }
    bool embedded = false;
    if (const pugi::xml_attribute kind = attributeNoCase(parameter, "EmbeddedObject")) {
        if (!equalNoCase(kind.value(), "object") && !equalNoCase(kind.value(), "instance"))
            throwNotValid("PARAMVALUE " + name +
                          ": EmbeddedObject must be \"object\" or \"instance\"");
        embedded = true;
    }
    const std::vector<pugi::xml_node> content = childElements(parameter);
    if (content.empty())
        return raw;
    if (content.size() > 1)
        throwNotValid("PARAMVALUE " + name + " must hold one value element");
    const pugi::xml_node value = content[0];
    if (named(value, "VALUE")) {
        raw.shape = embedded ? RawValue::Shape::Instance : RawValue::Shape::Scalar;
        (embedded ? raw.embeddedXml : raw.texts.emplace_back()) = textOf(value);
    } else if (named(value, "VALUE.ARRAY")) {
        raw.shape = RawValue::Shape::Array;
        for (pugi::xml_node item : childElements(value)) {
            if (named(item, "VALUE.NULL"))
                throw ValueError("null array elements are not supported");
            if (!named(item, "VALUE"))
                throwNotValid("PARAMVALUE " + name + ": VALUE.ARRAY may hold only VALUE elements");
            raw.texts.push_back(textOf(item));
        }
    } else if (named(value, "VALUE.REFERENCE")) {
        raw.shape = RawValue::Shape::Reference;
        raw.refs.push_back(readReference(value, options));
    } else if (named(value, "VALUE.REFARRAY")) {
        raw.shape = RawValue::Shape::ReferenceArray;
        for (pugi::xml_node item : childElements(value)) {
            if (named(item, "VALUE.NULL"))
                throw ValueError("null array elements are not supported");
            if (!named(item, "VALUE.REFERENCE"))
                throwNotValid("PARAMVALUE " + name +
                              ": VALUE.REFARRAY may hold only VALUE.REFERENCE elements");
            raw.refs.push_back(readReference(item, options));
        }
    } else if (named(value, "INSTANCE")) {
        raw.shape = RawValue::Shape::Instance;
        raw.embeddedXml = markupOf(value);
    } else if (named(value, "INSTANCENAME") || named(value, "CLASSNAME")) {
        raw.shape = RawValue::Shape::Reference;
        raw.refs.push_back(readPathElement(value, options));
    } else {
        throwNotValid("PARAMVALUE " + name + " cannot hold <" + value.name() + ">");
    }
    return raw;
}

void readExtrinsicCall(pugi::xml_node call, Request& request, const DecodeLimits& limits) {
    const std::vector<pugi::xml_node> children = childElements(call);
    if (children.empty() ||
        !(named(children[0], "LOCALINSTANCEPATH") || named(children[0], "LOCALCLASSPATH")))
        throwNotValid(where(call) + " must start with LOCALINSTANCEPATH or LOCALCLASSPATH");
    const pugi::xml_node targetPath = children[0];
    const std::vector<pugi::xml_node> parts = childElements(targetPath);
    const bool onInstance = named(targetPath, "LOCALINSTANCEPATH");
    if (parts.size() != 2 || !named(parts[0], "LOCALNAMESPACEPATH") ||
        !named(parts[1], onInstance ? "INSTANCENAME" : "CLASSNAME"))
        throwNotValid(where(targetPath) + " must hold LOCALNAMESPACEPATH and " +
                      (onInstance ? "INSTANCENAME" : "CLASSNAME"));
    request.nameSpace = namespaceOf(parts[0]);
    const ReadOptions options = referenceOptions(request, limits);
    if (onInstance) {
        request.target = readInstanceName(parts[1], options);
    } else {
        request.className = nameAttribute(parts[1], "NAME");
        request.target =
            CIMObjectPath(Pegasus::String(), Pegasus::CIMNamespaceName(), request.className);
    }

    for (size_t i = 1; i < children.size(); i++) {
        const pugi::xml_node parameter = children[i];
        if (!named(parameter, "PARAMVALUE"))
            throwNotValid(where(parameter) + " where only PARAMVALUE elements belong");
        const std::string name = requiredAttribute(parameter, "NAME");
        if (name.empty())
            throwNotValid(where(parameter) + " has an empty NAME");
        for (const RawParameter& earlier : request.parameters)
            if (equalNoCase(earlier.name, name))
                invalidParameter("parameter " + name + " is given twice");
        try {
            request.parameters.push_back({name, readParameterValue(parameter, name, options)});
        } catch (const ValueError& e) {
            invalidParameter("parameter " + name + ": " + e.what());
        }
    }
}

void readCall(pugi::xml_node simpleRequest, Request& request, const DecodeLimits& limits) {
    pugi::xml_node call;
    for (pugi::xml_node child : childElements(simpleRequest)) {
        if (named(child, "CORRELATOR"))
            continue;
        if (call)
            throwNotValid("SIMPLEREQ must hold exactly one METHODCALL or IMETHODCALL");
        call = child;
    }
    if (!call || !(named(call, "IMETHODCALL") || named(call, "METHODCALL")))
        throwNotValid("SIMPLEREQ must hold exactly one METHODCALL or IMETHODCALL");
    request.extrinsic = named(call, "METHODCALL");
    request.methodName = requiredAttribute(call, "NAME");
    if (request.methodName.empty())
        throwNotValid(where(call) + " has an empty NAME");
    if (request.extrinsic)
        readExtrinsicCall(call, request, limits);
    else
        readIntrinsicCall(call, request, limits);
}

} // namespace

Request decodeRequest(std::string_view body, const DecodeLimits& limits) {
    pugi::xml_document document;
    throwParseFault(parseXml(document, body, limits.maxBytes, limits.maxDepth));
    Request request;
    try {
        const MessageHeader header = readMessage(document);
        request.messageId = header.messageId;
        if (named(header.body, "MULTIREQ"))
            throw RequestError::http(400, "header-mismatch",
                                     "MULTIREQ needs the CIMBatch header, and this server takes "
                                     "one operation per request");
        if (!named(header.body, "SIMPLEREQ"))
            throwNotValid("MESSAGE holds <" + std::string(header.body.name()) +
                          ">, not an operation request (SIMPLEREQ)");
        readCall(header.body, request, limits);
    } catch (RequestError& e) {
        if (e.httpStatus() == 0 && !request.methodName.empty())
            e.setRequestContext(request.messageId, request.methodName, request.extrinsic);
        throw;
    } catch (const StructureError& e) {
        throwNotValid(e.what());
    } catch (const ValueError& e) {
        RequestError error = RequestError::cim(Pegasus::CIM_ERR_INVALID_PARAMETER, e.what());
        error.setRequestContext(request.messageId, request.methodName, request.extrinsic);
        throw error;
    } catch (const ValueTextError& e) {
        RequestError error = RequestError::cim(Pegasus::CIM_ERR_INVALID_PARAMETER, e.what());
        error.setRequestContext(request.messageId, request.methodName, request.extrinsic);
        throw error;
    } catch (const Pegasus::Exception& e) {
        throwNotValid(utf8(e.getMessage()));
    }
    return request;
}

} // namespace vexa::cimxml
