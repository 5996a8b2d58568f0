#include "compress/detail/lz_encoder.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace kit::lz {
namespace {

// The place in the ring of a position of the whole text.
std::uint32_t Place(std::uint64_t position) {
    return static_cast<std::uint32_t>(position + kFirst - kKey) % kRing;
}

}  // namespace

bool BlockEncoder::Encode() {
    for (;;) {
        Load();
        order_.Sort(tree_.text(), count_ + kKey, slots_);
        tree_.Reset(order_);
        base_ == 0 ? Start() : TakeOver();
        if (!EncodeBlock()) return false;
        if (base_ + count_ == total_) return writer_.Finish();
        HandOver();
        base_ += count_ - kWindow;
    }
}

// Lays out the block's text, with the bytes that the keys of its last positions reach.
void BlockEncoder::Load() {
    count_ = static_cast<std::uint32_t>(std::min<std::uint64_t>(kMaxCount, total_ - base_));
    unsigned char* const text = tree_.text();
    const std::uint32_t size = count_ + kKey;
    const std::uint32_t begin = base_ == 0 ? kPreset : 0;
    const auto end = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, total_ - base_));
    std::memset(text, kBlank, begin);
    std::memcpy(text + begin, src_ + (base_ + begin - kPreset), end - begin);
    for (std::uint32_t p = end; p < size; ++p) text[p] = Stale(base_ + p);
}

// Behind the end of the text the ring still holds what was there one round before.
unsigned char BlockEncoder::Stale(std::uint64_t position) const {
    return position < kPreset + kRing ? kBlank : src_[position - kPreset - kRing];
}

// The blanks go into the tree from right to left.
void BlockEncoder::Start() {
    for (std::uint32_t i = 0; i < kPreset; ++i) {
        const std::uint32_t position = kPreset - 1 - i;
        tree_.Insert(slots_[position], position, SearchTree::kOldest + i);
    }
    next_ = kPreset;
}

bool BlockEncoder::EncodeBlock() {
    for (; next_ < count_; ++next_) {
        if (next_ >= kWindow) tree_.Remove(slots_[next_ - kWindow], next_ - kWindow);
        if (covered_ > 0) {
            --covered_;
        } else if (!EncodeToken()) {
            return false;
        }
        // Higher than every priority that Start() or TakeOver() has given.
        tree_.Insert(slots_[next_], next_, SearchTree::kOldest + next_);
    }
    return true;
}

bool BlockEncoder::EncodeToken() {
    const Match match = tree_.Longest(slots_[next_], next_);
    const std::uint64_t left = total_ - (base_ + next_);
    const auto length = static_cast<std::uint32_t>(std::min<std::uint64_t>(match.length, left));
    if (length < kMinMatch) return writer_.Literal(tree_.text()[next_]);
    covered_ = length - 1;
    return writer_.Match(Place(base_ + match.position), length);
}

// Notes the keys that live on, in the order of their priorities, by their positions in the next
// block.
void BlockEncoder::HandOver() {
    constexpr std::uint16_t kNobody = 0xFFFF;
    std::fill_n(by_priority_, SearchTree::kOldest + count_, kNobody);
    const std::uint32_t gone = count_ - kWindow;
    tree_.ForEach([&](std::uint32_t position, std::uint32_t priority) {
        by_priority_[priority] = static_cast<std::uint16_t>(position - gone);
    });
    heir_count_ = 0;
    for (std::uint32_t i = 0; i < SearchTree::kOldest + count_; ++i) {
        if (by_priority_[i] != kNobody) heirs_[heir_count_++] = by_priority_[i];
    }
}

void BlockEncoder::TakeOver() {
    for (std::uint32_t i = 0; i < heir_count_; ++i) {
        tree_.Insert(slots_[heirs_[i]], heirs_[i], SearchTree::kOldest + i);
    }
    next_ = kWindow;
}

ShortEncoder::ShortEncoder(const unsigned char* src, std::uint32_t size, TokenWriter& writer)
    : total_(kPreset + size), writer_(writer) {
    const auto lay_out = [&](unsigned char* text, int behind) {
        std::memset(text, kBlank, kPreset);
        std::memcpy(text + kPreset, src, size);
        std::memset(text + kPreset + size, behind, kKey);
    };
    lay_out(early_, 0);
    lay_out(late_, kBlank);
    std::fill(std::begin(roots_), std::end(roots_), kNone);
}

bool ShortEncoder::Encode() {
    for (std::uint32_t position = kPreset; position-- > 0;) Insert(position);
    for (std::uint32_t position = kPreset; position < total_; ++position) {
        const Match match = Insert(position);
        if (covered_ > 0) {
            --covered_;
        } else if (!EncodeToken(position, match)) {
            return false;
        }
    }
    return writer_.Finish();
}

const unsigned char* ShortEncoder::Key(std::uint32_t position) const {
    return (position < 2 * kPreset ? early_ : late_) + position;
}

// Inserts a key and returns the longest match for it that its way down meets, the first of several.
Match ShortEncoder::Insert(std::uint32_t position) {
    const unsigned char* const key = Key(position);
    const __m128i bytes = LoadKey(key);
    std::uint16_t* link = &roots_[key[0]];
    Match match = {0, 0};
    children_[position] = {kNone, kNone};
    while (*link != kNone) {
        const std::uint16_t node = *link;
        const unsigned char* const other = Key(node);
        const std::uint32_t length = CommonPrefix(bytes, LoadKey(other));
        if (length > match.length) match = {length, node};
        if (length == kKey) {
            children_[position] = children_[node];
            break;
        }
        link = key[length] < other[length] ? &children_[node].less : &children_[node].greater;
    }
    *link = static_cast<std::uint16_t>(position);
    return match;
}

bool ShortEncoder::EncodeToken(std::uint32_t position, Match match) {
    const std::uint32_t length = std::min(match.length, total_ - position);
    if (length < kMinMatch) return writer_.Literal(early_[position]);
    covered_ = length - 1;
    return writer_.Match(Place(match.position), length);
}

}  // namespace kit::lz
