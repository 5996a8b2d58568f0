#pragma once

#include <cstdint>

#include "compress/detail/key.h"

namespace kit::lz {

// Puts all keys of a stretch of text in order at once.
//
// Every position gets a slot: slots ascend with the keys, and equal keys have the same slot. In
// front of the keys that begin with the same byte, and behind the last, one slot stays free: a
// fence.
class KeyOrder {
public:
    static constexpr std::uint32_t kMaxSize = 24 * 1024;  // of the text, in bytes
    static constexpr std::uint32_t kFences = 257;
    static constexpr std::uint32_t kMaxSlots = kMaxSize + kFences;

    // Sets slots[p] for the positions p of the text. The last 15 have no whole key; their slots
    // mean nothing. `size` is 32 to kMaxSize.
    void Sort(const unsigned char* text, std::uint32_t size, std::uint16_t* slots);

    // The fence in front of the keys that begin with `byte`, or (256) behind the last key.
    std::uint32_t Fence(std::uint32_t byte) const { return starts_[byte] + byte; }

private:
    void Pack(const unsigned char* text, std::uint32_t size, std::uint16_t* homes);
    void Keep(const unsigned char* text, std::uint32_t from, std::uint32_t to,
              std::uint16_t* homes);
    void CountFirstBytes();
    void Distribute(std::uint32_t offset, const std::uint16_t* from, std::uint16_t* to);
    template <typename Word>
    void Rank(const std::uint16_t* order);
    template <std::uint32_t kWidth>
    void Refine(const std::uint16_t* from, std::uint16_t* to);
    void Number(const std::uint16_t* order);

    // The text to sort is a ring: it is as if its beginning followed its end.
    unsigned char packed_[kMaxSize + kKey];
    std::uint32_t size_;
    std::uint32_t starts_[kFences];  // how many keys begin with a smaller byte
    std::uint16_t order_[kMaxSize];  // positions in the order of the bytes seen so far
    std::uint16_t spare_[kMaxSize];
    std::uint16_t ranks_[kMaxSize];  // by position: where its group of equals begins in the order
    std::uint16_t next_[kMaxSize];   // by group: where its next member goes
};

}  // namespace kit::lz
