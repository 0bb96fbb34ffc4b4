#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

PEGASUS_USING_PEGASUS;

namespace {

const Uint64 EPOCH_USEC = PEGASUS_UINT64_LITERAL(62167219200000000);
const Uint64 USEC_PER_DAY = PEGASUS_UINT64_LITERAL(86400000000);

std::string text(const CIMDateTime& d) {
    return std::string(static_cast<const char*>(d.toString().getCString()));
}

CIMDateTime at(const char* value) { return CIMDateTime(String(value)); }

// Runs `f` with the process time zone set to `tz`, then restores it.
template <class F>
void withTimeZone(const char* tz, F f) {
    const char* previous = std::getenv("TZ");
    std::string saved = previous ? previous : "";
    setenv("TZ", tz, 1);
    tzset();
    f();
    if (previous)
        setenv("TZ", saved.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}

} // namespace

TEST(CIMDateTime, TextFormRoundTrips) {
    EXPECT_EQ(text(CIMDateTime()), "00000000000000.000000:000");
    const char* values[] = {
        "20240102030405.123456+060", "20261121165625.353010-300", "99991231235959.999999+000",
        "00000101000000.000000+000", "12345678235959.000001:000", "2024010203****.******+060",
        "20240102030405.123***-030", "**************.******:000", "20240229000000.000000+000",
    };
    for (const char* value : values)
        EXPECT_EQ(text(at(value)), value);

    CIMDateTime d;
    d.set("20240102030405.123456+060");
    EXPECT_FALSE(d.isInterval());
    d.clear();
    EXPECT_TRUE(d.isInterval());
    EXPECT_EQ(text(d), "00000000000000.000000:000");
}

TEST(CIMDateTime, SeparatesFormatErrorsFromRangeErrors) {
    const char* badFormat[] = {
        "",
        "20240102030405.123456+06",  // 24 characters
        "20240102030405.123456*060", // wrong sign character
        "2024010203040x.123456+060", // not a digit
        "20240102030405,123456+060", // no dot
        "00000001000000.000000:001", // interval must end in 000
        "2024010203**05.******+060", // wildcards not trailing
        "2024010203040*.******+060", // half a field
    };
    for (const char* value : badFormat)
        EXPECT_THROW(at(value), InvalidDateTimeFormatException) << value;

    const char* outOfRange[] = {
        "20241301000000.000000+000", "20240132000000.000000+000", "20240100000000.000000+000",
        "20240101240000.000000+000", "20240101006000.000000+000", "20240101000060.000000+000",
        "20230229000000.000000+000", "21000229000000.000000+000", "00000000240000.000000:000",
    };
    for (const char* value : outOfRange)
        EXPECT_THROW(at(value), DateTimeOutOfRangeException) << value;

    try {
        at("20240101240000.000000+000");
    } catch (const Exception& e) {
        EXPECT_EQ(std::string(static_cast<const char*>(e.getMessage().getCString()))
                      .rfind("DateTime is out of range : ", 0),
                  0u);
    }
    try {
        at("x");
    } catch (const Exception& e) {
        EXPECT_EQ(std::string(static_cast<const char*>(e.getMessage().getCString())),
                  "invalid datetime format");
    }

    // A failed set leaves the value cleared.
    CIMDateTime d = at("20240102030405.123456+060");
    EXPECT_THROW(d.set("bad"), InvalidDateTimeFormatException);
    EXPECT_EQ(text(d), "00000000000000.000000:000");
}

TEST(CIMDateTime, MicrosecondsCountFromYearZeroInUtc) {
    EXPECT_EQ(at("19700101000000.000000+000").toMicroSeconds(), EPOCH_USEC);
    EXPECT_EQ(at("19700101010000.000000+060").toMicroSeconds(), EPOCH_USEC);
    EXPECT_EQ(at("19691231190000.000000-300").toMicroSeconds(), EPOCH_USEC);
    EXPECT_EQ(at("00000101000000.000000+000").toMicroSeconds(), 0u);
    EXPECT_EQ(at("00000003000000.000001:000").toMicroSeconds(), 3 * USEC_PER_DAY + 1);

    // 2000-03-01 follows a leap day; 2100 has none.
    EXPECT_EQ(at("20000301000000.000000+000").toMicroSeconds() -
                  at("20000228000000.000000+000").toMicroSeconds(),
              2 * USEC_PER_DAY);
    EXPECT_EQ(at("21000301000000.000000+000").toMicroSeconds() -
                  at("21000228000000.000000+000").toMicroSeconds(),
              USEC_PER_DAY);

    CIMDateTime stamp(EPOCH_USEC + 1500000, false);
    EXPECT_EQ(text(stamp), "19700101000001.500000+000");
    CIMDateTime span(USEC_PER_DAY + 61000000, true);
    EXPECT_EQ(text(span), "00000001000101.000000:000");
    EXPECT_THROW(CIMDateTime(at("99991231235959.999999+000").toMicroSeconds() + 1, false),
                 DateTimeOutOfRangeException);
    EXPECT_THROW(CIMDateTime(PEGASUS_UINT64_LITERAL(100000000) * USEC_PER_DAY, true),
                 DateTimeOutOfRangeException);
}

TEST(CIMDateTime, CurrentTimeIsLocalWithItsOffset) {
    struct Zone {
        const char* tz;
        const char* suffix;
    } zones[] = {{"UTC0", "+000"}, {"IST-5:30", "+330"}, {"EST5", "-300"}};
    for (const Zone& zone : zones) {
        withTimeZone(zone.tz, [&] {
            // The system clock, as the library reads it: time() may lag it by a tick.
            const auto seconds = [] {
                return Uint64(std::chrono::duration_cast<std::chrono::seconds>(
                                  std::chrono::system_clock::now().time_since_epoch())
                                  .count());
            };
            Uint64 before = seconds();
            CIMDateTime now = CIMDateTime::getCurrentDateTime();
            Uint64 after = seconds();
            std::string form = text(now);
            EXPECT_FALSE(now.isInterval());
            EXPECT_EQ(form.substr(21), zone.suffix) << form;
            EXPECT_EQ(form.find('*'), std::string::npos);
            Uint64 unixSeconds = (now.toMicroSeconds() - EPOCH_USEC) / 1000000;
            EXPECT_GE(unixSeconds, before);
            EXPECT_LE(unixSeconds, after);
        });
    }
}

TEST(CIMDateTime, ComparesUtcInstantsAndRefusesMixedKinds) {
    CIMDateTime a = at("20240102030405.123456+060");
    CIMDateTime b = at("20240102020405.123456+000");
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a.equal(b));
    EXPECT_FALSE(a != b);
    CIMDateTime later = at("20240102020405.123457+000");
    EXPECT_TRUE(a < later);
    EXPECT_TRUE(later > a);
    EXPECT_TRUE(a <= b);
    EXPECT_TRUE(later >= b);

    CIMDateTime interval = at("00000000000000.000000:000");
    EXPECT_THROW((void)(a == interval), TypeMismatchException);
    EXPECT_THROW((void)(interval < a), TypeMismatchException);
    EXPECT_THROW((void)(a != interval), TypeMismatchException);
    EXPECT_THROW(CIMDateTime::getDifference(a, interval), InvalidDateTimeFormatException);
    EXPECT_EQ(CIMDateTime::getDifference(a, later), 1);
    EXPECT_EQ(CIMDateTime::getDifference(later, a), -1);

    // Wildcarded fields take no part in the comparison.
    EXPECT_TRUE(at("2024010203****.******+060") == at("20240102020405.123456+000"));
    EXPECT_FALSE(at("2024010203****.******+060") == at("20240102030405.123456+000"));
}

TEST(CIMDateTime, ArithmeticNeedsTheRightKinds) {
    CIMDateTime start = at("20241231230000.000000-300");
    CIMDateTime twoHours = at("00000000020000.000000:000");
    EXPECT_EQ(text(start + twoHours), "20250101010000.000000-300");
    CIMDateTime moved = start;
    moved += twoHours;
    moved -= twoHours;
    EXPECT_TRUE(moved == start);

    CIMDateTime elapsed = at("20250101060000.000000+000") - start;
    EXPECT_TRUE(elapsed.isInterval());
    EXPECT_EQ(text(elapsed), "00000000020000.000000:000");
    EXPECT_THROW(start - at("20250101060000.000000+000"), DateTimeOutOfRangeException);
    EXPECT_THROW(twoHours - start, TypeMismatchException);
    EXPECT_THROW(start + start, TypeMismatchException);
    EXPECT_THROW(moved -= start, TypeMismatchException);
    EXPECT_THROW(twoHours - at("00000000030000.000000:000"), DateTimeOutOfRangeException);

    EXPECT_EQ(text(twoHours * 36), "00000003000000.000000:000");
    EXPECT_EQ(text(twoHours / 8), "00000000001500.000000:000");
    EXPECT_EQ(twoHours / at("00000000000100.000000:000"), 120u);
    EXPECT_THROW(start * 2, TypeMismatchException);
    EXPECT_THROW(start / 2, TypeMismatchException);
    EXPECT_THROW(twoHours / start, TypeMismatchException);
}
