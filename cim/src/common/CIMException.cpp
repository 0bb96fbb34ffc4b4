#include "ExceptionRep.h"
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

// A CIMException's state: the status code and any error instances riding
// along. Copies clone the instances, so a copied exception owns its own.
class CIMExceptionRep : public ExceptionRep {
public:
    CIMExceptionRep(CIMStatusCode statusCode, const String& text)
        : ExceptionRep(text), code(statusCode) {}

    CIMExceptionRep(const CIMExceptionRep& x) : ExceptionRep(x), code(x.code) {
        for (Uint32 i = 0; i < x.errors.size(); i++)
            errors.append(x.errors[i].clone());
    }

    ExceptionRep* clone() const override { return new CIMExceptionRep(*this); }

    void addError(const CIMInstance& instance) {
        if (instance.isUninitialized())
            throw UninitializedObjectException();
        errors.append(instance.clone());
    }

    CIMStatusCode code;
    Array<CIMInstance> errors;
};

} // namespace

CIMException::CIMException(CIMStatusCode code, const String& message) : Exception() {
    _rep = new CIMExceptionRep(code, message);
}

CIMException::CIMException(CIMStatusCode code, const String& message, const CIMInstance& instance)
    : Exception() {
    CIMExceptionRep* rep = new CIMExceptionRep(code, message);
    _rep = rep;
    rep->addError(instance);
}

CIMException::CIMException(CIMStatusCode code, const String& message,
                           const Array<CIMInstance>& instances)
    : Exception() {
    CIMExceptionRep* rep = new CIMExceptionRep(code, message);
    _rep = rep;
    for (Uint32 i = 0; i < instances.size(); i++)
        rep->addError(instances[i]);
}

CIMException::CIMException(const CIMException& cimException) : Exception(cimException) {}

CIMException& CIMException::operator=(const CIMException& cimException) {
    Exception::operator=(cimException);
    return *this;
}

CIMException::~CIMException() {}

CIMStatusCode CIMException::getCode() const {
    const CIMExceptionRep* rep = dynamic_cast<const CIMExceptionRep*>(_rep);
    return rep ? rep->code : CIM_ERR_SUCCESS;
}

PEGASUS_NAMESPACE_END
