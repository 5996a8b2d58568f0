// The estimate of FormatV. Without a conversion it is the length of the format; it never depends
// on anything but its input.

#include "support/format_input.h"
#include "text/detail/format_estimate.h"

namespace {

// As code page 932 has it.
std::size_t CharacterLength(const char* at) {
    const auto lead = static_cast<unsigned char>(*at);
    return ((lead >= 0x81 && lead <= 0x9F) || lead >= 0xE0) && at[1] != '\0' ? 2 : 1;
}

std::uint64_t FixedLength(std::uint32_t width, std::uint32_t precision, double value) {
    if (width > INT32_MAX || precision > INT32_MAX) std::abort();
    constexpr std::uint32_t kMostDigits = 500;  // more would take its time and tell nothing new
    if (width > kMostDigits || precision > kMostDigits) return std::uint64_t{width} + precision;
    return static_cast<std::uint64_t>(std::snprintf(nullptr, 0, "%*.*f", static_cast<int>(width),
                                                    static_cast<int>(precision), value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FormatInput input(data, size);
    const kit::EstimateFunctions functions = {CharacterLength, FixedLength};
    const auto estimate = kit::EstimateLength(input.format(), input.arguments(), functions);
    if (!std::strchr(input.format(), '%') && estimate != input.length()) std::abort();
    if (estimate != kit::EstimateLength(input.format(), input.arguments(), functions)) std::abort();
    return 0;
}
