#include <sys/timeb.h>

#include "datetime/detail/calendar.h"
#include "datetime/detail/runtime_time.h"
#include "datetime/detail/text_forms.h"
#include "datetime/locale_text.h"
#include "datetime/tm_datetime.h"

static_assert(sizeof(qeltm) == 40 && sizeof(QEL::CTime) == 40,
              "the size is part of the binary interface");

namespace {

constexpr std::int64_t kRefused = -1;

// The runtime's conversions. A UTC reading is counted by the calendar alone: by way of the local
// zone, the hour that the clocks skip in spring would be another one.
std::int64_t SecondsOf(tm& reading, bool local) {
    if (!local) return ::_mkgmtime64(&reading);
    return kit::SecondsFromReading(reading).value_or(kRefused);
}

}  // namespace

QEL::CTime::CTime(bool local) { SetDefaultValue(local); }

QEL::CTime::CTime(int hour, int minute, int second, int millisecond, bool local) : CTime(local) {
    Milliseconds(millisecond);
    record_.fields.tm_sec = second;
    record_.fields.tm_min = minute;
    record_.fields.tm_hour = hour;
    Recalculate(nullptr);
}

QEL::CTime::CTime(const CTime& other) = default;
QEL::CTime& QEL::CTime::operator=(const CTime& other) = default;

void QEL::CTime::SetDefaultValue(bool local) {
    struct __timeb64 now;
    ::_ftime64(&now);
    record_.fields = local ? *::_localtime64(&now.time) : *::_gmtime64(&now.time);
    record_.millisecond = now.millitm;
    record_.local = local;
}

long32 QEL::CTime::GetTotalSeconds(struct tm* normalized) const {
    tm reading = record_.fields;
    std::int64_t seconds = SecondsOf(reading, record_.local);
    if (normalized) *normalized = reading;
    if (seconds == kRefused) return 0;
    if (record_.local) seconds -= kit::GetLocalZone().seconds_west;
    // Callers keep the count in 32 bits.
    return static_cast<long32>(static_cast<std::uint32_t>(seconds));
}

std::int64_t QEL::CTime::Recalculate(struct tm* normalized) const {
    std::int64_t seconds = GetTotalSeconds(normalized);
    const kit::LocalZone zone = kit::GetLocalZone();
    // Quirk: a local value in a zone with summer time is put ahead by its hour each time, and is
    // one in standard time afterwards. Programs have set their clocks against it. Pinned by
    // TmSummerTime.MovesLocalValuesByAnHourEachTime.
    if (record_.local && zone.has_summer_time) seconds -= zone.summer_bias;
    if (const tm* const fields = ::_gmtime64(&seconds)) record_.fields = *fields;
    return seconds;
}

void QEL::CTime::SetField(int& field, int value) {
    if (field == value) return;
    field = value;
    Recalculate(nullptr);
}

QEL::CTime& QEL::CTime::Hour(int hour) {
    SetField(record_.fields.tm_hour, hour);
    return *this;
}

QEL::CTime& QEL::CTime::Minute(int minute) {
    SetField(record_.fields.tm_min, minute);
    return *this;
}

QEL::CTime& QEL::CTime::Second(int second) {
    SetField(record_.fields.tm_sec, second);
    return *this;
}

QEL::CTime& QEL::CTime::Milliseconds(int millisecond) {
    record_.millisecond = static_cast<std::uint16_t>(millisecond);
    return *this;
}

bool QEL::CTime::IsTimeValid() const {
    return kit::IsTimeOfDay(Hour(), Minute(), Second(), Milliseconds());
}

std::uint64_t QEL::CTime::GetTotalMilliseconds() const {
    const auto seconds = static_cast<std::uint32_t>(GetTotalSeconds(nullptr));
    return std::uint64_t{seconds} * 1000 + record_.millisecond;
}

int QEL::CTime::AllSeconds() const {
    const auto hours = static_cast<std::uint32_t>(Hour());
    const std::uint32_t minutes = hours * 60 + static_cast<std::uint32_t>(Minute());
    return static_cast<int>(minutes * 60 + static_cast<std::uint32_t>(Second()));
}

bool QEL::CTime::operator==(const CTime& other) const {
    return AllSeconds() == other.AllSeconds() && record_.millisecond == other.record_.millisecond &&
           record_.local == other.record_.local;
}

bool QEL::CTime::operator<(const CTime& other) const {
    if (AllSeconds() != other.AllSeconds()) return AllSeconds() < other.AllSeconds();
    return record_.millisecond < other.record_.millisecond;
}

CQELString QEL::CTime::TextTime(int form) const {
    constexpr int kWithMilliseconds = 2, kLocaleForm = 3;
    if (form == kWithMilliseconds) {
        return CQELString().Format("%02d:%02d:%02d.%03d", Hour(), Minute(), Second(),
                                   Milliseconds());
    }
    if (form != kLocaleForm) return kit::TimeText(form, Hour(), Minute(), Second());
    const SYSTEMTIME st = kit::MakeSystemTime(0, 0, 0, Hour(), Minute(), Second());
    return GetTimeFormatLocaleUserDefault(&st);
}
