// Extrinsic parameters get their types from the method declaration, not
// from the wire: wbemcli sends none, and cimcli's must agree anyway.
#include "ObjectReader.h"
#include "ValueText.h"
#include "XmlInput.h"

#include <vexa/cimxml/Codec.h>

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/Exception.h>

namespace vexa::cimxml {

using namespace detail;
using namespace Pegasus;

namespace {

const char* shapeName(RawValue::Shape shape) {
    switch (shape) {
    case RawValue::Shape::Null:
        return "no value";
    case RawValue::Shape::Scalar:
        return "a single value";
    case RawValue::Shape::Array:
        return "an array";
    case RawValue::Shape::Reference:
        return "a reference";
    case RawValue::Shape::ReferenceArray:
        return "an array of references";
    case RawValue::Shape::Instance:
        return "an embedded instance";
    }
    return "a value";
}

std::string declared(CIMType type, bool isArray) {
    return std::string(cimTypeToString(type)) + (isArray ? "[]" : "");
}

[[noreturn]] void mismatch(const RawParameter& parameter, CIMType type, bool isArray) {
    throw RequestError::cim(CIM_ERR_TYPE_MISMATCH, "parameter " + parameter.name + " is declared " +
                                                       declared(type, isArray) + " but was given " +
                                                       shapeName(parameter.value.shape));
}

[[noreturn]] void notConvertible(const RawParameter& parameter, const std::string& problem) {
    throw RequestError::cim(CIM_ERR_INVALID_PARAMETER,
                            "parameter " + parameter.name + ": " + problem);
}

CIMInstance embeddedInstance(const RawParameter& parameter, const std::string& markup) {
    try {
        return readEmbeddedInstance(markup, 0, ReadOptions());
    } catch (const ValueError& e) {
        notConvertible(parameter, e.what());
    } catch (const StructureError& e) {
        notConvertible(parameter, e.what());
    }
}

CIMValue embeddedValue(const RawParameter& parameter, CIMType type, bool isArray) {
    const RawValue& raw = parameter.value;
    std::vector<std::string> markups;
    if (raw.shape == RawValue::Shape::Instance)
        markups.push_back(raw.embeddedXml);
    else if (raw.shape == RawValue::Shape::Scalar || raw.shape == RawValue::Shape::Array)
        markups = raw.texts;
    else
        mismatch(parameter, type, isArray);
    if (!isArray) {
        if (markups.empty())
            notConvertible(parameter, "the embedded instance is missing");
        const CIMInstance instance = embeddedInstance(parameter, markups.front());
        return type == CIMTYPE_OBJECT ? CIMValue(CIMObject(instance)) : CIMValue(instance);
    }
    Array<CIMObject> objects;
    Array<CIMInstance> instances;
    for (const std::string& markup : markups) {
        const CIMInstance instance = embeddedInstance(parameter, markup);
        objects.append(CIMObject(instance));
        instances.append(instance);
    }
    return type == CIMTYPE_OBJECT ? CIMValue(objects) : CIMValue(instances);
}

CIMValue referenceValue(const RawParameter& parameter, bool isArray) {
    const RawValue& raw = parameter.value;
    if (raw.shape == RawValue::Shape::Scalar || raw.shape == RawValue::Shape::Array)
        return valueFromTexts(CIMTYPE_REFERENCE, isArray, raw.texts);
    if (raw.shape != RawValue::Shape::Reference && raw.shape != RawValue::Shape::ReferenceArray)
        mismatch(parameter, CIMTYPE_REFERENCE, isArray);
    if (!isArray) {
        if (raw.refs.empty())
            notConvertible(parameter, "the reference is missing");
        return CIMValue(raw.refs.front());
    }
    Array<CIMObjectPath> paths;
    for (const CIMObjectPath& path : raw.refs)
        paths.append(path);
    return CIMValue(paths);
}

} // namespace

CIMValue convertParameter(const RawParameter& parameter, CIMType type, bool isArray) {
    const RawValue& raw = parameter.value;
    if (raw.shape == RawValue::Shape::Null)
        return CIMValue(type, isArray);
    const bool manyGiven =
        raw.shape == RawValue::Shape::Array || raw.shape == RawValue::Shape::ReferenceArray;
    // A single value for an array parameter is an array of one; the
    // opposite loses values, so it is refused.
    if (manyGiven && !isArray)
        mismatch(parameter, type, isArray);
    try {
        switch (type) {
        case CIMTYPE_OBJECT:
        case CIMTYPE_INSTANCE:
            return embeddedValue(parameter, type, isArray);
        case CIMTYPE_REFERENCE:
            return referenceValue(parameter, isArray);
        default:
            break;
        }
        if (raw.shape == RawValue::Shape::Instance) {
            // A string parameter declared EmbeddedInstance keeps the markup.
            if (type != CIMTYPE_STRING)
                mismatch(parameter, type, isArray);
            return valueFromTexts(type, isArray, {raw.embeddedXml});
        }
        if (raw.shape == RawValue::Shape::Reference || raw.shape == RawValue::Shape::ReferenceArray)
            mismatch(parameter, type, isArray);
        return valueFromTexts(type, isArray, raw.texts);
    } catch (const ValueTextError& e) {
        notConvertible(parameter, e.what());
    } catch (const Exception& e) {
        notConvertible(parameter, utf8(e.getMessage()));
    }
}

} // namespace vexa::cimxml
