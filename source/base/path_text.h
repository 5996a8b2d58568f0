#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

// Cutting path texts apart. Works on bytes: neither slash is ever the second byte of a character
// in the single-byte code pages that the library serves.

namespace kit {

constexpr bool IsSlash(char c) { return c == '\\' || c == '/'; }

// The length of the folder part of `path`: everything up to its last backslash or slash, that one
// included; 0 when there is none.
constexpr std::size_t FolderLength(std::string_view path) {
    const auto at = path.find_last_of("\\/");
    return at == std::string_view::npos ? 0 : at + 1;
}

// What follows the last slash; the whole path when there is none.
constexpr std::string_view LastPart(std::string_view path) {
    return path.substr(FolderLength(path));
}

// The folder part, its final slash included.
constexpr std::string_view FolderPart(std::string_view path) {
    return path.substr(0, FolderLength(path));
}

}  // namespace kit
