#include "compress/detail/key_order.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "compress/detail/repeat_finder.h"

namespace kit::lz {
namespace {

template <typename Word>
Word LoadWord(const unsigned char* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

}  // namespace

void KeyOrder::Sort(const unsigned char* text, std::uint32_t size, std::uint16_t* slots) {
    Pack(text, size, slots);
    std::memcpy(packed_ + size_, packed_, kKey);
    CountFirstBytes();
    // By the first four bytes, a byte at a time from the last to the first ...
    std::iota(order_, order_ + size_, std::uint16_t{0});
    Distribute(3, order_, spare_);
    Distribute(2, spare_, order_);
    Distribute(1, order_, spare_);
    Distribute(0, spare_, order_);
    // ... then by eight and by sixteen, each time from the order of half as many.
    Rank<std::uint32_t>(order_);
    Refine<4>(order_, spare_);
    Rank<std::uint64_t>(spare_);
    Refine<8>(spare_, order_);
    Number(order_);
    for (std::uint32_t p = 0; p < size; ++p) slots[p] = ranks_[slots[p]];
}

// Copies the text into packed_ and leaves out the insides of long repeats, whose keys have all been
// there before. homes[p] is where the key of position p stands in packed_.
void KeyOrder::Pack(const unsigned char* text, std::uint32_t size, std::uint16_t* homes) {
    size_ = 0;
    std::uint32_t done = 0;
    RepeatFinder finder(text, size);
    for (Repeat repeat; finder.Next(repeat);) {
        // The keys before the repeat reach 15 bytes into it; those behind begin with its last 15.
        Keep(text, done, repeat.begin + (kKey - 1), homes);
        done = repeat.end - (kKey - 1);
        for (std::uint32_t p = repeat.begin; p < done; ++p) homes[p] = homes[p - repeat.distance];
    }
    Keep(text, done, size, homes);
}

void KeyOrder::Keep(const unsigned char* text, std::uint32_t from, std::uint32_t to,
                    std::uint16_t* homes) {
    std::memcpy(packed_ + size_, text + from, to - from);
    std::iota(homes + from, homes + to, static_cast<std::uint16_t>(size_));
    size_ += to - from;
}

// The text being a ring, the counts hold for the bytes at any offset from the positions.
void KeyOrder::CountFirstBytes() {
    std::fill_n(starts_, kFences, 0u);
    for (std::uint32_t p = 0; p < size_; ++p) ++starts_[packed_[p] + 1];
    std::partial_sum(starts_, starts_ + kFences, starts_);
}

// Orders by the byte at `offset`; positions with equal bytes keep their order.
void KeyOrder::Distribute(std::uint32_t offset, const std::uint16_t* from, std::uint16_t* to) {
    std::uint32_t next[kFences];
    std::copy_n(starts_, kFences, next);
    const unsigned char* const bytes = packed_ + offset;
    for (std::uint32_t i = 0; i < size_; ++i) to[next[bytes[from[i]]]++] = from[i];
}

// Finds the groups of positions whose first sizeof(Word) bytes are the same.
template <typename Word>
void KeyOrder::Rank(const std::uint16_t* order) {
    std::uint32_t begin = 0;
    auto previous = LoadWord<Word>(packed_ + order[0]);
    for (std::uint32_t i = 0; i < size_; ++i) {
        const auto word = LoadWord<Word>(packed_ + order[i]);
        begin =
            std::max(begin, i * (word != previous));  // without a branch: nobody can foretell it
        previous = word;
        ranks_[order[i]] = static_cast<std::uint16_t>(begin);
    }
}

// `from` and the ranks are the order by the first kWidth bytes; makes the order by twice as many.
// Taken in the order of what follows kWidth bytes later, the members of a group come in order.
template <std::uint32_t kWidth>
void KeyOrder::Refine(const std::uint16_t* from, std::uint16_t* to) {
    std::iota(next_, next_ + size_, std::uint16_t{0});
    for (std::uint32_t i = 0; i < size_; ++i) {
        const std::uint32_t later = from[i];
        const std::uint32_t p = later >= kWidth ? later - kWidth : later + size_ - kWidth;
        to[next_[ranks_[p]]++] = static_cast<std::uint16_t>(p);
    }
}

// Turns the final order into slots, which take the place of the ranks.
void KeyOrder::Number(const std::uint16_t* order) {
    std::uint32_t begin = 0;
    __m128i previous = LoadKey(packed_ + order[0]);
    for (std::uint32_t i = 0; i < size_; ++i) {
        const __m128i key = LoadKey(packed_ + order[i]);
        begin = std::max(begin, i * (CommonPrefix(key, previous) != kKey));
        previous = key;
        ranks_[order[i]] = static_cast<std::uint16_t>(begin + packed_[order[i]] + 1);
    }
}

}  // namespace kit::lz
