#ifndef PEGASUS_COMMON_CIMQUALIFIERDECL_H
#define PEGASUS_COMMON_CIMQUALIFIERDECL_H

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMScope.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMValue;
class CIMConstQualifierDecl;
class CIMQualifierDeclRep;

// The schema declaration of a qualifier: its type, default value, where it
// may be used and how it propagates. Copies share one declaration.
class PEGASUS_COMMON_LINKAGE CIMQualifierDecl {
public:
    CIMQualifierDecl();
    CIMQualifierDecl(const CIMQualifierDecl& x);
    CIMQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                     const CIMFlavor& flavor = CIMFlavor(), Uint32 arraySize = 0);
    ~CIMQualifierDecl();

    CIMQualifierDecl& operator=(const CIMQualifierDecl& x);

    const CIMName& getName() const;
    void setName(const CIMName& name);
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    void setValue(const CIMValue& value);
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifierDecl& x) const;
    CIMQualifierDecl clone() const;

private:
    CIMQualifierDeclRep* _rep;

    friend class CIMConstQualifierDecl;
    friend class RepAccess;
};

// Read-only view of a qualifier declaration.
class PEGASUS_COMMON_LINKAGE CIMConstQualifierDecl {
public:
    CIMConstQualifierDecl();
    CIMConstQualifierDecl(const CIMConstQualifierDecl& x);
    CIMConstQualifierDecl(const CIMQualifierDecl& x);
    CIMConstQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                          const CIMFlavor& flavor = CIMFlavor(), Uint32 arraySize = 0);
    ~CIMConstQualifierDecl();

    CIMConstQualifierDecl& operator=(const CIMConstQualifierDecl& x);
    CIMConstQualifierDecl& operator=(const CIMQualifierDecl& x);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifierDecl& x) const;
    CIMQualifierDecl clone() const;

private:
    CIMQualifierDeclRep* _rep;

    friend class CIMQualifierDecl;
    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMValue.h>

#endif
