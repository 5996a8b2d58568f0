#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"

// A 64-bit integer kept as two 32-bit halves: file sizes and disk space.
//
// - It has no sign of its own. Arithmetic wraps around; the order is that of unsigned numbers, so a
//   negative number is greater than every positive one; float and double are made of the value read
//   as signed.
// - Several constructors and conversions compete for a plain number: write CQELInt64(5) rather than
//   comparing with 5, and static_cast<std::uint64_t>(x) rather than (int)x.
//
// The two fields, eight bytes that are one 64-bit number in the machine's order, are part of the
// binary interface. An object belongs to one thread at a time.
class QELKIT_API CQELInt64 {
public:
    // 0.
    CQELInt64();
    // The number of these halves; without `high` it is 0. `low` is the lower 32 bits.
    CQELInt64(ulong32 low);
    CQELInt64(ulong32 low, ulong32 high);
    // The 64 bits of `value`.
    CQELInt64(std::int64_t value);
    CQELInt64(std::uint64_t value);
    // Sign-extended; without it the literal 1 would fit several of the others equally.
    CQELInt64(int value);

    // Takes the 64 bits of `value`.
    CQELInt64& operator=(std::int64_t value);
    // Sign-extended.
    CQELInt64& operator=(const int& value);
    // Zero-extended.
    CQELInt64& operator=(const ulong32& value);

    // Modulo 2^64.
    CQELInt64& operator+=(const CQELInt64& other);
    CQELInt64& operator-=(const CQELInt64& other);
    CQELInt64& operator*=(const CQELInt64& other);
    // Sign-extended.
    CQELInt64& operator+=(const int& value);
    // Zero-extended.
    CQELInt64& operator+=(const ulong32& value);
    // The difference, modulo 2^64.
    CQELInt64 operator-(const CQELInt64& other) const;

    // By the 64 bits, read as unsigned.
    bool operator==(const CQELInt64& other) const;
    bool operator!=(const CQELInt64& other) const;
    bool operator<(const CQELInt64& other) const;
    bool operator<=(const CQELInt64& other) const;
    bool operator>(const CQELInt64& other) const;
    bool operator>=(const CQELInt64& other) const;

    // The 64 bits, read as signed or as unsigned.
    operator std::int64_t() const;
    operator std::uint64_t() const;
    // The nearest number to the signed value.
    operator float() const;
    operator double() const;

private:
    std::uint64_t Bits() const;

    ulong32 low_ = 0;
    ulong32 high_ = 0;
};

inline std::uint64_t CQELInt64::Bits() const { return std::uint64_t{high_} << 32 | low_; }
inline CQELInt64::CQELInt64(int value) : CQELInt64(std::int64_t{value}) {}
