#pragma once

#include "text/detail/simd.h"

// Base64 by blocks of 12 bytes and 16 characters, with SSSE3. Values are the six bits of a character.

#ifdef QELKIT_SSSE3

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kit {

constexpr std::ptrdiff_t kBase64Block = 16;  // characters

// --- Encoding ------------------------------------------------------------------------------------

// The 16 values of the 12 bytes at `from`; reads 16 bytes.
QELKIT_SSSE3 inline __m128i SplitIntoSixBits(const unsigned char* from) {
    // A group b0 b1 b2 becomes two numbers of 16 bits, b0 b1 and b1 b2, each of which holds two
    // values: multiplying moves one up or the other down to a byte of its own.
    const __m128i spread = _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i pairs = _mm_shuffle_epi8(bytes, spread);
    const __m128i first = _mm_mulhi_epu16(_mm_and_si128(pairs, _mm_set1_epi32(0x0FC0FC00)),
                                          _mm_set1_epi32(0x04000040));
    const __m128i second = _mm_mullo_epi16(_mm_and_si128(pairs, _mm_set1_epi32(0x003F03F0)),
                                           _mm_set1_epi32(0x01000010));
    return _mm_or_si128(first, second);
}

// Values to characters: each range of the alphabet lies at a distance of its own from its values.
QELKIT_SSSE3 inline __m128i ToBase64Characters(__m128i values) {
    constexpr char kDigit = '0' - 52;
    const __m128i distances =
        _mm_setr_epi8('a' - 26, kDigit, kDigit, kDigit, kDigit, kDigit, kDigit, kDigit, kDigit,
                      kDigit, kDigit, '+' - 62, '/' - 63, 'A', 0, 0);
    // 0 for both kinds of letters, 1 to 12 for the values from 52 on; then 13 for the capitals.
    const __m128i from_digits = _mm_subs_epu8(values, _mm_set1_epi8(51));
    const __m128i is_capital = _mm_cmplt_epi8(values, _mm_set1_epi8(26));
    const __m128i range = _mm_or_si128(from_digits, _mm_and_si128(is_capital, _mm_set1_epi8(13)));
    return _mm_add_epi8(values, _mm_shuffle_epi8(distances, range));
}

QELKIT_SSSE3 inline void StoreBase64Block(__m128i characters, char* to) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), characters);
}
template <typename Char>
QELKIT_SSSE3 void StoreBase64Block(__m128i characters, Char* to) {
    static_assert(sizeof(Char) == 2);
    auto* const half = reinterpret_cast<__m128i*>(to);
    _mm_storeu_si128(half, _mm_unpacklo_epi8(characters, _mm_setzero_si128()));
    _mm_storeu_si128(half + 1, _mm_unpackhi_epi8(characters, _mm_setzero_si128()));
}

// Encodes blocks as long as there are 12 bytes to encode and 16 to read; returns the bytes encoded.
template <typename Char>
QELKIT_SSSE3 std::size_t EncodeBase64Blocks(const unsigned char* from, std::size_t size,
                                            std::size_t readable, Char* to) {
    std::size_t done = 0;
    for (; size - done >= 12 && readable - done >= 16; done += 12, to += kBase64Block) {
        StoreBase64Block(ToBase64Characters(SplitIntoSixBits(from + done)), to);
    }
    return done;
}

// --- Decoding ------------------------------------------------------------------------------------

QELKIT_SSSE3 inline __m128i LoadBase64Block(const char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
// Characters that do not fit a byte become bytes outside the alphabet (0 or 255).
template <typename Char>
QELKIT_SSSE3 __m128i LoadBase64Block(const Char* from) {
    static_assert(sizeof(Char) == 2);
    const auto* const half = reinterpret_cast<const __m128i*>(from);
    return _mm_packus_epi16(_mm_loadu_si128(half), _mm_loadu_si128(half + 1));
}

// One bit for every character that is not of the alphabet, and the values of the others.
QELKIT_SSSE3 inline unsigned ToBase64Values(__m128i characters, __m128i& values) {
    // Rows of the character table (high half of the code) have a bit each; columns (low half) list the
    // rows in which they are not of the alphabet.
    constexpr char kPlusRow = 1, kDigitRow = 2, kFirstLetterRow = 4, kLastLetterRow = 8,
                   kNoRow = 16;
    const __m128i rows = _mm_setr_epi8(kNoRow, kNoRow, kPlusRow, kDigitRow, kFirstLetterRow,
                                       kLastLetterRow, kFirstLetterRow, kLastLetterRow, kNoRow,
                                       kNoRow, kNoRow, kNoRow, kNoRow, kNoRow, kNoRow, kNoRow);
    constexpr char k0 = kNoRow | kPlusRow | kFirstLetterRow;             // 0 P p
    constexpr char k1 = kNoRow | kPlusRow;                               // 1 A Q a q
    constexpr char kA = kNoRow | kPlusRow | kDigitRow;                   // J Z j z
    constexpr char kB = kNoRow | kDigitRow | kLastLetterRow;             // + K k
    constexpr char kC = kNoRow | kPlusRow | kDigitRow | kLastLetterRow;  // L l
    const __m128i columns =
        _mm_setr_epi8(k0, k1, k1, k1, k1, k1, k1, k1, k1, k1, kA, kB, kC, kC, kC, kB);
    // By row; the slash, alone in its row with the plus, takes the place before.
    const __m128i distances = _mm_setr_epi8(0, 63 - '/', 62 - '+', 52 - '0', -'A', -'A', 26 - 'a',
                                            26 - 'a', 0, 0, 0, 0, 0, 0, 0, 0);
    const __m128i half = _mm_set1_epi8(15);
    const __m128i row = _mm_and_si128(_mm_srli_epi16(characters, 4), half);
    const __m128i column = _mm_and_si128(characters, half);
    const __m128i foreign =
        _mm_and_si128(_mm_shuffle_epi8(rows, row), _mm_shuffle_epi8(columns, column));
    const __m128i is_slash = _mm_cmpeq_epi8(characters, _mm_set1_epi8('/'));
    values = _mm_add_epi8(characters, _mm_shuffle_epi8(distances, _mm_add_epi8(row, is_slash)));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi8(foreign, _mm_setzero_si128())));
}

// Writes the 12 bytes that 16 values make.
QELKIT_SSSE3 inline void StoreSixBits(__m128i values, unsigned char* to) {
    const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi16(0x0140));   // v0 * 64 + v1
    const __m128i groups = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000));  // p0 * 4096 + p1
    const __m128i bytes = _mm_shuffle_epi8(
        groups, _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), bytes);
    const int last = _mm_cvtsi128_si32(_mm_srli_si128(bytes, 8));
    std::memcpy(to + 8, &last, sizeof last);
}

// Decodes blocks that are all of the alphabet; moves both positions behind them.
template <typename Char>
QELKIT_SSSE3 void DecodeBase64Blocks(const Char*& from, const Char* end, unsigned char*& to) {
    for (; end - from >= kBase64Block; from += kBase64Block, to += 12) {
        __m128i values;
        if (ToBase64Values(LoadBase64Block(from), values) != 0) return;
        StoreSixBits(values, to);
    }
}

// --- Decoding around white space -----------------------------------------------------------------

// How to move the bytes of eight whose bits are set to the front, and how many they are.
struct Base64Squeeze {
    std::array<std::array<std::uint8_t, 8>, 256> places{};
    std::array<std::uint8_t, 256> counts{};
};
inline constexpr Base64Squeeze kBase64Squeeze = [] {
    Base64Squeeze squeeze;
    for (std::size_t mask = 0; mask < 256; ++mask) {
        for (std::uint8_t place = 0; place < 8; ++place) {
            if (mask >> place & 1) squeeze.places[mask][squeeze.counts[mask]++] = place;
        }
    }
    return squeeze;
}();

// Values on their way from broken text to whole blocks. Many are gathered before the first is read:
// the processor waits when it reads what has only just been written in pieces.
class Base64Stage {
public:
    // Adds those of 16 values whose bits are set in `wanted`; decodes what is there when it is full.
    QELKIT_SSSE3 void Add(__m128i values, unsigned wanted, unsigned char*& to) {
        AddHalf(values, wanted & 0xFF);
        AddHalf(_mm_srli_si128(values, 8), wanted >> 8);
        if (count_ >= kFull) Flush(to);
    }
    // Decodes all whole blocks and moves `to` behind them; fewer than 16 values remain.
    QELKIT_SSSE3 void Flush(unsigned char*& to) {
        const unsigned char* block = values_;
        for (; count_ >= 16; block += 16, to += 12, count_ -= 16) {
            StoreSixBits(_mm_loadu_si128(reinterpret_cast<const __m128i*>(block)), to);
        }
        std::memmove(values_, block, 16);
    }
    const unsigned char* begin() const { return values_; }
    const unsigned char* end() const { return values_ + count_; }

private:
    QELKIT_SSSE3 void AddHalf(__m128i values, unsigned wanted) {
        const __m128i places =
            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kBase64Squeeze.places[wanted].data()));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(values_ + count_),
                         _mm_shuffle_epi8(values, places));
        count_ += kBase64Squeeze.counts[wanted];
    }

    static constexpr std::size_t kFull = 256;
    unsigned char values_[kFull + 32];  // as much as one addition, and a block that begins in it
    std::size_t count_ = 0;
};

// One bit for every blank, tab, carriage return and line feed.
QELKIT_SSSE3 inline unsigned WhiteOf(__m128i characters) {
    const __m128i blank = _mm_cmpeq_epi8(characters, _mm_set1_epi8(' '));
    const __m128i tab = _mm_cmpeq_epi8(characters, _mm_set1_epi8('\t'));
    const __m128i carriage_return = _mm_cmpeq_epi8(characters, _mm_set1_epi8('\r'));
    const __m128i line_feed = _mm_cmpeq_epi8(characters, _mm_set1_epi8('\n'));
    return static_cast<unsigned>(_mm_movemask_epi8(
        _mm_or_si128(_mm_or_si128(blank, tab), _mm_or_si128(carriage_return, line_feed))));
}

// Decodes blocks that are all of the alphabet or white space; moves both positions behind them.
// Returns the values behind the last whole block, fewer than 16, which are not decoded.
template <typename Char>
QELKIT_SSSE3 Base64Stage DecodeBrokenBase64Blocks(const Char*& from, const Char* end,
                                                  unsigned char*& to) {
    Base64Stage stage;
    for (; end - from >= kBase64Block; from += kBase64Block) {
        __m128i values;
        const __m128i characters = LoadBase64Block(from);
        const unsigned foreign = ToBase64Values(characters, values);
        if ((foreign & ~WhiteOf(characters)) != 0) break;
        stage.Add(values, ~foreign & 0xFFFF, to);
    }
    stage.Flush(to);
    return stage;
}

}  // namespace kit

#endif  // QELKIT_SSSE3
