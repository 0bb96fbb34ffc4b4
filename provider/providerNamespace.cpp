#include "providerNamespace.h"

#include <qzantras/ts_log.h>

#include "classNames.h"

PEGASUS_USING_PEGASUS;

bool inProviderNamespace(const CIMObjectPath& path, const char* function) {
    if (path.getNameSpace().equal(NAMESPACE))
        return true;
    ts_log(2, function, "%s not supported.\n",
           (const char*)path.getNameSpace().getString().getCString());
    return false;
}
