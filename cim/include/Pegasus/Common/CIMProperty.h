#ifndef PEGASUS_COMMON_CIMPROPERTY_H
#define PEGASUS_COMMON_CIMPROPERTY_H

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMValue;
class CIMQualifier;
class CIMConstQualifier;
class CIMConstProperty;
class CIMPropertyRep;

// A named, typed property of a class or instance. Copies share one property
// (a change through any copy is seen by all holders, including the instance
// that contains it); clone() separates them.
class PEGASUS_COMMON_LINKAGE CIMProperty {
public:
    CIMProperty();
    CIMProperty(const CIMProperty& x);
    CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                const CIMName& referenceClassName = CIMName(),
                const CIMName& classOrigin = CIMName(), Boolean propagated = false);
    // A handle moved from is left uninitialised; lists of properties grow
    // without touching the shared counts.
    CIMProperty(CIMProperty&& x) noexcept : _rep(x._rep) { x._rep = nullptr; }
    ~CIMProperty();

    CIMProperty& operator=(const CIMProperty& x);
    CIMProperty& operator=(CIMProperty&& x) noexcept {
        CIMPropertyRep* mine = _rep;
        _rep = x._rep;
        x._rep = mine;
        return *this;
    }

    const CIMName& getName() const;
    void setName(const CIMName& name);
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    void setValue(const CIMValue& value);
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    void setClassOrigin(const CIMName& classOrigin);
    Boolean getPropagated() const;
    void setPropagated(Boolean propagated);

    CIMProperty& addQualifier(const CIMQualifier& x);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    Boolean identical(const CIMConstProperty& x) const;
    CIMProperty clone() const;
    Boolean isUninitialized() const;

private:
    CIMPropertyRep* _rep;

    friend class CIMConstProperty;
    friend class RepAccess;
};

// Read-only view of a property.
class PEGASUS_COMMON_LINKAGE CIMConstProperty {
public:
    CIMConstProperty();
    CIMConstProperty(const CIMConstProperty& x);
    CIMConstProperty(const CIMProperty& x);
    CIMConstProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                     const CIMName& referenceClassName = CIMName(),
                     const CIMName& classOrigin = CIMName(), Boolean propagated = false);
    ~CIMConstProperty();

    CIMConstProperty& operator=(const CIMConstProperty& x);
    CIMConstProperty& operator=(const CIMProperty& x);

    const CIMName& getName() const;
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;

    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;

    Boolean identical(const CIMConstProperty& x) const;
    CIMProperty clone() const;
    Boolean isUninitialized() const;

private:
    CIMPropertyRep* _rep;

    friend class CIMProperty;
    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMValue.h>

#endif
