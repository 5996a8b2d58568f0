#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstdint>

#include "compress/detail/lz_stream.h"

namespace kit::lz {

// The key of a position of the text: the 16 bytes from it on, as many as a match can cover.
constexpr std::uint32_t kKey = kMaxMatch;

inline __m128i LoadKey(const unsigned char* key) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(key));
}

// The number of bytes that two keys have in common at their beginning, 0..16.
inline std::uint32_t CommonPrefix(__m128i a, __m128i b) {
    const auto equal = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(a, b)));
    return static_cast<std::uint32_t>(std::countr_one(equal));
}

}  // namespace kit::lz
