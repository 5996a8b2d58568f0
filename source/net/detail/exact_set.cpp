#include "net/detail/exact_set.h"

namespace kit {

void ExactSet::Grow() {
    const std::vector<std::uint64_t> old =
        table_.empty() ? std::vector<std::uint64_t>(row_.begin(), row_.end()) : table_;
    const int bits = table_.empty() ? 6 : 64 - shift_ + 2;
    table_.assign(std::size_t{1} << bits, kNoElement);
    shift_ = 64 - bits;
    // Where the table lies is part of the hash, so that nobody can prepare elements that collide.
    multiplier_ = reinterpret_cast<std::uintptr_t>(table_.data()) * 0x9E3779B97F4A7C15 | 1;
    for (const std::uint64_t key : old) {
        if (key != kNoElement) table_[SlotOf(key)] = key;
    }
}

}  // namespace kit
