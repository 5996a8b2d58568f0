#include "datetime/qel_datetime.h"

#include "datetime/detail/readings.h"
#include "datetime/detail/text_forms.h"

static_assert(sizeof(CQELDateTime) == 48 && sizeof(CQELUTCDateTime) == 48,
              "the sizes are part of the binary interface");

namespace kit {

tm MakeReading(const CQELDateTime& value, int daylight) {
    return MakeReading(value.Year(), value.Month(), value.Day(), value.Hour(), value.Minute(),
                       value.Second(), daylight);
}

CQELDateTime DateTimeFrom(const tm& reading) {
    return CQELDateTime(reading.tm_year + 1900, reading.tm_mon + 1, reading.tm_mday,
                        reading.tm_hour, reading.tm_min, reading.tm_sec, 0);
}

CQELDateTime DateTimeFrom(const SYSTEMTIME& st) {
    return CQELDateTime(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond,
                        st.wMilliseconds);
}

}  // namespace kit

CQELDateTime::CQELDateTime(int year, int month, int day, int hour, int minute, int second,
                           int millisecond)
    : CQELDate(year, month, day), CQELTime(hour, minute, second, millisecond) {}

CQELDateTime::CQELDateTime(bool local) : CQELDateTime(kit::DateTimeFrom(kit::Now(local))) {}

CQELDateTime::CQELDateTime(std::int64_t seconds) : CQELDateTime(1970, 1, 1, 0, 0, 0, 0) {
    ConvertFrom(seconds);
}

CQELDateTime::CQELDateTime(const CQELDateTime& other) = default;
CQELDateTime& CQELDateTime::operator=(const CQELDateTime& other) = default;
CQELDateTime::~CQELDateTime() = default;

void CQELDateTime::GetBaseTime(struct tm& base) {
    base = kit::MakeReading(1970, 1, 1, 0, 0, 0, kit::kAsTheZoneSays);
}

void CQELDateTime::ConvertFrom(std::int64_t seconds) {
    // Counts near the end of 64 bits wrap around, and the runtime refuses them.
    const auto moment =
        static_cast<std::uint64_t>(kit::LocalEpoch()) + static_cast<std::uint64_t>(seconds);
    tm reading;
    if (!kit::ReadingFromSeconds(static_cast<std::int64_t>(moment), reading)) GetBaseTime(reading);
    *this = kit::DateTimeFrom(reading);
}

CQELDateTime::operator std::int64_t() const {
    constexpr std::int64_t kLastSecondBefore1970 = -1;
    tm reading = kit::MakeReading(*this, kit::kAsTheZoneSays);
    return kit::SecondsFromReading(reading).value_or(kLastSecondBefore1970) - kit::LocalEpoch();
}

bool CQELDateTime::IsValid() const { return CQELDate::IsValid() && CQELTime::IsValid(); }

bool CQELDateTime::operator==(const CQELDateTime& other) const {
    return CQELDate::operator==(other) && CQELTime::operator==(other);
}

bool CQELDateTime::operator<(const CQELDateTime& other) const {
    if (CQELDate::operator<(other)) return true;
    return CQELDate::operator==(other) && CQELTime::operator<(other);
}

CQELString CQELDateTime::TextDateTime(int date_form, int time_form, int order) const {
    return kit::JoinTexts(TextDate(date_form), TextTime(time_form), order);
}

CQELUTCDateTime::CQELUTCDateTime() : CQELDateTime(false) {}
CQELUTCDateTime::CQELUTCDateTime(std::int64_t seconds) : CQELDateTime(seconds) {}
CQELUTCDateTime::CQELUTCDateTime(const CQELUTCDateTime& other) = default;
CQELUTCDateTime& CQELUTCDateTime::operator=(const CQELUTCDateTime& other) = default;
CQELUTCDateTime::~CQELUTCDateTime() = default;

namespace {

// Seconds from UTC to local time, now.
std::int64_t CurrentOffset() {
    std::int64_t local, utc;
    do {  // both in the same second
        local = CQELDateTime(true);
        utc = CQELDateTime(false);
    } while (local != static_cast<std::int64_t>(CQELDateTime(true)));
    return local - utc;
}

}  // namespace

void CQELUTCDateTime::GetLocalTime(CQELDateTime& out) const {
    const std::int64_t seconds = static_cast<std::int64_t>(*this) + CurrentOffset();
    // Quirk: today's offset serves any moment, and the count is cut to 32 bits: moments after January
    // 2038 come out as 1 January 1970, from 2106 on 136 years early. Callers keep these counts in 32
    // bits. Pinned by UtcDateTime.ConvertsByTodaysOffsetAndIn32Bits.
    out = CQELDateTime(static_cast<std::int64_t>(static_cast<std::int32_t>(seconds)));
}
