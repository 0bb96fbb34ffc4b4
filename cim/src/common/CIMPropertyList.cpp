#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

class CIMPropertyListRep {
public:
    Boolean isNull = true;
    Array<CIMName> names;
    Array<Uint32> nameTags;
};

namespace {

void checkNames(const Array<CIMName>& names) {
    for (Uint32 i = 0; i < names.size(); i++) {
        if (names[i].isNull())
            throw UninitializedObjectException();
    }
}

} // namespace

CIMPropertyList::CIMPropertyList() : _rep(new CIMPropertyListRep()) {}

CIMPropertyList::CIMPropertyList(const CIMPropertyList& x)
    : _rep(new CIMPropertyListRep(*x._rep)) {}

CIMPropertyList::CIMPropertyList(const Array<CIMName>& propertyNames) : _rep(nullptr) {
    checkNames(propertyNames);
    _rep = new CIMPropertyListRep();
    _rep->isNull = false;
    _rep->names = propertyNames;
}

CIMPropertyList::~CIMPropertyList() { delete _rep; }

void CIMPropertyList::set(const Array<CIMName>& propertyNames) {
    checkNames(propertyNames);
    _rep->isNull = false;
    _rep->names = propertyNames;
    _rep->nameTags.clear();
}

CIMPropertyList& CIMPropertyList::operator=(const CIMPropertyList& x) {
    if (this != &x) {
        _rep->isNull = x._rep->isNull;
        _rep->names = x._rep->names;
        _rep->nameTags = x._rep->nameTags;
    }
    return *this;
}

void CIMPropertyList::clear() {
    _rep->isNull = true;
    _rep->names.clear();
    _rep->nameTags.clear();
}

Boolean CIMPropertyList::isNull() const { return _rep->isNull; }

Uint32 CIMPropertyList::size() const { return _rep->names.size(); }

const CIMName& CIMPropertyList::operator[](Uint32 index) const { return _rep->names[index]; }

Array<CIMName> CIMPropertyList::getPropertyNameArray() const { return _rep->names; }

Uint32 CIMPropertyList::getCIMNameTag(Uint32 index) const { return _rep->nameTags[index]; }

void CIMPropertyList::append(Array<String>& propertyListArray) {
    for (Uint32 i = 0; i < propertyListArray.size(); i++) {
        CIMName name(propertyListArray[i]);
        if (!contains(name))
            _rep->names.append(name);
    }
    _rep->isNull = false;
}

void CIMPropertyList::appendCIMNameTag(Uint32 nameTag) { _rep->nameTags.append(nameTag); }

Boolean CIMPropertyList::contains(const CIMName& name) const {
    for (Uint32 i = 0; i < _rep->names.size(); i++) {
        if (_rep->names[i].equal(name))
            return true;
    }
    return false;
}

Boolean CIMPropertyList::useThisProperty(const CIMName& name) const {
    return _rep->isNull || contains(name);
}

String CIMPropertyList::toString() const {
    if (_rep->isNull)
        return String("NULL");
    if (_rep->names.size() == 0)
        return String("EMPTY");
    String text;
    for (Uint32 i = 0; i < _rep->names.size(); i++) {
        if (i)
            text.append(String(", "));
        text.append(_rep->names[i].getString());
    }
    return text;
}

PEGASUS_NAMESPACE_END
