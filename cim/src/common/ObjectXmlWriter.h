// Internal: the XML text of a class or instance, laid out like the CIM-XML
// CLASS and INSTANCE elements, one element per line. This is what
// CIMObject::toString() and the text of embedded-object values show.
#ifndef Pegasus_ObjectXmlWriter_h
#define Pegasus_ObjectXmlWriter_h

#include "CIMObjectRep.h"
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

PEGASUS_HIDDEN_LINKAGE String objectToXml(const CIMObjectRep& object);

PEGASUS_NAMESPACE_END

#endif
