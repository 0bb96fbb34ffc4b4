// Internal: the ordered qualifiers of a class, instance, property, method or
// parameter. Names are unique, compared without case.
#ifndef Pegasus_CIMQualifierList_h
#define Pegasus_CIMQualifierList_h

#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Config.h>
#include <memory>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

class PEGASUS_HIDDEN_LINKAGE CIMQualifierList {
public:
    void add(const CIMQualifier& qualifier);
    Uint32 find(const CIMName& name) const;
    CIMQualifier& get(Uint32 index);
    const CIMQualifier& get(Uint32 index) const;
    void remove(Uint32 index);
    Uint32 size() const { return _items ? Uint32(_items->size()) : 0; }
    void clear() { _items.reset(); }

    // Clones every qualifier, for the deep copy of the element holding them.
    CIMQualifierList clone() const;
    // Same qualifiers in any order.
    Boolean identical(const CIMQualifierList& x) const;
    // A Boolean qualifier that is present, non-null and TRUE (Key, Abstract...).
    Boolean isTrue(const CIMName& name) const;

private:
    // Allocated with the first qualifier: most properties of an instance
    // have none, and an empty list should cost one pointer.
    std::unique_ptr<std::vector<CIMQualifier>> _items;
};

PEGASUS_NAMESPACE_END

#endif
