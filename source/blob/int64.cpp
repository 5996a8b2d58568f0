#include "blob/int64.h"

static_assert(sizeof(CQELInt64) == 8, "callers read it as one 64-bit number");

CQELInt64::CQELInt64() = default;
CQELInt64::CQELInt64(ulong32 low) : low_(low) {}
CQELInt64::CQELInt64(ulong32 low, ulong32 high) : low_(low), high_(high) {}
CQELInt64::CQELInt64(std::int64_t value) : CQELInt64(static_cast<std::uint64_t>(value)) {}
CQELInt64::CQELInt64(std::uint64_t value)
    : low_(static_cast<ulong32>(value)), high_(static_cast<ulong32>(value >> 32)) {}

CQELInt64& CQELInt64::operator=(std::int64_t value) { return *this = CQELInt64(value); }
CQELInt64& CQELInt64::operator=(const int& value) { return *this = CQELInt64(value); }
CQELInt64& CQELInt64::operator=(const ulong32& value) { return *this = CQELInt64(value); }

CQELInt64& CQELInt64::operator+=(const CQELInt64& other) {
    return *this = CQELInt64(Bits() + other.Bits());
}
CQELInt64& CQELInt64::operator-=(const CQELInt64& other) {
    return *this = CQELInt64(Bits() - other.Bits());
}
CQELInt64& CQELInt64::operator*=(const CQELInt64& other) {
    return *this = CQELInt64(Bits() * other.Bits());
}
CQELInt64& CQELInt64::operator+=(const int& value) { return *this += CQELInt64(value); }
CQELInt64& CQELInt64::operator+=(const ulong32& value) { return *this += CQELInt64(value); }
CQELInt64 CQELInt64::operator-(const CQELInt64& other) const {
    return CQELInt64(Bits() - other.Bits());
}

bool CQELInt64::operator==(const CQELInt64& other) const { return Bits() == other.Bits(); }
bool CQELInt64::operator!=(const CQELInt64& other) const { return Bits() != other.Bits(); }
// Quirk: the order is unsigned although the conversions to float and double are signed, so the
// least number of all converts to 0 and the greatest to -1. Callers sort sizes by it.
// Pinned by Int64.IsOrderedAsUnsignedAndConvertsAsSigned.
bool CQELInt64::operator<(const CQELInt64& other) const { return Bits() < other.Bits(); }
bool CQELInt64::operator<=(const CQELInt64& other) const { return Bits() <= other.Bits(); }
bool CQELInt64::operator>(const CQELInt64& other) const { return Bits() > other.Bits(); }
bool CQELInt64::operator>=(const CQELInt64& other) const { return Bits() >= other.Bits(); }

CQELInt64::operator std::int64_t() const { return static_cast<std::int64_t>(Bits()); }
CQELInt64::operator std::uint64_t() const { return Bits(); }
CQELInt64::operator float() const { return static_cast<float>(static_cast<std::int64_t>(Bits())); }
CQELInt64::operator double() const {
    return static_cast<double>(static_cast<std::int64_t>(Bits()));
}
