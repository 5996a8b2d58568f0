#pragma once

#include <cstddef>
#include <cstdint>

#include "text/detail/base64_alphabet.h"
#include "text/detail/base64_block.h"

// Base64 by groups of three bytes and four characters, for all the codecs.

namespace kit {

// Writes the four characters of the 24 bits of a group.
template <typename Char>
void EncodeBase64Group(std::uint32_t bits, Char* to) {
    for (int i = 0; i < 4; ++i)
        to[i] = static_cast<Char>(kBase64Alphabet[bits >> (18 - 6 * i) & 63]);
}

// Writes the three bytes of the 24 bits of a group.
inline void StoreBase64Group(std::uint32_t bits, unsigned char* to) {
    to[0] = static_cast<unsigned char>(bits >> 16);
    to[1] = static_cast<unsigned char>(bits >> 8);
    to[2] = static_cast<unsigned char>(bits);
}

// Encodes `size` bytes, a last group of fewer than three padded with "=", and returns the end of
// the characters: 4 for every group, no terminator. `readable` bytes, at least `size`, may be read.
template <typename Char>
Char* EncodeBase64Groups(const unsigned char* from, std::size_t size, std::size_t readable,
                         Char* to) {
#ifdef QELKIT_SSSE3
    if (kHasSsse3) {
        const std::size_t done = EncodeBase64Blocks(from, size, readable, to);
        from += done;
        to += done / 3 * 4;
        size -= done;
    }
#endif
    for (; size >= 3; from += 3, to += 4, size -= 3) {
        EncodeBase64Group(std::uint32_t{from[0]} << 16 | std::uint32_t{from[1]} << 8 | from[2], to);
    }
    if (size == 0) return to;
    const std::uint32_t second = size > 1 ? from[1] : 0;
    EncodeBase64Group(std::uint32_t{from[0]} << 16 | second << 8, to);
    if (size == 1) to[2] = static_cast<Char>('=');
    to[3] = static_cast<Char>('=');
    return to + 4;
}

// Decodes groups as long as all four characters have a value. Moves both positions behind them:
// fewer than four characters are left then, or one of the next four has none.
template <typename Char>
void DecodeBase64Groups(const Char*& from, const Char* end, unsigned char*& to) {
#ifdef QELKIT_SSSE3
    if (kHasSsse3) DecodeBase64Blocks(from, end, to);
#endif
    for (; end - from >= 4; from += 4, to += 3) {
        const std::uint8_t values[] = {Base64Value(from[0]), Base64Value(from[1]),
                                       Base64Value(from[2]), Base64Value(from[3])};
        if ((values[0] | values[1] | values[2] | values[3]) == kNoBase64Value) return;
        StoreBase64Group(std::uint32_t{values[0]} << 18 | std::uint32_t{values[1]} << 12 |
                             std::uint32_t{values[2]} << 6 | values[3],
                         to);
    }
}

}  // namespace kit
