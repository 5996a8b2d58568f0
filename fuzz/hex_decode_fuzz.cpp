// Input: the room for bytes (1 byte), then the text, which ends at its first zero byte.

#include <algorithm>
#include <cctype>
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

// The digits that count, without the white space between them.
std::string DigitsOf(const std::string& text) {
    std::string digits;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (std::isxdigit(code)) {
            digits += c;
        } else if (!std::isspace(code)) {
            break;
        }
    }
    return digits;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string text = bytes.substr(0, bytes.find('\0'));
    std::string digits = DigitsOf(text);
    if (digits.size() % 2 != 0) digits += '0';
    const std::size_t all = digits.size() / 2;

    const std::vector<char> source(text.c_str(), text.c_str() + text.size() + 1);
    Require(QELHex2Bin(source.data(), nullptr, 0) == all);
    const std::size_t count = std::min<std::size_t>(all, data[0]);
    std::vector<unsigned char> out(data[0] + 1u);
    Require(QELHex2Bin(source.data(), out.data(), data[0]) == count);

    std::vector<char> written(2 * count + 1);
    const auto room = static_cast<ulong32>(written.size());
    QELBin2Hex(out.data(), static_cast<ulong32>(count), written.data(), room, false);
    for (std::size_t i = 0; i < 2 * count; ++i) {
        Require(written[i] == std::toupper(static_cast<unsigned char>(digits[i])));
    }
    return 0;
}
