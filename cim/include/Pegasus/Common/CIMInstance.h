#ifndef PEGASUS_COMMON_CIMINSTANCE_H
#define PEGASUS_COMMON_CIMINSTANCE_H

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMObject;
class CIMConstObject;
class CIMClass;
class CIMConstClass;
class CIMConstInstance;
class CIMProperty;
class CIMConstProperty;
class CIMQualifier;
class CIMConstQualifier;
class CIMObjectPath;
class CIMPropertyList;
class CIMObjectRep;

// An instance of a CIM class: its path, qualifiers and properties. Copies
// share one instance (no copy-on-write); clone() separates them.
class PEGASUS_COMMON_LINKAGE CIMInstance {
public:
    CIMInstance();
    CIMInstance(const CIMInstance& x);
    explicit CIMInstance(const CIMObject& x);
    CIMInstance(const CIMName& className);
    CIMInstance& operator=(const CIMInstance& x);
    // A handle moved from is left uninitialised; lists of instances grow
    // without touching the shared counts.
    CIMInstance(CIMInstance&& x) noexcept : _rep(x._rep) { x._rep = nullptr; }
    CIMInstance& operator=(CIMInstance&& x) noexcept {
        CIMObjectRep* mine = _rep;
        _rep = x._rep;
        x._rep = mine;
        return *this;
    }
    ~CIMInstance();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    void setPath(const CIMObjectPath& path);

    CIMInstance& addQualifier(const CIMQualifier& qualifier);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    CIMInstance& addProperty(const CIMProperty& x);
    Uint32 findProperty(const CIMName& name) const;
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    CIMObjectPath buildPath(const CIMConstClass& cimClass) const;
    CIMInstance clone() const;
    Boolean identical(const CIMConstInstance& x) const;
    Boolean isUninitialized() const;

    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);

private:
    CIMObjectRep* _rep;

    friend class CIMConstInstance;
    friend class CIMObject;
    friend class CIMConstObject;
    friend class RepAccess;
};

// Read-only view of an instance.
class PEGASUS_COMMON_LINKAGE CIMConstInstance {
public:
    CIMConstInstance();
    CIMConstInstance(const CIMConstInstance& x);
    CIMConstInstance(const CIMInstance& x);
    explicit CIMConstInstance(const CIMObject& x);
    explicit CIMConstInstance(const CIMConstObject& x);
    CIMConstInstance(const CIMName& className);
    CIMConstInstance& operator=(const CIMConstInstance& x);
    CIMConstInstance& operator=(const CIMInstance& x);
    ~CIMConstInstance();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;

    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;

    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;

    CIMObjectPath buildPath(const CIMConstClass& cimClass) const;
    CIMInstance clone() const;
    Boolean identical(const CIMConstInstance& x) const;
    Boolean isUninitialized() const;

private:
    CIMObjectRep* _rep;

    friend class CIMInstance;
    friend class CIMObject;
    friend class CIMConstObject;
    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifier.h>

#endif
