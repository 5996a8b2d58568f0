#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

#include "base/types.h"
#include "net/detail/list_work.h"
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
        // The table is never empty here, so the shift is below 64.
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult)
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

template <typename T>
bool Contains(const std::list<T>& list, const T& element) {
    return std::find(list.begin(), list.end(), element) != list.end();
}

// A set costs as much as looking at this many pairs for each element of both lists.
constexpr std::uint64_t kSetPrice = 8;

// The elements of b, in its order and each once, that the list does not have.
template <typename T>
std::list<T> MissingIn(const std::list<T>& list, const std::list<T>& b) {
    std::list<T> missing;
    if (!IndexPays(list.size() + b.size(), b.size(), kSetPrice)) {
        for (const T& element : b) {
            if (!Contains(list, element) && !Contains(missing, element)) missing.push_back(element);
        }
        return missing;
    }
    ExactSet wanted, present;
    for (const T& element : b) wanted.Insert(element);
    for (const T& element : list) {
        if (wanted.Has(element)) present.Insert(element);
    }
    for (const T& element : b) {
        if (present.Insert(element)) missing.push_back(element);
    }
    return missing;
}

// Removes what is equal to an element of b, which may be the list.
template <typename T>
void RemoveEqual(std::list<T>& list, const std::list<T>& b) {
    if (&list == &b) return list.clear();
    if (!IndexPays(list.size(), b.size(), kSetPrice)) {
        list.remove_if([&](const T& element) { return Contains(b, element); });
        return;
    }
    ExactSet gone;
    for (const T& element : b) gone.Insert(element);
    list.remove_if([&](const T& element) { return gone.Has(element); });
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
