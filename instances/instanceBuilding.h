// The construction steps every element builder shares: typed properties in a
// fixed order, string key bindings, and a path with no host in the
// provider's namespace (the form getInstance compares requested paths with).
#ifndef VEXA_INSTANCES_INSTANCEBUILDING_H
#define VEXA_INSTANCES_INSTANCEBUILDING_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <string>

#include "classNames.h"

namespace instances {

// Values of "OperationalStatus", as in the CIM value map.
enum OperationalStatusCode : Pegasus::Uint16 {
    STATUS_UNKNOWN = 0,
    STATUS_OK = 2,
    STATUS_DEGRADED = 3,
    STATUS_ERROR = 6
};

inline void addProperty(Pegasus::CIMInstance& instance, const Pegasus::CIMName& name,
                        const Pegasus::CIMValue& value) {
    instance.addProperty(Pegasus::CIMProperty(name, value));
}

inline void addProperty(Pegasus::CIMInstance& instance, const char* name,
                        const Pegasus::CIMValue& value) {
    instance.addProperty(Pegasus::CIMProperty(Pegasus::CIMName(name), value));
}

inline void addProperty(Pegasus::CIMInstance& instance, const char* name,
                        const Pegasus::String& text) {
    addProperty(instance, name, Pegasus::CIMValue(text));
}

// Record text fields are character arrays. Without this overload they would
// reach CIMValue through its Boolean constructor and publish TRUE.
inline void addProperty(Pegasus::CIMInstance& instance, const char* name, const char* text) {
    addProperty(instance, name, Pegasus::CIMValue(Pegasus::String(text)));
}

inline void addProperty(Pegasus::CIMInstance& instance, const char* name, const std::string& text) {
    addProperty(instance, name, text.c_str());
}

// "OperationalStatus" is always an array of exactly one value.
inline void addOperationalStatus(Pegasus::CIMInstance& instance, Pegasus::Uint16 code) {
    Pegasus::Array<Pegasus::Uint16> status;
    status.append(code);
    addProperty(instance, "OperationalStatus", Pegasus::CIMValue(status));
}

inline void appendKey(Pegasus::Array<Pegasus::CIMKeyBinding>& keys, const Pegasus::CIMName& name,
                      const Pegasus::String& value) {
    keys.append(Pegasus::CIMKeyBinding(name, value, Pegasus::CIMKeyBinding::STRING));
}

inline void appendKey(Pegasus::Array<Pegasus::CIMKeyBinding>& keys, const char* name,
                      const Pegasus::String& value) {
    keys.append(
        Pegasus::CIMKeyBinding(Pegasus::CIMName(name), value, Pegasus::CIMKeyBinding::STRING));
}

inline void appendKey(Pegasus::Array<Pegasus::CIMKeyBinding>& keys, const char* name,
                      const char* value) {
    appendKey(keys, name, Pegasus::String(value));
}

inline void appendKey(Pegasus::Array<Pegasus::CIMKeyBinding>& keys, const char* name,
                      const std::string& value) {
    appendKey(keys, name, value.c_str());
}

// Gives the instance its path: empty host, the class, the keys, and the
// provider's namespace set afterwards as every cached path carries it.
inline void setInstancePath(Pegasus::CIMInstance& instance, const Pegasus::CIMName& className,
                            const Pegasus::Array<Pegasus::CIMKeyBinding>& keys) {
    Pegasus::CIMObjectPath path(Pegasus::String(), Pegasus::CIMNamespaceName(), className, keys);
    path.setNameSpace(NAMESPACE);
    instance.setPath(path);
}

// Composite identifiers join their parts with "+", outermost part first.
inline std::string joinKey(const char* first, const char* second) {
    return std::string(first) + "+" + second;
}

inline std::string joinKey(const char* first, const char* second, const char* third) {
    return joinKey(first, second) + "+" + third;
}

} // namespace instances

#endif
