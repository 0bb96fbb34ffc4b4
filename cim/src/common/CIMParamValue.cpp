#include "ArrayImpl.h"
#include "RepAccess.h"
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<CIMParamValue>;

class CIMParamValueRep : public SharedRep {
public:
    String parameterName;
    CIMValue value;
    Boolean isTyped = true;
};

CIMParamValue::CIMParamValue() : _rep(nullptr) {}

CIMParamValue::CIMParamValue(const CIMParamValue& x) : _rep(x._rep) { retainRep(_rep); }

CIMParamValue& CIMParamValue::operator=(const CIMParamValue& x) {
    assignRep(_rep, x._rep);
    return *this;
}

CIMParamValue::CIMParamValue(String parameterName, CIMValue value, Boolean isTyped)
    : _rep(nullptr) {
    if (parameterName.size() == 0)
        throw UninitializedObjectException();
    _rep = new CIMParamValueRep();
    _rep->parameterName = parameterName;
    _rep->value = value;
    _rep->isTyped = isTyped;
}

CIMParamValue::~CIMParamValue() { releaseRep(_rep); }

String CIMParamValue::getParameterName() const { return checkedRep(_rep)->parameterName; }

CIMValue CIMParamValue::getValue() const { return checkedRep(_rep)->value; }

Boolean CIMParamValue::isTyped() const { return checkedRep(_rep)->isTyped; }

void CIMParamValue::setParameterName(String& parameterName) {
    CIMParamValueRep* rep = checkedRep(_rep);
    if (parameterName.size() == 0)
        throw UninitializedObjectException();
    rep->parameterName = parameterName;
}

void CIMParamValue::setValue(CIMValue& value) { checkedRep(_rep)->value = value; }

void CIMParamValue::setIsTyped(Boolean isTyped) { checkedRep(_rep)->isTyped = isTyped; }

CIMParamValue CIMParamValue::clone() const {
    // The value is a value type already; copying the rep copies everything.
    return RepAccess::adopt<CIMParamValue>(new CIMParamValueRep(*checkedRep(_rep)));
}

Boolean CIMParamValue::isUninitialized() const { return _rep == nullptr; }

PEGASUS_NAMESPACE_END
