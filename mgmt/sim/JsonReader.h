#ifndef QZSIM_JSON_READER_H
#define QZSIM_JSON_READER_H

// Typed, path-aware reading of JSON objects: every failure names the JSON
// path of the member at fault, and members nobody asked for are reported, so
// that a typing error in a model file does not go unnoticed.

#include <nlohmann/json.hpp>

#include <cstddef>
#include <set>
#include <stdexcept>
#include <string>

namespace qzsim {

class ModelError : public std::runtime_error {
public:
    ModelError(const std::string& path, const std::string& problem)
        : std::runtime_error(path + ": " + problem), path_(path), problem_(problem) {}
    const std::string& path() const { return path_; }
    const std::string& problem() const { return problem_; }

private:
    std::string path_;
    std::string problem_;
};

class JsonObject {
public:
    JsonObject(const nlohmann::json& value, std::string path);

    const std::string& path() const { return path_; }
    std::string memberPath(const char* key) const { return path_ + "/" + key; }

    // The member, or null when it is absent or JSON null. Marks it as read.
    const nlohmann::json* find(const char* key);
    const nlohmann::json& require(const char* key);

    std::string string(const char* key, const std::string& fallback = std::string());
    std::string requiredString(const char* key);
    unsigned long long u64(const char* key, unsigned long long fallback = 0);
    unsigned int u32(const char* key, unsigned int fallback = 0);
    double real(const char* key, double fallback = 0.0);
    bool boolean(const char* key, bool fallback = false);
    // The member as an array (empty when absent).
    const nlohmann::json& array(const char* key);

    template <std::size_t N>
    void text(const char* key, char (&dst)[N], const char* fallback = "") {
        storeText(key, string(key, fallback), dst, N);
    }
    template <std::size_t N>
    void requiredText(const char* key, char (&dst)[N]) {
        storeText(key, requiredString(key), dst, N);
    }

    // Reports the first member that was never read.
    void finish() const;

private:
    void storeText(const char* key, const std::string& value, char* dst, std::size_t size) const;

    const nlohmann::json& value_;
    std::string path_;
    std::set<std::string> read_;
};

// Type check for values that are not members of a JsonObject.
void expectType(const nlohmann::json& value, const std::string& path, nlohmann::json::value_t type,
                const char* typeName);
std::string wrongType(const char* expected, const nlohmann::json& found);
unsigned long long toU64(const nlohmann::json& value, const std::string& path);

// A number too large for any JSON number type ("1e999") makes the parser
// throw out_of_range, which names the number's text but not its place. The
// place (1-based byte, as parse errors give it) is where that text first
// appears, or 0 when it cannot be found; *problem receives the message
// without nlohmann's "[json.exception...]" prefix.
std::size_t overflowPlace(const std::string& text, const nlohmann::json::exception& e,
                          std::string* problem);

} // namespace qzsim

#endif
