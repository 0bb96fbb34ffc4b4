#ifndef Pegasus_CIMIndicationProvider_h
#define Pegasus_CIMIndicationProvider_h

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Provider/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class PEGASUS_PROVIDER_LINKAGE CIMIndicationProvider : public virtual CIMProvider {
public:
    CIMIndicationProvider();
    virtual ~CIMIndicationProvider();

    // The handler stays valid until disableIndications() is called, so a
    // provider may keep it and deliver from its own threads.
    virtual void enableIndications(IndicationResponseHandler& handler) = 0;
    virtual void disableIndications() = 0;

    virtual void createSubscription(const OperationContext& context,
                                    const CIMObjectPath& subscriptionName,
                                    const Array<CIMObjectPath>& classNames,
                                    const CIMPropertyList& propertyList,
                                    const Uint16 repeatNotificationPolicy) = 0;

    virtual void modifySubscription(const OperationContext& context,
                                    const CIMObjectPath& subscriptionName,
                                    const Array<CIMObjectPath>& classNames,
                                    const CIMPropertyList& propertyList,
                                    const Uint16 repeatNotificationPolicy) = 0;

    virtual void deleteSubscription(const OperationContext& context,
                                    const CIMObjectPath& subscriptionName,
                                    const Array<CIMObjectPath>& classNames) = 0;
};

PEGASUS_NAMESPACE_END

#endif
