#include "IndicationText.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/String.h>

PEGASUS_USING_PEGASUS;

namespace vexa::tool {

namespace {

std::string text(const String& value) { return (const char*)value.getCString(); }

// Elements of a non-string array, from the library's space-separated text.
std::string joinedElements(const CIMValue& value) {
    std::string spaced = text(value.toString());
    std::string joined;
    size_t start = 0;
    while (start < spaced.size()) {
        size_t end = spaced.find(' ', start);
        if (end == std::string::npos) {
            end = spaced.size();
        }
        if (end > start) {
            if (!joined.empty()) {
                joined += ", ";
            }
            joined += spaced.substr(start, end - start);
        }
        start = end + 1;
    }
    return joined;
}

} // namespace

std::string valueText(const CIMValue& value) {
    if (value.isNull()) {
        return "NULL";
    }
    if (!value.isArray()) {
        return text(value.toString());
    }
    if (value.getType() == CIMTYPE_STRING) {
        Array<String> strings;
        value.get(strings);
        std::string joined;
        for (Uint32 i = 0; i < strings.size(); ++i) {
            joined += (i == 0 ? "" : ", ") + text(strings[i]);
        }
        return "{" + joined + "}";
    }
    return "{" + joinedElements(value) + "}";
}

std::string indicationText(const CIMInstance& indication) {
    std::string result = text(indication.getClassName().getString()) + "\n";
    for (Uint32 i = 0; i < indication.getPropertyCount(); ++i) {
        CIMConstProperty property = indication.getProperty(i);
        result += "  " + text(property.getName().getString()) + " = " +
                  valueText(property.getValue()) + "\n";
    }
    return result + "\n";
}

} // namespace vexa::tool
