#include <climits>
#include <cstdint>
#include <cstring>

#include "text/codecs.h"
#include "text/detail/base64_groups.h"

namespace {

constexpr int kLongestSize = INT_MAX / 4 * 3;
constexpr std::size_t kMostGroups = (INT_MAX - 1) / 3;

// The length of `text`, or `limit` when no terminator comes before that.
std::size_t BoundedLength(const char* text, std::size_t limit) {
    const void* const terminator = std::memchr(text, '\0', limit);
    return terminator ? static_cast<std::size_t>(static_cast<const char*>(terminator) - text)
                      : limit;
}

// The characters to decode: of a limited text those that count, whole groups, and the group behind.
std::size_t DecodedLength(const char* text, std::size_t max_input) {
    const std::size_t limited = (max_input + 3) / 4 * 4 + 4;
    const std::size_t most = kMostGroups * 4;
    return BoundedLength(text, max_input == 0 || limited > most ? most : limited);
}

// Writes the three bytes of up to four characters. What is missing or has no value counts as 0.
void DecodeLeniently(const char* from, std::size_t length, unsigned char* to) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::uint8_t value = i < length ? kit::Base64Value(from[i]) : 0;
        bits = bits << 6 | (value == kit::kNoBase64Value ? 0 : value);
    }
    kit::StoreBase64Group(bits, to);
}

int PaddingOf(const char* group, std::size_t length) {
    return (length > 2 && group[2] == '=') + (length > 3 && group[3] == '=');
}

// Decodes all of the text, three bytes for every group begun; returns the "=" at third and fourth
// places.
std::size_t DecodeAll(const char* from, std::size_t length, unsigned char* to) {
    const char* const end = from + length;
    std::size_t padding = 0;
    for (;;) {
        kit::DecodeBase64Groups(from, end, to);
        if (from == end) return padding;
        const auto left = static_cast<std::size_t>(end - from);
        const std::size_t taken = left < 4 ? left : 4;
        DecodeLeniently(from, taken, to);
        padding += static_cast<std::size_t>(PaddingOf(from, taken));
        from += taken;
        to += 3;
    }
}

}  // namespace

int QEL_MIMEBase64Encode(const char* data, char* out, int size) {
    if (!out) return 0;
    char* end = out;
    if (data && size > 0 && size <= kLongestSize) {
        const auto* const from = reinterpret_cast<const unsigned char*>(data);
        const auto count = static_cast<std::size_t>(size);
        end = kit::EncodeBase64Groups(from, count, count, out);
    }
    *end = '\0';
    return static_cast<int>(end - out);
}

int QEL_MIMEBase64Decode(const char* text, char* out, unsigned int maxInput) {
    if (!out) return 0;
    const std::size_t length = text ? DecodedLength(text, maxInput) : 0;
    const std::size_t padding = DecodeAll(text, length, reinterpret_cast<unsigned char*>(out));
    std::size_t counted = (length + 3) / 4;
    // Quirk: of a text longer than maxInput one group too many is written; its bytes do not count,
    // but its padding is taken from the count all the same. Callers allocate and cut by these
    // numbers. Pinned by MimeDecode.TakesThePaddingOfTheGroupBehindTheLimit.
    const std::size_t limit = (std::size_t{maxInput} + 3) / 4;
    if (maxInput != 0 && counted > limit) counted = limit;
    const std::size_t size = counted * 3 > padding ? counted * 3 - padding : 0;
    out[size] = '\0';
    return static_cast<int>(size);
}
