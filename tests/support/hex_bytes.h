#pragma once

// Bytes written as pairs of hex digits, blanks between them as one likes.

#include <cstddef>
#include <cstdlib>
#include <string>

inline std::string FromHex(const std::string& hex) {
    std::string bytes;
    std::string pair;
    for (const char c : hex) {
        if (c == ' ' || c == '\n') continue;
        pair += c;
        if (pair.size() < 2) continue;
        bytes += static_cast<char>(std::strtoul(pair.c_str(), nullptr, 16));
        pair.clear();
    }
    return bytes;
}

inline std::string ToHex(const void* bytes, std::size_t size) {
    const auto* p = static_cast<const unsigned char*>(bytes);
    std::string hex;
    for (std::size_t i = 0; i < size; ++i) {
        if (i > 0) hex += ' ';
        hex += "0123456789ABCDEF"[p[i] >> 4];
        hex += "0123456789ABCDEF"[p[i] & 15];
    }
    return hex;
}
