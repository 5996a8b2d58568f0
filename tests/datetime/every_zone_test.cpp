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

CQELDateTime At(const DayCount& day, int second, int millisecond = 0) {
    return CQELDateTime(day.year, day.month, day.day, second / 3600, second / 60 % 60, second % 60,
                        millisecond);
}

// Whether summer time is in force on the days counted so far, from 03:00 on.
class SummerTime {
public:
    bool At(const DayCount& day) {
        if (day.month == 3 && day.IsSundayWithin(8, 14)) in_force_ = kZone.has_summer_time;
        if (day.month == 11 && day.IsSundayWithin(1, 7)) in_force_ = false;
        return in_force_;
    }

private:
    bool in_force_ = false;
};

TEST(EveryZone, CountsEveryDayFrom1970To2037AndBack) {
    SummerTime summer;
    for (DayCount day; day.year < 2038; day.Next()) {
        const int second = 4 * 3600 + day.since_1970 * 7919 % (19 * 3600);
        const CQELDateTime reading = At(day, second);
        const std::int64_t count =
            std::int64_t{day.since_1970} * kDay + second - (summer.At(day) ? 3600 : 0);
        ASSERT_EQ(count, Seconds(reading)) << day.year << '-' << day.month << '-' << day.day;
        ASSERT_EQ(reading, CQELDateTime(count)) << day.year << '-' << day.month << '-' << day.day;
        ASSERT_EQ(count, Seconds(At(day, second, 999)));
    }
}

TEST(EveryZone, TurnsEveryDayFrom1970To2037IntoAFileTime) {
    SummerTime summer;
    for (DayCount day; day.year < 2038; day.Next()) {
        const int second = 4 * 3600 + day.since_1970 * 7919 % (19 * 3600);
        const std::int64_t unix_time = std::int64_t{day.since_1970} * kDay + second -
                                       (summer.At(day) ? 3600 : 0) - kZone.seconds_east;
        ASSERT_EQ(kTicks1970 + static_cast<std::uint64_t>(unix_time) * 10000000,
                  std::uint64_t{CQELFileTime(At(day, second, 999))})
            << day.year << '-' << day.month << '-' << day.day;
    }
}

TEST(EveryZone, KnowsTheDaysOfWeekAndYear) {
    for (DayCount day; day.year < 2038; day.Next()) {
        const CQELDate date(day.year, day.month, day.day);
        ASSERT_EQ(day.weekday, date.DayOfWeek()) << day.year << '-' << day.month << '-' << day.day;
        ASSERT_EQ(day.of_year, date.DayOfYear()) << day.year << '-' << day.month << '-' << day.day;
    }
}

TEST(EveryZone, CarriesOverDaysThatDoNotExist) {
    EXPECT_EQ(3, CQELDate(2024, 4, 31).DayOfWeek());  // Wednesday, 1 May
    EXPECT_EQ(121, CQELDate(2024, 4, 31).DayOfYear());
    EXPECT_EQ(365, CQELDate(2024, 13, 0).DayOfYear());  // 31 December
    EXPECT_EQ(0, CQELDate(2025, 1, -1 + 2).DayOfYear());
}

TEST(EveryZone, HasNoDaysOfWeekBeyondTheRuntimesYears) {
    for (const int year : {1900, 1969, 3002, 9999, INT_MIN, INT_MIN + 1900, INT_MAX}) {
        SCOPED_TRACE(year);
        EXPECT_EQ(0, CQELDate(year, 6, 15).DayOfWeek());
        EXPECT_EQ(0, CQELDate(year, 6, 15).DayOfYear());
    }
}

TEST(EveryZone, BeginsAtLocalMidnightOf1970) {
    const CQELDateTime midnight(1970, 1, 1, 0, 0, 0, 0);
    EXPECT_EQ(midnight, CQELDateTime(0));
    EXPECT_EQ(0, CQELDateTime(0).Milliseconds());
    EXPECT_EQ(0, Seconds(midnight));
    for (int second = 0; second < 2 * kDay; second += 1799) {
        const CQELDateTime reading(1970, 1, 1 + second / kDay, second / 3600 % 24, second / 60 % 60,
                                   second % 60, 0);
        EXPECT_EQ(reading, CQELDateTime(second));
        EXPECT_EQ(second, Seconds(reading));
    }
    const CQELDateTime last_second(1970, 1, 1, 23, 59, 59, 0);
    EXPECT_EQ(last_second, CQELUTCDateTime(86399));
}

TEST(EveryZone, GivesTheBeginningForCountsThatTheRuntimeRefuses) {
    const CQELDateTime midnight(1970, 1, 1, 0, 0, 0, 0);
    for (const std::int64_t seconds : {INT64_MIN, std::int64_t{-100000}, std::int64_t{32535300000},
                                       INT64_MAX - 86400, INT64_MAX}) {
        EXPECT_EQ(midnight, CQELDateTime(seconds)) << seconds;
    }
}

TEST(EveryZone, CountsReadingsThatTheRuntimeRefusesAsOneSecondBefore1970) {
    const std::int64_t refused = -1 + kZone.seconds_east;
    for (const int year : {1601, 1968, 3002, 9999, INT_MIN, INT_MAX}) {
        EXPECT_EQ(refused, Seconds(CQELDateTime(year, 6, 15, 12, 0, 0, 0))) << year;
    }
    EXPECT_EQ(refused, Seconds(CQELDateTime(3002, 1, INT_MAX, 0, 0, 0, 0)));
}

TEST(EveryZone, ReadsPastTheYear2038) {
    const CQELDateTime reading(2099, 12, 31, 23, 59, 59, 0);
    EXPECT_EQ(4102444799, Seconds(reading));
    EXPECT_EQ(reading, CQELDateTime(std::int64_t{4102444799}));
}

TEST(FileTime, CountsLocalReadingsIn32Bits) {
    const std::int64_t one_day_after_2_to_32 = 4294967296 + kDay;
    const FILETIME ft = QELDateTime_2_FILETIME(CQELDateTime(one_day_after_2_to_32), true);
    EXPECT_EQ(kTicks1970 + (kDay - kZone.seconds_east) * 10000000ull,
              std::uint64_t{CQELFileTime(ft)});
    const FILETIME after_2_to_31 =
        QELDateTime_2_FILETIME(CQELDateTime(std::int64_t{2147483648}), true);
    EXPECT_EQ(kTicks1970, std::uint64_t{CQELFileTime(after_2_to_31)});
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
