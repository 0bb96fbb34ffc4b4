#include "CIMQualifierList.h"

PEGASUS_NAMESPACE_BEGIN

void CIMQualifierList::add(const CIMQualifier& qualifier) {
    if (qualifier.isUninitialized())
        throw UninitializedObjectException();
    if (find(qualifier.getName()) != PEG_NOT_FOUND)
        throw AlreadyExistsException("qualifier \"" + qualifier.getName().getString() + "\"");
    if (!_items)
        _items = std::make_unique<std::vector<CIMQualifier>>();
    _items->push_back(qualifier);
}

Uint32 CIMQualifierList::find(const CIMName& name) const {
    for (Uint32 i = 0; i < size(); i++) {
        if ((*_items)[i].getName().equal(name))
            return Uint32(i);
    }
    return PEG_NOT_FOUND;
}

CIMQualifier& CIMQualifierList::get(Uint32 index) {
    if (index >= size())
        throw IndexOutOfBoundsException();
    return (*_items)[index];
}

const CIMQualifier& CIMQualifierList::get(Uint32 index) const {
    if (index >= size())
        throw IndexOutOfBoundsException();
    return (*_items)[index];
}

void CIMQualifierList::remove(Uint32 index) {
    if (index >= size())
        throw IndexOutOfBoundsException();
    _items->erase(_items->begin() + index);
}

CIMQualifierList CIMQualifierList::clone() const {
    CIMQualifierList copy;
    if (size() == 0)
        return copy;
    copy._items = std::make_unique<std::vector<CIMQualifier>>();
    copy._items->reserve(_items->size());
    for (const CIMQualifier& qualifier : *_items)
        copy._items->push_back(qualifier.clone());
    return copy;
}

Boolean CIMQualifierList::identical(const CIMQualifierList& x) const {
    if (size() != x.size())
        return false;
    // In order, as OpenPegasus compares them.
    for (Uint32 i = 0; i < size(); i++) {
        if (!(*_items)[i].identical((*x._items)[i]))
            return false;
    }
    return true;
}

Boolean CIMQualifierList::isTrue(const CIMName& name) const {
    Uint32 index = find(name);
    if (index == PEG_NOT_FOUND)
        return false;
    const CIMValue& value = (*_items)[index].getValue();
    if (value.getType() != CIMTYPE_BOOLEAN || value.isArray() || value.isNull())
        return false;
    Boolean flag = false;
    value.get(flag);
    return flag;
}

PEGASUS_NAMESPACE_END
