#pragma once

#include <cstddef>

namespace kit {

// Bytes of the multi-byte character at `text`, by the process's multi-byte code page: 2 for a lead
// byte that is followed by anything but the terminator, else 1. `text` is not at its terminator.
std::size_t CharacterLength(const char* text);

}  // namespace kit
