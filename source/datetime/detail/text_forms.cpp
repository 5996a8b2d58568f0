#include "datetime/detail/text_forms.h"

#include "datetime/detail/runtime_time.h"
#include "datetime/locale_text.h"

namespace kit {
namespace {

struct DateForm {
    int form;
    const char* picture;  // of day, month, year; null: the platform formats
    ulong32 locale_flags;
};

// clang-format off
constexpr DateForm kDateForms[] = {
    {0, "%2d.%02d.%4d",  0},
    {1, "%02d.%02d.%4d", 0},
    {3, nullptr,         DATE_SHORTDATE},
    {4, nullptr,         DATE_LONGDATE},
    {5, nullptr,         DATE_YEARMONTH},
};
// clang-format on

struct TimeForm {
    int form;
    const char* picture;  // of hour, minute, second
};

constexpr TimeForm kTimeForms[] = {
    {0, "%2d:%02d:%02d"},
    {1, "%02d:%02d:%02d"},
};

template <typename Form, std::size_t N>
const Form* FindForm(const Form (&forms)[N], int number) {
    for (const Form& form : forms) {
        if (form.form == number) return &form;
    }
    return nullptr;
}

}  // namespace

CQELString DateText(int form, int year, int month, int day) {
    const DateForm* const found = FindForm(kDateForms, form);
    if (!found) return CQELString();
    if (found->picture) return CQELString().Format(found->picture, day, month, year);
    const SYSTEMTIME st = MakeSystemTime(year, month, day, 0, 0, 0);
    return GetDateFormatLocaleUserDefault(found->locale_flags, &st);
}

CQELString TimeText(int form, int hour, int minute, int second) {
    const TimeForm* const found = FindForm(kTimeForms, form);
    return found ? CQELString().Format(found->picture, hour, minute, second) : CQELString();
}

CQELString JoinTexts(const CQELString& date, const CQELString& time, int order) {
    if (order == 0) return date + " " + time;
    if (order == 1) return time + " " + date;
    return CQELString();
}

}  // namespace kit
