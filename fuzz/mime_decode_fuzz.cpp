// Input: a limit (1 byte), then the text, which ends at its first zero byte.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "text/codecs.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Group after group, exactly as far as the limit says; returns the count.
std::size_t DecodePlainly(const std::string& text, unsigned limit, std::string& out) {
    long count = 0;
    for (std::size_t at = 0; at < text.size(); at += 4) {
        const bool is_counted = limit == 0 || at < limit;
        unsigned bits = 0;
        for (std::size_t i = at; i < at + 4; ++i) {
            const char* const place = i < text.size() ? std::strchr(kAlphabet, text[i]) : nullptr;
            bits = bits << 6 | (place ? static_cast<unsigned>(place - kAlphabet) : 0);
            if (i < text.size() && i > at + 1 && text[i] == '=') --count;
        }
        for (const int shift : {16, 8, 0}) out += static_cast<char>(bits >> shift);
        if (!is_counted) break;
        count += 3;
    }
    return static_cast<std::size_t>(std::max(count, 0L));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned limit = data[0];
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string text = bytes.substr(0, bytes.find('\0'));
    std::string expected;
    const std::size_t count = DecodePlainly(text, limit, expected);

    // The terminator and nothing behind it; room as the header says.
    const std::vector<char> source(text.c_str(), text.c_str() + text.size() + 1);
    std::vector<char> out(expected.size() + 1);
    const int decoded = QEL_MIMEBase64Decode(source.data(), out.data(), limit);
    Require(static_cast<std::size_t>(decoded) == count);
    Require(out[count] == '\0');
    Require(std::memcmp(out.data(), expected.data(), count) == 0);
    return 0;
}
