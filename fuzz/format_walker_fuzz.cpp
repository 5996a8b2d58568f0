// The walker of Sprintf. No conversion yields more than its limit.

#include <algorithm>

#include "support/format_input.h"
#include "text/detail/format_walker.h"

namespace {

using kit::Conversion;

// Whether the native formatter may be asked: a number, and none of a size, a length or a type that
// it reads in another way or that takes long.
bool IsPlain(std::string_view spec) {
    const std::size_t digits =
        std::count_if(spec.begin(), spec.end(), [](char c) { return c >= '0' && c <= '9'; });
    return digits <= 4 && spec.find_first_not_of("%-+ .*0123456789", 0) == spec.size() - 1 &&
           spec.find_first_of("diouxXeEfgG") == spec.size() - 1;
}

template <typename Value>
std::size_t PrintNatively(const Conversion& c, char* out, Value value) {
    constexpr std::size_t kRoom = Conversion::kLongest + 1;
    if (c.star_count == 0) std::snprintf(out, kRoom, c.spec, value);
    if (c.star_count == 1) std::snprintf(out, kRoom, c.spec, c.stars[0], value);
    if (c.star_count == 2) std::snprintf(out, kRoom, c.spec, c.stars[0], c.stars[1], value);
    return std::strlen(out);
}

// What the native formatter cannot be asked for is printed as it is spelled.
std::size_t Print(const Conversion& c, char out[Conversion::kLongest + 1]) {
    const std::string_view spec = c.spec;
    if (spec.size() < 2 || spec[0] != '%' || c.star_count > 2) std::abort();
    if (!IsPlain(spec)) return spec.copy(out, Conversion::kLongest);
    if (c.value != Conversion::kDouble) return PrintNatively(c, out, c.slot);
    double value;
    std::memcpy(&value, &c.slot, sizeof value);
    return PrintNatively(c, out, value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FormatInput input(data, size);
    kit::WorkText out;
    kit::WalkFormat(input.format(), input.arguments(), Print, out);
    const std::string_view format = input.format();
    const std::size_t conversions = std::count(format.begin(), format.end(), '%');
    if (out.text().size() > format.size() + conversions * Conversion::kLongest) std::abort();
    if (conversions == 0 && out.text() != format) std::abort();
    if (std::strlen(out.c_str()) != out.text().size()) std::abort();
    return 0;
}
