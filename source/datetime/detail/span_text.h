#pragma once

#include <cstddef>
#include <cstdint>

namespace kit {

struct SpanFields {
    std::int32_t days, hours, minutes, seconds, milliseconds;
};

constexpr std::size_t kSpanTextRoom = 256;

// Writes the picture of QEL::CTimeSpan::Format with the fields into `out`, terminated; what does not
// fit is left out from there on.
//   character_length  bytes of the character at a text that is not at its end: 1, or 2 when it has
//                     a second byte before the terminator
void FormatSpan(const char* picture, const SpanFields& span,
                std::size_t (*character_length)(const char* text), char (&out)[kSpanTextRoom]);

}  // namespace kit
