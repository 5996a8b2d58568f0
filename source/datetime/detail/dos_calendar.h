#pragma once

#include <cstdint>

#include "base/types.h"
#include "datetime/dos_time.h"

// The arithmetic of the DOS time functions on a zone that is given to it. Keeps no state.

namespace kit {

struct DosZone {
    std::int32_t seconds_west;  // of UTC, in standard time
    bool has_summer_time;
    char standard_name[4];  // three letters and a terminator, or empty
    char summer_name[4];
};

// The zone that a text of the form "EST5EDT" describes; that of "EST5EDT" itself when `text` is
// null or of another form.
DosZone ParseDosZone(const char* text);

// Whether summer time is in force at a local standard time.
//   year_day  0-based
bool IsDosSummerTime(int hour, int year_day, int year);

long32 DosToUnix(const struct date& d, const struct time& t, const DosZone& zone);
void UnixToDos(long32 seconds, const DosZone& zone, struct date& d, struct time& t);

}  // namespace kit
