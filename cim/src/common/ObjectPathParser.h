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

// Throws MalformedObjectNameException naming the input and the reason.
PEGASUS_HIDDEN_LINKAGE ObjectPathParts parseObjectPath(const String& objectName);

PEGASUS_NAMESPACE_END

#endif
