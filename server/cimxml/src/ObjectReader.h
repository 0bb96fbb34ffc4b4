// Reads the CIM-XML forms of names, paths, values and instances into the
// object model. Faults are StructureError / ValueError (XmlInput.h); the
// entry points decide what the client sees.
#ifndef VEXA_CIMXML_OBJECTREADER_H
#define VEXA_CIMXML_OBJECTREADER_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

#include <pugixml.hpp>

#include <string>

namespace vexa::cimxml::detail {

struct ReadOptions {
    // Requests name the server in HOST as the client reached it, which says
    // nothing about the object; listeners keep what the sender wrote.
    bool keepReferenceHost = true;
    // Given to references that arrive without a namespace (cimcli sends a
    // bare INSTANCENAME); null leaves them without.
    Pegasus::CIMNamespaceName referenceNamespace;
    // Bounds for embedded instances, which are parsed from text again.
    size_t maxDepth = 64;
    size_t maxBytes = 4u << 20;
};

// A legal CIM name from an attribute; ValueError names the attribute.
Pegasus::CIMName nameAttribute(pugi::xml_node node, const char* attributeName);

// "root/cimv2" from its NAMESPACE elements.
std::string readLocalNamespace(pugi::xml_node localNamespacePath);

// INSTANCENAME: class and keys, no namespace.
Pegasus::CIMObjectPath readInstanceName(pugi::xml_node instanceName, const ReadOptions& options);
// Any of the six reference forms inside VALUE.REFERENCE.
Pegasus::CIMObjectPath readReference(pugi::xml_node valueReference, const ReadOptions& options);
// The content element of VALUE.REFERENCE itself (CLASSPATH, INSTANCENAME, ...).
Pegasus::CIMObjectPath readPathElement(pugi::xml_node pathElement, const ReadOptions& options);

Pegasus::CIMInstance readInstance(pugi::xml_node instance, const ReadOptions& options);
// An INSTANCE element held as text, as embedded instances travel.
Pegasus::CIMInstance readEmbeddedInstance(const std::string& markup, size_t depthUsed,
                                          const ReadOptions& options);

} // namespace vexa::cimxml::detail

#endif
