#include "datetime/time_span.h"

#include "datetime/detail/span_text.h"
#include "platform/multibyte.h"

static_assert(sizeof(QEL::CTimeSpan) == 16, "the size is part of the binary interface");

namespace {

constexpr std::int64_t kMinute = 60, kHour = 3600, kDay = 86400;

constexpr std::uint32_t Low32(std::int64_t value) { return static_cast<std::uint32_t>(value); }

// whole - size * parts, wrapping in 32 bits.
constexpr int Rest(std::int64_t whole, std::uint32_t size, long32 parts) {
    return static_cast<int>(Low32(whole) - size * Low32(parts));
}

constexpr std::int64_t Seconds(int days, int hours, int minutes, int seconds) {
    const std::uint32_t sum =
        ((Low32(days) * 24 + Low32(hours)) * 60 + Low32(minutes)) * 60 + Low32(seconds);
    return static_cast<std::int32_t>(sum);
}

}  // namespace

QEL::CTimeSpan::CTimeSpan() : CTimeSpan(std::int64_t{0}, 0) {}
QEL::CTimeSpan::CTimeSpan(int days, int hours, int minutes, int seconds, int milliseconds)
    : CTimeSpan(Seconds(days, hours, minutes, seconds), milliseconds) {}
QEL::CTimeSpan::CTimeSpan(std::int64_t seconds, int milliseconds)
    : seconds_(seconds), milliseconds_(milliseconds) {}
QEL::CTimeSpan::CTimeSpan(std::uint64_t milliseconds)
    : CTimeSpan(static_cast<std::int64_t>(milliseconds / 1000),
                static_cast<int>(milliseconds % 1000)) {}
QEL::CTimeSpan::CTimeSpan(const CTimeSpan& other) = default;

const QEL::CTimeSpan& QEL::CTimeSpan::operator=(const CTimeSpan& other) {
    seconds_ = other.seconds_;
    milliseconds_ = other.milliseconds_;
    return *this;
}

std::uint64_t QEL::CTimeSpan::GetTotalMilliseconds() const {
    // Quirk: the seconds are cut to 32 bits and lose their sign, so a negative span is greater than
    // zero and spans of 136 years are short; records kept by callers were compared and added this
    // way. Pinned by TimeSpan.ComparesAndAddsTotalsWithoutASign.
    return std::uint64_t{Low32(seconds_)} * 1000 + static_cast<std::uint64_t>(milliseconds_);
}

long32 QEL::CTimeSpan::GetTotalSeconds() const { return static_cast<long32>(seconds_); }
long32 QEL::CTimeSpan::GetDays() const { return static_cast<long32>(seconds_ / kDay); }
long32 QEL::CTimeSpan::GetTotalHours() const { return static_cast<long32>(seconds_ / kHour); }
long32 QEL::CTimeSpan::GetTotalMinutes() const { return static_cast<long32>(seconds_ / kMinute); }
int QEL::CTimeSpan::GetHours() const { return Rest(GetTotalHours(), 24, GetDays()); }
int QEL::CTimeSpan::GetMinutes() const { return Rest(GetTotalMinutes(), 60, GetTotalHours()); }
int QEL::CTimeSpan::GetSeconds() const { return Rest(seconds_, 60, GetTotalMinutes()); }

bool QEL::CTimeSpan::operator==(const CTimeSpan& other) const {
    return GetTotalMilliseconds() == other.GetTotalMilliseconds();
}

bool QEL::CTimeSpan::operator<(const CTimeSpan& other) const {
    return GetTotalMilliseconds() < other.GetTotalMilliseconds();
}

QEL::CTimeSpan QEL::CTimeSpan::operator+(const CTimeSpan& other) const {
    return CTimeSpan(GetTotalMilliseconds() + other.GetTotalMilliseconds());
}

QEL::CTimeSpan QEL::CTimeSpan::operator-(const CTimeSpan& other) const {
    return CTimeSpan(GetTotalMilliseconds() - other.GetTotalMilliseconds());
}

QEL::CTimeSpan& QEL::CTimeSpan::operator+=(const CTimeSpan& other) {
    *this = *this + other;
    return *this;
}

QEL::CTimeSpan& QEL::CTimeSpan::operator-=(const CTimeSpan& other) {
    *this = *this - other;
    return *this;
}

CQELString QEL::CTimeSpan::Format(const char* picture) const {
    if (!picture) return CQELString();
    char text[kit::kSpanTextRoom];
    kit::FormatSpan(picture, {GetDays(), GetHours(), GetMinutes(), GetSeconds(), milliseconds_},
                    &kit::CharacterLength, text);
    return CQELString(text);
}
