#include "datetime/tm_datetime.h"

#include <sys/timeb.h>

#include "datetime/detail/calendar.h"
#include "datetime/detail/runtime_time.h"
#include "datetime/detail/text_forms.h"

static_assert(sizeof(QEL::CDateTime) == 40 && sizeof(QEL::CUTCDateTime) == 48,
              "the sizes are part of the binary interface");

namespace {

bool IsSummerTimeAssumed(bool local) { return local && kit::GetLocalZone().has_summer_time; }

// A tenth of what asking for the whole moment takes.
std::uint16_t ClocksMillisecond() {
    constexpr std::uint64_t kTicksPerMillisecond = 10000;
    FILETIME now;
    ::GetSystemTimeAsFileTime(&now);
    const std::uint64_t ticks = std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
    return static_cast<std::uint16_t>(ticks / kTicksPerMillisecond % 1000);
}

SYSTEMTIME Given(const SYSTEMTIME* st, bool local) { return st ? *st : kit::Now(local); }

// strftime looks names up by these fields.
bool CanBeFormatted(const tm& t) {
    return kit::IsTimeOfDay(t.tm_hour, t.tm_min, t.tm_sec, 0) && t.tm_mon >= 0 &&
           t.tm_mon < kit::kMonths && t.tm_mday >= 1 && t.tm_mday <= 31 && t.tm_wday >= 0 &&
           t.tm_wday < 7 && t.tm_yday >= 0 && t.tm_yday < 366;
}

}  // namespace

QEL::CDateTime::CDateTime(bool local) : CDate(local) {}

QEL::CDateTime::CDateTime(int year, int month, int day, int hour, int minute, int second,
                          int millisecond, bool local)
    : CDate(year, month, day, local) {
    record_.fields.tm_hour = hour;
    record_.fields.tm_min = minute;
    record_.fields.tm_sec = second;
    Milliseconds(millisecond);
    Recalculate(nullptr);
    // Quirk: every local value made like this counts as one in summer time, in winter too, in a
    // zone that has it. It undoes the hour by which carrying has put the value ahead. Pinned by
    // TmSummerTime.MakesLocalValuesThatCountAsStandardTime.
    if (IsSummerTimeAssumed(local)) record_.fields.tm_isdst = kit::kSummerTime;
}

QEL::CDateTime::CDateTime(SYSTEMTIME* st, bool local) : CDateTime(local) {
    const SYSTEMTIME given = Given(st, local);
    *this = CDateTime(given.wYear, given.wMonth, given.wDay, given.wHour, given.wMinute,
                      given.wSecond, given.wMilliseconds, local);
}

// Quirk: the millisecond of the clock stays; callers made unique times of it. Pinned by
// TmEveryZone.TakesTheClocksMillisecondWithSeconds.
QEL::CDateTime::CDateTime(std::int64_t seconds, bool local)
    : CDate(qeltm{{}, ClocksMillisecond(), local}) {
    ConvertFrom(seconds);
}

QEL::CDateTime::CDateTime(std::uint64_t milliseconds, bool local)
    : CDate(qeltm{{}, static_cast<std::uint16_t>(milliseconds % 1000), local}) {
    ConvertFrom(static_cast<std::int64_t>(milliseconds / 1000));
}

void QEL::CDateTime::ConvertFrom(std::int64_t seconds) {
    const bool summer = IsSummerTimeAssumed(record_.local);
    // A count at the end of 64 bits wraps, and the runtime refuses it.
    const auto ahead = static_cast<std::uint64_t>(-std::int64_t{kit::GetLocalZone().summer_bias});
    if (summer) seconds = static_cast<std::int64_t>(static_cast<std::uint64_t>(seconds) + ahead);
    const tm* const fields = ::_gmtime64(&seconds);
    record_.fields = fields ? *fields : CDateTime(true).record_.fields;
    if (summer) record_.fields.tm_isdst = kit::kSummerTime;
}

QEL::CDateTime::CDateTime(const qeltm& record) : CDate(record) {}
QEL::CDateTime::CDateTime(const CDateTime& other) = default;
QEL::CDateTime& QEL::CDateTime::operator=(const CDateTime& other) = default;

QEL::CDateTime::operator long32() const { return GetTotalSeconds(nullptr); }
QEL::CDateTime::operator std::uint64_t() const { return GetTotalMilliseconds(); }

QEL::CDateTime QEL::CDateTime::operator+(CTimeSpan span) const {
    return CDateTime(GetTotalMilliseconds() + span.GetTotalMilliseconds(), record_.local);
}

QEL::CDateTime QEL::CDateTime::operator-(CTimeSpan span) const {
    return CDateTime(GetTotalMilliseconds() - span.GetTotalMilliseconds(), record_.local);
}

QEL::CDateTime& QEL::CDateTime::operator+=(CTimeSpan span) { return *this = *this + span; }
QEL::CDateTime& QEL::CDateTime::operator-=(CTimeSpan span) { return *this = *this - span; }

QEL::CTimeSpan QEL::CDateTime::operator-(CDateTime other) const {
    // Quirk: a later moment gives a span that wraps around; whoever adds it gets back to where it
    // was. Pinned by TmEveryZone.MovesBySpansAndTellsThem.
    return CTimeSpan(GetTotalMilliseconds() - other.GetTotalMilliseconds());
}

long32 QEL::CDateTime::Difference(const CDateTime& other) const {
    const auto mine = static_cast<std::uint32_t>(GetTotalSeconds(nullptr));
    return static_cast<long32>(mine - static_cast<std::uint32_t>(other.GetTotalSeconds(nullptr)));
}

bool QEL::CDateTime::operator==(const CDateTime& other) const {
    return CDate::operator==(other) && CTime::operator==(other);
}

bool QEL::CDateTime::operator<(const CDateTime& other) const {
    if (!CDate::operator==(other)) return CDate::operator<(other);
    return CTime::operator<(other);
}

bool QEL::CDateTime::IsValid() const { return IsDateValid() && IsTimeValid(); }

CQELString QEL::CDateTime::Format(const char* picture) const {
    if (!picture || !CanBeFormatted(record_.fields)) return CQELString();
    char text[1024] = "";
    if (::strftime(text, sizeof text, picture, &record_.fields) == 0) return CQELString();
    return CQELString(text);
}

bool QEL::CDateTime::GetAsSystemTime(SYSTEMTIME& st) const {
    const int year = Year(), month = Month();
    const int weekday = DayOfWeek();  // carries: what follows are the fields after it
    st = kit::MakeSystemTime(year, month, Day(), Hour(), Minute(), Second());
    st.wDayOfWeek = kit::ToField(weekday);
    st.wMilliseconds = record_.millisecond;
    return IsValid();
}

void QEL::CDateTime::GetLocalTime(CDateTime& out) const { GetLocalOrSystemTime(true, out); }
void QEL::CDateTime::GetSystemTime(CDateTime& out) const { GetLocalOrSystemTime(false, out); }

void QEL::CDateTime::GetLocalOrSystemTime(bool to_local, CDateTime& out) const {
    if (record_.local == to_local) {
        out = *this;
    } else if (to_local) {
        qeltm local = {{}, record_.millisecond, true};
        if (kit::ReadingFromSeconds(GetTotalSeconds(nullptr), local.fields)) out = CDateTime(local);
    } else {
        const kit::LocalZone zone = kit::GetLocalZone();
        auto seconds = static_cast<std::uint32_t>(GetTotalSeconds(nullptr));
        seconds += static_cast<std::uint32_t>(zone.seconds_west);
        // Quirk: the hour of summer time counts a second time, which suits values that were made
        // from fields or seconds; one that came from GetLocalTime in summer gets back an hour
        // early. Pinned by TmEveryZone.ConvertsEveryHour.
        if (record_.fields.tm_isdst > 0) seconds += static_cast<std::uint32_t>(zone.summer_bias);
        out = CDateTime(std::int64_t{static_cast<std::int32_t>(seconds)}, false);
    }
}

namespace {

constexpr int kCodeOfUtc = 50;

}  // namespace

char QEL::CDateTime::GetSelfTimeZone() {
    struct __timeb64 now;
    ::_ftime64(&now);
    return static_cast<char>(kCodeOfUtc + now.timezone / 60);
}

int QEL::CDateTime::GetTimeZoneHours(char code) {
    constexpr char kFirstCode = 37, kLastCode = 62;
    constexpr int kNoZone = 28;
    return code >= kFirstCode && code <= kLastCode ? code - kCodeOfUtc : kNoZone;
}

CQELString QEL::CDateTime::TextDateTime(int date_form, int time_form, int order) const {
    return kit::JoinTexts(TextDate(date_form), TextTime(time_form), order);
}

QEL::CUTCDateTime::CUTCDateTime() : CDateTime(false) {}
QEL::CUTCDateTime::CUTCDateTime(long32 seconds) : CDateTime(std::int64_t{seconds}, false) {}
QEL::CUTCDateTime::CUTCDateTime(std::int64_t seconds) : CDateTime(seconds, false) {}
QEL::CUTCDateTime::CUTCDateTime(std::uint64_t milliseconds) : CDateTime(milliseconds, false) {}
QEL::CUTCDateTime::CUTCDateTime(const CUTCDateTime& other) = default;
QEL::CUTCDateTime& QEL::CUTCDateTime::operator=(const CUTCDateTime& other) = default;
QEL::CUTCDateTime::~CUTCDateTime() = default;

CQELString QEL::getdtstring(std::int64_t seconds, bool local, int dateForm, int timeForm) {
    const CUTCDateTime utc(seconds);
    CDateTime out = utc;
    if (local) utc.GetLocalTime(out);
    return out.TextDateTime(dateForm, timeForm, 0);
}

CQELString QEL::gettimecurrstring() { return CDateTime(true).TextTime(2); }
