#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdio>

#include "base/types.h"

namespace kit {

// Lengths and positions of the interface are 32-bit, and this one says that there is none.
constexpr ulong32 kNoLength = 0xFFFFFFFF;

constexpr bool FitsLength(std::int64_t value) { return value >= 0 && value < kNoLength; }

// Why a length or position cannot be used: the runtime's error for -1, else its size.
inline int UnfitErrno(std::int64_t value) { return value < 0 ? errno : EFBIG; }

// Makes stream and file agree: writes what is buffered and drops what was read ahead. The position
// stays. (Flushing would lose it: runtimes drop what was read ahead without going back.)
inline bool SettleStream(FILE* stream) {
    const std::int64_t position = ::_ftelli64(stream);
    return position >= 0 && ::_fseeki64(stream, position, SEEK_SET) == 0;
}

}  // namespace kit
