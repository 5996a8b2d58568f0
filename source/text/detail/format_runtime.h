#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

#include "text/detail/format_walker.h"
#include "text/detail/work_text.h"

// The C runtime's own formatter, the engine of CQELString::Format and the last step of the others.
// It is msvcrt's everywhere (the functions with an underscore): the ones without belong to the
// compiler's library in some builds and print exponents, infinities and %S differently.

namespace kit {

// Formats into `out` in two passes, the first of which measures. Returns the text, or null when the
// formatter reports an error. Throws (char*)"MemoryError".
const char* FormatMeasured(WorkText& out, const char* format, va_list args);

// Formats into `out`, which has room for more than `longest` characters. Returns whether the text
// is complete and no longer than that.
bool FormatBounded(char* out, std::uint32_t longest, const char* format, va_list args);

// The length of `value` written by "%*.*f".
std::uint64_t FixedLength(std::uint32_t width, std::uint32_t precision, double value);

// The PrintConversion of WalkFormat. What the formatter had written before an error stays.
std::size_t PrintByRuntime(const Conversion& conversion, char out[Conversion::kLongest + 1]);

}  // namespace kit
