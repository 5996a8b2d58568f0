#pragma once

#include "base/export.h"
#include "text/qel_string.h"

// A time of day: hour, minute, second and millisecond, each a 32-bit signed number.
//
// Constructors and setters take any value; IsValid() tells whether the fields are a time. Nothing
// here throws. A plain value: objects that threads share need a lock of the caller's.
//
// The order of the virtual functions (the destructor alone) and of the fields is part of the
// binary interface: add only at the end.
class QELKIT_API CQELTime {
public:
    // The current time of day by the local clock, milliseconds included.
    CQELTime();
    // These fields, unchecked.
    CQELTime(int hour, int minute, int second, int millisecond);
    CQELTime(const CQELTime& other);
    CQELTime& operator=(const CQELTime& other);
    virtual ~CQELTime();

    // The fields: 0..23, 0..59, 0..59 and 0..999 in a valid time.
    int Hour() const;
    int Minute() const;
    int Second() const;
    int Milliseconds() const;
    // Store the value unchecked and return this time, so that calls chain.
    CQELTime& Hour(int hour);
    CQELTime& Minute(int minute);
    CQELTime& Second(int second);
    CQELTime& Milliseconds(int millisecond);

    // Whether the fields are a time from 00:00:00.000 to 23:59:59.999.
    bool IsValid() const;

    // By hour, then minute, second and millisecond.
    bool operator==(const CQELTime& other) const;
    bool operator<(const CQELTime& other) const;
    bool operator!=(const CQELTime& other) const;
    bool operator<=(const CQELTime& other) const;
    bool operator>(const CQELTime& other) const;
    bool operator>=(const CQELTime& other) const;

    // The time as text; of 9:05:07:
    //   0  " 9:05:07"
    //   1  "09:05:07"
    //   3  the system's time form in the user's locale, without the user's own changes to it
    // Empty for any other form, and when the platform cannot format the time (3).
    CQELString TextTime(int form) const;

private:
    int hour_;
    int minute_;
    int second_;
    int millisecond_;
};

inline int CQELTime::Hour() const { return hour_; }
inline int CQELTime::Minute() const { return minute_; }
inline int CQELTime::Second() const { return second_; }
inline int CQELTime::Milliseconds() const { return millisecond_; }
inline bool CQELTime::operator!=(const CQELTime& other) const { return !(*this == other); }
inline bool CQELTime::operator<=(const CQELTime& other) const {
    return *this < other || *this == other;
}
inline bool CQELTime::operator>(const CQELTime& other) const { return other < *this; }
inline bool CQELTime::operator>=(const CQELTime& other) const { return other <= *this; }
