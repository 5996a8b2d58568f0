#pragma once

#include <cstdint>
#include <ctime>
#include <optional>

#include "platform/windows.h"

// The C runtime's broken-down time beside the platform's, for both families of date classes.

namespace kit {

// The daylight flag of a `tm`.
constexpr int kStandardTime = 0;
constexpr int kSummerTime = 1;
constexpr int kAsTheZoneSays = -1;

// Sums and differences of fields that may have any value wrap around.
constexpr int WrappingAdd(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

// The local zone, as the C runtime has it from the variable TZ or else from the system.
struct LocalZone {
    std::int32_t seconds_west;  // of UTC, in standard time
    bool has_summer_time;
    std::int32_t summer_bias;  // -3600 for clocks one hour ahead; means nothing without summer time
};
LocalZone GetLocalZone();

// Calendar fields as a `tm`, weekday and day of the year 0. Fields may have any value; month and
// year wrap around where a `tm` cannot hold them.
tm MakeReading(int year, int month, int day, int hour, int minute, int second, int daylight);
tm MakeReading(const SYSTEMTIME& st, int daylight);

// A field of a SYSTEMTIME. What it cannot hold becomes 65535, which the platform refuses; a mere
// conversion would make it some other value, perhaps a valid one.
WORD ToField(int value);

// The fields as a SYSTEMTIME, weekday and milliseconds 0.
SYSTEMTIME MakeSystemTime(int year, int month, int day, int hour, int minute, int second);
SYSTEMTIME MakeSystemTime(const tm& reading);

// The current moment by the local clock, or in UTC.
SYSTEMTIME Now(bool local);

// _mktime64 and _localtime64, also for those hours of 1 January 1970, local time, that are before
// 1970 in UTC; some runtimes refuse them, all of them east of Greenwich. Nothing and false when the
// runtime refuses; `reading` is then as it was.
std::optional<std::int64_t> SecondsFromReading(tm& reading);
bool ReadingFromSeconds(std::int64_t seconds, tm& reading);

// _mktime64 of 1 January 1970, 00:00 local time: the zone's distance to UTC.
std::int64_t LocalEpoch();

}  // namespace kit
