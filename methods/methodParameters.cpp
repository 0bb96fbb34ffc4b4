// The shared parameter functions of the configuration-service methods.
#include "methodParameters.h"

#include "cimProvider.h"

#include <qzantras/ts_log.h>

#include <cstdlib>
#include <cstring>
#include <new>

PEGASUS_USING_PEGASUS;

namespace methods {

const char SHARED_EMPTY_TEXT[] = "";

ParamCopy::~ParamCopy() {
    if (given()) {
        std::free(text_);
    }
}

void ParamCopy::take(const String& value) {
    std::string text = utf8(value);
    char* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(copy, text.c_str(), text.size() + 1);
    if (given()) {
        std::free(text_);
    }
    text_ = copy;
}

std::size_t ParamCopy::length() const { return std::strlen(text_); }

namespace {

bool typeMatches(const CIMValue& value, CIMType type, const char* typeName, const char* name,
                 std::string* message) {
    if (value.getType() == type && !value.isArray()) {
        return true;
    }
    *message += "ERROR! Input parameter ";
    *message += name;
    *message += " is not of type ";
    *message += typeName;
    *message += " \n";
    ts_log(2, "VexaProvider::invokeMethod", "parameter %s is not of type %s\n", name, typeName);
    return false;
}

} // namespace

bool readString(const CIMValue& value, const char* name, ParamCopy& dst, std::string* message) {
    if (!typeMatches(value, CIMTYPE_STRING, "string", name, message)) {
        return false;
    }
    if (!value.isNull()) {
        String text;
        value.get(text);
        dst.take(text);
    }
    return true;
}

bool readUint64(const CIMValue& value, const char* name, std::optional<Uint64>& dst,
                std::string* message) {
    if (!typeMatches(value, CIMTYPE_UINT64, "uint64", name, message)) {
        return false;
    }
    if (!value.isNull()) {
        Uint64 number = 0;
        value.get(number);
        dst = number;
    }
    return true;
}

bool readBoolean(const CIMValue& value, const char* name, bool& dst, std::string* message) {
    if (!typeMatches(value, CIMTYPE_BOOLEAN, "boolean", name, message)) {
        return false;
    }
    if (!value.isNull()) {
        Boolean flag = false;
        value.get(flag);
        dst = flag;
    }
    return true;
}

bool readReference(const CIMValue& value, const char* name, CIMObjectPath& dst,
                   std::string* message) {
    if (!typeMatches(value, CIMTYPE_REFERENCE, "reference", name, message)) {
        return false;
    }
    if (!value.isNull()) {
        value.get(dst);
    }
    return true;
}

bool findKey(const CIMObjectPath& path, const char* key, String* value) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    CIMName wanted(key);
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (keys[i].getName().equal(wanted)) {
            *value = keys[i].getValue();
            return true;
        }
    }
    return false;
}

bool findExactKey(const CIMObjectPath& path, const char* key, String* value) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (utf8(keys[i].getName().getString()) == key) {
            *value = keys[i].getValue();
            return true;
        }
    }
    return false;
}

void reportMissingKey(const char* name, const char* key, std::string* message) {
    *message += "ERROR! Input parameter ";
    *message += name;
    *message += " lacks the key ";
    *message += key;
    *message += " \n";
    ts_log(2, "VexaProvider::invokeMethod", "parameter %s lacks the key %s\n", name, key);
}

bool fitsRecordField(std::size_t length, const char* name, std::string* message) {
    if (length <= RECORD_TEXT_MAX) {
        return true;
    }
    *message += "ERROR! Input parameter ";
    *message += name;
    *message += " exceeds expected length \n";
    ts_log(2, "VexaProvider::invokeMethod", "parameter %s exceeds expected length\n", name);
    return false;
}

void logParameter(const char* nameFormat, const char* valueFormat, Uint32 index,
                  const CIMParamValue& parameter) {
    // The formats are the bodies' own fixed texts.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    ts_log(0, "VexaProvider::invokeMethod", nameFormat, static_cast<int>(index),
           utf8(parameter.getParameterName()).c_str());
    ts_log(0, "VexaProvider::invokeMethod", valueFormat,
           utf8(parameter.getValue().toString()).c_str());
#pragma GCC diagnostic pop
}

void addMessage(Array<CIMParamValue>& out, const std::string& message) {
    out.append(CIMParamValue("Message", CIMValue(String(message.c_str()))));
}

std::string utf8(const String& text) { return std::string((const char*)text.getCString()); }

void copyToField(char* dst, const char* src) {
    std::size_t n = strnlen(src, RECORD_TEXT_MAX);
    std::memcpy(dst, src, n);
    dst[n] = '\0';
}

} // namespace methods

using methods::copyToField;
using methods::SHARED_EMPTY_TEXT;

bool VexaProvider::extractParamValueFromOP(CIMObjectPath path, const char* keyName,
                                           const char* label, char* dst) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (std::strcmp(methods::utf8(keys[i].getName().getString()).c_str(), keyName) != 0) {
            continue;
        }
        // Key values always have a text form here, so the copy never fails;
        // what does not fit the field is cut at its last byte.
        copyToField(dst, methods::utf8(keys[i].getValue()).c_str());
        ts_log(0, "VexaProvider::extractParamValueFromOP", "%s = %s\n", label, dst);
        return true;
    }
    return false;
}

void VexaProvider::validateAndAcceptOptionalParam(const char* src, const char* name, char* dst) {
    if (src == nullptr) {
        ts_log(1, "VexaProvider::validateAndAcceptOptionalParam", "Detected NULL %s field.\n",
               name);
        dst[0] = '\0';
        return;
    }
    copyToField(dst, src);
}

int VexaProvider::validateAndAcceptMandatoryParam(const char* src, const char* name, char* dst,
                                                  std::string* message) {
    // An identity test: only an unsupplied value is the shared empty text; an
    // empty text the caller did send is the library's to judge.
    if (src == nullptr || src == SHARED_EMPTY_TEXT) {
        // The placeholder stays unfilled: clients match this exact text.
        *message += "ERROR! Expected non-null %s field. \n";
        ts_log(2, "VexaProvider::validateAndAcceptMandatoryParam", "Expected non-null %s field. \n",
               name);
        return 1;
    }
    copyToField(dst, src);
    return 0;
}

void VexaProvider::freeCharMemory(char* p) {
    if (p != nullptr) {
        std::free(p);
    }
}
