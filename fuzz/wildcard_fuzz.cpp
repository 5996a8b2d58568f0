// Input: the flags (1 byte), a pattern and a name, each ended by a zero byte or the end.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "file_com/detail/wildcard_core.h"
#include "yardsticks/textbook_wildcard.h"

namespace {

std::string TakeText(const char*& at, const char* end) {
    std::string text;
    while (at != end && *at != '\0') text += *at++;
    if (at != end) ++at;
    return text;
}

// The recursive form takes exponential time; small inputs say as much.
bool IsSmall(const std::string& pattern, const std::string& name) {
    return pattern.size() <= 12 && name.size() <= 16;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const int flags = data[0] & 0x17;
    const char* at = reinterpret_cast<const char*>(data) + 1;
    const char* const end = reinterpret_cast<const char*>(data) + size;
    const std::string pattern = TakeText(at, end);
    const std::string name = TakeText(at, end);

    const bool matches = kit::WildcardMatches(pattern.c_str(), name.c_str(), flags);
    if (!IsSmall(pattern, name)) return 0;
    if (matches != textbook::Match(pattern.c_str(), name.c_str(), flags)) std::abort();
    return 0;
}
