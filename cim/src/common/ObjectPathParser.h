// Internal: reading the text form of an object path,
// "//host/namespace:Class.key=value,...".
#ifndef Pegasus_ObjectPathParser_h
#define Pegasus_ObjectPathParser_h

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>

PEGASUS_NAMESPACE_BEGIN

struct ObjectPathParts {
    String host;
    CIMNamespaceName nameSpace;
    CIMName className;
    Array<CIMKeyBinding> keyBindings;
};

// Fills the parts as they are read. Throws MalformedObjectNameException
// naming the input and the reason; the parts read before the fault stay
// filled, since a path that fails to parse keeps them.
PEGASUS_HIDDEN_LINKAGE void parseObjectPath(const String& objectName, ObjectPathParts& parts);

PEGASUS_NAMESPACE_END

#endif
