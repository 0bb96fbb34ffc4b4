#include "vexa/host/ServedClasses.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

#include <strings.h>

#include "vexa/host/OperationDispatcher.h"

PEGASUS_USING_PEGASUS;

namespace vexa::host {

namespace {

// Provider types of a capability.
constexpr Uint64 INSTANCE_PROVIDER = 2;
constexpr Uint64 ASSOCIATION_PROVIDER = 3;
constexpr Uint64 METHOD_PROVIDER = 5;

std::string text(const String& value) { return (const char*)value.getCString(); }

// The property's value as text, empty when absent, null or not a string.
std::string stringProperty(const CIMInstance& instance, const char* name) {
    Uint32 index = instance.findProperty(CIMName(name));
    if (index == PEG_NOT_FOUND) {
        return std::string();
    }
    CIMValue value = instance.getProperty(index).getValue();
    if (value.isNull() || value.isArray() || value.getType() != CIMTYPE_STRING) {
        return std::string();
    }
    String result;
    value.get(result);
    return text(result);
}

std::vector<std::string> stringArrayProperty(const CIMInstance& instance, const char* name) {
    std::vector<std::string> result;
    Uint32 index = instance.findProperty(CIMName(name));
    if (index == PEG_NOT_FOUND) {
        return result;
    }
    CIMValue value = instance.getProperty(index).getValue();
    if (value.isNull() || !value.isArray() || value.getType() != CIMTYPE_STRING) {
        return result;
    }
    Array<String> strings;
    value.get(strings);
    for (Uint32 i = 0; i < strings.size(); ++i) {
        result.push_back(text(strings[i]));
    }
    return result;
}

// Provider types are integers; MOF literals arrive as whichever integer type
// the reader chose, so every unsigned and signed width is accepted.
std::vector<Uint64> providerTypes(const CIMInstance& instance) {
    std::vector<Uint64> result;
    Uint32 index = instance.findProperty(CIMName("ProviderType"));
    if (index == PEG_NOT_FOUND) {
        return result;
    }
    CIMValue value = instance.getProperty(index).getValue();
    if (value.isNull() || !value.isArray()) {
        return result;
    }
    switch (value.getType()) {
    case CIMTYPE_UINT16: {
        Array<Uint16> numbers;
        value.get(numbers);
        for (Uint32 i = 0; i < numbers.size(); ++i) {
            result.push_back(numbers[i]);
        }
        break;
    }
    case CIMTYPE_UINT64: {
        Array<Uint64> numbers;
        value.get(numbers);
        for (Uint32 i = 0; i < numbers.size(); ++i) {
            result.push_back(numbers[i]);
        }
        break;
    }
    case CIMTYPE_SINT64: {
        Array<Sint64> numbers;
        value.get(numbers);
        for (Uint32 i = 0; i < numbers.size(); ++i) {
            if (numbers[i] >= 0) {
                result.push_back(static_cast<Uint64>(numbers[i]));
            }
        }
        break;
    }
    default:
        break;
    }
    return result;
}

bool servesNamespace(const CIMInstance& capability) {
    for (const std::string& nameSpace : stringArrayProperty(capability, "Namespaces")) {
        std::string trimmed = nameSpace;
        while (!trimmed.empty() && trimmed[0] == '/') {
            trimmed.erase(0, 1);
        }
        if (strcasecmp(trimmed.c_str(), SERVED_NAMESPACE) == 0) {
            return true;
        }
    }
    return false;
}

bool hasType(const std::vector<Uint64>& types, Uint64 wanted) {
    for (Uint64 type : types) {
        if (type == wanted) {
            return true;
        }
    }
    return false;
}

void appendOnce(Array<CIMName>& names, const CIMName& name) {
    for (Uint32 i = 0; i < names.size(); ++i) {
        if (names[i].equal(name)) {
            return;
        }
    }
    names.append(name);
}

} // namespace

ServedClasses ServedClasses::fromRegistration(const schema::SchemaRepository& schema,
                                              const std::string& providerName,
                                              std::vector<std::string>* missing) {
    ServedClasses served(schema);
    for (const schema::MofInstance& declared : schema.instances()) {
        const CIMInstance& capability = declared.instance;
        if (!capability.getClassName().equal(CIMName("PG_ProviderCapabilities")) ||
            strcasecmp(stringProperty(capability, "ProviderName").c_str(), providerName.c_str()) !=
                0 ||
            !servesNamespace(capability)) {
            continue;
        }
        std::string className = stringProperty(capability, "ClassName");
        String classText(className.c_str());
        const CIMClass* known =
            CIMName::legal(classText) ? schema.findClass(CIMName(classText)) : nullptr;
        if (known == nullptr) {
            if (missing != nullptr) {
                missing->push_back(className);
            }
            continue;
        }
        std::vector<Uint64> types = providerTypes(capability);
        if (hasType(types, INSTANCE_PROVIDER)) {
            appendOnce(served.instanceClasses_, known->getClassName());
        }
        if (hasType(types, ASSOCIATION_PROVIDER)) {
            appendOnce(served.associationClasses_, known->getClassName());
        }
        if (hasType(types, METHOD_PROVIDER)) {
            appendOnce(served.methodClasses_, known->getClassName());
        }
    }
    return served;
}

bool ServedClasses::empty() const {
    return instanceClasses_.size() == 0 && associationClasses_.size() == 0 &&
           methodClasses_.size() == 0;
}

Array<CIMName> ServedClasses::instanceClassesUnder(const CIMName& requested) const {
    Array<CIMName> covered;
    for (Uint32 i = 0; i < instanceClasses_.size(); ++i) {
        if (schema_->isA(instanceClasses_[i], requested)) {
            covered.append(instanceClasses_[i]);
        }
    }
    return covered;
}

Array<CIMName> ServedClasses::associationClassesFor(const CIMName& objectClass,
                                                    const CIMName& assocClass) const {
    Array<CIMName> covered;
    for (Uint32 i = 0; i < associationClasses_.size(); ++i) {
        const CIMName& candidate = associationClasses_[i];
        if (!assocClass.isNull() && !schema_->isA(candidate, assocClass)) {
            continue;
        }
        const CIMClass* declared = schema_->findClass(candidate);
        for (Uint32 p = 0; declared != nullptr && p < declared->getPropertyCount(); ++p) {
            CIMConstProperty property = declared->getProperty(p);
            const CIMName& referenced = property.getReferenceClassName();
            if (property.getType() == CIMTYPE_REFERENCE &&
                (schema_->isA(objectClass, referenced) || schema_->isA(referenced, objectClass))) {
                covered.append(candidate);
                break;
            }
        }
    }
    return covered;
}

bool ServedClasses::servesMethodsOf(const CIMName& className) const {
    for (Uint32 i = 0; i < methodClasses_.size(); ++i) {
        if (schema_->isA(className, methodClasses_[i])) {
            return true;
        }
    }
    return false;
}

} // namespace vexa::host
