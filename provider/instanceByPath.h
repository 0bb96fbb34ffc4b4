// Finding a cached instance by its object path.
#ifndef VEXA_PROVIDER_INSTANCEBYPATH_H
#define VEXA_PROVIDER_INSTANCEBYPATH_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>

class VexaProvider;

// Position of the first instance of the array whose path is identical to
// path (CIMObjectPath equality), or -1. The caller holds the lock.
int firstWithPath(VexaProvider& provider, const Pegasus::Array<Pegasus::CIMInstance>& array,
                  const Pegasus::CIMObjectPath& path);

#endif
