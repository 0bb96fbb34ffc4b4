#ifndef PEGASUS_COMMON_CIMOBJECT_H
#define PEGASUS_COMMON_CIMOBJECT_H

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

class CIMClass;
class CIMConstClass;
class CIMInstance;
class CIMConstInstance;
class CIMConstObject;
class CIMProperty;
class CIMConstProperty;
class CIMQualifier;
class CIMConstQualifier;
class CIMObjectPath;
class CIMObjectRep;

// Either a class or an instance, seen through their common members. A
// CIMObject made from a class or instance shares its representation, so
// changes through one are seen through the other.
class PEGASUS_COMMON_LINKAGE CIMObject {
public:
    CIMObject();
    CIMObject(const CIMObject& x);
    CIMObject(const CIMClass& x);
    CIMObject(const CIMInstance& x);
    CIMObject& operator=(const CIMObject& x);
    ~CIMObject();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    void setPath(const CIMObjectPath& path);

    CIMObject& addQualifier(const CIMQualifier& qualifier);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    CIMObject& addProperty(const CIMProperty& x);
    Uint32 findProperty(const CIMName& name) const;
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    CIMObject clone() const;
    Boolean identical(const CIMConstObject& x) const;
    Boolean isUninitialized() const;
    String toString() const;
    Boolean isClass() const;
    Boolean isInstance() const;

private:
    CIMObjectRep* _rep;

    friend class CIMConstObject;
    friend class CIMInstance;
    friend class CIMConstInstance;
    friend class CIMClass;
    friend class CIMConstClass;
    friend class RepAccess;
};

// Read-only view of a class or instance.
class PEGASUS_COMMON_LINKAGE CIMConstObject {
public:
    CIMConstObject();
    CIMConstObject(const CIMConstObject& x);
    CIMConstObject(const CIMObject& x);
    CIMConstObject(const CIMClass& x);
    CIMConstObject(const CIMConstClass& x);
    CIMConstObject(const CIMInstance& x);
    CIMConstObject(const CIMConstInstance& x);
    CIMConstObject& operator=(const CIMConstObject& x);
    ~CIMConstObject();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;

    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;

    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;

    CIMObject clone() const;
    Boolean identical(const CIMConstObject& x) const;
    Boolean isUninitialized() const;
    String toString() const;
    Boolean isClass() const;
    Boolean isInstance() const;

private:
    CIMObjectRep* _rep;

    friend class CIMObject;
    friend class CIMInstance;
    friend class CIMConstInstance;
    friend class CIMClass;
    friend class CIMConstClass;
    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#endif
