#pragma once

#include <cstdint>
#include <ctime>

#include "base/export.h"
#include "base/types.h"
#include "datetime/time_span.h"
#include "platform/windows.h"
#include "text/qel_string.h"

// Dates and times on the C runtime's broken-down time. Unlike CQELDate and its family, every value
// knows whether it is local or UTC, and a setter carries at once what does not fit: Minute(75) is a
// quarter past the next hour.
//
// In a zone with summer time local values are made for a program that lives in summer time. Their
// count of seconds is that of the reading in standard time, and carrying puts the clock ahead by
// the difference to summer time, whatever the season: so every setter that changes something moves
// a local value by that hour, and so do DayOfWeek() and DayOfYear(), which carry first. UTC values,
// and local ones in zones without summer time, only move by what is asked of them.
//
// Counts of seconds are 32 bits wide and start at 1970: carrying leaves alone what lies before that
// or after January 2038. Nothing here throws; callers test IsValid(). A plain value: objects that
// threads share need a lock of the caller's, for reading too.

// The whole state of a value. The order of the fields is part of the binary interface.
struct qeltm {
    struct tm fields;           // as the C runtime has them: month from 0, year from 1900
    std::uint16_t millisecond;  // 0..999
    bool local;                 // false: UTC
};

namespace QEL {

// A time of day. The date of the value, today's at first, does not show, but is carried into.
class QELKIT_API CTime {
public:
    // The current moment: local time, or UTC.
    CTime(bool local = true);
    // That time of today, carried when it is none; today and the time are local, or UTC. Fields:
    // `hour`, `minute`, `second`, `millisecond`.
    CTime(int hour, int minute, int second, int millisecond, bool local);
    CTime(const CTime& other);
    CTime& operator=(const CTime& other);

    // The fields.
    int Hour() const;
    int Minute() const;
    int Second() const;
    int Milliseconds() const;
    // Set a field and carry, unless it has that value already. Milliseconds stores the low 16 bits
    // and carries nothing.
    CTime& Hour(int hour);
    CTime& Minute(int minute);
    CTime& Second(int second);
    CTime& Milliseconds(int millisecond);

    // Whether the fields are a time from 00:00:00.000 to 23:59:59.999.
    bool IsTimeValid() const;

    // Milliseconds since 1970 of date and time together: 1000 times the 32-bit count of seconds,
    // taken as unsigned, and the millisecond.
    std::uint64_t GetTotalMilliseconds() const;

    // By hour, minute, second and millisecond, without the date. A local and a UTC value are
    // never equal, though neither need be less.
    bool operator==(const CTime& other) const;
    bool operator<(const CTime& other) const;
    bool operator!=(const CTime& other) const;
    bool operator<=(const CTime& other) const;
    bool operator>(const CTime& other) const;
    bool operator>=(const CTime& other) const;

    // The time as text; of 9:05:07.003:
    //   0  " 9:05:07"
    //   1  "09:05:07"
    //   2  "09:05:07.003"
    //   3  the system's time form in the user's locale, without the user's own changes to it
    // Empty for any other form, and when the platform cannot format the time (3).
    CQELString TextTime(int form) const;

protected:
    // A copy of `record`, not carried.
    explicit CTime(const qeltm& record);

    // Seconds since midnight.
    int AllSeconds() const;
    // Seconds since 1970 of the reading, as if it were UTC; of a local value in summer time less
    // the hour that it is ahead. 0 when the runtime refuses the reading. `normalized`, if not null,
    // becomes the reading as the runtime puts it right, or as it is when the runtime refuses it.
    long32 GetTotalSeconds(struct tm* normalized) const;
    // Carries and returns the seconds that the reading then counts. `normalized` as above.
    std::int64_t Recalculate(struct tm* normalized) const;
    // Becomes the current moment.
    void SetDefaultValue(bool local);
    // Stores a field, if it changes, and carries.
    void SetField(int& field, int value);

    mutable qeltm record_;  // asking for the weekday carries
};

inline int CTime::Hour() const { return record_.fields.tm_hour; }
inline int CTime::Minute() const { return record_.fields.tm_min; }
inline int CTime::Second() const { return record_.fields.tm_sec; }
inline int CTime::Milliseconds() const { return record_.millisecond; }
inline bool CTime::operator!=(const CTime& other) const { return !(*this == other); }
inline bool CTime::operator<=(const CTime& other) const { return *this < other || *this == other; }
inline bool CTime::operator>(const CTime& other) const { return other < *this; }
inline bool CTime::operator>=(const CTime& other) const { return other <= *this; }
inline CTime::CTime(const qeltm& record) : record_(record) {}

// A date. The time of the value does not show.
class QELKIT_API CDate : public CTime {
public:
    // The current moment: local time, or UTC.
    CDate(bool local = true);
    // The day `year`, `month` (1..12), `day` at 00:00, local or UTC; a day that does not exist is
    // carried: 30 February is in March.
    CDate(int year, int month, int day, bool local);
    CDate(const CDate& other);
    CDate& operator=(const CDate& other);

    // The fields: day of the month from 1, month 1..12, full year (2024).
    int Day() const;
    int Month() const;
    int Year() const;
    // Set a field and carry, unless it has that value already.
    CDate& Day(int day);
    CDate& Month(int month);
    CDate& Year(int year);

    // 0 is Sunday; 0 is 1 January. These carry, which changes the object, and then tell.
    int DayOfWeek() const;
    int DayOfYear() const;

    // Whether the fields are a day from 1 January 1971 to 31 December 2037.
    bool IsDateValid() const;

    // By year, month and day.
    bool operator==(const CDate& other) const;
    bool operator<(const CDate& other) const;
    bool operator!=(const CDate& other) const;
    bool operator<=(const CDate& other) const;
    bool operator>(const CDate& other) const;
    bool operator>=(const CDate& other) const;

    // The date as text; of 5 March 2024:
    //   0  " 5.03.2024"
    //   1  "05.03.2024"
    //   2  "05/03/2024"
    //   3, 4, 5  short, long, and year and month only, by the user's settings
    // Empty for any other form, and when the platform cannot format the date (3 to 5).
    CQELString TextDate(int form) const;

protected:
    // A copy of `record`, not carried.
    explicit CDate(const qeltm& record);

private:
    int GetDaysOf(int which) const;
};

inline int CDate::Day() const { return record_.fields.tm_mday; }
inline int CDate::DayOfWeek() const { return GetDaysOf(0); }
inline int CDate::DayOfYear() const { return GetDaysOf(1); }
inline bool CDate::operator!=(const CDate& other) const { return !(*this == other); }
inline bool CDate::operator<=(const CDate& other) const { return *this < other || *this == other; }
inline bool CDate::operator>(const CDate& other) const { return other < *this; }
inline bool CDate::operator>=(const CDate& other) const { return other <= *this; }
inline CDate::CDate(const qeltm& record) : CTime(record) {}

// A date and a time of day.
class QELKIT_API CDateTime : public CDate {
public:
    // The current moment: local time, or UTC.
    CDateTime(bool local = true);
    // That reading, carried when it is none; `month` is 1..12. A local value in a zone with summer
    // time counts as a reading in summer time.
    CDateTime(int year, int month, int day, int hour, int minute, int second, int millisecond,
              bool local);
    // The same from the SYSTEMTIME `st`; its weekday is ignored. Null gives the current moment.
    CDateTime(SYSTEMTIME* st, bool local);
    // The reading so many seconds after 1 January 1970; a local one in a zone with summer time is
    // put ahead by its hour. The millisecond is that of the clock. Seconds that the runtime cannot
    // convert (negative ones, or after the year 3000) give the fields of the current local moment.
    CDateTime(std::int64_t seconds, bool local);
    // The same with milliseconds, which are kept.
    CDateTime(std::uint64_t milliseconds, bool local);
    CDateTime(const CDateTime& other);
    CDateTime& operator=(const CDateTime& other);

    // Seconds since 1970 of the reading, see above; 32 bits.
    operator long32() const;
    // GetTotalMilliseconds()
    operator std::uint64_t() const;

    // The value moved by a span, its millisecond included; by the total milliseconds of both.
    CDateTime operator+(CTimeSpan span) const;
    CDateTime operator-(CTimeSpan span) const;
    CDateTime& operator+=(CTimeSpan span);
    CDateTime& operator-=(CTimeSpan span);
    // The span since `other`; a huge one when `other` is later.
    CTimeSpan operator-(CDateTime other) const;
    // Seconds since `other`; 32 bits, negative when it is later.
    long32 Difference(const CDateTime& other) const;

    // By date, then by time.
    bool operator==(const CDateTime& other) const;
    bool operator<(const CDateTime& other) const;
    bool operator!=(const CDateTime& other) const;
    bool operator<=(const CDateTime& other) const;
    bool operator>(const CDateTime& other) const;
    bool operator>=(const CDateTime& other) const;

    // IsDateValid() and IsTimeValid()
    bool IsValid() const;

    // strftime of the value by `picture`. Empty when the text is longer than 1023 characters, when
    // fields are out of their range, and for null.
    CQELString Format(const char* picture) const;

    // Sets `st` to the fields, the weekday included (which carries); returns IsValid(). What `st`
    // cannot hold becomes 65535.
    bool GetAsSystemTime(SYSTEMTIME& st) const;

    // Set `out` to this moment in local time, with the millisecond, or in UTC, with the clock's
    // millisecond; or to a copy, when the value is in that already. A moment that the runtime
    // cannot convert leaves `out` alone.
    void GetLocalTime(CDateTime& out) const;
    void GetSystemTime(CDateTime& out) const;

    // The local zone as one character: '2' is UTC, and each hour west of it is one more.
    static char GetSelfTimeZone();
    // The hours west of UTC for such a character, `code`; 28 for one that is none.
    static int GetTimeZoneHours(char code);

    // TextDate(date_form) and TextTime(time_form) with a blank in between: the date first (order
    // 0) or the time first (order 1). Empty for any other order.
    CQELString TextDateTime(int date_form, int time_form, int order) const;

protected:
    // A copy of `record`, not carried.
    explicit CDateTime(const qeltm& record);

private:
    // Takes the fields of the reading at `seconds`; the rest of the record is there.
    void ConvertFrom(std::int64_t seconds);
    void GetLocalOrSystemTime(bool to_local, CDateTime& out) const;
};

inline bool CDateTime::operator!=(const CDateTime& other) const { return !(*this == other); }
inline bool CDateTime::operator<=(const CDateTime& other) const {
    return *this < other || *this == other;
}
inline bool CDateTime::operator>(const CDateTime& other) const { return other < *this; }
inline bool CDateTime::operator>=(const CDateTime& other) const { return other <= *this; }

// A date-time in UTC. It has a virtual destructor, its base has none: never delete one through a
// pointer to CDateTime.
class QELKIT_API CUTCDateTime : public CDateTime {
public:
    // The current moment.
    CUTCDateTime();
    // As CDateTime(seconds, false) and CDateTime(milliseconds, false).
    CUTCDateTime(long32 seconds);
    CUTCDateTime(std::int64_t seconds);
    CUTCDateTime(std::uint64_t milliseconds);
    CUTCDateTime(const CUTCDateTime& other);
    CUTCDateTime& operator=(const CUTCDateTime& other);
    virtual ~CUTCDateTime();
};

// The moment `seconds` after 1 January 1970 UTC as text, in local time or UTC:
// TextDateTime(dateForm, timeForm, 0), the date first.
QELKIT_API CQELString getdtstring(std::int64_t seconds, bool local, int dateForm, int timeForm);

// The current local time as "09:05:07.003".
QELKIT_API CQELString gettimecurrstring();

}  // namespace QEL
