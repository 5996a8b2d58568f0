#pragma once

#include <cstddef>
#include <cstdint>
#include <list>

#include "base/types.h"
#include "net/ip_range.h"

// What the operations on two lists have in common. Each of them has a plain form, which walks
// through all pairs, and an indexed one for lists whose product is large.

namespace kit {

using RangeList = std::list<CQELRangeIP>;
using AddressList = std::list<ulong32>;

// What an index costs: as much as looking at this many pairs for each element of both lists, for
// questions and for removal. With 0 tests have an index at any length.
constexpr std::uint64_t kCrossingPrice = 8;
constexpr std::uint64_t kRemovalPrice = 16;

// Whether an index over lists of n and m elements is worth its price. The indexes count in 32
// bits; lists beyond them (of 16 GiB and more) stay with the plain forms.
inline bool IndexPays(std::uint64_t n, std::uint64_t m, std::uint64_t price) {
    constexpr std::uint64_t kMost = std::uint64_t{1} << 29;
    return n <= kMost && m <= kMost && n * m > price * (n + m);
}

inline bool IsInverted(const CQELRangeIP& range) { return range.from > range.to && range.to != 0; }

// The last address of a point or range; of an inverted one its `from`, where it is found.
inline ulong32 LastOf(const CQELRangeIP& range) {
    return range.from < range.to ? range.to : range.from;
}

// The bounds as they are: nothing lies between those of (a, 0) or of an inverted range.
inline bool LiesBetween(ulong32 address, const CQELRangeIP& bounds) {
    return bounds.from <= address && address <= bounds.to;
}

// Whether an address lies in a range: in a point only its own.
inline bool LiesIn(ulong32 address, const CQELRangeIP& range) {
    return range.IsPoint() ? address == range.from : LiesBetween(address, range);
}

// Whether one range crosses others, one after another: for a range proper two comparisons say it.
class CrossTest {
public:
    explicit CrossTest(const CQELRangeIP& range)
        : range_(range), is_proper_(range.from < range.to) {}
    bool operator()(const CQELRangeIP& x) const {
        return is_proper_ ? x.from <= range_.to && range_.from <= LastOf(x) : range_.IsCross(x);
    }

private:
    const CQELRangeIP& range_;
    const bool is_proper_;
};

// A range read as address and mask.
struct Subnet {
    explicit Subnet(const CQELRangeIP& range) : mask(range.to), net(range.from & range.to) {}
    bool Has(ulong32 address) const { return (address & mask) == net; }
    ulong32 LastAddress() const { return net + ~mask; }
    // Whether the mask has no holes: then the addresses are one interval.
    bool IsInterval() const { return (~mask & (~mask + 1)) == 0; }

    ulong32 mask;
    ulong32 net;
};

}  // namespace kit
