#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>
#include <cstdio>
#include <ctime>

PEGASUS_NAMESPACE_BEGIN

// A timestamp keeps its fields exactly as written (local time) as a count of
// microseconds since 0000-01-01 00:00:00, next to its UTC offset; an
// interval keeps its length. `wildcards` counts the trailing digit positions
// of the text form that are '*'.
struct CIMDateTimeRep {
    Uint64 usec = 0;
    Sint32 utcOffset = 0;
    Uint32 wildcards = 0;
    bool interval = true;
};

namespace {

constexpr Uint64 USEC_PER_SECOND = 1000000ULL;
constexpr Uint64 USEC_PER_MINUTE = 60 * USEC_PER_SECOND;
constexpr Uint64 USEC_PER_HOUR = 60 * USEC_PER_MINUTE;
constexpr Uint64 USEC_PER_DAY = 24 * USEC_PER_HOUR;
constexpr Uint64 MAX_INTERVAL_DAYS = 100000000ULL;
constexpr Uint32 MAX_YEAR = 9999;

// Offsets into the 25-character text form.
const Uint32 TEXT_LENGTH = 25;
const Uint32 DOT_POSITION = 14;
const Uint32 SIGN_POSITION = 21;
const Uint32 DIGIT_POSITIONS = 20;

struct Fields {
    Uint32 year = 0; // timestamps
    Uint32 month = 1;
    Uint32 day = 1; // day of month for timestamps, day count for intervals
    Uint32 hours = 0;
    Uint32 minutes = 0;
    Uint32 seconds = 0;
    Uint32 microseconds = 0;
};

constexpr bool isLeapYear(Uint64 year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

Uint32 daysInMonth(Uint64 year, Uint32 month) {
    static const Uint32 days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2 && isLeapYear(year))
        return 29;
    return days[month - 1];
}

// Days from 0000-01-01 to January 1st of `year` (proleptic Gregorian; year 0
// is a leap year).
constexpr Uint64 daysBeforeYear(Uint64 year) {
    if (year == 0)
        return 0;
    Uint64 before = year - 1;
    return 365 * year + before / 4 - before / 100 + before / 400 + 1;
}

Uint64 daysBeforeMonth(Uint64 year, Uint32 month) {
    Uint64 days = 0;
    for (Uint32 m = 1; m < month; m++)
        days += daysInMonth(year, m);
    return days;
}

constexpr Uint64 TIMESTAMP_LIMIT = daysBeforeYear(MAX_YEAR + 1) * USEC_PER_DAY;
constexpr Uint64 INTERVAL_LIMIT = MAX_INTERVAL_DAYS * USEC_PER_DAY;

Uint64 timeOfDay(const Fields& f) {
    return f.hours * USEC_PER_HOUR + f.minutes * USEC_PER_MINUTE + f.seconds * USEC_PER_SECOND +
           f.microseconds;
}

Uint64 toUsec(const Fields& f, bool interval) {
    Uint64 days =
        interval ? f.day : daysBeforeYear(f.year) + daysBeforeMonth(f.year, f.month) + f.day - 1;
    return days * USEC_PER_DAY + timeOfDay(f);
}

Fields toFields(Uint64 usec, bool interval) {
    Fields f;
    Uint64 days = usec / USEC_PER_DAY;
    Uint64 rest = usec % USEC_PER_DAY;
    f.hours = Uint32(rest / USEC_PER_HOUR);
    rest %= USEC_PER_HOUR;
    f.minutes = Uint32(rest / USEC_PER_MINUTE);
    rest %= USEC_PER_MINUTE;
    f.seconds = Uint32(rest / USEC_PER_SECOND);
    f.microseconds = Uint32(rest % USEC_PER_SECOND);
    if (interval) {
        f.day = Uint32(days);
        return f;
    }
    Uint64 year = days * 400 / 146097;
    while (daysBeforeYear(year + 1) <= days)
        year++;
    while (daysBeforeYear(year) > days)
        year--;
    days -= daysBeforeYear(year);
    Uint32 month = 1;
    while (days >= daysInMonth(year, month)) {
        days -= daysInMonth(year, month);
        month++;
    }
    f.year = Uint32(year);
    f.month = month;
    f.day = Uint32(days) + 1;
    return f;
}

// Wildcards may cover any trailing part of the microseconds, or whole
// fields from the right.
bool wildcardCountAllowed(Uint32 count, bool interval) {
    if (count <= 6)
        return true;
    switch (count) {
    case 8:
    case 10:
    case 12:
    case 20:
        return true;
    case 14:
    case 16:
        return !interval;
    default:
        return false;
    }
}

// Resets every field a wildcard count covers to its smallest value.
Fields maskFields(Fields f, Uint32 wildcards, bool interval) {
    if (wildcards == 0)
        return f;
    Uint32 scale = 1;
    for (Uint32 i = 0; i < wildcards && i < 6; i++)
        scale *= 10;
    f.microseconds = f.microseconds / scale * scale;
    if (wildcards >= 8)
        f.seconds = 0;
    if (wildcards >= 10)
        f.minutes = 0;
    if (wildcards >= 12)
        f.hours = 0;
    if (interval) {
        if (wildcards >= 20)
            f.day = 0;
        return f;
    }
    if (wildcards >= 14)
        f.day = 1;
    if (wildcards >= 16)
        f.month = 1;
    if (wildcards >= 20)
        f.year = 0;
    return f;
}

Uint64 maskUsec(Uint64 usec, Uint32 wildcards, bool interval) {
    if (wildcards == 0)
        return usec;
    return toUsec(maskFields(toFields(usec, interval), wildcards, interval), interval);
}

// The moment in UTC, in microseconds since year 0; may be negative for the
// first hours of year 0 with a positive offset.
Sint64 utcUsec(const CIMDateTimeRep& rep) {
    if (rep.interval)
        return Sint64(rep.usec);
    return Sint64(rep.usec) - Sint64(rep.utcOffset) * Sint64(USEC_PER_MINUTE);
}

Uint32 digitPosition(Uint32 digitIndex) {
    return digitIndex < DOT_POSITION ? digitIndex : digitIndex + 1;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

Uint32 number(const char* text, Uint32 start, Uint32 length) {
    Uint32 value = 0;
    for (Uint32 i = start; i < start + length; i++)
        value = value * 10 + Uint32(text[i] - '0');
    return value;
}

CIMDateTimeRep parse(const String& str) {
    if (str.size() != TEXT_LENGTH)
        throw InvalidDateTimeFormatException();
    char text[TEXT_LENGTH + 1];
    const Char16* units = str.getChar16Data();
    for (Uint32 i = 0; i < TEXT_LENGTH; i++) {
        Uint16 unit = units[i];
        if (unit > 127)
            throw InvalidDateTimeFormatException();
        text[i] = char(unit);
    }
    text[TEXT_LENGTH] = 0;

    char sign = text[SIGN_POSITION];
    if (sign != '+' && sign != '-' && sign != ':')
        throw InvalidDateTimeFormatException();
    if (text[DOT_POSITION] != '.')
        throw InvalidDateTimeFormatException();
    CIMDateTimeRep rep;
    rep.interval = sign == ':';
    for (Uint32 i = SIGN_POSITION + 1; i < TEXT_LENGTH; i++) {
        if (rep.interval ? text[i] != '0' : !isDigit(text[i]))
            throw InvalidDateTimeFormatException();
    }

    Uint32 wildcards = 0;
    for (Uint32 d = 0; d < DIGIT_POSITIONS; d++) {
        char c = text[digitPosition(d)];
        if (c == '*') {
            wildcards++;
        } else if (!isDigit(c) || wildcards != 0) {
            throw InvalidDateTimeFormatException();
        }
    }
    if (!wildcardCountAllowed(wildcards, rep.interval))
        throw InvalidDateTimeFormatException();
    // Read wildcarded positions as zeros; the mask below settles them.
    for (Uint32 d = DIGIT_POSITIONS - wildcards; d < DIGIT_POSITIONS; d++)
        text[digitPosition(d)] = '0';
    rep.wildcards = wildcards;

    Fields f;
    bool outOfRange = false;
    if (rep.interval) {
        f.day = number(text, 0, 8);
    } else {
        f.year = number(text, 0, 4);
        f.month = number(text, 4, 2);
        f.day = number(text, 6, 2);
        if (wildcards < 16 && (f.month < 1 || f.month > 12))
            outOfRange = true;
        else if (wildcards < 14 && (f.day < 1 || f.day > daysInMonth(f.year, f.month)))
            outOfRange = true;
        Sint32 offset = Sint32(number(text, SIGN_POSITION + 1, 3));
        rep.utcOffset = sign == '-' ? -offset : offset;
    }
    f.hours = number(text, 8, 2);
    f.minutes = number(text, 10, 2);
    f.seconds = number(text, 12, 2);
    f.microseconds = number(text, DOT_POSITION + 1, 6);
    if (f.hours > 23 || f.minutes > 59 || f.seconds > 59)
        outOfRange = true;
    if (outOfRange)
        throw DateTimeOutOfRangeException(str);
    rep.usec = toUsec(maskFields(f, wildcards, rep.interval), rep.interval);
    return rep;
}

// Writes `value` in exactly `width` digits, zero-padded; false when it has
// more. Values are written often enough (every datetime of every answer)
// that snprintf's format parsing shows.
bool putDigits(char*& at, Uint32 value, int width) {
    for (int i = width - 1; i >= 0; i--) {
        at[i] = char('0' + value % 10);
        value /= 10;
    }
    at += width;
    return value == 0;
}

String format(const CIMDateTimeRep& rep) {
    Fields f = toFields(rep.usec, rep.interval);
    char text[64];
    char* at = text;
    bool fits = true;
    const Sint32 offset = rep.utcOffset < 0 ? -rep.utcOffset : rep.utcOffset;
    if (rep.interval) {
        fits = putDigits(at, f.day, 8) && putDigits(at, f.hours, 2) &&
               putDigits(at, f.minutes, 2) && putDigits(at, f.seconds, 2);
        *at++ = '.';
        fits = fits && putDigits(at, f.microseconds, 6);
        for (char c : {':', '0', '0', '0'})
            *at++ = c;
    } else {
        fits = putDigits(at, f.year, 4) && putDigits(at, f.month, 2) && putDigits(at, f.day, 2) &&
               putDigits(at, f.hours, 2) && putDigits(at, f.minutes, 2) &&
               putDigits(at, f.seconds, 2);
        *at++ = '.';
        fits = fits && putDigits(at, f.microseconds, 6);
        *at++ = rep.utcOffset < 0 ? '-' : '+';
        fits = fits && putDigits(at, Uint32(offset), 3);
    }
    *at = '\0';
    if (!fits) {
        // Out of the usual ranges the digits are written in full, as before.
        if (rep.interval)
            std::snprintf(text, sizeof(text), "%08u%02u%02u%02u.%06u:000", f.day, f.hours,
                          f.minutes, f.seconds, f.microseconds);
        else
            std::snprintf(text, sizeof(text), "%04u%02u%02u%02u%02u%02u.%06u%c%03d", f.year,
                          f.month, f.day, f.hours, f.minutes, f.seconds, f.microseconds,
                          rep.utcOffset < 0 ? '-' : '+', offset);
    }
    for (Uint32 d = DIGIT_POSITIONS - rep.wildcards; d < DIGIT_POSITIONS; d++)
        text[digitPosition(d)] = '*';
    return String(text);
}

void checkRange(Uint64 usec, bool interval) {
    if (usec >= (interval ? INTERVAL_LIMIT : TIMESTAMP_LIMIT)) {
        char text[32];
        std::snprintf(text, sizeof(text), "%llu", static_cast<unsigned long long>(usec));
        throw DateTimeOutOfRangeException(String(text));
    }
}

// Orders two values of the same kind by the moment (or length) they stand
// for; with wildcards, only the fields both of them spell out count.
int compareRep(const CIMDateTimeRep& a, const CIMDateTimeRep& b) {
    if (a.interval != b.interval)
        throw TypeMismatchException();
    Sint64 x = utcUsec(a);
    Sint64 y = utcUsec(b);
    Uint32 wildcards = a.wildcards > b.wildcards ? a.wildcards : b.wildcards;
    if (wildcards != 0 && x >= 0 && y >= 0) {
        x = Sint64(maskUsec(Uint64(x), wildcards, a.interval));
        y = Sint64(maskUsec(Uint64(y), wildcards, a.interval));
    }
    return x < y ? -1 : (x > y ? 1 : 0);
}

CIMDateTimeRep makeRep(Uint64 usec, bool interval, Sint32 utcOffset, Uint32 wildcards) {
    checkRange(usec, interval);
    CIMDateTimeRep rep;
    rep.interval = interval;
    rep.utcOffset = interval ? 0 : utcOffset;
    rep.wildcards = wildcards;
    rep.usec = maskUsec(usec, wildcards, interval);
    return rep;
}

Uint32 maxWildcards(const CIMDateTimeRep& a, const CIMDateTimeRep& b) {
    return a.wildcards > b.wildcards ? a.wildcards : b.wildcards;
}

} // namespace

CIMDateTime::CIMDateTime() : _rep(new CIMDateTimeRep) {}

CIMDateTime::CIMDateTime(const CIMDateTime& x) : _rep(new CIMDateTimeRep(*x._rep)) {}

CIMDateTime::CIMDateTime(const String& str) : _rep(new CIMDateTimeRep) {
    try {
        *_rep = parse(str);
    } catch (...) {
        delete _rep;
        throw;
    }
}

CIMDateTime::CIMDateTime(Uint64 usec, Boolean isInterval) : _rep(nullptr) {
    _rep = new CIMDateTimeRep(makeRep(usec, isInterval, 0, 0));
}

CIMDateTime::~CIMDateTime() { delete _rep; }

CIMDateTime& CIMDateTime::operator=(const CIMDateTime& x) {
    *_rep = *x._rep;
    return *this;
}

String CIMDateTime::toString() const { return format(*_rep); }

// A text that fails to parse leaves the value cleared, as OpenPegasus's does.
void CIMDateTime::set(const String& str) {
    try {
        *_rep = parse(str);
    } catch (...) {
        clear();
        throw;
    }
}

void CIMDateTime::clear() { *_rep = CIMDateTimeRep(); }

CIMDateTime CIMDateTime::getCurrentDateTime() {
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    time_t seconds = now.tv_sec;
    struct tm local;
    localtime_r(&seconds, &local);
    Fields f;
    f.year = Uint32(local.tm_year + 1900);
    f.month = Uint32(local.tm_mon + 1);
    f.day = Uint32(local.tm_mday);
    f.hours = Uint32(local.tm_hour);
    f.minutes = Uint32(local.tm_min);
    // A leap second shows as 60; keep the text form valid.
    f.seconds = Uint32(local.tm_sec > 59 ? 59 : local.tm_sec);
    f.microseconds = Uint32(now.tv_nsec / 1000);
    CIMDateTime result;
    result._rep->interval = false;
    result._rep->utcOffset = Sint32(local.tm_gmtoff / 60);
    result._rep->usec = toUsec(f, false);
    return result;
}

Sint64 CIMDateTime::getDifference(CIMDateTime startTime, CIMDateTime finishTime) {
    if (startTime._rep->interval != finishTime._rep->interval)
        throw InvalidDateTimeFormatException();
    return utcUsec(*finishTime._rep) - utcUsec(*startTime._rep);
}

Boolean CIMDateTime::isInterval() const { return _rep->interval; }

Boolean CIMDateTime::isInterval() { return _rep->interval; }

Boolean CIMDateTime::equal(const CIMDateTime& x) const { return compareRep(*_rep, *x._rep) == 0; }

Uint64 CIMDateTime::toMicroSeconds() const { return Uint64(utcUsec(*_rep)); }

CIMDateTime CIMDateTime::operator+(const CIMDateTime& x) const {
    CIMDateTime result(*this);
    result += x;
    return result;
}

CIMDateTime& CIMDateTime::operator+=(const CIMDateTime& x) {
    if (!x._rep->interval)
        throw TypeMismatchException();
    Uint64 sum = _rep->usec + x._rep->usec;
    if (sum < _rep->usec)
        checkRange(Uint64(-1), _rep->interval);
    *_rep = makeRep(sum, _rep->interval, _rep->utcOffset, maxWildcards(*_rep, *x._rep));
    return *this;
}

CIMDateTime CIMDateTime::operator-(const CIMDateTime& x) const {
    if (_rep->interval && !x._rep->interval)
        throw TypeMismatchException();
    if (!_rep->interval && !x._rep->interval) {
        Sint64 difference = utcUsec(*_rep) - utcUsec(*x._rep);
        if (difference < 0)
            throw DateTimeOutOfRangeException(x.toString());
        CIMDateTime result;
        *result._rep = makeRep(Uint64(difference), true, 0, maxWildcards(*_rep, *x._rep));
        return result;
    }
    CIMDateTime result(*this);
    result -= x;
    return result;
}

CIMDateTime& CIMDateTime::operator-=(const CIMDateTime& x) {
    if (!x._rep->interval)
        throw TypeMismatchException();
    if (x._rep->usec > _rep->usec)
        throw DateTimeOutOfRangeException(x.toString());
    *_rep = makeRep(_rep->usec - x._rep->usec, _rep->interval, _rep->utcOffset,
                    maxWildcards(*_rep, *x._rep));
    return *this;
}

CIMDateTime CIMDateTime::operator*(Uint64 x) const {
    CIMDateTime result(*this);
    result *= x;
    return result;
}

CIMDateTime& CIMDateTime::operator*=(Uint64 x) {
    if (!_rep->interval)
        throw TypeMismatchException();
    if (x != 0 && _rep->usec > Uint64(-1) / x)
        checkRange(Uint64(-1), true);
    *_rep = makeRep(_rep->usec * x, true, 0, _rep->wildcards);
    return *this;
}

CIMDateTime CIMDateTime::operator/(Uint64 num) const {
    CIMDateTime result(*this);
    result /= num;
    return result;
}

CIMDateTime& CIMDateTime::operator/=(Uint64 num) {
    if (!_rep->interval)
        throw TypeMismatchException();
    if (num == 0)
        throw Exception("divide by zero");
    *_rep = makeRep(_rep->usec / num, true, 0, _rep->wildcards);
    return *this;
}

Uint64 CIMDateTime::operator/(const CIMDateTime& cdt) const {
    if (!_rep->interval || !cdt._rep->interval)
        throw TypeMismatchException();
    if (cdt._rep->usec == 0)
        throw Exception("divide by zero");
    return _rep->usec / cdt._rep->usec;
}

Boolean CIMDateTime::operator<(const CIMDateTime& x) const {
    return compareRep(*_rep, *x._rep) < 0;
}

Boolean CIMDateTime::operator<=(const CIMDateTime& x) const {
    return compareRep(*_rep, *x._rep) <= 0;
}

Boolean CIMDateTime::operator>(const CIMDateTime& x) const {
    return compareRep(*_rep, *x._rep) > 0;
}

Boolean CIMDateTime::operator>=(const CIMDateTime& x) const {
    return compareRep(*_rep, *x._rep) >= 0;
}

Boolean CIMDateTime::operator!=(const CIMDateTime& x) const {
    return compareRep(*_rep, *x._rep) != 0;
}

Boolean operator==(const CIMDateTime& x, const CIMDateTime& y) { return x.equal(y); }

PEGASUS_NAMESPACE_END
