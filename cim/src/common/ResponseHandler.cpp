#include <Pegasus/Common/ResponseHandler.h>

PEGASUS_NAMESPACE_BEGIN

class ResponseHandlerRep {
public:
    OperationContext context;
};

ResponseHandler::ResponseHandler() : _rep(new ResponseHandlerRep) {}

ResponseHandler::ResponseHandler(const ResponseHandler& handler)
    : _rep(new ResponseHandlerRep(*handler._rep)) {}

ResponseHandler::~ResponseHandler() { delete _rep; }

ResponseHandler& ResponseHandler::operator=(const ResponseHandler& handler) {
    if (this != &handler) {
        _rep->context = handler._rep->context;
    }
    return *this;
}

void ResponseHandler::setContext(const OperationContext& context) { _rep->context = context; }

OperationContext ResponseHandler::getContext() const { return _rep->context; }

InstanceResponseHandler::~InstanceResponseHandler() {}

ObjectPathResponseHandler::~ObjectPathResponseHandler() {}

MethodResultResponseHandler::~MethodResultResponseHandler() {}

IndicationResponseHandler::~IndicationResponseHandler() {}

ObjectResponseHandler::~ObjectResponseHandler() {}

PEGASUS_NAMESPACE_END
