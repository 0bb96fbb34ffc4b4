// Writes the object model in the CIM-XML forms that wbemcli and cimcli
// accept: explicit end tags, only the attributes wbemcli knows, embedded
// objects as escaped text with a single EmbeddedObject attribute, and no
// empty VALUE for NULL.
#ifndef VEXA_CIMXML_OBJECTWRITER_H
#define VEXA_CIMXML_OBJECTWRITER_H

#include "XmlWriter.h"

#include <vexa/cimxml/Codec.h>

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

#include <string>

namespace vexa::cimxml::detail {

// The TYPE / PARAMTYPE text: embedded objects travel as strings.
const char* wireTypeName(Pegasus::CIMType type);
// "object" or "instance" for embedded types, else nullptr.
const char* embeddedObjectKind(Pegasus::CIMType type);

void writeInstance(XmlWriter& out, const Pegasus::CIMConstInstance& instance,
                   bool includeClassOrigin, const PropertySelection& selection = {});
void writeClass(XmlWriter& out, const Pegasus::CIMConstClass& cimClass);

// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY for a non-null value.
void writeValue(XmlWriter& out, const Pegasus::CIMValue& value);

void writeLocalNamespacePath(XmlWriter& out, const Pegasus::String& nameSpace);
void writeInstanceName(XmlWriter& out, const Pegasus::CIMObjectPath& path);
// INSTANCEPATH / CLASSPATH with the given host and namespace, whatever the
// path itself holds.
void writeInstancePath(XmlWriter& out, const Pegasus::CIMObjectPath& path,
                       const Pegasus::String& host, const Pegasus::String& nameSpace);
void writeClassPath(XmlWriter& out, const Pegasus::CIMObjectPath& path, const Pegasus::String& host,
                    const Pegasus::String& nameSpace);

} // namespace vexa::cimxml::detail

#endif
