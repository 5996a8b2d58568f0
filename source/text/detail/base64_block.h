#pragma once

#include "text/detail/sse2.h"

// Base64 by blocks of 12 bytes and 16 characters. A group, 3 bytes or 4 characters, sits in each
// 32-bit lane of a register.

#ifdef QELKIT_SSE2

#include <cstdint>
#include <cstring>

namespace kit {

// --- Encoding ------------------------------------------------------------------------------------

// Lanes of three bytes b0 b1 b2 (and one that does not matter) to lanes of four values v0 v1 v2 v3.
inline __m128i SplitIntoSixBits(__m128i bytes) {
    const auto moved_right = [&](int bits, int mask) {
        return _mm_and_si128(_mm_srli_epi32(bytes, bits), _mm_set1_epi32(mask));
    };
    const auto moved_left = [&](int bits, int mask) {
        return _mm_and_si128(_mm_slli_epi32(bytes, bits), _mm_set1_epi32(mask));
    };
    const __m128i v0 = moved_right(2, 0x0000003F);
    const __m128i v1 = _mm_or_si128(moved_left(12, 0x00003000), moved_right(4, 0x00000F00));
    const __m128i v2 = _mm_or_si128(moved_left(10, 0x003C0000), moved_right(6, 0x00030000));
    const __m128i v3 = moved_left(8, 0x3F000000);
    return _mm_or_si128(_mm_or_si128(v0, v1), _mm_or_si128(v2, v3));
}

// Values to characters: each range of the alphabet lies at a distance of its own from its values,
// and the distances are added up range by range.
inline __m128i ToBase64Characters(__m128i values) {
    const auto from = [&](char first, char distance) {
        return _mm_and_si128(_mm_cmpgt_epi8(values, _mm_set1_epi8(static_cast<char>(first - 1))),
                             _mm_set1_epi8(distance));
    };
    const __m128i letters = _mm_add_epi8(_mm_set1_epi8('A'), from(26, 'a' - 26 - 'A'));
    const __m128i digits =
        _mm_add_epi8(from(52, '0' - 52 - ('a' - 26)), from(62, '+' - 62 - ('0' - 52)));
    const __m128i slash = from(63, '/' - 63 - ('+' - 62));
    return _mm_add_epi8(_mm_add_epi8(values, letters), _mm_add_epi8(digits, slash));
}

// The characters of the 12 bytes at `from`. Reads 13 bytes.
inline __m128i EncodeBase64Block(const unsigned char* from) {
    const auto group = [from](int offset) {
        int lane;
        std::memcpy(&lane, from + offset, sizeof lane);
        return lane;
    };
    return ToBase64Characters(
        SplitIntoSixBits(_mm_set_epi32(group(9), group(6), group(3), group(0))));
}

inline void StoreBase64Block(__m128i characters, char* to) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), characters);
}
template <typename Char>
void StoreBase64Block(__m128i characters, Char* to) {
    static_assert(sizeof(Char) == 2);
    auto* const half = reinterpret_cast<__m128i*>(to);
    _mm_storeu_si128(half, _mm_unpacklo_epi8(characters, _mm_setzero_si128()));
    _mm_storeu_si128(half + 1, _mm_unpackhi_epi8(characters, _mm_setzero_si128()));
}

// --- Decoding ------------------------------------------------------------------------------------

inline __m128i LoadBase64Block(const char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
// Characters that do not fit a byte become bytes outside the alphabet (0 or 255).
template <typename Char>
__m128i LoadBase64Block(const Char* from) {
    static_assert(sizeof(Char) == 2);
    const auto* const half = reinterpret_cast<const __m128i*>(from);
    return _mm_packus_epi16(_mm_loadu_si128(half), _mm_loadu_si128(half + 1));
}

// Characters to values; false when one is not of the alphabet.
inline bool ToBase64Values(__m128i characters, __m128i& values) {
    __m128i known = _mm_setzero_si128();
    __m128i distance = _mm_setzero_si128();
    const auto range = [&](__m128i is_in, char to_value) {
        known = _mm_or_si128(known, is_in);
        distance = _mm_or_si128(distance, _mm_and_si128(is_in, _mm_set1_epi8(to_value)));
    };
    const auto between = [&](char first, char last) {
        return _mm_and_si128(
            _mm_cmpgt_epi8(characters, _mm_set1_epi8(static_cast<char>(first - 1))),
            _mm_cmplt_epi8(characters, _mm_set1_epi8(static_cast<char>(last + 1))));
    };
    range(between('A', 'Z'), -'A');
    range(between('a', 'z'), 26 - 'a');
    range(between('0', '9'), 52 - '0');
    range(_mm_cmpeq_epi8(characters, _mm_set1_epi8('+')), 62 - '+');
    range(_mm_cmpeq_epi8(characters, _mm_set1_epi8('/')), 63 - '/');
    values = _mm_add_epi8(characters, distance);
    return _mm_movemask_epi8(known) == 0xFFFF;
}

// Lanes of four values v0 v1 v2 v3 to lanes of three bytes b0 b1 b2 and a zero.
inline __m128i JoinSixBits(__m128i values) {
    const auto part = [&](int mask) { return _mm_and_si128(values, _mm_set1_epi32(mask)); };
    const __m128i b0 =
        _mm_or_si128(_mm_slli_epi32(part(0x0000003F), 2), _mm_srli_epi32(part(0x00003000), 12));
    const __m128i b1 =
        _mm_or_si128(_mm_slli_epi32(part(0x00000F00), 4), _mm_srli_epi32(part(0x003C0000), 10));
    const __m128i b2 =
        _mm_or_si128(_mm_slli_epi32(part(0x00030000), 6), _mm_srli_epi32(part(0x3F000000), 8));
    return _mm_or_si128(_mm_or_si128(b0, b1), b2);
}

// Writes the three bytes of each lane, 12 in all, one behind the other.
inline void StoreGroups(__m128i groups, unsigned char* to) {
    const __m128i first = _mm_and_si128(groups, _mm_set1_epi64x(0x0000000000FFFFFF));
    const __m128i second =
        _mm_and_si128(_mm_srli_epi64(groups, 8), _mm_set1_epi64x(0x0000FFFFFF000000));
    const __m128i pairs = _mm_or_si128(first, second);
    const auto low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(pairs));
    const auto high =
        static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(pairs, pairs)));
    const std::uint64_t head = low | high << 48;
    const auto tail = static_cast<std::uint32_t>(high >> 16);
    std::memcpy(to, &head, sizeof head);
    std::memcpy(to + sizeof head, &tail, sizeof tail);
}

// Writes the 12 bytes that 16 characters stand for; false, and nothing written, when one of them is
// not of the alphabet.
inline bool DecodeBase64Block(__m128i characters, unsigned char* to) {
    __m128i values;
    if (!ToBase64Values(characters, values)) return false;
    StoreGroups(JoinSixBits(values), to);
    return true;
}

}  // namespace kit

#endif  // QELKIT_SSE2
