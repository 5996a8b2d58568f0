#include "datetime/detail/dos_calendar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

#include "datetime/day_count.h"

namespace {

constexpr std::int32_t kFirst = INT32_MIN;
constexpr std::int32_t kLast = INT32_MAX;

kit::DosZone Zone(const char* text) { return kit::ParseDosZone(text); }

struct Reading {
    int year, month, day, hours, minutes, seconds;
};

// "2024-03-05 09:05:07"
std::string Text(const Reading& r) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", r.year, r.month, r.day,
                  r.hours, r.minutes, r.seconds);
    return text;
}

std::string FromUnix(long32 seconds, const kit::DosZone& zone) {
    struct date d = {};
    struct time t = {99, 99, 99, 99};
    kit::UnixToDos(seconds, zone, d, t);
    EXPECT_EQ(0, t.hundredths);
    return Text({d.year, d.month, d.day, t.hours, t.minutes, t.seconds});
}

long32 ToUnix(const Reading& r, const kit::DosZone& zone) {
    const struct date d = {r.year, static_cast<std::int8_t>(r.day),
                           static_cast<std::int8_t>(r.month)};
    const struct time t = {static_cast<std::uint8_t>(r.minutes), static_cast<std::uint8_t>(r.hours),
                           57, static_cast<std::uint8_t>(r.seconds)};
    return kit::DosToUnix(d, t, zone);
}

// "name seconds west/name of summer time"
std::string Zoned(const char* text) {
    const kit::DosZone zone = Zone(text);
    EXPECT_EQ(zone.has_summer_time, *zone.summer_name != '\0');
    return std::string(zone.standard_name) + " " + std::to_string(zone.seconds_west) + "/" +
           zone.summer_name;
}

// Minutes are ignored; the last has 2^31 - 1 hours, whose seconds wrap around.
TEST(DosZone, TakesLettersHoursAndTheNameOfSummerTime) {
    const std::pair<const char*, const char*> cases[] = {
        {"EST5EDT", "EST 18000/EDT"}, {"EST+5EDT", "EST 18000/EDT"},
        {"UTC0", "UTC 0/"},           {"MSK-3", "MSK -10800/"},
        {"NPT-5:45", "NPT -18000/"},  {"NFT3:30NDT", "NFT 10800/NDT"},
        {"EST5ED", "EST 18000/"},     {"EST5E1DT", "EST 18000/"},
    };
    for (const auto& [text, zone] : cases) EXPECT_EQ(zone, Zoned(text)) << text;
    EXPECT_EQ("MSK -10800/MSD", Zoned("MSK-3MSD,M3.5.0,M10.5.0"));
    EXPECT_EQ("AAA -3600/", Zoned("AAA99999999999999999999"));
}

TEST(DosZone, IsEasternTimeWhenTheTextHasAnotherForm) {
    for (const char* text : {static_cast<const char*>(nullptr), "", "U", "UT", "UTC", "ES15",
                             "1ST5", "EST+", "EST-", "EST+X5", "EST--5", "EST 5", "EST:5", "EST+ 5",
                             "Etc/UTC", "Europe/Moscow", "<+03>-3", "\xCC\xD1\xCA-3"}) {
        EXPECT_EQ("EST 18000/EDT", Zoned(text)) << (text ? text : "(null)");
    }
}

enum Direction { kBothWays, kToUnix, kFromUnix };

struct Moment {
    const char* zone;
    Reading reading;
    long32 seconds;
    Direction direction = kBothWays;
};

TEST(DosCalendar, TurnsLocalReadingsIntoSecondsAndBack) {
    const Moment moments[] = {
        {"UTC0", {1981, 1, 1, 0, 0, 0}, 347155200},
        {"UTC0", {2001, 9, 9, 1, 46, 40}, 1000000000},
        {"AAA12", {2038, 1, 18, 15, 14, 7}, kLast},
        {"UTC0", {2038, 1, 19, 3, 14, 8}, kFirst, kToUnix},     // wraps around
        {"UTC0", {1901, 12, 13, 20, 45, 52}, kFirst, kToUnix},  // the same from the other side
        {"UTC0", {1970, 1, 1, 0, 0, 0}, 0, kToUnix},
        {"UTC0", {2001, 4, 31, 0, 0, 0}, 988675200, kToUnix},    // 1 May
        {"UTC0", {2001, 13, 1, 0, 0, 0}, 1009843200, kToUnix},   // 1 January 2002
        {"UTC0", {2001, 100, 1, 0, 0, 0}, 1009843200, kToUnix},  // as any month above 12
        {"MSK-3", {2000, 1, 1, 3, 0, 0}, 946684800},
        {"", {1980, 1, 1, 0, 0, 0}, 315550800},  // five hours west
        {"EST5EDT", {2005, 4, 3, 1, 59, 59}, 1112511599},
        {"EST5EDT", {2005, 4, 3, 2, 0, 0}, 1112508000, kToUnix},  // an hour that no clock shows
        {"EST5EDT", {2005, 4, 3, 3, 0, 0}, 1112511600},
        {"EST5EDT", {2005, 10, 30, 1, 59, 59}, 1130651999},
        {"EST5EDT", {2005, 10, 30, 2, 30, 0}, 1130653800, kFromUnix},  // still before 2 in winter
        {"EST5EDT", {2005, 10, 30, 2, 0, 0}, 1130655600},
    };
    for (const auto& [zone, reading, seconds, direction] : moments) {
        SCOPED_TRACE(testing::Message() << zone << ' ' << Text(reading));
        EXPECT_TRUE(direction == kFromUnix || seconds == ToUnix(reading, Zone(zone)));
        EXPECT_TRUE(direction == kToUnix || Text(reading) == FromUnix(seconds, Zone(zone)));
    }
}

TEST(UnixToDos, CutsOffBefore1980InUtcAndThenInLocalTime) {
    for (const long32 seconds : {kFirst, -1, 0, 315532799, 315532800}) {
        SCOPED_TRACE(seconds);
        EXPECT_EQ("1980-01-01 00:00:00", FromUnix(seconds, Zone("UTC0")));
        EXPECT_EQ("1980-01-01 00:00:00", FromUnix(seconds, Zone("EST5EDT")));
        EXPECT_EQ("1980-01-01 03:00:00", FromUnix(seconds, Zone("MSK-3")));
    }
    EXPECT_EQ("1980-01-01 00:00:00", FromUnix(315550800, Zone("EST5EDT")));
    EXPECT_EQ("1980-01-01 00:00:01", FromUnix(315550801, Zone("EST5EDT")));
}

// The Sunday on which the clocks change this month.
bool IsSwitchDay(const DayCount& day) {
    const int length = day.LengthOfMonth();
    if (day.month == 4 && day.year >= 1987) return day.IsSundayWithin(1, 7);
    return (day.month == 4 || day.month == 10) && day.IsSundayWithin(length - 6, length);
}

// Noon, standard time, is 13:00 by the clock from one Sunday to the other. Of leap years the two
// Sundays themselves are left open.
TEST(DosCalendar, KeepsSummerTimeBetweenTheTwoSundays) {
    const kit::DosZone utc = Zone("UTC0"), eastern = Zone("EST5EDT");
    bool summer = false;
    DayCount day;
    for (day.GoTo(1980); day.year < 2038; day.Next()) {
        const auto midnight = static_cast<long32>(day.since_1970 * 86400LL);
        const int second = day.since_1970 * 7919 % 86400;
        Reading reading = {day.year,      day.month,        day.day,
                           second / 3600, second / 60 % 60, second % 60};
        ASSERT_EQ(midnight + second, ToUnix(reading, utc)) << Text(reading);
        ASSERT_EQ(Text(reading), FromUnix(midnight + second, utc));

        if (IsSwitchDay(day)) summer = day.month == 4;
        if (IsSwitchDay(day) && day.IsLeap()) continue;
        reading = {day.year, day.month, day.day, summer ? 13 : 12, 0, 0};
        ASSERT_EQ(midnight + 17 * 3600, ToUnix(reading, eastern)) << Text(reading);
        ASSERT_EQ(Text(reading), FromUnix(midnight + 17 * 3600, eastern));
    }
}

}  // namespace
