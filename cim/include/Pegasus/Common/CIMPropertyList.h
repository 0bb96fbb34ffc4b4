#ifndef PEGASUS_COMMON_CIMPROPERTYLIST_H
#define PEGASUS_COMMON_CIMPROPERTYLIST_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

class CIMPropertyListRep;

// The properties a request asks for. A NULL list means "every property"; an
// empty but non-NULL list means "none". Copies behave as independent values.
class PEGASUS_COMMON_LINKAGE CIMPropertyList {
public:
    CIMPropertyList();
    CIMPropertyList(const CIMPropertyList& x);
    CIMPropertyList(const Array<CIMName>& propertyNames);
    ~CIMPropertyList();

    void set(const Array<CIMName>& propertyNames);
    CIMPropertyList& operator=(const CIMPropertyList& x);
    void clear();
    Boolean isNull() const;
    Uint32 size() const;
    const CIMName& operator[](Uint32 index) const;
    Array<CIMName> getPropertyNameArray() const;
    Uint32 getCIMNameTag(Uint32 index) const;
    void append(Array<String>& propertyListArray);
    void appendCIMNameTag(Uint32 nameTag);
    Boolean contains(const CIMName& name) const;
    Boolean useThisProperty(const CIMName& name) const;
    String toString() const;

private:
    CIMPropertyListRep* _rep;
};

PEGASUS_NAMESPACE_END

#endif
