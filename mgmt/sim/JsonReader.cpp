#include "JsonReader.h"

#include <cstring>
#include <limits>

namespace qzsim {

using nlohmann::json;

std::string wrongType(const char* expected, const json& found) {
    return std::string("wrong type, expected ") + expected + " but found " + found.type_name();
}

void expectType(const json& value, const std::string& path, json::value_t type,
                const char* typeName) {
    if (value.type() != type) {
        throw ModelError(path, wrongType(typeName, value));
    }
}

unsigned long long toU64(const json& value, const std::string& path) {
    if (value.is_number_unsigned()) {
        return value.get<unsigned long long>();
    }
    if (value.is_number_integer()) {
        throw ModelError(path, "negative value " + value.dump() + " where a count is expected");
    }
    if (value.is_number_float()) {
        throw ModelError(path,
                         "fractional value " + value.dump() + " where an integer is expected");
    }
    throw ModelError(path, wrongType("an unsigned integer", value));
}

std::size_t overflowPlace(const std::string& text, const json::exception& e, std::string* problem) {
    const std::string what = e.what();
    const std::size_t prefixEnd = what.find("] ");
    *problem = prefixEnd == std::string::npos ? what : what.substr(prefixEnd + 2);
    const std::size_t open = what.find('\'');
    const std::size_t close = what.rfind('\'');
    if (open == std::string::npos || close <= open + 1) {
        return 0;
    }
    const std::size_t at = text.find(what.substr(open + 1, close - open - 1));
    return at == std::string::npos ? 0 : at + 1;
}

JsonObject::JsonObject(const json& value, std::string path)
    : value_(value), path_(std::move(path)) {
    if (!value_.is_object()) {
        throw ModelError(path_.empty() ? "/" : path_, wrongType("an object", value_));
    }
}

const json* JsonObject::find(const char* key) {
    read_.insert(key);
    auto it = value_.find(key);
    if (it == value_.end() || it->is_null()) {
        return nullptr;
    }
    return &*it;
}

const json& JsonObject::require(const char* key) {
    const json* value = find(key);
    if (value == nullptr) {
        throw ModelError(path_.empty() ? "/" : path_,
                         std::string("missing member \"") + key + "\"");
    }
    return *value;
}

std::string JsonObject::string(const char* key, const std::string& fallback) {
    const json* value = find(key);
    if (value == nullptr) {
        return fallback;
    }
    if (!value->is_string()) {
        throw ModelError(memberPath(key), wrongType("a string", *value));
    }
    return value->get<std::string>();
}

std::string JsonObject::requiredString(const char* key) {
    const json& value = require(key);
    if (!value.is_string()) {
        throw ModelError(memberPath(key), wrongType("a string", value));
    }
    std::string text = value.get<std::string>();
    if (text.empty()) {
        throw ModelError(memberPath(key), "empty text where a name is required");
    }
    return text;
}

unsigned long long JsonObject::u64(const char* key, unsigned long long fallback) {
    const json* value = find(key);
    return value == nullptr ? fallback : toU64(*value, memberPath(key));
}

unsigned int JsonObject::u32(const char* key, unsigned int fallback) {
    const json* value = find(key);
    if (value == nullptr) {
        return fallback;
    }
    unsigned long long number = toU64(*value, memberPath(key));
    if (number > std::numeric_limits<unsigned int>::max()) {
        throw ModelError(memberPath(key), "value " + value->dump() + " does not fit 32 bits");
    }
    return static_cast<unsigned int>(number);
}

double JsonObject::real(const char* key, double fallback) {
    const json* value = find(key);
    if (value == nullptr) {
        return fallback;
    }
    if (!value->is_number()) {
        throw ModelError(memberPath(key), wrongType("a number", *value));
    }
    return value->get<double>();
}

bool JsonObject::boolean(const char* key, bool fallback) {
    const json* value = find(key);
    if (value == nullptr) {
        return fallback;
    }
    if (!value->is_boolean()) {
        throw ModelError(memberPath(key), wrongType("true or false", *value));
    }
    return value->get<bool>();
}

const json& JsonObject::array(const char* key) {
    static const json empty = json::array();
    const json* value = find(key);
    if (value == nullptr) {
        return empty;
    }
    if (!value->is_array()) {
        throw ModelError(memberPath(key), wrongType("an array", *value));
    }
    return *value;
}

void JsonObject::finish() const {
    for (auto it = value_.begin(); it != value_.end(); ++it) {
        if (read_.count(it.key()) == 0) {
            throw ModelError(memberPath(it.key().c_str()), "unknown member \"" + it.key() + "\"");
        }
    }
}

void JsonObject::storeText(const char* key, const std::string& value, char* dst,
                           std::size_t size) const {
    if (value.size() >= size) {
        throw ModelError(memberPath(key), "text too long (" + std::to_string(value.size()) +
                                              " bytes, at most " + std::to_string(size - 1) + ")");
    }
    std::memcpy(dst, value.c_str(), value.size() + 1);
}

} // namespace qzsim
