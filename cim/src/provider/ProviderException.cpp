#ifndef PEGASUS_PROVIDER_INTERNAL
#define PEGASUS_PROVIDER_INTERNAL
#endif

#include <Pegasus/Provider/ProviderException.h>

PEGASUS_NAMESPACE_BEGIN

CIMOperationFailedException::CIMOperationFailedException(const String& message)
    : CIMException(CIM_ERR_FAILED, message) {}

CIMOperationFailedException::CIMOperationFailedException(const CIMStatusCode code,
                                                         const String& message)
    : CIMException(code, message) {}

CIMOperationFailedException::~CIMOperationFailedException() {}

CIMAccessDeniedException::CIMAccessDeniedException(const String& message)
    : CIMOperationFailedException(CIM_ERR_ACCESS_DENIED, message) {}

CIMAccessDeniedException::~CIMAccessDeniedException() {}

CIMInvalidParameterException::CIMInvalidParameterException(const String& message)
    : CIMOperationFailedException(CIM_ERR_INVALID_PARAMETER, message) {}

CIMInvalidParameterException::~CIMInvalidParameterException() {}

CIMObjectNotFoundException::CIMObjectNotFoundException(const String& message)
    : CIMOperationFailedException(CIM_ERR_NOT_FOUND, message) {}

CIMObjectNotFoundException::~CIMObjectNotFoundException() {}

CIMNotSupportedException::CIMNotSupportedException(const String& message)
    : CIMOperationFailedException(CIM_ERR_NOT_SUPPORTED, message) {}

CIMNotSupportedException::~CIMNotSupportedException() {}

CIMObjectAlreadyExistsException::CIMObjectAlreadyExistsException(const String& message)
    : CIMOperationFailedException(CIM_ERR_ALREADY_EXISTS, message) {}

CIMObjectAlreadyExistsException::~CIMObjectAlreadyExistsException() {}

CIMPropertyNotFoundException::CIMPropertyNotFoundException(const String& message)
    : CIMOperationFailedException(CIM_ERR_NO_SUCH_PROPERTY, message) {}

CIMPropertyNotFoundException::~CIMPropertyNotFoundException() {}

CIMMethodNotFoundException::CIMMethodNotFoundException(const String& message)
    : CIMOperationFailedException(CIM_ERR_METHOD_NOT_FOUND, message) {}

CIMMethodNotFoundException::~CIMMethodNotFoundException() {}

PEGASUS_NAMESPACE_END
