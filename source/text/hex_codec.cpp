#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>

#include "text/codecs.h"
#include "text/detail/simd.h"

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";
constexpr std::uint8_t kNoDigit = 0xFF;

constexpr auto kDigitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(kNoDigit);
    for (std::uint8_t value = 0; value < 16; ++value) {
        const auto digit = static_cast<unsigned char>(kDigits[value]);
        values[digit] = value;
        if (value >= 10) values[digit | ('a' - 'A')] = value;
    }
    return values;
}();

std::uint8_t DigitValue(char c) { return kDigitValues[static_cast<unsigned char>(c)]; }

char* WriteByte(unsigned char byte, char* to) {
    to[0] = kDigits[byte >> 4];
    to[1] = kDigits[byte & 15];
    return to + 2;
}

constexpr std::size_t kBlock = 16;  // bytes; twice as many digits
constexpr std::size_t kSpacedBlock = 8;

#ifdef QELKIT_SSE2

const __m128i* Vector(const void* p) { return static_cast<const __m128i*>(p); }
__m128i* Vector(void* p) { return static_cast<__m128i*>(p); }

__m128i ToDigits(__m128i nibbles) {
    const __m128i is_letter = _mm_cmpgt_epi8(nibbles, _mm_set1_epi8(9));
    const __m128i beyond = _mm_and_si128(is_letter, _mm_set1_epi8('A' - 10 - '0'));
    return _mm_add_epi8(_mm_add_epi8(nibbles, _mm_set1_epi8('0')), beyond);
}

void WriteBlock(const unsigned char* from, char* to) {
    const __m128i bytes = _mm_loadu_si128(Vector(from));
    const __m128i low_half = _mm_set1_epi8(15);
    const __m128i high = ToDigits(_mm_and_si128(_mm_srli_epi16(bytes, 4), low_half));
    const __m128i low = ToDigits(_mm_and_si128(bytes, low_half));
    _mm_storeu_si128(Vector(to), _mm_unpacklo_epi8(high, low));
    _mm_storeu_si128(Vector(to + kBlock), _mm_unpackhi_epi8(high, low));
}

// 16 digits to 16 values; lanes of `known` that are no digit become 0.
__m128i ToNibbles(__m128i characters, __m128i& known) {
    const auto within = [](__m128i value, char last) {
        return _mm_cmpeq_epi8(_mm_min_epu8(value, _mm_set1_epi8(last)), value);
    };
    const __m128i decimal = _mm_sub_epi8(characters, _mm_set1_epi8('0'));
    const __m128i lower = _mm_or_si128(characters, _mm_set1_epi8('a' - 'A'));
    const __m128i letter = _mm_sub_epi8(lower, _mm_set1_epi8('a'));
    const __m128i is_decimal = within(decimal, 9);
    const __m128i is_letter = within(letter, 5);
    known = _mm_and_si128(known, _mm_or_si128(is_decimal, is_letter));
    return _mm_or_si128(_mm_and_si128(is_decimal, decimal),
                        _mm_andnot_si128(is_decimal, _mm_add_epi8(letter, _mm_set1_epi8(10))));
}

// Reads 32 digits into 16 bytes; false, and nothing written, when there is something else among them.
bool ReadBlock(const char* from, unsigned char* to) {
    __m128i known = _mm_set1_epi8(-1);
    const auto bytes = [&](const char* digits) {
        const __m128i nibbles = ToNibbles(_mm_loadu_si128(Vector(digits)), known);
        const __m128i joined = _mm_or_si128(_mm_slli_epi16(nibbles, 4), _mm_srli_epi16(nibbles, 8));
        return _mm_and_si128(joined, _mm_set1_epi16(0xFF));
    };
    const __m128i first = bytes(from);
    const __m128i second = bytes(from + kBlock);
    if (_mm_movemask_epi8(known) != 0xFFFF) return false;
    _mm_storeu_si128(Vector(to), _mm_packus_epi16(first, second));
    return true;
}

// --- Two digits and a blank for every byte -------------------------------------------------------

// The digits at these places; a blank for every place below 0.
QELKIT_SSSE3 __m128i SpreadDigits(__m128i digits, __m128i places) {
    const __m128i is_blank = _mm_cmplt_epi8(places, _mm_setzero_si128());
    return _mm_or_si128(_mm_shuffle_epi8(digits, places),
                        _mm_and_si128(is_blank, _mm_set1_epi8(' ')));
}

// Writes 8 bytes as 24 characters, of which the last is a blank.
QELKIT_SSSE3 void WriteSpacedBlock(const unsigned char* from, char* to) {
    const __m128i bytes = _mm_loadl_epi64(Vector(from));
    const __m128i low_half = _mm_set1_epi8(15);
    const __m128i high = _mm_and_si128(_mm_srli_epi16(bytes, 4), low_half);
    const __m128i nibbles = _mm_unpacklo_epi8(high, _mm_and_si128(bytes, low_half));
    const __m128i digits = ToDigits(nibbles);
    const __m128i first = _mm_setr_epi8(0, 1, -1, 2, 3, -1, 4, 5, -1, 6, 7, -1, 8, 9, -1, 10);
    const __m128i second =
        _mm_setr_epi8(11, -1, 12, 13, -1, 14, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1);
    _mm_storeu_si128(Vector(to), SpreadDigits(digits, first));
    _mm_storel_epi64(Vector(to + 16), SpreadDigits(digits, second));
}

// Reads 24 characters as WriteSpacedBlock makes them; false, and nothing written, for others.
QELKIT_SSSE3 bool ReadSpacedBlock(const char* from, unsigned char* to) {
    const __m128i begin = _mm_loadu_si128(Vector(from));
    const __m128i end = _mm_loadu_si128(Vector(from + 8));
    // The eight first digits, then the eight second ones; the eight blanks twice.
    const __m128i digits = _mm_or_si128(
        _mm_shuffle_epi8(begin,
                         _mm_setr_epi8(0, 3, 6, 9, 12, 15, -1, -1, 1, 4, 7, 10, 13, -1, -1, -1)),
        _mm_shuffle_epi8(
            end, _mm_setr_epi8(-1, -1, -1, -1, -1, -1, 10, 13, -1, -1, -1, -1, -1, 8, 11, 14)));
    const __m128i blanks = _mm_or_si128(
        _mm_shuffle_epi8(begin,
                         _mm_setr_epi8(2, 5, 8, 11, 14, -1, -1, -1, 2, 5, 8, 11, 14, -1, -1, -1)),
        _mm_shuffle_epi8(
            end, _mm_setr_epi8(-1, -1, -1, -1, -1, 9, 12, 15, -1, -1, -1, -1, -1, 9, 12, 15)));
    __m128i known = _mm_cmpeq_epi8(blanks, _mm_set1_epi8(' '));
    const __m128i nibbles = ToNibbles(digits, known);
    if (_mm_movemask_epi8(known) != 0xFFFF) return false;
    _mm_storel_epi64(Vector(to),
                     _mm_or_si128(_mm_slli_epi16(nibbles, 4), _mm_srli_si128(nibbles, 8)));
    return true;
}

#else

void WriteBlock(const unsigned char* from, char* to) {
    for (std::size_t i = 0; i < kBlock; ++i) to = WriteByte(from[i], to);
}
bool ReadBlock(const char*, unsigned char*) { return false; }

#endif  // QELKIT_SSE2

char* WritePlain(const unsigned char* from, std::size_t count, char* to) {
    for (; count >= kBlock; from += kBlock, to += 2 * kBlock, count -= kBlock) WriteBlock(from, to);
    for (; count > 0; --count) to = WriteByte(*from++, to);
    return to;
}

char* WriteSpaced(const unsigned char* from, std::size_t count, char* to) {
#ifdef QELKIT_SSSE3
    for (; kit::kHasSsse3 && count > kSpacedBlock; count -= kSpacedBlock) {
        WriteSpacedBlock(from, to);
        from += kSpacedBlock;
        to += 3 * kSpacedBlock;
    }
#endif
    to = WriteByte(*from++, to);
    for (; count > 1; --count) {
        *to++ = ' ';
        to = WriteByte(*from++, to);
    }
    return to;
}

ulong32 RoomFor(std::uint64_t size, bool spaced) {
    const std::uint64_t room = spaced && size > 0 ? 3 * size : 2 * size + 1;
    return room > UINT32_MAX ? 0 : static_cast<ulong32>(room);
}

// How many bytes `room` characters can show.
std::uint32_t BytesIn(ulong32 room, bool spaced) {
    if (spaced) return room / 3;
    return room == 0 ? 0 : (room - 1) / 2;
}

// Reads digits one after another.
class DigitReader {
public:
    explicit DigitReader(const char* text) : at_(text), known_end_(text) {}

    // The next digit, behind any white space; kNoDigit when something else is there.
    std::uint8_t Next() {
        std::uint8_t value;
        while ((value = DigitValue(*at_)) == kNoDigit) {
            // A blank is white in every locale; asking costs more than all the rest.
            if (*at_ != ' ' && std::isspace(static_cast<unsigned char>(*at_)) == 0) return kNoDigit;
            ++at_;
        }
        ++at_;
        return value;
    }

    // Fills `to` by blocks as long as there is room for one and the next characters make one.
    // Returns the bytes written.
    std::size_t TakeBlocks(unsigned char* to, std::size_t room) {
        std::size_t count = 0;
        while (room - count >= kBlock && HasCharacters(2 * kBlock) && ReadBlock(at_, to + count)) {
            at_ += 2 * kBlock;
            count += kBlock;
        }
#ifdef QELKIT_SSSE3
        while (kit::kHasSsse3 && room - count >= kSpacedBlock && HasCharacters(3 * kSpacedBlock) &&
               ReadSpacedBlock(at_, to + count)) {
            at_ += 3 * kSpacedBlock;
            count += kSpacedBlock;
        }
#endif
        return count;
    }

private:
    // Whether so many characters come before the terminator. Looks for it in long strides, so that
    // a text that ends early (for the digits) is not searched to its end.
    bool HasCharacters(std::ptrdiff_t count) {
        constexpr std::size_t kStride = 4096;
        if (known_end_ - at_ >= count) return true;
        const void* const terminator = std::memchr(at_, '\0', kStride);
        known_end_ = terminator ? static_cast<const char*>(terminator) : at_ + kStride;
        return known_end_ - at_ >= count;
    }

    const char* at_;
    const char* known_end_;  // from at_ to here there is no terminator
};

std::uint64_t CountDigits(const char* text) {
    DigitReader digits(text);
    std::uint64_t count = 0;
    while (digits.Next() != kNoDigit) ++count;
    return count;
}

}  // namespace

ulong32 QELBin2Hex(const unsigned char* data, ulong32 size, char* out, ulong32 outSize,
                   bool spaced) {
    if (!out) return RoomFor(size, spaced);
    const std::uint32_t count = (std::min<std::uint32_t>)(size, BytesIn(outSize, spaced));
    if (!data || count == 0) return 0;
    char* const end = spaced ? WriteSpaced(data, count, out) : WritePlain(data, count, out);
    *end = '\0';
    return static_cast<ulong32>(end + 1 - out);
}

ulong32 QELHex2Bin(const char* text, unsigned char* out, ulong32 maxBytes) {
    if (!text) return 0;
    if (!out) return static_cast<ulong32>((CountDigits(text) + 1) / 2);
    DigitReader digits(text);
    std::size_t count = 0;
    // After something that is no block of digits the next 16 bytes go one by one: text full of
    // blanks does not pay for a vain attempt at every byte.
    for (std::size_t one_by_one = 0; count < maxBytes; --one_by_one) {
        if (one_by_one == 0) {
            count += digits.TakeBlocks(out + count, maxBytes - count);
            one_by_one = kBlock;
            if (count == maxBytes) break;
        }
        const std::uint8_t high = digits.Next();
        if (high == kNoDigit) break;
        out[count++] = static_cast<unsigned char>(high << 4);
        const std::uint8_t low = digits.Next();
        if (low == kNoDigit) break;
        out[count - 1] |= low;
    }
    return static_cast<ulong32>(count);
}
