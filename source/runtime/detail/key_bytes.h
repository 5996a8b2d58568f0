#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Hashing, comparing and copying the keys and values of a hash table.
namespace kit {

static_assert(std::endian::native == std::endian::little, "keys are hashed by words");

// A size that is a type, for the common ones: hashing, comparing or copying so many bytes is then
// compiled to a few instructions. Any other size is an int.
template <int kSize>
using Fixed = std::integral_constant<int, kSize>;
using Any = int;

template <typename Size>
Size SizeFrom(int size) {
    if constexpr (std::is_same_v<Size, Any>) {
        return size;
    } else {
        return Size();
    }
}

inline std::uint64_t Load64(const unsigned char* from) {
    std::uint64_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

// The hash is, for every byte in turn, h = rotl(h, 7) ^ byte. Both steps are linear over the bits,
// so eight bytes can be joined before they meet h: each stands seven bits above the next one. Join
// leaves the first four and the last four in one half of the word each.
inline std::uint64_t Join(std::uint64_t word) {
    constexpr std::uint64_t kBytes = 0x00FF00FF00FF00FF;
    constexpr std::uint64_t kPairs = 0x0000FFFF0000FFFF;
    word = (word & kBytes) << 7 ^ (word >> 8 & kBytes);
    return (word & kPairs) << 14 ^ (word >> 16 & kPairs);
}

inline std::uint32_t AddJoined(std::uint32_t h, std::uint64_t joined) {
    const auto first = static_cast<std::uint32_t>(joined);
    const auto last = static_cast<std::uint32_t>(joined >> 32);
    return std::rotl(h, 8 * 7) ^ std::rotl(first, 4 * 7) ^ last;
}

inline std::uint32_t Hash(const unsigned char* key, Any size) {
    std::uint32_t h = 0;
    for (; size >= 8; size -= 8, key += 8) h = AddJoined(h, Join(Load64(key)));
    for (; size > 0; --size, ++key) h = std::rotl(h, 7) ^ *key;
    return h;
}

// All words are joined first: in one loop the compiler does it with vector registers.
template <int kSize>
std::uint32_t Hash(const unsigned char* key, Fixed<kSize>) {
    static_assert(kSize % 8 == 0);
    std::uint64_t words[kSize / 8];
    std::memcpy(words, key, kSize);
    for (auto& word : words) word = Join(word);
    std::uint32_t h = 0;
    for (const auto word : words) h = AddJoined(h, word);
    return h;
}

// A key of four bytes is a number, and its own hash.
inline std::uint32_t Hash(const unsigned char* key, Fixed<4>) {
    std::uint32_t number;
    std::memcpy(&number, key, sizeof number);
    return number;
}

inline bool Equal(const unsigned char* a, const unsigned char* b, Any size) {
    return std::memcmp(a, b, static_cast<std::size_t>(size)) == 0;
}

// Without a branch between the words: most keys differ in the first or not at all.
template <int kSize>
bool Equal(const unsigned char* a, const unsigned char* b, Fixed<kSize>) {
    if constexpr (kSize < 8) return std::memcmp(a, b, kSize) == 0;
    std::uint64_t difference = 0;
    for (std::size_t i = 0; i < kSize; i += 8) difference |= Load64(a + i) ^ Load64(b + i);
    return difference == 0;
}

template <typename Size>
void Copy(void* to, const void* from, Size size) {
    std::memcpy(to, from, static_cast<std::size_t>(size));
}

}  // namespace kit
