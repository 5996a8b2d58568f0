#include "datetime/qel_time.h"

#include <tuple>

#include "datetime/detail/calendar.h"
#include "datetime/detail/runtime_time.h"
#include "datetime/detail/text_forms.h"
#include "datetime/locale_text.h"

static_assert(sizeof(CQELTime) == 24, "the size is part of the binary interface");

CQELTime::CQELTime() {
    const SYSTEMTIME now = kit::Now(true);
    Hour(now.wHour).Minute(now.wMinute).Second(now.wSecond).Milliseconds(now.wMilliseconds);
}

CQELTime::CQELTime(int hour, int minute, int second, int millisecond)
    : hour_(hour), minute_(minute), second_(second), millisecond_(millisecond) {}
CQELTime::CQELTime(const CQELTime& other) = default;
CQELTime& CQELTime::operator=(const CQELTime& other) = default;
CQELTime::~CQELTime() = default;

CQELTime& CQELTime::Hour(int hour) {
    hour_ = hour;
    return *this;
}

CQELTime& CQELTime::Minute(int minute) {
    minute_ = minute;
    return *this;
}

CQELTime& CQELTime::Second(int second) {
    second_ = second;
    return *this;
}

CQELTime& CQELTime::Milliseconds(int millisecond) {
    millisecond_ = millisecond;
    return *this;
}

bool CQELTime::IsValid() const { return kit::IsTimeOfDay(hour_, minute_, second_, millisecond_); }

bool CQELTime::operator==(const CQELTime& other) const {
    return hour_ == other.hour_ && minute_ == other.minute_ && second_ == other.second_ &&
           millisecond_ == other.millisecond_;
}

bool CQELTime::operator<(const CQELTime& other) const {
    return std::tie(hour_, minute_, second_, millisecond_) <
           std::tie(other.hour_, other.minute_, other.second_, other.millisecond_);
}

CQELString CQELTime::TextTime(int form) const {
    constexpr int kLocaleForm = 3;
    if (form != kLocaleForm) return kit::TimeText(form, hour_, minute_, second_);
    SYSTEMTIME st = kit::Now(true);
    st.wHour = kit::ToField(hour_);
    st.wMinute = kit::ToField(minute_);
    st.wSecond = kit::ToField(second_);
    st.wMilliseconds = kit::ToField(millisecond_);
    return GetTimeFormatLocaleUserDefault(&st);
}
