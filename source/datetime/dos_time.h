#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"

// Local date and time as DOS programs keep them, and seconds since 1 January 1970 UTC.
//
// The names `date` and `time` are global. Where <time.h> is included as well, `time` alone means
// its function: write `struct time`.

// A calendar date. The order of the fields is part of the binary interface.
struct date {
    std::int32_t year;  // full: 2024
    std::int8_t day;    // 1-based day of the month
    std::int8_t month;  // 1..12
};

// A time of day. The order of the fields is part of the binary interface.
struct time {
    std::uint8_t minutes;     // 0..59
    std::uint8_t hours;       // 0..23
    std::uint8_t hundredths;  // of a second, 0..99
    std::uint8_t seconds;     // 0..59
};

// dostounix and unixtodos take the time zone from the environment variable "TZ" at every call, and
// from nowhere else:
//   three letters, hours west of UTC with an optional sign (minutes are ignored), and optionally,
//   behind anything that is no letter, three letters that name summer time: "EST5EDT", "MSK-3".
// Without the variable, or with one that does not begin so ("UTC", but not "UTC0"), the zone is
// EST5EDT. Where summer time is named, it is that of the United States of 1987 to 2006, in any
// zone: from the first Sunday of April (before 1987 the last) to the last Sunday of October, 02:00.
// Neither function keeps a state of its own; any thread may call them while no other changes the
// environment. No pointer may be null.

// The seconds of the local reading `d`, `t`, hundredths ignored; years 1970 to 2037 fit, others
// wrap around. Fields out of range carry over, but months above 12 count as the thirteenth.
QELKIT_API long32 dostounix(struct date* d, struct time* t);

// Sets `d` and `t` to the local reading of a number of seconds, hundredths 0. Moments before 1980
// UTC count as its first second; where that is still 1979 by local time, 1 January 1980, 00:00:00
// stands for it.
QELKIT_API void unixtodos(long32 seconds, struct date* d, struct time* t);

// Set `d` to today, and `t` to the time of day now, by the system's local clock; "TZ" plays no
// part.
QELKIT_API void getdate(struct date* d);
QELKIT_API void gettime(struct time* t);
