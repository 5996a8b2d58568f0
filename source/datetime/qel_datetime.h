#pragma once

#include <cstdint>
#include <type_traits>

#include "base/export.h"
#include "datetime/qel_date.h"
#include "datetime/qel_time.h"

struct tm;

// A date and a time of day: what calendar and clock on a wall show. Whether they are local or UTC
// is known by whoever made the value; it is not stored.
//
// Values count in "local-epoch seconds": from midnight of 1 January 1970, local time, to the
// reading, by the C runtime's rules for the local zone. A change to or from summer time in between
// makes the count shorter or longer by its hour. A reading that the runtime cannot convert (before
// 1970, or after the year 3000) counts as the last second before 1970 UTC.
//
// Nothing here throws; callers test IsValid(). A plain value: objects that threads share need a
// lock of the caller's. The setters of a part return the part, CQELDate& or CQELTime&.
//
// The order of the bases is part of the binary interface; each keeps its virtual destructor.
class QELKIT_API CQELDateTime : public CQELDate, public CQELTime {
public:
    // CQELDate(year, month, day) and CQELTime(hour, minute, second, millisecond).
    CQELDateTime(int year, int month, int day, int hour, int minute, int second, int millisecond);
    // The current moment, milliseconds included: local time, or UTC when `local` is false.
    CQELDateTime(bool local);
    // The reading so many local-epoch seconds after 1 January 1970, with millisecond 0. A count
    // that the runtime cannot convert (a negative one, or after the year 3000) gives 1 January
    // 1970, 00:00:00.
    CQELDateTime(std::int64_t seconds);
    // Every other integer means seconds too, where it would be ambiguous: CQELDateTime(0).
    template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
    CQELDateTime(Integer seconds) : CQELDateTime(static_cast<std::int64_t>(seconds)) {}
    CQELDateTime(const CQELDateTime& other);
    CQELDateTime& operator=(const CQELDateTime& other);
    ~CQELDateTime() override;

    // Local-epoch seconds of the reading; the milliseconds do not count.
    operator std::int64_t() const;

    // Whether both parts are valid.
    bool IsValid() const;

    // By date, then by time.
    bool operator==(const CQELDateTime& other) const;
    bool operator<(const CQELDateTime& other) const;
    bool operator!=(const CQELDateTime& other) const;
    bool operator<=(const CQELDateTime& other) const;
    bool operator>(const CQELDateTime& other) const;
    bool operator>=(const CQELDateTime& other) const;

    // TextDate(date_form) and TextTime(time_form) with a blank in between: the date first (order
    // 0) or the time first (order 1). Empty for any other order.
    CQELString TextDateTime(int date_form, int time_form, int order) const;

private:
    // Becomes the reading at `seconds` local-epoch seconds, millisecond 0.
    void ConvertFrom(std::int64_t seconds);
    // Fills `base` with 1 January 1970, 00:00:00, summer time unknown.
    static void GetBaseTime(struct tm& base);
};

inline bool CQELDateTime::operator!=(const CQELDateTime& other) const { return !(*this == other); }
inline bool CQELDateTime::operator<=(const CQELDateTime& other) const {
    return *this < other || *this == other;
}
inline bool CQELDateTime::operator>(const CQELDateTime& other) const { return other < *this; }
inline bool CQELDateTime::operator>=(const CQELDateTime& other) const { return other <= *this; }

// A date-time whose fields are UTC by convention.
class QELKIT_API CQELUTCDateTime : public CQELDateTime {
public:
    // The current moment.
    CQELUTCDateTime();
    // As CQELDateTime(seconds). Use the count of another CQELUTCDateTime.
    CQELUTCDateTime(std::int64_t seconds);
    CQELUTCDateTime(const CQELUTCDateTime& other);
    CQELUTCDateTime& operator=(const CQELUTCDateTime& other);
    ~CQELUTCDateTime() override;

    // Sets `out` to this moment by the local clock, millisecond 0. The distance to UTC is the one
    // in force now, not at that moment, and the result is right only up to January 2038.
    void GetLocalTime(CQELDateTime& out) const;
};
