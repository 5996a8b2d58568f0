#pragma once

#include <cstdint>

namespace kit {

// The windows of a program, in a block of memory that its processes share. The layout is part of
// the interface between them: the count at offset 0, the handles from offset 8 on, 8 bytes each.
// Others can write to the block, so a count that it has no room for counts as none at all.
//
// Nothing here locks: whoever uses a table has the mutex that goes with it.
class WindowTable {
public:
    static constexpr std::uint64_t kRoom = 31;

    std::uint64_t Count() const { return count_ <= kRoom ? count_ : 0; }
    std::uint64_t At(std::uint64_t index) const { return windows_[index]; }

    // Adds a window behind the others; false when there is no room. One that is there stays.
    bool Add(std::uint64_t window) {
        const std::uint64_t count = Count();
        for (std::uint64_t i = 0; i < count; ++i) {
            if (windows_[i] == window) return true;
        }
        if (count == kRoom) return false;
        windows_[count] = window;
        count_ = count + 1;
        return true;
    }

    // Removes the windows of which `is_gone` says so; the others keep their order.
    template <typename Predicate>
    void RemoveIf(Predicate is_gone) {
        const std::uint64_t count = Count();
        std::uint64_t kept = 0;
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t window = windows_[i];
            if (!is_gone(window)) windows_[kept++] = window;
        }
        count_ = kept;
    }

private:
    std::uint64_t count_;
    std::uint64_t windows_[kRoom];
};

static_assert(sizeof(WindowTable) == 256, "the size of the shared block");

}  // namespace kit
