#include "ExceptionRep.h"
#include "NullPointer.h"

#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

ExceptionRep::~ExceptionRep() {}

ExceptionRep* ExceptionRep::clone() const { return new ExceptionRep(*this); }

Exception::Exception(const String& message) : _rep(new ExceptionRep(message)) {}

Exception::Exception(const Exception& exception)
    : _rep(exception._rep ? exception._rep->clone() : nullptr) {}

Exception::Exception() : _rep(nullptr) {}

Exception::~Exception() { delete _rep; }

Exception& Exception::operator=(const Exception& exception) {
    if (this != &exception) {
        ExceptionRep* copy = exception._rep ? exception._rep->clone() : nullptr;
        delete _rep;
        _rep = copy;
    }
    return *this;
}

const String& Exception::getMessage() const { return _rep ? _rep->message : String::EMPTY; }

IndexOutOfBoundsException::IndexOutOfBoundsException() : Exception("index out of bounds") {}

AlreadyExistsException::AlreadyExistsException(const String& name)
    : Exception("already exists: " + name) {}

InvalidNameException::InvalidNameException(const String& name)
    : Exception("The CIM name is not valid: " + name) {}

InvalidNamespaceNameException::InvalidNamespaceNameException(const String& name)
    : Exception("invalid CIM namespace name: " + name) {}

UninitializedObjectException::UninitializedObjectException() : Exception("uninitialized object") {}

TypeMismatchException::TypeMismatchException() : Exception("type mismatch") {}

TypeMismatchException::TypeMismatchException(const String& message)
    : Exception("type mismatch: " + message) {}

DynamicCastFailedException::DynamicCastFailedException() : Exception("dynamic cast failed") {}

InvalidDateTimeFormatException::InvalidDateTimeFormatException()
    : Exception("invalid datetime format") {}

MalformedObjectNameException::MalformedObjectNameException(const String& objectName)
    : Exception("malformed object name: " + objectName) {}

BindFailedException::BindFailedException(const String& message)
    : Exception("Bind failed: " + message) {}

InvalidLocatorException::InvalidLocatorException(const String& locator)
    : Exception("Invalid locator: " + locator) {}

CannotCreateSocketException::CannotCreateSocketException() : Exception("Cannot create socket") {}

CannotConnectException::CannotConnectException(const String& message)
    : Exception("Cannot connect: " + message) {}

AlreadyConnectedException::AlreadyConnectedException() : Exception("already connected") {}

NotConnectedException::NotConnectedException() : Exception("not connected") {}

ConnectionTimeoutException::ConnectionTimeoutException() : Exception("connection timed out") {}

SSLException::SSLException(const String& message) : Exception("SSL Exception: " + message) {}

DateTimeOutOfRangeException::DateTimeOutOfRangeException(const String& message)
    : Exception("DateTime is out of range : " + message) {}

InvalidEnumerationContextException::InvalidEnumerationContextException()
    : Exception("Invalid Enumeration Context") {}

NullPointer::NullPointer() : Exception("null pointer") {}

PEGASUS_NAMESPACE_END
