#pragma once

#include <cstdint>

#include "base/export.h"
#include "datetime/qel_datetime.h"
#include "platform/windows.h"

// The platform's file time: a 64-bit number of 100-nanosecond ticks since 1 January 1601 UTC, and
// nothing else, so that it serves wherever a FILETIME does. No operation throws.
//
// A number beside a file time in an expression is ambiguous, as both convert into the other: say
// ft + CQELFileTime(600000000).
struct QELKIT_API CQELFileTime : public FILETIME {
    // 0 ticks.
    CQELFileTime();
    // The same ticks.
    CQELFileTime(const FILETIME& other);
    CQELFileTime(const CQELFileTime& other);
    // `value` is local time: QELDateTime_2_FILETIME(value, true).
    CQELFileTime(const CQELDateTime& value);
    // That many ticks.
    CQELFileTime(std::uint64_t ticks);

    // As the constructors.
    CQELFileTime& operator=(const FILETIME& other);
    CQELFileTime& operator=(const CQELFileTime& other);
    CQELFileTime& operator=(const CQELDateTime& value);
    CQELFileTime& operator=(std::uint64_t ticks);

    // The ticks.
    operator std::uint64_t() const;

    // By the ticks, unsigned.
    bool operator==(const FILETIME& other) const;
    bool operator!=(const FILETIME& other) const;
    bool operator<(const FILETIME& other) const;
    bool operator>(const FILETIME& other) const;

    // Sums and differences of the ticks, modulo 2^64.
    CQELFileTime operator+(const FILETIME& other) const;
    CQELFileTime operator-(const FILETIME& other) const;
    CQELFileTime& operator+=(const FILETIME& other);
    CQELFileTime& operator-=(const FILETIME& other);

    // By the ticks, unsigned; sums and differences modulo 2^64.
    bool operator==(const CQELFileTime& other) const;
    bool operator!=(const CQELFileTime& other) const;
    bool operator<(const CQELFileTime& other) const;
    bool operator>(const CQELFileTime& other) const;
    CQELFileTime operator+(const CQELFileTime& other) const;
    CQELFileTime operator-(const CQELFileTime& other) const;
    CQELFileTime& operator+=(const CQELFileTime& other);
    CQELFileTime& operator-=(const CQELFileTime& other);

    // The size of a file time in bytes: 8.
    int GetObjectSize() const;
};

inline CQELFileTime::operator std::uint64_t() const {
    return static_cast<std::uint64_t>(dwHighDateTime) << 32 | dwLowDateTime;
}
inline bool CQELFileTime::operator!=(const FILETIME& other) const { return !(*this == other); }
inline bool CQELFileTime::operator!=(const CQELFileTime& other) const { return !(*this == other); }
inline int CQELFileTime::GetObjectSize() const { return static_cast<int>(sizeof(FILETIME)); }

// The reading of the file time `ft` in local time, or in UTC when `local` is false; millisecond is
// 0, the file time's fraction of a second is dropped.
//   Local: by the distance to UTC in force now, and then taken as summer time. In a zone that has
//   summer time a moment in winter therefore reads one hour early. 1 January 1970, 00:00:00 when
//   the C runtime cannot convert the moment (before 1970 or after 3000).
//   UTC: normalised by the C runtime as if it were local standard time. While the local zone has
//   summer time the reading is therefore one hour late.
// A file time that the platform cannot convert (above 2^63) gives 1 January 1970, 00:00:00.
QELKIT_API CQELDateTime FILETIME_2_QELDateTime(const FILETIME& ft, bool local);

// The file time of the reading `dt`, which is local time, or UTC when `local` is false; its
// milliseconds are dropped.
//   Local: the moment, by the zone's rules for that day. The count of seconds is 32 bits wide: right
//   only up to January 2038. 1 January 1970, 00:00:00 UTC when the C runtime cannot convert it.
//   UTC: the fields as they are; 0 ticks when they are no date and time.
QELKIT_API FILETIME QELDateTime_2_FILETIME(const CQELDateTime& dt, bool local);
