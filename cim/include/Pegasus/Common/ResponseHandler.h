#ifndef Pegasus_ResponseHandler_h
#define Pegasus_ResponseHandler_h

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMIndication.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/OperationContext.h>

PEGASUS_NAMESPACE_BEGIN

class ResponseHandlerRep;

// The channel through which a provider answers one operation. The server
// supplies the concrete handler; the provider only sees these interfaces.
class PEGASUS_COMMON_LINKAGE ResponseHandler {
public:
    virtual ~ResponseHandler();

    virtual void processing() = 0;
    virtual void complete() = 0;

    void setContext(const OperationContext& context);

protected:
    ResponseHandler();
    ResponseHandler(const ResponseHandler& handler);
    ResponseHandler& operator=(const ResponseHandler& handler);

    OperationContext getContext() const;

private:
    ResponseHandlerRep* _rep;
};

// The derived interfaces have out-of-line destructors only so that their
// vtables and type information live in the library and nowhere else.

class PEGASUS_COMMON_LINKAGE InstanceResponseHandler : virtual public ResponseHandler {
public:
    virtual ~InstanceResponseHandler();
    virtual void deliver(const CIMInstance& instance) = 0;
    virtual void deliver(const Array<CIMInstance>& instances) = 0;
};

class PEGASUS_COMMON_LINKAGE ObjectPathResponseHandler : virtual public ResponseHandler {
public:
    virtual ~ObjectPathResponseHandler();
    virtual void deliver(const CIMObjectPath& objectPath) = 0;
    virtual void deliver(const Array<CIMObjectPath>& objectPaths) = 0;
};

class PEGASUS_COMMON_LINKAGE MethodResultResponseHandler : virtual public ResponseHandler {
public:
    virtual ~MethodResultResponseHandler();
    virtual void deliverParamValue(const CIMParamValue& outParamValue) = 0;
    virtual void deliverParamValue(const Array<CIMParamValue>& outParamValues) = 0;
    virtual void deliver(const CIMValue& returnValue) = 0;
};

class PEGASUS_COMMON_LINKAGE IndicationResponseHandler : virtual public ResponseHandler {
public:
    virtual ~IndicationResponseHandler();
    virtual void deliver(const CIMIndication& indication) = 0;
    virtual void deliver(const Array<CIMIndication>& indications) = 0;
    virtual void deliver(const OperationContext& context, const CIMIndication& indication) = 0;
    virtual void deliver(const OperationContext& context,
                         const Array<CIMIndication>& indications) = 0;
};

class PEGASUS_COMMON_LINKAGE ObjectResponseHandler : virtual public ResponseHandler {
public:
    virtual ~ObjectResponseHandler();
    virtual void deliver(const CIMObject& object) = 0;
    virtual void deliver(const Array<CIMObject>& objects) = 0;
};

PEGASUS_NAMESPACE_END

#endif
