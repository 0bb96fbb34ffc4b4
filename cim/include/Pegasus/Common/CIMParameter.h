#ifndef PEGASUS_COMMON_CIMPARAMETER_H
#define PEGASUS_COMMON_CIMPARAMETER_H

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMQualifier;
class CIMConstQualifier;
class CIMConstParameter;
class CIMParameterRep;

// The declaration of one parameter of a method. Copies share one parameter.
class PEGASUS_COMMON_LINKAGE CIMParameter {
public:
    CIMParameter();
    CIMParameter(const CIMParameter& x);
    CIMParameter(const CIMName& name, CIMType type, Boolean isArray = false, Uint32 arraySize = 0,
                 const CIMName& referenceClassName = CIMName());
    ~CIMParameter();

    CIMParameter& operator=(const CIMParameter& x);

    const CIMName& getName() const;
    void setName(const CIMName& name);
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    CIMType getType() const;

    CIMParameter& addQualifier(const CIMQualifier& x);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    Boolean isUninitialized() const;
    Boolean identical(const CIMConstParameter& x) const;
    CIMParameter clone() const;

private:
    CIMParameterRep* _rep;

    friend class CIMConstParameter;
    friend class RepAccess;
};

// Read-only view of a parameter declaration.
class PEGASUS_COMMON_LINKAGE CIMConstParameter {
public:
    CIMConstParameter();
    CIMConstParameter(const CIMConstParameter& x);
    CIMConstParameter(const CIMParameter& x);
    CIMConstParameter(const CIMName& name, CIMType type, Boolean isArray = false,
                      Uint32 arraySize = 0, const CIMName& referenceClassName = CIMName());
    ~CIMConstParameter();

    CIMConstParameter& operator=(const CIMConstParameter& x);
    CIMConstParameter& operator=(const CIMParameter& x);

    const CIMName& getName() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    CIMType getType() const;

    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;

    Boolean isUninitialized() const;
    Boolean identical(const CIMConstParameter& x) const;
    CIMParameter clone() const;

private:
    CIMParameterRep* _rep;

    friend class CIMParameter;
    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMQualifier.h>

#endif
