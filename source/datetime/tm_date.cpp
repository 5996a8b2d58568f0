#include <tuple>

#include "datetime/detail/calendar.h"
#include "datetime/detail/runtime_time.h"
#include "datetime/detail/text_forms.h"
#include "datetime/tm_datetime.h"

static_assert(sizeof(QEL::CDate) == 40, "the size is part of the binary interface");

namespace {

constexpr int kFirstTmYear = 1900;

}  // namespace

QEL::CDate::CDate(bool local) : CTime(local) {}

QEL::CDate::CDate(int year, int month, int day, bool local) : CTime(0, 0, 0, 0, local) {
    record_.fields.tm_mday = day;
    record_.fields.tm_mon = kit::WrappingAdd(month, -1);
    record_.fields.tm_year = kit::WrappingAdd(year, -kFirstTmYear);
    Recalculate(nullptr);
}

QEL::CDate::CDate(const CDate& other) = default;
QEL::CDate& QEL::CDate::operator=(const CDate& other) = default;

int QEL::CDate::Month() const { return kit::WrappingAdd(record_.fields.tm_mon, 1); }
int QEL::CDate::Year() const { return kit::WrappingAdd(record_.fields.tm_year, kFirstTmYear); }

QEL::CDate& QEL::CDate::Day(int day) {
    SetField(record_.fields.tm_mday, day);
    return *this;
}

QEL::CDate& QEL::CDate::Month(int month) {
    SetField(record_.fields.tm_mon, kit::WrappingAdd(month, -1));
    return *this;
}

QEL::CDate& QEL::CDate::Year(int year) {
    SetField(record_.fields.tm_year, kit::WrappingAdd(year, -kFirstTmYear));
    return *this;
}

int QEL::CDate::GetDaysOf(int which) const {
    Recalculate(nullptr);
    return which == 0 ? record_.fields.tm_wday : record_.fields.tm_yday;
}

bool QEL::CDate::IsDateValid() const { return kit::IsDay(Year(), Month(), Day()); }

bool QEL::CDate::operator==(const CDate& other) const {
    return Year() == other.Year() && Month() == other.Month() && Day() == other.Day();
}

// By the stored fields, which do not wrap.
bool QEL::CDate::operator<(const CDate& other) const {
    const tm &a = record_.fields, &b = other.record_.fields;
    return std::tie(a.tm_year, a.tm_mon, a.tm_mday) < std::tie(b.tm_year, b.tm_mon, b.tm_mday);
}

CQELString QEL::CDate::TextDate(int form) const {
    constexpr int kWithSlashes = 2;
    if (form != kWithSlashes) return kit::DateText(form, Year(), Month(), Day());
    return CQELString().Format("%02d/%02d/%4d", Day(), Month(), Year());
}
