// Internal: what an Exception holds. Subclasses that carry more than a
// message (CIMException) derive from it and override clone(), so copying an
// Exception by its base class still copies everything. Such a subclass
// constructs its base with the protected Exception() (which leaves _rep
// null), then installs its own rep:
//
//     class CIMExceptionRep : public ExceptionRep { ...code, errors...;
//         ExceptionRep* clone() const override { return new CIMExceptionRep(*this); } };
//     CIMException::CIMException(CIMStatusCode code, const String& message) : Exception() {
//         _rep = new CIMExceptionRep(...);
//     }
//
// Exception's copy constructor, assignment and destructor then do the rest.
#ifndef Pegasus_ExceptionRep_h
#define Pegasus_ExceptionRep_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

class ExceptionRep {
public:
    ExceptionRep() = default;
    explicit ExceptionRep(const String& text) : message(text) {}
    ExceptionRep(const ExceptionRep&) = default;
    ExceptionRep& operator=(const ExceptionRep&) = delete;
    virtual ~ExceptionRep();

    virtual ExceptionRep* clone() const;

    String message;
};

PEGASUS_NAMESPACE_END

#endif
