#include "datetime/dos_time.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/windows.h"

namespace {

// Sets the runtime's "TZ", without telling the runtime's own clock; takes it back at the end.
class DosTime : public testing::Test {
protected:
    ~DosTime() override { SetZone(before_); }
    static void SetZone(const std::string& zone) { ::_putenv(("TZ=" + zone).c_str()); }

private:
    const std::string before_ = std::getenv("TZ") ? std::getenv("TZ") : "";
};

TEST_F(DosTime, FollowsTheEnvironmentAtEveryCall) {
    const struct {
        const char* zone;
        long32 new_year_1980;
        int hours;  // of 1 January 2000, 12:00 UTC
    } cases[] = {
        {"", 315550800, 7},        {"UTC0", 315532800, 12},    {"MSK-3", 315522000, 15},
        {"PST8PDT", 315561600, 4}, {"nonsense", 315550800, 7},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.zone);
        SetZone(c.zone);
        struct date d = {1980, 1, 1};
        struct time t = {};
        EXPECT_EQ(c.new_year_1980, dostounix(&d, &t));
        unixtodos(946728000, &d, &t);
        EXPECT_EQ(c.hours, t.hours);
        EXPECT_EQ(2000, d.year);
    }
}

long long Number(const struct date& d, const struct time& t) {
    const long long day = (d.year * 100LL + d.month) * 100 + d.day;
    return (((day * 100 + t.hours) * 100 + t.minutes) * 100 + t.seconds) * 100 + t.hundredths;
}

long long SystemNumber() {
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    const long long day = (now.wYear * 100LL + now.wMonth) * 100 + now.wDay;
    return (((day * 100 + now.wHour) * 100 + now.wMinute) * 100 + now.wSecond) * 100 +
           now.wMilliseconds / 10;
}

TEST_F(DosTime, ReadsTheSystemsLocalClock) {
    SetZone("AAA11");
    struct date d = {}, later = {};
    struct time t = {};
    long long before;
    do {  // both calls on one day
        before = SystemNumber();
        getdate(&d);
        gettime(&t);
        getdate(&later);
    } while (d.day != later.day);
    EXPECT_LE(before, Number(d, t));
    EXPECT_LE(Number(d, t), SystemNumber());
}

}  // namespace
