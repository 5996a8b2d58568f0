// Input: flags and width (1 byte), then the text. The result is that of the textbook form, what is
// decoded without tolerance is what encoding gives back, and neither buffer is left.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "text/detail/base64_engine.h"
#include "yardsticks/textbook_base64.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// Exactly the bytes, so that the sanitizer sees every step beyond them.
template <typename Char>
std::vector<Char> TextOf(const std::uint8_t* data, std::size_t size) {
    std::vector<Char> text(size / sizeof(Char));
    if (!text.empty()) std::memcpy(text.data(), data, text.size() * sizeof(Char));
    return text;
}

template <typename Char>
void RequireRoundTrip(const std::vector<unsigned char>& bytes, std::size_t size) {
    const Char* const line_feed = nullptr;
    for (const unsigned encode_flags : {0u, kit::kBase64BreakLines}) {
        std::vector<Char> text(size * 2 + 8);
        const auto encoded = kit::EncodeBase64(bytes.data(), size, text.data(), text.size(),
                                               encode_flags, 20, line_feed);
        std::vector<unsigned char> again(encoded.size / 4 * 3 + 3);
        if (encoded.size == 0) continue;  // a length of 0 would mean the terminated text
        const auto decoded =
            kit::DecodeBase64(text.data(), encoded.size, again.data(), again.size(), encode_flags);
        Require(decoded.failure == kit::Base64Failure::kNone && decoded.size == size);
        Require(std::memcmp(again.data(), bytes.data(), size) == 0);
    }
}

template <typename Char>
void Check(const std::vector<Char>& text, unsigned flags) {
    if (text.empty()) return;
    std::u32string codes;
    for (const Char c : text) codes += static_cast<std::make_unsigned_t<Char>>(c);
    const auto expected = textbook::DecodeBase64(codes, flags);

    std::vector<unsigned char> out((text.size() + 3) / 4 * 3);
    const auto result = kit::DecodeBase64(text.data(), text.size(), out.data(), out.size(), flags);
    Require((result.failure == kit::Base64Failure::kNone) == expected.has_value());
    if (!expected) return;
    Require(result.size == expected->size());
    Require(std::memcmp(out.data(), expected->data(), expected->size()) == 0);
    RequireRoundTrip<Char>(out, expected->size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned flags = data[0] & 7;
    if (data[0] & 8) {
        Check(TextOf<char16_t>(data + 1, size - 1), flags);
    } else {
        Check(TextOf<char>(data + 1, size - 1), flags);
    }
    return 0;
}
