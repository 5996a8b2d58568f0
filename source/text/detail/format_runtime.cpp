#include "text/detail/format_runtime.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

namespace kit {
namespace {

// `value` has the type that the conversion reads: a double travels in another register.
template <typename Value>
void Print(const Conversion& c, char* out, Value value) {
    switch (c.star_count) {
        case 0:
            ::_snprintf(out, Conversion::kLongest, c.spec, value);
            return;
        case 1:
            ::_snprintf(out, Conversion::kLongest, c.spec, c.stars[0], value);
            return;
        default:
            ::_snprintf(out, Conversion::kLongest, c.spec, c.stars[0], c.stars[1], value);
            return;
    }
}

template <typename T>
T SlotAs(std::uint64_t slot) {
    static_assert(sizeof(T) == sizeof slot);
    T value;
    std::memcpy(&value, &slot, sizeof value);
    return value;
}

}  // namespace

const char* FormatMeasured(WorkText& out, const char* format, va_list args) {
    va_list again;
    va_copy(again, args);
    const int length = ::_vscprintf(format, args);
    const char* formatted = nullptr;
    if (length >= 0) {
        const std::size_t size = static_cast<std::size_t>(length) + 1;
        char* const buffer = out.Reserve(size);
        if (::_vsnprintf(buffer, size, format, again) == length) formatted = buffer;
    }
    va_end(again);
    return formatted;
}

bool FormatBounded(char* out, std::uint32_t longest, const char* format, va_list args) {
    // The formatter answers with an int, and it terminates only what is shorter than its room.
    const std::size_t room = (std::min)(std::size_t{longest} + 1, std::size_t{INT_MAX});
    const int length = ::_vsnprintf(out, room, format, args);
    return length >= 0 && static_cast<std::size_t>(length) < room;
}

std::uint64_t FixedLength(std::uint32_t width, std::uint32_t precision, double value) {
    const int length =
        ::_scprintf("%*.*f", static_cast<int>(width), static_cast<int>(precision), value);
    return length > 0 ? static_cast<std::uint64_t>(length) : 0;
}

void PrintByRuntime(const Conversion& conversion, char out[Conversion::kLongest + 1]) {
    // The formatter leaves a text that it had to cut, or gave up, without a terminator.
    std::memset(out, 0, Conversion::kLongest + 1);
    switch (conversion.value) {
        case Conversion::kInteger:
            Print(conversion, out, conversion.slot);
            return;
        case Conversion::kDouble:
            Print(conversion, out, SlotAs<double>(conversion.slot));
            return;
        case Conversion::kPointer:
            Print(conversion, out, SlotAs<void*>(conversion.slot));
            return;
    }
}

}  // namespace kit
