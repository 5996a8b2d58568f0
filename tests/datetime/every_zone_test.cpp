// Linked into a program for each zone.

#include "datetime/zone.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <ctime>

#include "datetime/day_count.h"
#include "datetime/file_time.h"

namespace {

constexpr int kDay = 86400;
constexpr std::uint64_t kTicks1970 = 116444736000000000;

// The runtime takes the zone from the platform once it has no TZ, which it would misread.
class PlatformsZone : public testing::Environment {
    void SetUp() override {
        ::_putenv("TZ=");
        ::_tzset();
        ASSERT_EQ(-kZone.seconds_east, _timezone) << "this program was started in another zone";
        ASSERT_EQ(kZone.has_summer_time, _daylight != 0);
    }
};
[[maybe_unused]] const auto* const kEnvironment =
    testing::AddGlobalTestEnvironment(new PlatformsZone);

std::int64_t Seconds(const CQELDateTime& value) { return value; }

// Runs check(day, reading, count) for a reading of every day from 1970 to 2037, not before 04:00,
// and its distance from the first midnight.
template <typename Check>
void ForEveryDay(Check check) {
    bool summer = false;
    for (DayCount day; day.year < 2038 && !testing::Test::HasFatalFailure(); day.Next()) {
        if (day.month == 3 && day.IsSundayWithin(8, 14)) summer = kZone.has_summer_time;
        if (day.month == 11 && day.IsSundayWithin(1, 7)) summer = false;
        const int second = 4 * 3600 + day.since_1970 * 7919 % (19 * 3600);
        const CQELDateTime reading(day.year, day.month, day.day, second / 3600, second / 60 % 60,
                                   second % 60, 0);
        SCOPED_TRACE(reading.TextDateTime(1, 1, 0));
        check(day, reading, std::int64_t{day.since_1970} * kDay + second - (summer ? 3600 : 0));
    }
}

TEST(EveryZone, CountsEveryDayAndTurnsItIntoAFileTime) {
    ForEveryDay([](const DayCount& day, CQELDateTime reading, std::int64_t count) {
        ASSERT_EQ(reading, CQELDateTime(count));
        ASSERT_EQ(day.weekday, reading.DayOfWeek());
        ASSERT_EQ(day.of_year, reading.DayOfYear());
        reading.Milliseconds(999);
        ASSERT_EQ(count, Seconds(reading));
        const auto unix_time = static_cast<std::uint64_t>(count - kZone.seconds_east);
        ASSERT_EQ(kTicks1970 + unix_time * 10000000, std::uint64_t{CQELFileTime(reading)});
    });
}

TEST(EveryZone, CarriesOverDaysThatDoNotExist) {
    EXPECT_EQ(3, CQELDate(2024, 4, 31).DayOfWeek());  // Wednesday, 1 May
    EXPECT_EQ(121, CQELDate(2024, 4, 31).DayOfYear());
    EXPECT_EQ(365, CQELDate(2024, 13, 0).DayOfYear());  // 31 December
    for (const int year : {1900, 1969, 3002, INT_MIN, INT_MIN + 1900, INT_MAX}) {
        SCOPED_TRACE(year);  // beyond the runtime's years
        EXPECT_EQ(0, CQELDate(year, 6, 15).DayOfWeek());
        EXPECT_EQ(0, CQELDate(year, 6, 15).DayOfYear());
    }
}

TEST(EveryZone, BeginsAtLocalMidnightOf1970) {
    EXPECT_EQ(0, CQELDateTime(0).Milliseconds());
    for (int second = 0; second < 2 * kDay; second += 1799) {
        const CQELDateTime reading(1970, 1, 1 + second / kDay, second / 3600 % 24, second / 60 % 60,
                                   second % 60, 0);
        EXPECT_EQ(reading, CQELDateTime(second));
        EXPECT_EQ(second, Seconds(reading));
    }
}

TEST(EveryZone, TakesWhatTheRuntimeRefusesForTheBeginning) {
    const CQELDateTime midnight(1970, 1, 1, 0, 0, 0, 0);
    for (const std::int64_t seconds : {INT64_MIN, std::int64_t{-100000}, std::int64_t{32535300000},
                                       INT64_MAX - 86400, INT64_MAX}) {
        EXPECT_EQ(midnight, CQELDateTime(seconds)) << seconds;
    }
    // A reading counts as one second before 1970 in UTC.
    for (const int year : {1601, 1968, 3002, 9999, INT_MIN, INT_MAX}) {
        EXPECT_EQ(-1 + kZone.seconds_east, Seconds(CQELDateTime(year, 6, 15, 12, 0, 0, 0))) << year;
    }
}

TEST(FileTime, CountsLocalReadingsIn32Bits) {
    const CQELDateTime in_2038(std::int64_t{2147483648}), in_2106(std::int64_t{4294967296} + kDay);
    EXPECT_EQ(kTicks1970, std::uint64_t{CQELFileTime(in_2038)});
    EXPECT_EQ(kTicks1970 + (kDay - kZone.seconds_east) * 10000000ull,
              std::uint64_t{CQELFileTime(in_2106)});
}

TEST(FileTime, DropsFractionsOfASecond) {
    for (const int ticks : {0, 9999999, 10000000}) {
        EXPECT_EQ(CQELDateTime(2000, 1, 1, 0, 0, ticks / 10000000, 0),
                  FILETIME_2_QELDateTime(CQELFileTime(125911584000000000 + ticks), false));
    }
}

TEST(FileTime, ReadsAs1970WhatNoCalendarHolds) {
    const CQELDateTime midnight(1970, 1, 1, 0, 0, 0, 0);
    const FILETIME beyond = CQELFileTime(0x8000000000000000);
    EXPECT_EQ(midnight, FILETIME_2_QELDateTime(beyond, true));
    EXPECT_EQ(midnight, FILETIME_2_QELDateTime(beyond, false));
    const FILETIME in_1601 = CQELFileTime(std::uint64_t{10000000} * kDay);
    EXPECT_EQ(midnight, FILETIME_2_QELDateTime(in_1601, true));
    EXPECT_EQ(CQELDateTime(1601, 1, 2, 0, 0, 0, 0), FILETIME_2_QELDateTime(in_1601, false));
}

TEST(UtcDateTime, ConvertsByTodaysOffsetAndIn32Bits) {
    CQELDateTime out(true);
    CQELUTCDateTime(1700000000).GetLocalTime(out);
    const std::int64_t offset = Seconds(out) - 1700000000;
    EXPECT_EQ(0, out.Milliseconds());
    EXPECT_TRUE(offset == kZone.seconds_east ||
                (kZone.has_summer_time && offset == kZone.seconds_east + 3600));
    CQELUTCDateTime(1720000000).GetLocalTime(out);  // the other half of the year
    EXPECT_EQ(1720000000 + offset, Seconds(out));
    CQELUTCDateTime(std::int64_t{4294967296} + kDay).GetLocalTime(out);
    EXPECT_EQ(kDay + offset, Seconds(out));
    CQELUTCDateTime(std::int64_t{2147483648} + kDay).GetLocalTime(out);  // negative in 32 bits
    EXPECT_EQ(CQELDateTime(0), out);
}

}  // namespace
