#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>

// Cyrillic text in the sources is written readably and becomes code page 1251 at compile time:
//   constexpr auto kAlphabet = kit::Cp1251(u"АБВ");      // a terminated array of bytes
//   text.Find(kAlphabet.data());
// Nothing relies on a compiler's execution character set.

namespace kit {

// The byte of the character `c` in code page 1251. Covers ASCII, the Russian alphabet and the few
// signs that our texts use; any other character is an error, at compile time where it is constant.
constexpr char ToCp1251(char16_t c) {
    constexpr struct {
        char16_t character;
        unsigned char byte;
    } kSigns[] = {
        {u'Ё', 0xA8}, {u'ё', 0xB8}, {u'№', 0xB9}, {u'«', 0xAB},
        {u'»', 0xBB}, {u'—', 0x97}, {u'–', 0x96}, {u'\u00A0', 0xA0},
    };
    if (c < 0x80) return static_cast<char>(c);
    if (c >= u'А' && c <= u'я') return static_cast<char>(0xC0 + (c - u'А'));
    for (const auto& sign : kSigns) {
        if (sign.character == c) return static_cast<char>(sign.byte);
    }
    throw std::invalid_argument("the character has no place in this table of code page 1251");
}

// The literal, its terminator included, in code page 1251.
template <std::size_t N>
constexpr std::array<char, N> Cp1251(const char16_t (&text)[N]) {
    std::array<char, N> bytes{};
    for (std::size_t i = 0; i < N; ++i) bytes[i] = ToCp1251(text[i]);
    return bytes;
}

}  // namespace kit
