#include "datetime/detail/runtime_time.h"

#include <limits>

namespace kit {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kRefused = -1;

// The same reading one day later.
std::int64_t SecondsOfNextDay(tm reading) {
    if (reading.tm_mday == std::numeric_limits<int>::max()) return kRefused;
    ++reading.tm_mday;
    return ::_mktime64(&reading);
}

}  // namespace

LocalZone GetLocalZone() {
    // Before its first use the runtime tells of a zone that it was built with.
    [[maybe_unused]] static const bool ready = (::_tzset(), true);
#ifdef _MSC_VER
    long seconds_west, summer_bias;
    int daylight;
    ::_get_timezone(&seconds_west);
    ::_get_daylight(&daylight);
    ::_get_dstbias(&summer_bias);
    return {seconds_west, daylight != 0, summer_bias};
#else
    return {_timezone, _daylight != 0, _dstbias};
#endif
}

tm MakeReading(int year, int month, int day, int hour, int minute, int second, int daylight) {
    tm reading = {};
    reading.tm_year = WrappingAdd(year, -1900);
    reading.tm_mon = WrappingAdd(month, -1);
    reading.tm_mday = day;
    reading.tm_hour = hour;
    reading.tm_min = minute;
    reading.tm_sec = second;
    reading.tm_isdst = daylight;
    return reading;
}

tm MakeReading(const SYSTEMTIME& st, int daylight) {
    return MakeReading(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond, daylight);
}

WORD ToField(int value) {
    constexpr WORD kNoField = std::numeric_limits<WORD>::max();
    return value >= 0 && value < kNoField ? static_cast<WORD>(value) : kNoField;
}

SYSTEMTIME MakeSystemTime(int year, int month, int day, int hour, int minute, int second) {
    SYSTEMTIME st = {};
    st.wYear = ToField(year);
    st.wMonth = ToField(month);
    st.wDay = ToField(day);
    st.wHour = ToField(hour);
    st.wMinute = ToField(minute);
    st.wSecond = ToField(second);
    return st;
}

SYSTEMTIME MakeSystemTime(const tm& reading) {
    return MakeSystemTime(reading.tm_year + 1900, reading.tm_mon + 1, reading.tm_mday,
                          reading.tm_hour, reading.tm_min, reading.tm_sec);
}

SYSTEMTIME Now(bool local) {
    SYSTEMTIME st;
    local ? ::GetLocalTime(&st) : ::GetSystemTime(&st);
    return st;
}

std::int64_t LocalEpoch() {
    return SecondsOfNextDay(MakeReading(1970, 1, 1, 0, 0, 0, kAsTheZoneSays)) - kSecondsPerDay;
}

bool ReadingFromSeconds(std::int64_t seconds, tm& reading) {
    if (const tm* const converted = ::_localtime64(&seconds)) {
        reading = *converted;
        return true;
    }
    if (seconds >= 0 || seconds < LocalEpoch()) return false;
    const std::int64_t next_day = seconds + kSecondsPerDay;
    reading = *::_localtime64(&next_day);
    reading.tm_mday = 1;
    reading.tm_yday = 0;
    reading.tm_wday = 4;  // Thursday
    return true;
}

std::optional<std::int64_t> SecondsFromReading(tm& reading) {
    const tm asked = reading;
    const std::int64_t seconds = ::_mktime64(&reading);
    if (seconds != kRefused) return seconds;
    reading = asked;
    const std::int64_t next_day = SecondsOfNextDay(asked);
    const std::int64_t before_1970 = next_day - kSecondsPerDay;
    const bool is_first_day = next_day != kRefused && before_1970 >= LocalEpoch();
    if (!is_first_day || !ReadingFromSeconds(before_1970, reading)) return std::nullopt;
    return before_1970;
}

}  // namespace kit
