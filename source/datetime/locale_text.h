#pragma once

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "text/qel_string.h"

// Dates and times in the form of the user's locale, and the library's own language. No operation
// throws or keeps a state; any thread may call them.

// A date by the user's settings.
//   flags  as GetDateFormatA takes them: 1 short date, 2 long date, 8 year and month
//   st     the date; null is the current one. The weekday is not used.
// Empty when the platform refuses the date or the flags. On Windows NT before 5.0, which has no
// form of year and month, flags 8 gives the month's name and the year.
QELKIT_API CQELString GetDateFormatLocaleUserDefault(ulong32 flags, const SYSTEMTIME* st);

// A time of day in the form of the user's locale, without the user's own changes to it.
//   st     the time; null is the current one
// Empty when the platform refuses the time.
QELKIT_API CQELString GetTimeFormatLocaleUserDefault(const SYSTEMTIME* st);

// The order of the fields is part of the binary interface.
struct CQELLocaleInfo {
    int language_id = 0;  // 0 Russian, 1 and 2 English (ENU, ENI), 3 German, 4 Spanish, 5 French
    CQELString language_tag;  // the three letters: "RUS", "ENU", "ENI", "DEU", "ESP", "FRA"
};

// The language of the library, as string resource 1021 names it. Returns 1; or 0 when the resource
// is missing (`info` is untouched) or names no language of the table (only the tag is set), and
// when `info` is null.
QELKIT_API int CQELGetLocale(CQELLocaleInfo* info);
