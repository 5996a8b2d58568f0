#include "datetime/qel_date.h"

#include <tuple>

#include "datetime/detail/calendar.h"
#include "datetime/detail/runtime_time.h"
#include "datetime/detail/text_forms.h"

static_assert(sizeof(CQELDate) == 24, "the size is part of the binary interface");

CQELDate::CQELDate() {
    const SYSTEMTIME now = kit::Now(true);
    Year(now.wYear).Month(now.wMonth).Day(now.wDay);
}

CQELDate::CQELDate(int year, int month, int day) : day_(day), month_(month), year_(year) {}
CQELDate::CQELDate(const CQELDate& other) = default;
CQELDate& CQELDate::operator=(const CQELDate& other) = default;
CQELDate::~CQELDate() = default;

CQELDate& CQELDate::Day(int day) {
    day_ = day;
    return *this;
}

CQELDate& CQELDate::Month(int month) {
    month_ = month;
    return *this;
}

CQELDate& CQELDate::Year(int year) {
    year_ = year;
    return *this;
}

int CQELDate::GetDaysOf(int which) const {
    tm reading = kit::MakeReading(year_, month_, day_, 0, 0, 0, kit::kStandardTime);
    const auto seconds = kit::SecondsFromReading(reading);
    if (!seconds || !kit::ReadingFromSeconds(*seconds, reading)) return 0;
    return which == 0 ? reading.tm_wday : reading.tm_yday;
}

bool CQELDate::IsValid() const {
    // Quirk: the first day of the range is refused; callers count on 2 January 1971 as the first
    // valid day. Pinned by Date.IsValidFrom2January1971To31December2037.
    if (year_ == kit::kFirstYear && month_ == 1 && day_ < 2) return false;
    return kit::IsDay(year_, month_, day_);
}

bool CQELDate::operator==(const CQELDate& other) const {
    return year_ == other.year_ && month_ == other.month_ && day_ == other.day_;
}

bool CQELDate::operator<(const CQELDate& other) const {
    return std::tie(year_, month_, day_) < std::tie(other.year_, other.month_, other.day_);
}

CQELString CQELDate::TextDate(int form) const { return kit::DateText(form, year_, month_, day_); }
