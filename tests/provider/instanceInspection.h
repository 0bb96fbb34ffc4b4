// Reading built instances the way a client does: property names with their
// CIM types in order, values as text, OperationalStatus, and the path text.
#ifndef VEXA_TESTS_INSTANCEINSPECTION_H
#define VEXA_TESTS_INSTANCEINSPECTION_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

inline std::string text(const Pegasus::String& value) { return std::string(value.getCString()); }

// Bounded, terminated copy into a record's text field.
template <size_t N>
void setText(char (&field)[N], const char* value) {
    strncpy(field, value, N - 1);
    field[N - 1] = '\0';
}

// "name:type" per property in instance order, "[]" marking arrays.
inline std::vector<std::string> signature(const Pegasus::CIMInstance& instance) {
    std::vector<std::string> result;
    for (Pegasus::Uint32 i = 0; i < instance.getPropertyCount(); i++) {
        Pegasus::CIMConstProperty property = instance.getProperty(i);
        result.push_back(text(property.getName().getString()) + ":" +
                         Pegasus::cimTypeToString(property.getType()) +
                         (property.isArray() ? "[]" : ""));
    }
    return result;
}

inline Pegasus::CIMValue valueOf(const Pegasus::CIMInstance& instance, const char* name) {
    using Pegasus::Uint32; // PEG_NOT_FOUND names it unqualified
    Uint32 index = instance.findProperty(Pegasus::CIMName(name));
    if (index == PEG_NOT_FOUND) {
        ADD_FAILURE() << "no property " << name;
        return Pegasus::CIMValue();
    }
    return instance.getProperty(index).getValue();
}

inline std::string textOf(const Pegasus::CIMInstance& instance, const char* name) {
    return text(valueOf(instance, name).toString());
}

// OperationalStatus must hold exactly one value; -1 reports a wrong count.
inline int statusOf(const Pegasus::CIMInstance& instance) {
    Pegasus::Array<Pegasus::Uint16> status;
    valueOf(instance, "OperationalStatus").get(status);
    if (status.size() != 1) {
        ADD_FAILURE() << "OperationalStatus holds " << status.size() << " values";
        return -1;
    }
    return status[0];
}

inline std::string pathOf(const Pegasus::CIMInstance& instance) {
    return text(instance.getPath().toString());
}

#endif
