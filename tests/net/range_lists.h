#pragma once

// Short ways to write lists down, and to bring them from the literal form to the library's.

#include <cstddef>
#include <iterator>
#include <ostream>
#include <utility>
#include <vector>

#include "net/ip_range_list.h"
#include "yardsticks/literal_ranges.h"

inline CQELLongList Addresses(const std::vector<ulong32>& addresses) {
    CQELLongList list;
    list.insert(list.end(), addresses.begin(), addresses.end());
    return list;
}

inline CQELRangeIPList Ranges(const std::vector<std::pair<ulong32, ulong32>>& ranges) {
    CQELRangeIPList list;
    for (const auto& [from, to] : ranges) list.emplace_back(from, to);
    return list;
}

inline CQELLongList Ours(const literal::Addresses& addresses) {
    CQELLongList list;
    list.insert(list.end(), addresses.begin(), addresses.end());
    return list;
}

inline CQELRangeIPList Ours(const literal::Ranges& ranges) {
    CQELRangeIPList list;
    for (const auto& range : ranges) list.emplace_back(range.from, range.to);
    return list;
}

// Equality of lists to the last bit: for the library (5, 0) and (5, 5) are equal.
inline bool SameBits(const CQELRangeIP& a, const CQELRangeIP& b) {
    return a.from == b.from && a.to == b.to;
}
inline bool SameBits(const CQELRangeIP& a, const literal::Range& b) {
    return a.from == b.from && a.to == b.to;
}
inline bool SameBits(ulong32 a, ulong32 b) { return a == b; }

template <typename A, typename B>
bool SameLists(const A& a, const B& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto& x, const auto& y) { return SameBits(x, y); });
}

// How failures are shown: "(1-4) (6-10)".
inline void PrintTo(const CQELRangeIP& range, std::ostream* out) {
    *out << '(' << range.from << '-' << range.to << ')';
}

// Makes expectations on lists compare bits: EXPECT_EQ(Bits(Ranges({{1, 0}})), Bits(list)).
struct Bits {
    explicit Bits(const CQELRangeIPList& ranges) {
        for (const auto& range : ranges) values.emplace_back(range.from, range.to);
    }
    bool operator==(const Bits&) const = default;
    friend void PrintTo(const Bits& bits, std::ostream* out) {
        for (const auto& [from, to] : bits.values) *out << '(' << from << '-' << to << ") ";
    }
    std::list<std::pair<ulong32, ulong32>> values;
};
