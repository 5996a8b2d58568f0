#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"
#include "text/qel_string.h"

namespace QEL {

// A length of time: seconds (64-bit, signed) and milliseconds (32-bit, signed, normally 0..999).
//
// Everything that compares or adds works on the total milliseconds, for which the seconds are cut
// to 32 bits and taken as unsigned. So spans are good for 136 years, and a negative one counts as a
// very long one. Nothing throws; a plain value without locks.
class QELKIT_API CTimeSpan {
public:
    // No time.
    CTimeSpan();
    // The sum of `days`, `hours`, `minutes` and `seconds`, of any sign, each added as it is; it
    // wraps in 32 bits. The milliseconds are stored as they are.
    CTimeSpan(int days, int hours, int minutes, int seconds, int milliseconds);
    // Both stored as they are.
    CTimeSpan(std::int64_t seconds, int milliseconds);
    // Whole seconds, and what is left of them.
    CTimeSpan(std::uint64_t milliseconds);
    CTimeSpan(const CTimeSpan& other);
    const CTimeSpan& operator=(const CTimeSpan& other);

    // The whole span: 1000 times the seconds (their low 32 bits, unsigned) and the milliseconds.
    std::uint64_t GetTotalMilliseconds() const;
    // The seconds, their low 32 bits.
    long32 GetTotalSeconds() const;
    // The stored milliseconds.
    int GetMilliseconds() const;

    // The whole span in one unit, rounded toward zero; 32 bits.
    long32 GetDays() const;
    long32 GetTotalHours() const;
    long32 GetTotalMinutes() const;
    // What is left of it beyond the next larger unit.
    int GetHours() const;
    int GetMinutes() const;
    int GetSeconds() const;

    // By the total milliseconds.
    bool operator==(const CTimeSpan& other) const;
    bool operator<(const CTimeSpan& other) const;
    bool operator!=(const CTimeSpan& other) const;
    bool operator<=(const CTimeSpan& other) const;
    bool operator>(const CTimeSpan& other) const;
    bool operator>=(const CTimeSpan& other) const;

    // The span of the sum, or difference, of the total milliseconds.
    CTimeSpan operator+(const CTimeSpan& other) const;
    CTimeSpan operator-(const CTimeSpan& other) const;
    CTimeSpan& operator+=(const CTimeSpan& other);
    CTimeSpan& operator-=(const CTimeSpan& other);

    // The picture with %D (days), %H, %M, %S (two digits at least) and %m (milliseconds, three
    // digits) replaced; of any other character behind a "%" only the "%" goes. At most 255
    // characters, and no half of a two-byte one. Null counts as "".
    CQELString Format(const char* picture) const;

private:
    std::int64_t seconds_;
    std::int32_t milliseconds_;
};

inline int CTimeSpan::GetMilliseconds() const { return milliseconds_; }
inline bool CTimeSpan::operator!=(const CTimeSpan& other) const { return !(*this == other); }
inline bool CTimeSpan::operator<=(const CTimeSpan& other) const { return !(other < *this); }
inline bool CTimeSpan::operator>(const CTimeSpan& other) const { return other < *this; }
inline bool CTimeSpan::operator>=(const CTimeSpan& other) const { return !(*this < other); }

}  // namespace QEL
