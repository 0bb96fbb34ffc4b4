#ifndef PEGASUS_COMMON_CIMCLASS_H
#define PEGASUS_COMMON_CIMCLASS_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMObject;
class CIMConstObject;
class CIMConstClass;
class CIMProperty;
class CIMConstProperty;
class CIMQualifier;
class CIMConstQualifier;
class CIMMethod;
class CIMConstMethod;
class CIMObjectPath;
class CIMObjectRep;

// A class definition: superclass, qualifiers, properties and methods.
// Copies share one definition; clone() separates them.
class PEGASUS_COMMON_LINKAGE CIMClass {
public:
    CIMClass();
    CIMClass(const CIMClass& x);
    PEGASUS_EXPLICIT CIMClass(const CIMObject& x);
    CIMClass(const CIMName& className, const CIMName& superClassName = CIMName());
    CIMClass& operator=(const CIMClass& x);
    ~CIMClass();

    Boolean isAssociation() const;
    Boolean isAbstract() const;

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    void setPath(const CIMObjectPath& path);
    const CIMName& getSuperClassName() const;
    void setSuperClassName(const CIMName& superClassName);

    CIMClass& addQualifier(const CIMQualifier& qualifier);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    CIMClass& addProperty(const CIMProperty& x);
    Uint32 findProperty(const CIMName& name) const;
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    CIMClass& addMethod(const CIMMethod& x);
    Uint32 findMethod(const CIMName& name) const;
    CIMMethod getMethod(Uint32 index);
    CIMConstMethod getMethod(Uint32 index) const;
    void removeMethod(Uint32 index);
    Uint32 getMethodCount() const;

    void getKeyNames(Array<CIMName>& keyNames) const;
    Boolean hasKeys() const;

    CIMClass clone() const;
    Boolean identical(const CIMConstClass& x) const;
    Boolean isUninitialized() const;

private:
    CIMObjectRep* _rep;

    friend class CIMConstClass;
    friend class CIMObject;
    friend class CIMConstObject;
    friend class RepAccess;
};

// Read-only view of a class definition.
class PEGASUS_COMMON_LINKAGE CIMConstClass {
public:
    CIMConstClass();
    CIMConstClass(const CIMConstClass& x);
    CIMConstClass(const CIMClass& x);
    PEGASUS_EXPLICIT CIMConstClass(const CIMObject& x);
    PEGASUS_EXPLICIT CIMConstClass(const CIMConstObject& x);
    CIMConstClass(const CIMName& className, const CIMName& superClassName = CIMName());
    CIMConstClass& operator=(const CIMConstClass& x);
    CIMConstClass& operator=(const CIMClass& x);
    ~CIMConstClass();

    Boolean isAssociation() const;
    Boolean isAbstract() const;

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    const CIMName& getSuperClassName() const;

    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;

    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;

    Uint32 findMethod(const CIMName& name) const;
    CIMConstMethod getMethod(Uint32 index) const;
    Uint32 getMethodCount() const;

    void getKeyNames(Array<CIMName>& keyNames) const;
    Boolean hasKeys() const;

    CIMClass clone() const;
    Boolean identical(const CIMConstClass& x) const;
    Boolean isUninitialized() const;

private:
    CIMObjectRep* _rep;

    friend class CIMClass;
    friend class CIMObject;
    friend class CIMConstObject;
    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#endif
