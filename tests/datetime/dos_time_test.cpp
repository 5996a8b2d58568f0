#include "datetime/dos_time.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <tuple>

#include "datetime/qel_date.h"
#include "datetime/qel_time.h"

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
    // The new year of 1980, and the hour of 1 January 2000, 12:00 UTC.
    const std::tuple<const char*, long32, int> cases[] = {
        {"", 315550800, 7},        {"UTC0", 315532800, 12},    {"MSK-3", 315522000, 15},
        {"PST8PDT", 315561600, 4}, {"nonsense", 315550800, 7},
    };
    for (const auto& [zone, new_year, hours] : cases) {
        SCOPED_TRACE(zone);
        SetZone(zone);
        struct date d = {1980, 1, 1};
        struct time t = {};
        EXPECT_EQ(new_year, dostounix(&d, &t));
        unixtodos(946728000, &d, &t);
        EXPECT_EQ(hours, t.hours);
        EXPECT_EQ(2000, d.year);
    }
}

TEST_F(DosTime, ReadsTheSystemsLocalClock) {
    SetZone("AAA11");
    CQELDate today;
    CQELTime before;
    struct date d = {};
    struct time t = {};
    do {  // all on one day
        today = CQELDate();
        before = CQELTime();
        getdate(&d);
        gettime(&t);
    } while (today != CQELDate());
    EXPECT_EQ(today, CQELDate(d.year, d.month, d.day));
    EXPECT_LE(before, CQELTime(t.hours, t.minutes, t.seconds, t.hundredths * 10 + 9));
    EXPECT_LE(CQELTime(t.hours, t.minutes, t.seconds, t.hundredths * 10), CQELTime());
}

}  // namespace
