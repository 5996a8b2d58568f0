#pragma once

#include <cstdint>

// What both directions of the LZSS coder share. docs/formats.md describes the stream.

namespace kit::lz {

constexpr std::uint32_t kRing = 4096;    // matches name absolute places in a ring of this size
constexpr std::uint32_t kFirst = 4080;   // the place of the first byte of the text
constexpr std::uint32_t kBlanks = 4080;  // places 0..4079 start as blanks, the rest as zeros
constexpr unsigned char kBlank = 0x20;
constexpr std::uint32_t kMinMatch = 3;   // the length whose code is 0
constexpr std::uint32_t kMaxMatch = 16;  // the encoder's longest; the decoder takes 17 and 18 too

}  // namespace kit::lz
