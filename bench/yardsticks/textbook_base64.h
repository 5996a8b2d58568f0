#pragma once

// Base64 decoding in its plainest form, character by character: what the library's is compared with.

#include <cstdint>
#include <optional>
#include <string>

namespace textbook {

// The value of a character; nothing for one that is not of the alphabet.
inline std::optional<unsigned> ValueOf(std::uint32_t c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    if (c == '/') return 63;
    if (c >= 0x80) return 0;
    return std::nullopt;
}

inline bool MaySkip(std::uint32_t c, unsigned flags) {
    if (flags & 2) return true;
    return (flags & 1) && (c == ' ' || c == '\t' || c == '\r' || c == '\n');
}

// The bytes of a text of character codes; nothing for a bad one.
inline std::optional<std::string> DecodeBase64(const std::u32string& text, unsigned flags) {
    std::string bits;  // '0' and '1'
    std::size_t at = 0;
    for (; at < text.size() && text[at] != '='; ++at) {
        const auto value = ValueOf(text[at]);
        if (!value && !MaySkip(text[at], flags)) return std::nullopt;
        for (int bit = 5; value && bit >= 0; --bit) bits += (*value >> bit & 1) ? '1' : '0';
    }
    std::size_t places = bits.size() / 6 % 4;
    if (places == 1) return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i + 8 <= bits.size(); i += 8) {
        bytes += static_cast<char>(std::stoul(bits.substr(i, 8), nullptr, 2));
    }
    if (flags & 4) return bytes;
    const bool has_open_group = places != 0;
    for (; at < text.size(); ++at) {
        if (text[at] == '=') {
            if (!has_open_group || ++places > 4) return std::nullopt;
        } else if (!MaySkip(text[at], flags)) {
            return std::nullopt;
        }
    }
    if (places % 4 != 0) return std::nullopt;
    return bytes;
}

}  // namespace textbook
