#include "datetime/detail/dos_calendar.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

#include "datetime/detail/calendar.h"

namespace kit {
namespace {

constexpr int kNameLength = 3;
constexpr DosZone kDefaultZone = {18000, true, "EST", "EDT"};

// ASCII only: a zone means the same whatever locale the program has set.
bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Stops at the end of a shorter text.
bool StartsWithName(const char* text) {
    return IsLetter(text[0]) && IsLetter(text[1]) && IsLetter(text[2]);
}

bool StartsWithHours(const char* text) {
    const bool is_signed = *text == '+' || *text == '-';
    return IsDigit(text[0]) || (is_signed && IsDigit(text[1]));
}

// Quirk: minutes behind the hours do not count, or zones that are in use would move. Pinned by
// DosZone.TakesLettersHoursAndTheNameOfSummerTime. Hours beyond all reason are limited to 32
// bits, and their seconds wrap around.
std::int32_t SecondsFromHours(const char* text) {
    using Limits = std::numeric_limits<std::int32_t>;
    const long long hours = std::strtoll(text, nullptr, 10);
    const auto limited = std::clamp<long long>(hours, Limits::min(), Limits::max());
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(limited) * 3600u);
}

}  // namespace

DosZone ParseDosZone(const char* text) {
    if (!text || !StartsWithName(text) || !StartsWithHours(text + kNameLength)) return kDefaultZone;
    DosZone zone = {};
    std::memcpy(zone.standard_name, text, kNameLength);
    text += kNameLength;
    zone.seconds_west = SecondsFromHours(text);
    while (*text && !IsLetter(*text)) ++text;
    if (StartsWithName(text)) {
        std::memcpy(zone.summer_name, text, kNameLength);
        zone.has_summer_time = true;
    }
    return zone;
}

namespace {

constexpr int kHoursPerDay = 24;
constexpr std::int32_t kSecondsPerYear = 365 * 86400;
constexpr std::int32_t kSecondsPerFourYears = 1461 * 86400;
constexpr int kHoursPerYear = 365 * kHoursPerDay;
constexpr int kHoursPerLeapYear = 366 * kHoursPerDay;
constexpr int kHoursPerFourYears = 1461 * kHoursPerDay;

constexpr int kFirstDosYear = 1980;
constexpr std::int32_t kDosEpoch = 315532800;  // 1 January 1980, 00:00 UTC

// Of the Julian calendar, which is ours from 1901 to 2099.
bool IsLeapYear(int year) { return (year & 3) == 0; }

// 1..12 for a 0-based day of a common year; 0 before and 13 after it.
int MonthOfYearDay(int year_day) {
    const auto* const past =
        std::upper_bound(std::begin(kDaysBeforeMonth), std::end(kDaysBeforeMonth), year_day);
    return static_cast<int>(past - std::begin(kDaysBeforeMonth));
}

// The 0-based day of the year on which summer time begins (month 4) or ends (month 10).
int SwitchDay(int month, int year) {
    constexpr int kThursday = 4;  // 1 January 1970
    const bool first_sunday = month == 4 && year >= 1987;
    const int days = first_sunday ? kDaysBeforeMonth[3] + 7 : kDaysBeforeMonth[month];
    const int last = days - (IsLeapYear(year) ? 0 : 1);
    const auto years = static_cast<std::int64_t>(year) - 1970;
    const std::int64_t weekday = (years * 365 + ((years + 1) >> 2) + last + kThursday) % 7;
    return last - static_cast<int>(weekday < 0 ? weekday + 7 : weekday);  // the Sunday up to there
}

}  // namespace

// Quirk: the rule of the United States from 1987 to 2006 serves all zones and later years, and goes
// by standard time in October too: records made elsewhere were converted by it. Pinned by
// DosCalendar.TurnsLocalReadingsIntoSecondsAndBack and .KeepsSummerTimeBetweenTheTwoSundays.
bool IsDosSummerTime(int hour, int year_day, int year) {
    const bool behind_leap_day = IsLeapYear(year) && year_day >= kDaysBeforeMonth[2];
    const int month = MonthOfYearDay(year_day - (behind_leap_day ? 1 : 0));
    if (month < 4 || month > 10) return false;
    if (month > 4 && month < 10) return true;
    const int switch_day = SwitchDay(month, year);
    const bool switched = year_day > switch_day || (year_day == switch_day && hour >= 2);
    return month == 4 ? switched : !switched;
}

namespace {

// The days before a date in its year. A month above 12 begins behind the year's last day.
int YearDay(const struct date& d) {
    const int months = std::clamp<int>(d.month - 1, 0, kMonths);
    const bool behind_leap_day = IsLeapYear(d.year) && d.month >= 3;
    return d.day + kDaysBeforeMonth[months] - (behind_leap_day ? 0 : 1);
}

// Midnight of 1 January, UTC; years far from now wrap around.
std::uint32_t SecondsOfNewYear(std::int32_t year) {
    const auto leap_cycles = static_cast<std::uint32_t>(
        (static_cast<std::int64_t>(year) - kFirstDosYear) >> 2);  // rounded down, also before 1980
    const auto cycle = leap_cycles * kSecondsPerFourYears;
    const auto leap_day = IsLeapYear(year) ? 0u : 86400u;
    return cycle + kDosEpoch + leap_day + (static_cast<std::uint32_t>(year) & 3u) * kSecondsPerYear;
}

}  // namespace

long32 DosToUnix(const struct date& d, const struct time& t, const DosZone& zone) {
    const int year_day = YearDay(d);
    int hours = t.hours + year_day * kHoursPerDay;
    if (zone.has_summer_time && IsDosSummerTime(t.hours, year_day, d.year)) --hours;
    const auto seconds = static_cast<std::uint32_t>((hours * 60 + t.minutes) * 60 + t.seconds);
    const auto west = static_cast<std::uint32_t>(zone.seconds_west);
    return static_cast<long32>(SecondsOfNewYear(d.year) + west + seconds);
}

namespace {

struct YearAndHours {
    int year;
    int hours;  // since its beginning
};

YearAndHours YearFromHours(int hours) {
    YearAndHours at = {kFirstDosYear + 4 * (hours / kHoursPerFourYears),
                       hours % kHoursPerFourYears};
    if (at.hours >= kHoursPerLeapYear) {
        at.hours -= kHoursPerLeapYear;
        at.year += 1 + at.hours / kHoursPerYear;
        at.hours %= kHoursPerYear;
    }
    return at;
}

// year_day is 0-based.
void SetDate(int year, int year_day, struct date& d) {
    constexpr int kLeapDay = 59;
    d.year = year;
    if (IsLeapYear(year) && year_day == kLeapDay) {
        d.month = 2;
        d.day = 29;
        return;
    }
    if (IsLeapYear(year) && year_day > kLeapDay) --year_day;
    const int month = MonthOfYearDay(year_day);
    d.month = static_cast<std::int8_t>(month);
    d.day = static_cast<std::int8_t>(year_day - kDaysBeforeMonth[month - 1] + 1);
}

}  // namespace

void UnixToDos(long32 seconds, const DosZone& zone, struct date& d, struct time& t) {
    // Quirk: the count is cut off in UTC before it is moved to local time, so that east of Greenwich
    // nothing reads earlier than 1980 UTC, in local time; as in all readings already kept. Pinned by
    // UnixToDos.CutsOffBefore1980InUtcAndThenInLocalTime.
    std::int64_t x = std::max<std::int64_t>(std::int64_t{seconds} - kDosEpoch, 0);
    x = std::max<std::int64_t>(x - zone.seconds_west, 0);
    t.hundredths = 0;
    t.seconds = static_cast<std::uint8_t>(x % 60);
    t.minutes = static_cast<std::uint8_t>(x / 60 % 60);
    YearAndHours at = YearFromHours(static_cast<int>(x / 3600));
    if (zone.has_summer_time &&
        IsDosSummerTime(at.hours % kHoursPerDay, at.hours / kHoursPerDay, at.year)) {
        ++at.hours;
    }
    t.hours = static_cast<std::uint8_t>(at.hours % kHoursPerDay);
    SetDate(at.year, at.hours / kHoursPerDay, d);
}

}  // namespace kit
