#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

#include "base/types.h"
#include "net/ip_range.h"

namespace kit {

// The same number for equal elements and for no others. A point counts as (a, a), so the number
// of (1, 0) is no element's: kNoElement.
inline std::uint64_t EqualityKey(ulong32 address) { return address; }
inline std::uint64_t EqualityKey(const CQELRangeIP& range) {
    return std::uint64_t{range.from} << 32 | (range.IsPoint() ? range.from : range.to);
}
constexpr std::uint64_t kNoElement = std::uint64_t{1} << 32;

// The elements met so far, by equality. The first few lie in a row that is searched through: short
// lists are done before a table would be set up.
class ExactSet {
public:
    // False when an equal element was there already.
    template <typename T>
    bool Insert(const T& element) {
        return InsertKey(EqualityKey(element));
    }
    template <typename T>
    bool Has(const T& element) const {
        const std::uint64_t key = EqualityKey(element);
        return table_.empty() ? InRow(key) : table_[SlotOf(key)] == key;
    }

private:
    static constexpr std::size_t kRow = 16;

    bool InRow(std::uint64_t key) const {
        for (std::size_t i = 0; i < count_; ++i) {
            if (row_[i] == key) return true;
        }
        return false;
    }
    bool InsertKey(std::uint64_t key);
    // The slot that holds `key`, or the free one where it belongs.
    std::size_t SlotOf(std::uint64_t key) const {
        const std::size_t last = table_.size() - 1;
        std::size_t slot = static_cast<std::size_t>((key * multiplier_) >> shift_);
        while (table_[slot] != key && table_[slot] != kNoElement) slot = (slot + 1) & last;
        return slot;
    }
    void Grow();

    std::array<std::uint64_t, kRow> row_;
    std::size_t count_ = 0;
    std::vector<std::uint64_t> table_;  // at least twice as many slots as elements
    std::uint64_t multiplier_ = 0;
    int shift_ = 64;
};

inline bool ExactSet::InsertKey(std::uint64_t key) {
    if (table_.empty()) {
        if (InRow(key)) return false;
        if (count_ < kRow) {
            row_[count_++] = key;
            return true;
        }
        Grow();
    }
    const std::size_t slot = SlotOf(key);
    if (table_[slot] == key) return false;
    table_[slot] = key;
    if (++count_ > table_.size() / 2) Grow();
    return true;
}

// Appends, in b's order, the elements of b that the list does not have by then. b may be the list.
template <typename T>
void AppendMissing(std::list<T>& list, const std::list<T>& b) {
    ExactSet wanted, present;
    for (const T& element : b) wanted.Insert(element);
    for (const T& element : list) {
        if (wanted.Has(element)) present.Insert(element);
    }
    std::list<T> missing;
    for (const T& element : b) {
        if (present.Insert(element)) missing.push_back(element);
    }
    list.splice(list.end(), missing);
}

// Keeps the elements that are equal to none of b, and of equal ones only the first. b may be the
// list.
template <typename T>
void KeepFirstOfMissing(std::list<T>& list, const std::list<T>& b) {
    ExactSet seen;
    for (const T& element : b) seen.Insert(element);
    list.remove_if([&](const T& element) { return !seen.Insert(element); });
}

}  // namespace kit
