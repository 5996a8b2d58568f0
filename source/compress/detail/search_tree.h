#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "compress/detail/key_order.h"

namespace kit::lz {

struct Match {
    std::uint32_t length;
    std::uint32_t position;  // says nothing when the length is below kMinMatch
};

// The binary search tree of the classic LZSS encoder, without its links.
//
// That tree holds the keys of the window in order from left to right. A new key becomes a leaf, so
// that on every way down from the root the keys stand in the order of their insertion: whoever was
// there first is nearer to the root. Order and age ("priority": small is old) therefore say all
// about the tree, and its operations need nothing else:
//   - an equal key takes over the node, priority included;
//   - a node with two children that leaves is replaced by its predecessor in key order, which thus
//     inherits its priority. A neighbour in key order is a descendant exactly when it is younger;
//   - the longest match is with one of the two neighbours in key order, and the node that the way
//     down meets first among all that match as far is the oldest of them. These are neighbours too.
// There is one tree for each first byte. The fences between them are older than any key and match
// none.
class SearchTree {
public:
    // The oldest priority of a key; 0 is that of the fences.
    static constexpr std::uint32_t kOldest = 1;

    // Room for the text in front of the bytes that the fences stand for.
    unsigned char* text() { return text_; }

    // Empties the tree and takes the fences from the order of the keys to come.
    void Reset(const KeyOrder& order) {
        const std::uint32_t slots = order.Fence(kLastFence) + 1;
        std::memset(live_, 0, (slots / 64 + kSpareWords) * sizeof live_[0]);
        std::memset(nodes_, 0, slots * sizeof nodes_[0]);
        for (std::uint32_t byte = 0; byte <= kLastFence; ++byte) {
            const std::uint32_t fence = order.Fence(byte);
            SetLive(fence);
            nodes_[fence] = kFenceText + byte;
            // Differs from `byte` and from the byte below, whose keys are the fence's neighbours.
            text_[kFenceText + byte] = static_cast<unsigned char>(byte + 128);
        }
        slots_ = slots;
    }

    // The key at `slot` now stands at `position`. Only a new one needs the priority.
    void Insert(std::uint32_t slot, std::uint32_t position, std::uint32_t priority) {
        const std::uint32_t known = kPriorityMask & (0u - IsLive(slot));
        nodes_[slot] = Blend(known, nodes_[slot], priority << 16) | position;
        SetLive(slot);
    }

    // The key at `position` leaves, unless a later position has taken its node over.
    void Remove(std::uint32_t slot, std::uint32_t position) {
        const std::uint32_t node = nodes_[slot];
        if (Position(node) != position) return;
        const std::uint32_t before = Below(slot);
        const std::uint32_t younger = std::min(nodes_[before], nodes_[Above(slot)]) > node;
        nodes_[before] = Blend(kPriorityMask & (0u - younger), node, nodes_[before]);
        live_[slot / 64 + 1] &= ~(std::uint64_t{1} << slot % 64);
    }

    // The longest match for the key of `position`, which is not in the tree yet.
    Match Longest(std::uint32_t slot, std::uint32_t position) const {
        if (IsLive(slot)) return {kKey, Position(nodes_[slot])};
        const __m128i key = LoadKey(text_ + position);
        const std::uint32_t below = Below(slot);
        const std::uint32_t above = Above(slot);
        const std::uint32_t length = std::max(Common(key, below), Common(key, above));
        if (length < kMinMatch) return {length, 0};
        return {length, Position(Oldest(key, length, below, above))};
    }

    // Calls visit(position, priority) for every key, in key order.
    template <typename Visit>
    void ForEach(Visit visit) const {
        for (std::uint32_t slot = 0; slot + 1 < slots_; slot = Above(slot)) {
            const std::uint32_t node = nodes_[slot];
            if (node >= kOldest << 16) visit(Position(node), node >> 16);
        }
    }

private:
    static constexpr std::uint32_t kLastFence = KeyOrder::kFences - 1;
    static constexpr std::uint32_t kFenceText = KeyOrder::kMaxSize;
    static constexpr std::uint32_t kPriorityMask = 0xFFFF0000;
    static constexpr std::uint32_t kSpareWords = 3;  // one in front of the bits, two behind

    // `a` where the mask is set, `b` elsewhere: decisions that a branch would get wrong half the
    // time.
    static std::uint32_t Blend(std::uint32_t mask, std::uint32_t a, std::uint32_t b) {
        return b ^ ((a ^ b) & mask);
    }
    static std::uint32_t Position(std::uint32_t node) { return node & 0xFFFF; }

    bool IsLive(std::uint32_t slot) const { return live_[slot / 64 + 1] >> slot % 64 & 1; }
    void SetLive(std::uint32_t slot) { live_[slot / 64 + 1] |= std::uint64_t{1} << slot % 64; }

    std::uint32_t Common(__m128i key, std::uint32_t slot) const {
        return CommonPrefix(key, LoadKey(text_ + Position(nodes_[slot])));
    }

    // The node of the highest priority among the neighbours that share `length` bytes with the key.
    std::uint32_t Oldest(__m128i key, std::uint32_t length, std::uint32_t below,
                         std::uint32_t above) const {
        std::uint32_t oldest = ~0u;
        for (; Common(key, below) >= length; below = Below(below)) {
            oldest = std::min(oldest, nodes_[below]);
        }
        for (; Common(key, above) >= length; above = Above(above)) {
            oldest = std::min(oldest, nodes_[above]);
        }
        return oldest;
    }

    // The nearest live slot below or above. One unaligned load sees the next 56 slots or more,
    // which nearly always suffices; the fences end the search by words.
    std::uint32_t Below(std::uint32_t slot) const {
        const std::uint64_t near = LoadBits(slot / 8 + 1) << (8 - slot % 8);
        if (near != 0) return slot - 1 - static_cast<std::uint32_t>(std::countl_zero(near));
        std::uint32_t word = slot / 64 + 1;
        std::uint64_t bits = live_[word] & ((std::uint64_t{1} << slot % 64) - 1);
        while (bits == 0) bits = live_[--word];
        return (word - 1) * 64 + 63 - static_cast<std::uint32_t>(std::countl_zero(bits));
    }
    std::uint32_t Above(std::uint32_t slot) const {
        const std::uint64_t near = LoadBits(slot / 8 + 8) >> (slot % 8 + 1);
        if (near != 0) return slot + 1 + static_cast<std::uint32_t>(std::countr_zero(near));
        std::uint32_t word = slot / 64 + 1;
        std::uint64_t bits = live_[word] & (~std::uint64_t{1} << slot % 64);
        while (bits == 0) bits = live_[++word];
        return (word - 1) * 64 + static_cast<std::uint32_t>(std::countr_zero(bits));
    }
    // The 64 bits from this byte of live_ on.
    std::uint64_t LoadBits(std::uint32_t byte) const {
        std::uint64_t bits;
        std::memcpy(&bits, reinterpret_cast<const unsigned char*>(live_) + byte, sizeof bits);
        return bits;
    }

    unsigned char text_[kFenceText + KeyOrder::kFences + kKey];
    std::uint32_t slots_;
    std::uint32_t nodes_[KeyOrder::kMaxSlots];  // by slot: priority << 16 | position
    std::uint64_t live_[KeyOrder::kMaxSlots / 64 + kSpareWords];  // a bit a slot, from word 1 on
};

}  // namespace kit::lz
