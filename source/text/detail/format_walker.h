#pragma once

#include <cstddef>
#include <cstdint>

#include "text/detail/format_input.h"
#include "text/detail/work_text.h"

// The library's own walk through a format. It reads the conversions and lays out the texts; all
// else, one conversion at a time, goes to the C formatter, which comes in as a function.

namespace kit {

// One conversion on its way to the C formatter.
struct Conversion {
    enum Value { kInteger, kDouble, kPointer };

    // The most characters that a conversion yields.
    static constexpr std::size_t kLongest = 256;

    const char* spec;  // its own text, from "%" to the type, terminated
    int stars[2];      // the values of its "*", in the order of the text
    int star_count;
    Value value;
    std::uint64_t slot;  // the argument, as it stands in the list
};

// Writes the conversion, up to its first zero character and at most kLongest, and returns its
// length. `out` has room for a terminator more.
using PrintConversion = std::size_t (*)(const Conversion& conversion,
                                        char out[Conversion::kLongest + 1]);

// Appends what a terminated `format` and its arguments make to `out`. Throws (char*)"MemoryError".
void WalkFormat(const char* format, ArgumentCursor arguments, PrintConversion print, WorkText& out);

}  // namespace kit
