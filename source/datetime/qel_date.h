#pragma once

#include "base/export.h"
#include "text/qel_string.h"

// A calendar date: year, month and day, each a 32-bit signed number.
//
// Constructors and setters take any value; IsValid() tells whether the fields are a date. Nothing
// here throws. A plain value: objects that threads share need a lock of the caller's.
//
// The order of the virtual functions (the destructor alone) and of the fields is part of the
// binary interface: add only at the end.
class QELKIT_API CQELDate {
public:
    // Today, by the local clock.
    CQELDate();
    // These fields, unchecked: full year, month 1..12, 1-based day.
    CQELDate(int year, int month, int day);
    CQELDate(const CQELDate& other);
    CQELDate& operator=(const CQELDate& other);
    virtual ~CQELDate();

    // 1-based day of the month, month 1..12, full year (2024).
    int Day() const;
    int Month() const;
    int Year() const;
    // Store the value unchecked and return this date, so that calls chain.
    CQELDate& Day(int day);
    CQELDate& Month(int month);
    CQELDate& Year(int year);

    // 0 is Sunday, 6 Saturday; and 0 is 1 January, 365 the last day of a leap year. Fields out of
    // range carry over: 31 April answers as 1 May. 0 for dates that the C runtime cannot convert
    // (before 1970 or after 3000).
    int DayOfWeek() const;
    int DayOfYear() const;

    // Whether the fields are a date from 2 January 1971 to 31 December 2037.
    bool IsValid() const;

    // By year, then month, then day.
    bool operator==(const CQELDate& other) const;
    bool operator<(const CQELDate& other) const;
    bool operator!=(const CQELDate& other) const;
    bool operator<=(const CQELDate& other) const;
    bool operator>(const CQELDate& other) const;
    bool operator>=(const CQELDate& other) const;

    // The date as text; of 5 March 2024:
    //   0  " 5.03.2024"
    //   1  "05.03.2024"
    //   3  the user's short date form
    //   4  the user's long date form
    //   5  the user's form of year and month
    // Empty for any other form, and when the platform cannot format the date (3 to 5).
    CQELString TextDate(int form) const;

private:
    // `which` 0: the weekday, 1: the day of the year.
    int GetDaysOf(int which) const;

    int day_;
    int month_;
    int year_;
};

inline int CQELDate::Day() const { return day_; }
inline int CQELDate::Month() const { return month_; }
inline int CQELDate::Year() const { return year_; }
inline int CQELDate::DayOfWeek() const { return GetDaysOf(0); }
inline int CQELDate::DayOfYear() const { return GetDaysOf(1); }
inline bool CQELDate::operator!=(const CQELDate& other) const { return !(*this == other); }
inline bool CQELDate::operator<=(const CQELDate& other) const {
    return *this < other || *this == other;
}
inline bool CQELDate::operator>(const CQELDate& other) const { return other < *this; }
inline bool CQELDate::operator>=(const CQELDate& other) const { return other <= *this; }
