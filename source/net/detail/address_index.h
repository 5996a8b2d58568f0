#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

// Sorted addresses and intervals of addresses, made for the many questions that an operation on two
// long lists asks. An interval is closed and counts in 32 bits, as everything here.

namespace kit {

constexpr std::uint32_t kLastAddress = 0xFFFFFFFF;

// Two numbers in one, so that sorting moves a single word.
constexpr std::uint64_t Pack(std::uint32_t high, std::uint32_t low) {
    return std::uint64_t{high} << 32 | low;
}
constexpr std::uint32_t HighOf(std::uint64_t packed) {
    return static_cast<std::uint32_t>(packed >> 32);
}
constexpr std::uint32_t LowOf(std::uint64_t packed) { return static_cast<std::uint32_t>(packed); }

// Sorts by the high halves; equal ones end in any order.
void SortByHighHalf(std::vector<std::uint64_t>& packed);

// Finds places in ascending addresses. A table by leading bits leaves a handful to search.
class AddressSearch {
public:
    AddressSearch() = default;
    explicit AddressSearch(std::vector<std::uint32_t> ascending);

    // How many of the addresses are not above `address`.
    std::size_t CountUpTo(std::uint32_t address) const;
    // The same when at least `known` are not, which is mostly near the answer.
    std::size_t CountUpTo(std::uint32_t address, std::size_t known) const;

private:
    std::vector<std::uint32_t> addresses_;
    std::vector<std::uint32_t> first_;  // by leading bits of the distance to the lowest address
    std::uint32_t lowest_ = 0;
    int shift_ = 0;
};

// Any number of pairs (low, high), to be asked whether one of them has low <= l and high >= h: for
// intervals, whether some of them meets [h, l].
class ReachTable {
public:
    explicit ReachTable(std::size_t count) { pairs_.reserve(count); }
    void Add(std::uint32_t low, std::uint32_t high) { pairs_.push_back(Pack(low, high)); }
    void Build();
    bool Reaches(std::uint32_t low, std::uint32_t high) const {
        const std::size_t count = lows_.CountUpTo(low);
        return count > 0 && reach_[count - 1] >= high;
    }
    bool Meets(std::uint32_t first, std::uint32_t last) const { return Reaches(last, first); }
    bool Has(std::uint32_t address) const { return Meets(address, address); }

private:
    std::vector<std::uint64_t> pairs_;
    AddressSearch lows_;
    std::vector<std::uint32_t> reach_;  // the greatest high among the pairs up to here
};

// A sequence of intervals, to be asked which is the first of them that meets an interval. The
// bounds of all of them cut the addresses into segments; each remembers the first that covers it.
class FirstHit {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    // `count` is about how many intervals will come.
    explicit FirstHit(std::size_t count);
    // Numbers do not descend from call to call; several intervals may have the same.
    void Add(std::uint32_t first, std::uint32_t last, std::uint32_t number);
    void Build();
    // The least number of an interval that meets [first, last]; kNone when none does.
    std::uint32_t Find(std::uint32_t first, std::uint32_t last) const;

private:
    void Paint(const std::vector<std::uint32_t>& begins, const std::vector<std::uint32_t>& ends);

    std::vector<std::uint64_t> bounds_;   // where an interval begins or would go on, and its index
    std::vector<std::uint32_t> numbers_;  // by index
    AddressSearch segments_;              // where they begin; one more lies before the first
    std::vector<std::uint32_t> least_;    // a tree of minima over the segments, leaves last
    std::size_t leaves_ = 0;
};

// Intervals with a number each, to be listed as far as they meet an interval.
class OverlapIndex {
public:
    void Add(std::uint32_t first, std::uint32_t last, std::uint32_t number);
    void Build();
    // Calls visit(number) for every interval that meets [first, last], in no order.
    template <typename Visit>
    void ForEach(std::uint32_t first, std::uint32_t last, Visit visit) const {
        for (std::size_t end = lows_.CountUpTo(last);
             (end = PreviousReaching(end, first)) != kNone;) {
            visit(numbers_[end]);
        }
    }

private:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    // The last place before `end` whose interval goes up to `address` or above.
    std::size_t PreviousReaching(std::size_t end, std::uint32_t address) const;

    std::vector<std::uint64_t> pending_;  // low and place
    std::vector<std::uint32_t> pending_last_, pending_number_;
    AddressSearch lows_;
    std::vector<std::uint32_t> numbers_;   // in the order of the lows
    std::vector<std::uint32_t> reach_;     // the greatest last address up to here
    std::vector<std::uint32_t> greatest_;  // a tree of maxima over the last addresses, leaves last
    std::size_t leaves_ = 1;
};

}  // namespace kit
