#ifndef Pegasus_CIMIndicationConsumerProvider_h
#define Pegasus_CIMIndicationConsumerProvider_h

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Provider/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

// A provider that receives indications exported to this server, for
// example to forward them to another management system.
class PEGASUS_PROVIDER_LINKAGE CIMIndicationConsumerProvider : public virtual CIMProvider {
public:
    CIMIndicationConsumerProvider();
    virtual ~CIMIndicationConsumerProvider();

    virtual void consumeIndication(const OperationContext& context, const String& destinationPath,
                                   const CIMInstance& indicationInstance) = 0;
};

PEGASUS_NAMESPACE_END

#endif
