// Reading the in-parameters of the configuration-service methods: heap copies
// of string values, typed reads that report a wrong type instead of throwing,
// and the length check that keeps values within the library's record fields.
#ifndef VEXA_METHODS_METHODPARAMETERS_H
#define VEXA_METHODS_METHODPARAMETERS_H

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <optional>
#include <string>

namespace methods {

// Stands for a string parameter that was not supplied. The mandatory check
// tells it apart from a supplied empty text by its address alone.
extern const char SHARED_EMPTY_TEXT[];

// The longest text a 256-byte record field holds with its terminator.
constexpr std::size_t RECORD_TEXT_MAX = 255;

// A string in-parameter copied into a heap buffer of its own; until a value
// is taken it is the shared empty text. A value taken twice replaces the first.
class ParamCopy {
public:
    ParamCopy() = default;
    ~ParamCopy();
    ParamCopy(const ParamCopy&) = delete;
    ParamCopy& operator=(const ParamCopy&) = delete;

    void take(const Pegasus::String& value);
    bool given() const { return text_ != SHARED_EMPTY_TEXT; }
    // The copy, or the shared empty text when none was taken.
    const char* get() const { return text_; }
    // The copy, or null when none was taken: what the library expects for
    // "leave it as it is".
    const char* orNull() const { return given() ? text_ : nullptr; }
    std::size_t length() const;

private:
    char* text_ = const_cast<char*>(SHARED_EMPTY_TEXT);
};

// The typed reads below leave dst alone for a null value. A value of another
// CIM type appends "ERROR! Input parameter <name> is not of type <type> \n"
// to message and returns false.
bool readString(const Pegasus::CIMValue& value, const char* name, ParamCopy& dst,
                std::string* message);
bool readUint64(const Pegasus::CIMValue& value, const char* name,
                std::optional<Pegasus::Uint64>& dst, std::string* message);
bool readBoolean(const Pegasus::CIMValue& value, const char* name, bool& dst, std::string* message);
bool readReference(const Pegasus::CIMValue& value, const char* name, Pegasus::CIMObjectPath& dst,
                   std::string* message);

// The value of the first key binding named key (compared as a CIM name,
// ignoring case); false when there is none.
bool findKey(const Pegasus::CIMObjectPath& path, const char* key, Pegasus::String* value);
// The value of the key named exactly key; false when there is none.
bool findExactKey(const Pegasus::CIMObjectPath& path, const char* key, Pegasus::String* value);

// Appends "ERROR! Input parameter <name> lacks the key <key> \n".
void reportMissingKey(const char* name, const char* key, std::string* message);
// Appends "ERROR! Input parameter <name> exceeds expected length \n" and
// returns false when length is more than a record field holds.
bool fitsRecordField(std::size_t length, const char* name, std::string* message);

// Logs an in-parameter's position and name, then its value, with the body's
// own pair of formats.
void logParameter(const char* nameFormat, const char* valueFormat, Pegasus::Uint32 index,
                  const Pegasus::CIMParamValue& parameter);
// Appends the out-parameter "Message".
void addMessage(Pegasus::Array<Pegasus::CIMParamValue>& out, const std::string& message);

// The UTF-8 text of a CIM string.
std::string utf8(const Pegasus::String& text);

// Bounded copy into a 256-byte record field, always terminated.
void copyToField(char* dst, const char* src);

} // namespace methods

#endif
