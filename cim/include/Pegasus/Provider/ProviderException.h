#ifndef Pegasus_ProviderException_h
#define Pegasus_ProviderException_h

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

// Ready-made CIMExceptions for the failures providers report most often.
// The destructors are out of line so that catching by type works across
// libraries with one set of type information.

class PEGASUS_PROVIDER_LINKAGE CIMOperationFailedException : public CIMException {
public:
    CIMOperationFailedException(const String& message);
    virtual ~CIMOperationFailedException();

protected:
    CIMOperationFailedException(const CIMStatusCode code, const String& message);
};

class PEGASUS_PROVIDER_LINKAGE CIMAccessDeniedException : public CIMOperationFailedException {
public:
    CIMAccessDeniedException(const String& message);
    virtual ~CIMAccessDeniedException();
};

class PEGASUS_PROVIDER_LINKAGE CIMInvalidParameterException : public CIMOperationFailedException {
public:
    CIMInvalidParameterException(const String& message);
    virtual ~CIMInvalidParameterException();
};

class PEGASUS_PROVIDER_LINKAGE CIMObjectNotFoundException : public CIMOperationFailedException {
public:
    CIMObjectNotFoundException(const String& message);
    virtual ~CIMObjectNotFoundException();
};

class PEGASUS_PROVIDER_LINKAGE CIMNotSupportedException : public CIMOperationFailedException {
public:
    CIMNotSupportedException(const String& message);
    virtual ~CIMNotSupportedException();
};

class PEGASUS_PROVIDER_LINKAGE CIMObjectAlreadyExistsException
    : public CIMOperationFailedException {
public:
    CIMObjectAlreadyExistsException(const String& message);
    virtual ~CIMObjectAlreadyExistsException();
};

class PEGASUS_PROVIDER_LINKAGE CIMPropertyNotFoundException : public CIMOperationFailedException {
public:
    CIMPropertyNotFoundException(const String& message);
    virtual ~CIMPropertyNotFoundException();
};

class PEGASUS_PROVIDER_LINKAGE CIMMethodNotFoundException : public CIMOperationFailedException {
public:
    CIMMethodNotFoundException(const String& message);
    virtual ~CIMMethodNotFoundException();
};

PEGASUS_NAMESPACE_END

#endif
