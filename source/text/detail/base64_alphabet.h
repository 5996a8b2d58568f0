#pragma once

#include <array>
#include <cstdint>
#include <type_traits>

// The one alphabet of all Base64 here, there and back.

namespace kit {

inline constexpr char kBase64Alphabet[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// What a character of no value is.
inline constexpr std::uint8_t kNoBase64Value = 0xFF;

inline constexpr auto kBase64Values = [] {
    std::array<std::uint8_t, 128> values{};
    values.fill(kNoBase64Value);
    for (std::uint8_t value = 0; value < 64; ++value) {
        values[static_cast<std::size_t>(kBase64Alphabet[value])] = value;
    }
    return values;
}();

// The six bits that a character stands for, or kNoBase64Value.
template <typename Char>
std::uint8_t Base64Value(Char c) {
    const auto code = static_cast<std::make_unsigned_t<Char>>(c);
    // Quirk: what lies beyond ASCII counts as "A", value 0, instead of being refused. Texts that
    // were damaged so are in use and must go on decoding. Pinned by
    // Base64Decode.TakesWhatIsBeyondAsciiForZero.
    if (code >= 0x80) return 0;
    return kBase64Values[code];
}

}  // namespace kit
