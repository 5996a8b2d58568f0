#pragma once

#include <cstdint>

namespace kit::lz {

// Undoes the encoder. Reads nothing outside src[0, size).
//
// Returns the number of bytes produced, at most `room`, or -1 when there would be more; then
// dst[0, room] has been written, the byte at dst[room] included. Otherwise nothing behind the bytes
// produced is touched.
std::int64_t Decode(const unsigned char* src, std::uint32_t size, unsigned char* dst,
                    std::uint32_t room);

}  // namespace kit::lz
