// Internal: the ordered qualifiers of a class, instance, property, method or
// parameter. Names are unique, compared without case.
#ifndef Pegasus_CIMQualifierList_h
#define Pegasus_CIMQualifierList_h

#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Config.h>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

class PEGASUS_HIDDEN_LINKAGE CIMQualifierList {
public:
    void add(const CIMQualifier& qualifier);
    Uint32 find(const CIMName& name) const;
    CIMQualifier& get(Uint32 index);
    const CIMQualifier& get(Uint32 index) const;
    void remove(Uint32 index);
    Uint32 size() const { return Uint32(_items.size()); }
    void clear() { _items.clear(); }

    // Clones every qualifier, for the deep copy of the element holding them.
    CIMQualifierList clone() const;
    // Same qualifiers in any order.
    Boolean identical(const CIMQualifierList& x) const;
    // A Boolean qualifier that is present, non-null and TRUE (Key, Abstract...).
    Boolean isTrue(const CIMName& name) const;

private:
    std::vector<CIMQualifier> _items;
};

PEGASUS_NAMESPACE_END

#endif
