#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/export.h"
#include "base/types.h"

namespace kit {

// bool as a result. Visual C++ makes the const of a returned value part of a function's decorated
// name, so it stays there; other compilers only warn of it.
#ifdef _MSC_VER
using ReturnedBool = const bool;
#else
using ReturnedBool = bool;
#endif

}  // namespace kit

// One IPv4 address, or all addresses from `from` to `to`. Addresses are numbers in host order
// (net/ip_text.h).
//
// - A point stands for the single address `from`. It has `to` equal to `from` or 0: (a, 0) is the
//   usual way of writing one address, and (a, a) is equal to it.
// - A range with 0 < `to` < `from` is inverted. Nothing rejects it and no address lies in it, but
//   the comparisons below treat it like any other pair of bounds.
//
// The two fields, eight bytes in this order, are part of the binary interface.
class QELKIT_API CQELRangeIP {
public:
    ulong32 from = 0;  // the first address
    ulong32 to = 0;    // the last one; 0: `from` alone

    // The point 0.
    CQELRangeIP();
    // Stores the bounds `from_address` and `to_address` as they are.
    CQELRangeIP(ulong32 from_address, ulong32 to_address);
    // `from` is the low half of `v` and `to` its high half.
    CQELRangeIP(std::uint64_t v);

    // Whether this is a single address: `to` is `from` or 0.
    kit::ReturnedBool IsPoint() const;
    // Writes a point as (a, a); leaves other ranges alone.
    void Normalize();

    // Points are equal when their addresses are: (5, 0) == (5, 5). Otherwise both bounds decide.
    bool operator==(const CQELRangeIP& b) const;
    // Points are ordered by their addresses; otherwise `from` decides, then `to`.
    bool operator<(const CQELRangeIP& b) const;

    // Whether this and b share an address. Of an inverted range the bounds alone are looked at: as
    // the left side it crosses what either bound lies in, as the right side what its `from` lies
    // in.
    bool IsCross(const CQELRangeIP& b) const;
    // Whether this range lies wholly within b.
    bool IsInclude(const CQELRangeIP& b) const;

    // The text of `from` and, unless the range is a point, of `to` behind it. Style 1 puts "-"
    // between them, style 2 " - ", any other nothing. Text forms throw boost::system::system_error
    // when an address cannot be converted.
    const std::string GetItemIpString(ulong32 style) const;

private:
    // By the bounds as they are: nothing lies between those of (a, 0) or of an inverted range.
    bool Spans(ulong32 address) const;
};

static_assert(sizeof(CQELRangeIP) == 8 && offsetof(CQELRangeIP, from) == 0 &&
                  offsetof(CQELRangeIP, to) == 4,
              "the layout is part of the binary interface");

// Defined here for speed; the library exports them nevertheless.

inline CQELRangeIP::CQELRangeIP() = default;
inline CQELRangeIP::CQELRangeIP(ulong32 from_address, ulong32 to_address)
    : from(from_address), to(to_address) {}

inline CQELRangeIP::CQELRangeIP(std::uint64_t v)
    : from(static_cast<ulong32>(v)), to(static_cast<ulong32>(v >> 32)) {}

inline bool CQELRangeIP::Spans(ulong32 address) const { return from <= address && address <= to; }
inline kit::ReturnedBool CQELRangeIP::IsPoint() const { return to == from || to == 0; }

inline void CQELRangeIP::Normalize() {
    if (IsPoint()) to = from;
}

inline bool CQELRangeIP::operator==(const CQELRangeIP& b) const {
    return from == b.from && (to == b.to || (IsPoint() && b.IsPoint()));
}

inline bool CQELRangeIP::operator<(const CQELRangeIP& b) const {
    return from < b.from || (from == b.from && to < b.to && !(IsPoint() && b.IsPoint()));
}

inline bool CQELRangeIP::IsCross(const CQELRangeIP& b) const {
    if (*this == b) return true;
    if (IsPoint()) return !b.IsPoint() && b.Spans(from);
    if (b.IsPoint()) return Spans(b.from);
    return b.Spans(from) || b.Spans(to) || Spans(b.from);
}

inline bool CQELRangeIP::IsInclude(const CQELRangeIP& b) const {
    if (*this == b) return true;
    return !b.IsPoint() && b.Spans(from) && (IsPoint() || b.Spans(to));
}
