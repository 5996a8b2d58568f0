#include "text/detail/format_runtime.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

namespace kit {
namespace {

// `value` has the type that the conversion reads: a double travels in another register. Returns a
// negative number when the formatter had to cut the text, or gave up.
template <typename Value>
int Print(const Conversion& c, char* out, Value value) {
    constexpr std::size_t kRoom = Conversion::kLongest;
    if (c.star_count == 0) return ::_snprintf(out, kRoom, c.spec, value);
    if (c.star_count == 1) return ::_snprintf(out, kRoom, c.spec, c.stars[0], value);
    return ::_snprintf(out, kRoom, c.spec, c.stars[0], c.stars[1], value);
}

template <typename T>
T SlotAs(std::uint64_t slot) {
    static_assert(sizeof(T) == sizeof slot);
    T value;
    std::memcpy(&value, &slot, sizeof value);
    return value;
}

int PrintSlot(const Conversion& c, char* out) {
    if (c.value == Conversion::kDouble) return Print(c, out, SlotAs<double>(c.slot));
    if (c.value == Conversion::kPointer) return Print(c, out, SlotAs<void*>(c.slot));
    return Print(c, out, c.slot);
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

std::size_t PrintByRuntime(const Conversion& conversion, char out[Conversion::kLongest + 1]) {
    const int length = PrintSlot(conversion, out);
    if (length >= 0) return ::strnlen(out, static_cast<std::size_t>(length));
    // How far the formatter came it tells only by what it wrote, without a terminator.
    std::memset(out, 0, Conversion::kLongest + 1);
    PrintSlot(conversion, out);
    return std::strlen(out);
}

}  // namespace kit
