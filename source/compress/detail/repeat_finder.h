#pragma once

#include <cstdint>
#include <cstring>

#include "compress/detail/key.h"

namespace kit::lz {

// text[p] == text[p - distance] for every p in [begin, end).
struct Repeat {
    std::uint32_t begin;
    std::uint32_t end;
    std::uint32_t distance;
};

// Finds long repeats in a text at little cost, not necessarily all. One key in 32 is remembered and
// one in 33 is looked up, so that sooner or later a key meets its like at any distance.
class RepeatFinder {
public:
    // Shorter repeats are not worth their trouble; twice a key is the least that Pack() can take.
    static constexpr std::uint32_t kShortest = 4 * kKey;

    // `size` is below 65535.
    RepeatFinder(const unsigned char* text, std::uint32_t size) : text_(text), size_(size) {}

    // The next repeat, from left to right; repeats do not overlap. False when there is none.
    bool Next(Repeat& repeat) {
        for (; at_ + kKey <= size_; at_ += kLookUpStep) {
            for (; place_ < at_; place_ += kPlaceStep) {
                places_[Hash(place_)] = static_cast<std::uint16_t>(place_ + 1);
            }
            const std::uint32_t place = places_[Hash(at_)];
            if (place == 0 || !Extend(at_ - (place - 1), repeat)) continue;
            floor_ = place_ = at_ = repeat.end;
            return true;
        }
        return false;
    }

private:
    static constexpr std::uint32_t kPlaceStep = 32;
    static constexpr std::uint32_t kLookUpStep = 33;
    static constexpr int kHashBits = 11;

    std::uint32_t Hash(std::uint32_t p) const {
        std::uint64_t words[2];
        std::memcpy(words, text_ + p, sizeof words);
        const std::uint64_t mixed = words[0] * 0x9E3779B97F4A7C15u + words[1] * 0xC2B2AE3D27D4EB4Fu;
        return static_cast<std::uint32_t>(mixed >> (64 - kHashBits));
    }
    // The repeat at this distance around at_, if it is long enough.
    bool Extend(std::uint32_t distance, Repeat& repeat) const {
        std::uint32_t begin = at_;
        std::uint32_t end = at_;
        while (end < size_ && text_[end] == text_[end - distance]) ++end;
        while (begin > floor_ && begin > distance &&
               text_[begin - 1] == text_[begin - 1 - distance]) {
            --begin;
        }
        repeat = {begin, end, distance};
        return end - begin >= kShortest;
    }

    const unsigned char* text_;
    std::uint32_t size_;
    std::uint32_t at_ = kLookUpStep;
    std::uint32_t place_ = 0;                    // the next key to remember
    std::uint32_t floor_ = 0;                    // the end of the last repeat
    std::uint16_t places_[1 << kHashBits] = {};  // by hash: the place of the key, plus 1
};

}  // namespace kit::lz
