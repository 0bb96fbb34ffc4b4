// A provider written the way third-party providers are: against the public
// provider interfaces only, serving the sample model through all four
// operation interfaces from one object.
#ifndef CONFORMANCE_PROVIDER_H
#define CONFORMANCE_PROVIDER_H

#include "AlertPump.h"
#include "SampleModel.h"

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>

PEGASUS_USING_PEGASUS;

class ConformanceProvider : public CIMInstanceProvider,
                            public CIMAssociationProvider,
                            public CIMIndicationProvider,
                            public CIMMethodProvider {
public:
    ConformanceProvider();
    virtual ~ConformanceProvider();

    virtual void initialize(CIMOMHandle& cimom);
    virtual void terminate();

    virtual void getInstance(const OperationContext& context,
                             const CIMObjectPath& instanceReference, Boolean includeQualifiers,
                             Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                             InstanceResponseHandler& handler);
    virtual void enumerateInstances(const OperationContext& context,
                                    const CIMObjectPath& classReference, Boolean includeQualifiers,
                                    Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                                    InstanceResponseHandler& handler);
    virtual void enumerateInstanceNames(const OperationContext& context,
                                        const CIMObjectPath& classReference,
                                        ObjectPathResponseHandler& handler);
    virtual void modifyInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                const CIMInstance& instanceObject, Boolean includeQualifiers,
                                const CIMPropertyList& propertyList, ResponseHandler& handler);
    virtual void createInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                const CIMInstance& instanceObject,
                                ObjectPathResponseHandler& handler);
    virtual void deleteInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference, ResponseHandler& handler);

    virtual void associators(const OperationContext& context, const CIMObjectPath& objectName,
                             const CIMName& associationClass, const CIMName& resultClass,
                             const String& role, const String& resultRole,
                             Boolean includeQualifiers, Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList, ObjectResponseHandler& handler);
    virtual void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                                 const CIMName& associationClass, const CIMName& resultClass,
                                 const String& role, const String& resultRole,
                                 ObjectPathResponseHandler& handler);
    virtual void references(const OperationContext& context, const CIMObjectPath& objectName,
                            const CIMName& resultClass, const String& role,
                            Boolean includeQualifiers, Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList, ObjectResponseHandler& handler);
    virtual void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                                const CIMName& resultClass, const String& role,
                                ObjectPathResponseHandler& handler);

    virtual void enableIndications(IndicationResponseHandler& handler);
    virtual void disableIndications();
    virtual void createSubscription(const OperationContext& context,
                                    const CIMObjectPath& subscriptionName,
                                    const Array<CIMObjectPath>& classNames,
                                    const CIMPropertyList& propertyList,
                                    Uint16 repeatNotificationPolicy);
    virtual void modifySubscription(const OperationContext& context,
                                    const CIMObjectPath& subscriptionName,
                                    const Array<CIMObjectPath>& classNames,
                                    const CIMPropertyList& propertyList,
                                    Uint16 repeatNotificationPolicy);
    virtual void deleteSubscription(const OperationContext& context,
                                    const CIMObjectPath& subscriptionName,
                                    const Array<CIMObjectPath>& classNames);

    virtual void invokeMethod(const OperationContext& context, const CIMObjectPath& objectReference,
                              const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                              MethodResultResponseHandler& handler);

private:
    // One far end of a widget-in-bin link, as seen from the object asked about.
    struct Link {
        Widget widget;
        CIMObjectPath farEnd;
        CIMInstance farEndInstance;
    };

    std::vector<Link> linksOf(const CIMObjectPath& objectName, const String& role,
                              const CIMName& resultClass, const String& resultRole);

    CIMOMHandle _cimom;
    SampleModel _model;
    AlertPump _alerts;
    std::mutex _subscriptionMutex;
    Array<CIMObjectPath> _subscriptions;
};

#endif
