#ifndef PEGASUS_COMMON_CIMPARAMVALUE_H
#define PEGASUS_COMMON_CIMPARAMVALUE_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

class CIMValue;
class CIMParamValueRep;

// A named argument of a method call, as sent or returned. Copies share one
// parameter value; clone() separates them.
class PEGASUS_COMMON_LINKAGE CIMParamValue {
public:
    CIMParamValue();
    CIMParamValue(const CIMParamValue& x);
    CIMParamValue& operator=(const CIMParamValue& x);
    CIMParamValue(String parameterName, CIMValue value, Boolean isTyped = true);
    ~CIMParamValue();

    String getParameterName() const;
    CIMValue getValue() const;
    Boolean isTyped() const;
    void setParameterName(String& parameterName);
    void setValue(CIMValue& value);
    void setIsTyped(Boolean isTyped);
    CIMParamValue clone() const;
    Boolean isUninitialized() const;

private:
    CIMParamValueRep* _rep;

    friend class RepAccess;
};

PEGASUS_NAMESPACE_END

#include <Pegasus/Common/CIMValue.h>

#endif
