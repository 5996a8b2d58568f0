#pragma once

#include <cstddef>
#include <string_view>

// Searching and comparing texts byte by byte, without regard to characters of several bytes.

namespace kit {

// The index of the first `pattern` in `text` at or behind `from`; npos when there is none. An
// empty pattern is found at `from`.
std::size_t FindBytes(std::string_view text, std::string_view pattern, std::size_t from = 0);

// Where two terminated texts part: the index of the first byte that differs, or of the terminator
// that both reach first. A zero byte inside a text ends it. Both views have a terminator behind
// their end; at most one byte behind the shorter one is looked at.
std::size_t PartingIndex(std::string_view a, std::string_view b);

// The bytes that occur in a C string; none for null.
class ByteSet {
public:
    explicit ByteSet(const char* bytes) {
        for (; bytes && *bytes; ++bytes) has_[static_cast<unsigned char>(*bytes)] = true;
    }
    bool Has(char byte) const { return has_[static_cast<unsigned char>(byte)]; }

private:
    bool has_[256] = {};
};

}  // namespace kit
