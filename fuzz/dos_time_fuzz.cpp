// Input: seconds (4 bytes), a date (6), a time (4), and the text of a zone.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "datetime/detail/dos_calendar.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

void RequireRealReading(const struct date& d, const struct time& t) {
    Require(d.year >= 1980 && d.year < 2120 && d.month >= 1 && d.month <= 12 && d.day >= 1 &&
            d.day <= 31);
    Require(t.hours < 24 && t.minutes < 60 && t.seconds < 60 && t.hundredths == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kFixed = 14;
    if (size < kFixed) return 0;
    long32 seconds;
    struct date d;
    struct time t;
    std::memcpy(&seconds, data, 4);
    std::memcpy(&d, data + 4, 6);
    std::memcpy(&t, data + 10, 4);
    const std::string text(reinterpret_cast<const char*>(data) + kFixed, size - kFixed);

    const kit::DosZone zone = kit::ParseDosZone(text.c_str());
    Require(std::strlen(zone.standard_name) == 3);
    Require(std::strlen(zone.summer_name) == (zone.has_summer_time ? 3 : 0));
    kit::DosToUnix(d, t, zone);
    kit::UnixToDos(seconds, zone, d, t);
    RequireRealReading(d, t);
    const bool is_kept =
        seconds >= 315532800 && seconds - std::int64_t{zone.seconds_west} >= 315532800;
    if (is_kept && !zone.has_summer_time) Require(kit::DosToUnix(d, t, zone) == seconds);
    return 0;
}
