#ifndef Pegasus_CIMProvider_h
#define Pegasus_CIMProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/Linkage.h>
#include <Pegasus/Provider/ProviderException.h>

PEGASUS_NAMESPACE_BEGIN

// The root of every provider. The operation interfaces derive from it
// virtually, so one object may implement several of them and still be a
// single CIMProvider; the server discovers them with dynamic_cast.
class PEGASUS_PROVIDER_LINKAGE CIMProvider {
public:
    CIMProvider();
    virtual ~CIMProvider();

    virtual void initialize(CIMOMHandle& cimom) = 0;
    virtual void terminate() = 0;
};

PEGASUS_NAMESPACE_END

#endif
