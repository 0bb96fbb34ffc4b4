// The namespace test that every read operation makes first.
#ifndef VEXA_PROVIDER_PROVIDERNAMESPACE_H
#define VEXA_PROVIDER_PROVIDERNAMESPACE_H

#include <Pegasus/Common/CIMObjectPath.h>

// True when the path is in the provider's namespace; otherwise logs
// "<namespace> not supported." at level 2 under `function`.
bool inProviderNamespace(const Pegasus::CIMObjectPath& path, const char* function);

#endif
