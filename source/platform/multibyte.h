#pragma once

#include <cstddef>

namespace kit {

// Bytes of the multi-byte character at `text`, by the process's multi-byte code page: 2 for a lead
// byte that is followed by anything but the terminator, else 1. `text` is not at its terminator.
std::size_t CharacterLength(const char* text);

// Whether the process's multi-byte code page has characters of two bytes at all. Where it has none,
// as in the library's home locale, byte by byte is character by character, and much faster.
bool HasDoubleByteCharacters();

}  // namespace kit
