#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "text/detail/format_input.h"

// How long the C runtime's formatter makes a result, judged from the format and its arguments: an
// upper bound for every conversion that is counted. Portable: what belongs to the runtime comes in
// as functions.

namespace kit {

struct EstimateFunctions {
    // Bytes of the multi-byte character that starts with a byte of 0x80 or above: 1 or 2.
    std::size_t (*character_length)(const char* text);
    // The exact length of `value` written by "%*.*f" with this width and precision. Both fit an int.
    std::uint64_t (*fixed_length)(std::uint32_t width, std::uint32_t precision, double value);
};

// Walks a terminated `format`, taking from `arguments` what the formatter will take. Texts among
// them are read up to their terminator or, when it is not 0, their precision. Returns nothing when
// the estimate, or its sum with the terminator, does not fit 32 bits.
std::optional<std::uint32_t> EstimateLength(const char* format, ArgumentCursor arguments,
                                            const EstimateFunctions& functions);

}  // namespace kit
