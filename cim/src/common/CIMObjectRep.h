// Internal: the one representation behind CIMInstance, CIMClass and
// CIMObject (and their read-only twins), so that converting between them
// shares state instead of copying it.
#ifndef Pegasus_CIMObjectRep_h
#define Pegasus_CIMObjectRep_h

#include "CIMQualifierList.h"
#include "EncodingSlot.h"
#include "SharedRep.h"
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

class PEGASUS_HIDDEN_LINKAGE CIMObjectRep : public SharedRep {
public:
    enum Kind { INSTANCE, CLASS };

    CIMObjectRep(Kind kind, const CIMName& className, const CIMName& superClassName);
    // A deep copy: qualifiers, properties and methods are cloned.
    CIMObjectRep(const CIMObjectRep& x);
    ~CIMObjectRep();

    const CIMName& className() const { return path.getClassName(); }
    void setPath(const CIMObjectPath& newPath);

    void addProperty(const CIMProperty& property);
    Uint32 findProperty(const CIMName& name) const;
    CIMProperty& property(Uint32 index);
    const CIMProperty& property(Uint32 index) const;
    void removeProperty(Uint32 index);
    Uint32 propertyCount() const { return Uint32(properties.size()); }

    void addMethod(const CIMMethod& method);
    Uint32 findMethod(const CIMName& name) const;
    CIMMethod& method(Uint32 index);
    const CIMMethod& method(Uint32 index) const;
    void removeMethod(Uint32 index);
    Uint32 methodCount() const { return Uint32(methods.size()); }

    // Properties carrying a TRUE Key qualifier, in property order.
    Array<CIMName> keyNames() const;
    Boolean identical(const CIMObjectRep& x) const;

private:
    void shareKeyTexts();

public:
    Kind kind;
    CIMObjectPath path;
    CIMName superClassName;
    CIMQualifierList qualifiers;
    std::vector<CIMProperty> properties;
    std::vector<CIMMethod> methods;
    // An encoder's form of the instance (vexa/cim/KeptEncoding.h); dropped
    // by every change to the path or the properties held.
    EncodingSlot encoding;
};

PEGASUS_NAMESPACE_END

#endif
