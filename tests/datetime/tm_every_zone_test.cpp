// Linked into a program for each zone; see every_zone_test.cpp.

#include <gtest/gtest.h>

#include "datetime/day_count.h"
#include "datetime/qel_datetime.h"
#include "datetime/tm_datetime.h"
#include "datetime/zone.h"

namespace {

using QEL::CDateTime;

constexpr std::int64_t kHour = 3600, kDay = 86400;
const std::int64_t kAhead = kZone.has_summer_time ? kHour : 0;

std::int64_t Seconds(const CDateTime& value) { return static_cast<long32>(value); }

std::int64_t InUtc(const CDateTime& local) {
    CDateTime utc(true);
    local.GetSystemTime(utc);
    return Seconds(utc);
}

// A reading as one number; days[1] is the day of `seconds` in UTC, the others are its neighbours.
bool Reads(const CDateTime& value, std::int64_t seconds, const DayCount (&days)[3]) {
    const DayCount& day = days[seconds / kDay - days[1].since_1970 + 1];
    const auto second = static_cast<int>(seconds % kDay);
    return value.Year() == day.year && value.Month() == day.month && value.Day() == day.day &&
           value.Hour() == second / 3600 && value.Minute() == second / 60 % 60 &&
           value.Second() == second % 60;
}

// Runs check(days, seconds, summer) for every hour of UTC from 1971 to 2037.
template <typename Check>
void ForEveryHour(Check check) {
    DayCount days[3];
    days[1].GoTo(1971);
    while (days[0].since_1970 + 1 < days[1].since_1970) days[0].Next();
    days[2] = days[1];
    days[2].Next();
    for (bool summer = false; days[1].year < 2038 && !testing::Test::HasFatalFailure();) {
        for (int hour = 0; hour < 24; ++hour) {
            // New York: 02:00 standard time is 7 hours UTC, 02:00 summer time is 6.
            const DayCount& day = days[1];
            if (day.month == 3 && day.IsSundayWithin(8, 14) && hour == 7) summer = true;
            if (day.month == 11 && day.IsSundayWithin(1, 7) && hour == 6) summer = false;
            const int within = day.since_1970 * 7919 % 3600;
            check(days, day.since_1970 * kDay + hour * kHour + within,
                  summer && kZone.has_summer_time);
        }
        days[0] = days[1];
        days[1] = days[2];
        days[2].Next();
    }
}

TEST(TmEveryZone, ConvertsEveryHour) {
    ForEveryHour([](const DayCount(&days)[3], std::int64_t seconds, bool summer) {
        const CDateTime utc(seconds, false);
        ASSERT_TRUE(Reads(utc, seconds, days)) << seconds;
        ASSERT_EQ(seconds, Seconds(utc));
        CDateTime local(false);
        utc.GetLocalTime(local);
        const std::int64_t reading = seconds + kZone.seconds_east + (summer ? kHour : 0);
        ASSERT_TRUE(Reads(local, reading, days)) << seconds;
        ASSERT_EQ(utc.Milliseconds(), local.Milliseconds());
        ASSERT_EQ(seconds - (summer ? kHour : 0), InUtc(local)) << seconds;  // an hour early

        const CDateTime made(seconds, true);
        ASSERT_TRUE(Reads(made, seconds + kAhead, days)) << seconds;
        ASSERT_EQ(seconds, Seconds(made));
        ASSERT_EQ(seconds - kZone.seconds_east - kAhead, InUtc(made));
    });
}

TEST(TmEveryZone, MakesEveryDayFromFields) {
    ForEveryHour([](const DayCount(&days)[3], std::int64_t seconds, bool) {
        if (seconds % kDay >= kHour) return;
        const DayCount& day = days[1];
        const int hour = day.of_year % 24, rest = static_cast<int>(seconds % kHour);
        const std::int64_t at = seconds + hour * kHour;
        for (const bool local : {false, true}) {
            const CDateTime made(day.year, day.month, day.day, hour, rest / 60, rest % 60, 5,
                                 local);
            ASSERT_TRUE(Reads(made, local ? at + kAhead : at, days)) << at;
            ASSERT_EQ(at, Seconds(made));
            ASSERT_TRUE(local || day.weekday == made.DayOfWeek());
        }
    });
}

TEST(TmEveryZone, MovesBySpansAndTellsThem) {
    for (const bool local : {false, true}) {
        const CDateTime start(2024, 12, 31, 12, 0, 0, 700, local);
        const QEL::CTimeSpan span(0, 13, 0, 0, 600);
        CDateTime end = start + span;
        EXPECT_EQ(Seconds(start) + 13 * kHour + 1, Seconds(end));
        EXPECT_EQ(300, end.Milliseconds());
        EXPECT_EQ(span, end - start);
        EXPECT_EQ(13 * kHour + 1, end.Difference(start));
        EXPECT_EQ(-13 * kHour - 1, start.Difference(end));
        EXPECT_EQ(start, end -= span);
        EXPECT_EQ(end.GetTotalMilliseconds(), static_cast<std::uint64_t>(start));
        EXPECT_EQ(16, (start - (start + span)).GetMilliseconds());  // of 2^64 - 46800600
    }
}

TEST(TmEveryZone, TakesTheClocksMillisecondWithSeconds) {
    SYSTEMTIME before, after;
    int millisecond;
    do {
        ::GetSystemTime(&before);
        millisecond = CDateTime(std::int64_t{5}, false).Milliseconds();
        ::GetSystemTime(&after);
    } while (before.wSecond != after.wSecond || before.wMilliseconds == 0);
    EXPECT_LE(before.wMilliseconds, millisecond);
    EXPECT_GE(after.wMilliseconds, millisecond);
    EXPECT_EQ(7, CDateTime(std::uint64_t{5007}, false).Milliseconds());
}

TEST(TmEveryZone, KnowsTheMomentAndTheZone) {
    for (const bool local : {false, true}) {
        CQELString before, now;
        do {
            before = CQELDateTime(local).TextDateTime(1, 1, 0);
            now = CDateTime(local).TextDateTime(1, 1, 0);
        } while (before != CQELDateTime(local).TextDateTime(1, 1, 0));
        EXPECT_EQ(before, now);
    }
    EXPECT_EQ('2' - kZone.seconds_east / 3600, CDateTime::GetSelfTimeZone());
}

}  // namespace
