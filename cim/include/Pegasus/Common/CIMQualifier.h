#ifndef PEGASUS_COMMON_CIMQUALIFIER_H
#define PEGASUS_COMMON_CIMQUALIFIER_H

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMValue;
class CIMConstQualifier;
class CIMQualifierRep;

// A qualifier attached to a class, instance, property, method or parameter.
// Copies share one qualifier; clone() separates them.
class PEGASUS_COMMON_LINKAGE CIMQualifier {
public:
    CIMQualifier();
    CIMQualifier(const CIMQualifier& x);
    CIMQualifier(const CIMName& name, const CIMValue& value, const CIMFlavor& flavor = CIMFlavor(),
                 Boolean propagated = false);
    ~CIMQualifier();

    CIMQualifier& operator=(const CIMQualifier& x);

    const CIMName& getName() const;
    void setName(const CIMName& name);
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    void setValue(const CIMValue& value);
    void setFlavor(const CIMFlavor& flavor);
    void unsetFlavor(const CIMFlavor& flavor);
    const CIMFlavor& getFlavor() const;
    Boolean getPropagated() const;
    void setPropagated(Boolean propagated);
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifier& x) const;
    CIMQualifier clone() const;

private:
    CIMQualifierRep* _rep;

    friend class CIMConstQualifier;
    friend class RepAccess;
};

// Read-only view of a qualifier.
class PEGASUS_COMMON_LINKAGE CIMConstQualifier {
public:
    CIMConstQualifier();
    CIMConstQualifier(const CIMConstQualifier& x);
    CIMConstQualifier(const CIMQualifier& x);
    CIMConstQualifier(const CIMName& name, const CIMValue& value,
                      const CIMFlavor& flavor = CIMFlavor(), Boolean propagated = false);
    ~CIMConstQualifier();

    CIMConstQualifier& operator=(const CIMConstQualifier& x);
    CIMConstQualifier& operator=(const CIMQualifier& x);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    Boolean getPropagated() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifier& x) const;
    CIMQualifier clone() const;

private:
    CIMQualifierRep* _rep;

    friend class CIMQualifier;
    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMValue.h>

#endif
