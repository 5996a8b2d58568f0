#include "datetime/file_time.h"

#include "datetime/detail/readings.h"

static_assert(sizeof(CQELFileTime) == sizeof(FILETIME), "a file time serves as a FILETIME");

namespace {

std::uint64_t TicksOf(const FILETIME& ft) {
    return static_cast<std::uint64_t>(ft.dwHighDateTime) << 32 | ft.dwLowDateTime;
}

FILETIME FromTicks(std::uint64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

}  // namespace

CQELFileTime::CQELFileTime() : FILETIME{} {}
CQELFileTime::CQELFileTime(const FILETIME& other) : FILETIME(other) {}
CQELFileTime::CQELFileTime(const CQELFileTime& other) = default;
CQELFileTime::CQELFileTime(const CQELDateTime& value)
    : FILETIME(QELDateTime_2_FILETIME(value, true)) {}
CQELFileTime::CQELFileTime(std::uint64_t ticks) : FILETIME(FromTicks(ticks)) {}

CQELFileTime& CQELFileTime::operator=(const CQELFileTime& other) = default;
CQELFileTime& CQELFileTime::operator=(const FILETIME& other) { return *this = CQELFileTime(other); }
CQELFileTime& CQELFileTime::operator=(const CQELDateTime& value) {
    return *this = CQELFileTime(value);
}
CQELFileTime& CQELFileTime::operator=(std::uint64_t ticks) { return *this = CQELFileTime(ticks); }

bool CQELFileTime::operator==(const FILETIME& other) const {
    return TicksOf(*this) == TicksOf(other);
}
bool CQELFileTime::operator<(const FILETIME& other) const {
    return ::CompareFileTime(this, &other) < 0;
}
bool CQELFileTime::operator>(const FILETIME& other) const {
    return ::CompareFileTime(this, &other) > 0;
}
CQELFileTime& CQELFileTime::operator+=(const FILETIME& other) {
    return *this = TicksOf(*this) + TicksOf(other);
}
CQELFileTime& CQELFileTime::operator-=(const FILETIME& other) {
    return *this = TicksOf(*this) - TicksOf(other);
}
CQELFileTime CQELFileTime::operator+(const FILETIME& other) const {
    return TicksOf(*this) + TicksOf(other);
}
CQELFileTime CQELFileTime::operator-(const FILETIME& other) const {
    return TicksOf(*this) - TicksOf(other);
}

namespace {

// Chooses the operations with a FILETIME above.
const FILETIME& Plain(const CQELFileTime& ft) { return ft; }

}  // namespace

bool CQELFileTime::operator==(const CQELFileTime& other) const { return *this == Plain(other); }
bool CQELFileTime::operator<(const CQELFileTime& other) const { return *this < Plain(other); }
bool CQELFileTime::operator>(const CQELFileTime& other) const { return *this > Plain(other); }
CQELFileTime& CQELFileTime::operator+=(const CQELFileTime& other) { return *this += Plain(other); }
CQELFileTime& CQELFileTime::operator-=(const CQELFileTime& other) { return *this -= Plain(other); }
CQELFileTime CQELFileTime::operator+(const CQELFileTime& other) const {
    return *this + Plain(other);
}
CQELFileTime CQELFileTime::operator-(const CQELFileTime& other) const {
    return *this - Plain(other);
}

CQELDateTime FILETIME_2_QELDateTime(const FILETIME& ft, bool local) {
    const CQELDateTime unknown(1970, 1, 1, 0, 0, 0, 0);
    FILETIME shown = ft;
    SYSTEMTIME st;
    if (local && !::FileTimeToLocalFileTime(&ft, &shown)) return unknown;
    if (!::FileTimeToSystemTime(&shown, &st)) return unknown;
    // Quirk: a local reading counts as summer time even in winter, and one in UTC passes through
    // the rules of the local zone, so each may come out an hour off; times that programs have
    // stored were read like this. Pinned by FileTimeInNewYork.ReadsWinterEarlyAndUtcSummerLate.
    tm reading = kit::MakeReading(st, local ? kit::kSummerTime : kit::kStandardTime);
    const auto seconds = kit::SecondsFromReading(reading);
    if (!local) return kit::DateTimeFrom(reading);
    const bool known = seconds && kit::ReadingFromSeconds(*seconds, reading);
    return known ? kit::DateTimeFrom(reading) : unknown;
}

namespace {

// The UTC fields of a local reading.
SYSTEMTIME UtcFromLocal(const CQELDateTime& dt) {
    // Quirk: the count of seconds is cut to 32 bits, as in CQELUTCDateTime::GetLocalTime, so that
    // both agree on late moments. Pinned by FileTime.CountsLocalReadingsIn32Bits.
    const auto count = static_cast<std::int32_t>(static_cast<std::int64_t>(dt));
    const std::int64_t moment = kit::LocalEpoch() + count;
    const tm* const utc = ::_gmtime64(&moment);
    return utc ? kit::MakeSystemTime(*utc) : kit::MakeSystemTime(1970, 1, 1, 0, 0, 0);
}

SYSTEMTIME FieldsOf(const CQELDateTime& dt) {
    return kit::MakeSystemTime(dt.Year(), dt.Month(), dt.Day(), dt.Hour(), dt.Minute(),
                               dt.Second());
}

}  // namespace

FILETIME QELDateTime_2_FILETIME(const CQELDateTime& dt, bool local) {
    const SYSTEMTIME st = local ? UtcFromLocal(dt) : FieldsOf(dt);
    FILETIME ft = {};
    return ::SystemTimeToFileTime(&st, &ft) ? ft : FILETIME{};
}
