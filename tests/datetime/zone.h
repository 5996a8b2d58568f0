#pragma once

// The zone that a program of these tests was started in, by the environment variable TZ of the
// system below. The C runtime must not read that variable itself, see every_zone_test.cpp.
struct Zone {
    int seconds_east;      // of Greenwich, in standard time
    bool has_summer_time;  // the second Sunday of March to the first one of November, every year
};

extern const Zone kZone;  // in utc_test.cpp, moscow_test.cpp and new_york_test.cpp
