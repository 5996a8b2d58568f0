#pragma once

#include <cstdint>

#include "compress/detail/key_order.h"
#include "compress/detail/search_tree.h"
#include "compress/detail/token_writer.h"

namespace kit::lz {

// Writes exactly the tokens of the classic encoder with its binary search tree. Which of several
// equally long matches that takes depends on the shape of the tree, and thus on everything
// inserted, removed and replaced before; search_tree.h says how the same comes about without links.
//
// Positions count from the sixteen blanks that stand in the tree before the first byte of the text.
// The text is worked off in blocks, because the keys of a block are put in order at once; a block
// begins with the window that the one before has left. Positions within a block have 16 bits.
//
// About 450 KB in size: not for the stack.
class BlockEncoder {
public:
    // `size` is more than ShortEncoder::kLongest, which encodes the rest.
    BlockEncoder(const unsigned char* src, std::uint32_t size, TokenWriter& writer)
        : src_(src), total_(kPreset + std::uint64_t{size}), writer_(writer) {}

    // False when the writer has run out of room.
    bool Encode();

private:
    static constexpr std::uint32_t kPreset = kKey;  // blanks in the tree from the start
    static constexpr std::uint32_t kWindow = 4081;  // a key leaves when the one this far on comes
    static constexpr std::uint32_t kMaxCount = KeyOrder::kMaxSize - kKey;  // positions in a block

    void Load();
    unsigned char Stale(std::uint64_t position) const;
    void Start();
    void TakeOver();
    bool EncodeBlock();
    bool EncodeToken();
    void HandOver();

    const unsigned char* const src_;
    const std::uint64_t total_;  // positions
    TokenWriter& writer_;
    std::uint64_t base_ = 0;     // the position at which the block begins
    std::uint32_t count_ = 0;    // positions in the block
    std::uint32_t next_ = 0;     // the position in the block that is next
    std::uint32_t covered_ = 0;  // positions from it on that the last token covers
    KeyOrder order_;
    SearchTree tree_;
    std::uint16_t slots_[KeyOrder::kMaxSize];
    std::uint16_t heirs_[kWindow];  // positions, the oldest first, for the next block
    std::uint32_t heir_count_ = 0;
    std::uint16_t by_priority_[kMaxCount + 1];
};

// The same for short inputs, for which the order of all keys is not worth its price: the search tree
// with its links. No key leaves the window before 4065 bytes have come, so nothing is ever removed.
//
// The bytes behind the end, which take part in comparisons, depend on who looks: places beyond the
// ring's end repeat those at its beginning, but only once these have been written. So the keys of
// the first sixteen bytes and of the blanks before see zeros behind the end, later ones see blanks.
class ShortEncoder {
public:
    // At least 30: from 31 bytes on, no key of the first sixteen reaches the end, and BlockEncoder
    // need not tell them apart. From here on that is faster, too.
    static constexpr std::uint32_t kLongest = 800;

    ShortEncoder(const unsigned char* src, std::uint32_t size, TokenWriter& writer);
    bool Encode();

private:
    static constexpr std::uint32_t kPreset = kKey;
    static constexpr std::uint32_t kMaxCount = kPreset + kLongest;
    static constexpr std::uint16_t kNone = 0xFFFF;

    struct Children {
        std::uint16_t less;
        std::uint16_t greater;
    };

    const unsigned char* Key(std::uint32_t position) const;
    Match Insert(std::uint32_t position);
    bool EncodeToken(std::uint32_t position, Match match);

    const std::uint32_t total_;
    TokenWriter& writer_;
    unsigned char early_[kMaxCount + kKey];
    unsigned char late_[kMaxCount + kKey];
    std::uint16_t roots_[256];  // by the first byte of the key
    Children children_[kMaxCount];
    std::uint32_t covered_ = 0;
};

}  // namespace kit::lz
