#pragma once

#include "text/qel_string.h"

// The text forms that both families of date classes share.

namespace kit {

// Forms 0 and 1 (digits) and 3 to 5 (the user's locale) of a date; empty for any other.
CQELString DateText(int form, int year, int month, int day);

// Forms 0 and 1 (digits) of a time of day; empty for any other.
CQELString TimeText(int form, int hour, int minute, int second);

// order 0: date, blank, time; 1: time, blank, date; empty for any other.
CQELString JoinTexts(const CQELString& date, const CQELString& time, int order);

}  // namespace kit
