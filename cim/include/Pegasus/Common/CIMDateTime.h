// CIM date-time values: either a point in time with a UTC offset, or an
// interval. Both have a fixed 25-character text form and may carry trailing
// wildcard fields.
#ifndef Pegasus_CIMDateTime_h
#define Pegasus_CIMDateTime_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

struct CIMDateTimeRep;

class PEGASUS_COMMON_LINKAGE CIMDateTime {
public:
    CIMDateTime();
    CIMDateTime(const CIMDateTime& x);
    CIMDateTime(const String& str);
    CIMDateTime(Uint64 usec, Boolean isInterval);
    ~CIMDateTime();

    CIMDateTime& operator=(const CIMDateTime& x);

    String toString() const;
    void set(const String& str);
    void clear();

    static CIMDateTime getCurrentDateTime();
    static Sint64 getDifference(CIMDateTime startTime, CIMDateTime finishTime);

    Boolean isInterval() const;
    Boolean isInterval();
    Boolean equal(const CIMDateTime& x) const;
    Uint64 toMicroSeconds() const;

    CIMDateTime operator+(const CIMDateTime& x) const;
    CIMDateTime& operator+=(const CIMDateTime& x);
    CIMDateTime operator-(const CIMDateTime& x) const;
    CIMDateTime& operator-=(const CIMDateTime& x);
    CIMDateTime operator*(Uint64 x) const;
    CIMDateTime& operator*=(Uint64 x);
    CIMDateTime operator/(Uint64 num) const;
    CIMDateTime& operator/=(Uint64 num);
    Uint64 operator/(const CIMDateTime& cdt) const;

    Boolean operator<(const CIMDateTime& x) const;
    Boolean operator<=(const CIMDateTime& x) const;
    Boolean operator>(const CIMDateTime& x) const;
    Boolean operator>=(const CIMDateTime& x) const;
    Boolean operator!=(const CIMDateTime& x) const;

private:
    CIMDateTimeRep* _rep;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMDateTime& x, const CIMDateTime& y);

PEGASUS_NAMESPACE_END

#endif
