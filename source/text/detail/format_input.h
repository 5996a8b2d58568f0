#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// What the walks through a format have in common. Their rules differ on purpose and stay apart.

namespace kit {

// Reads the arguments of a variadic call of Windows x86-64: every one occupies a slot of 8 bytes,
// whatever its type, little-endian. Nothing says how many there are: the format does.
class ArgumentCursor {
public:
    static constexpr std::size_t kSlot = 8;

    explicit ArgumentCursor(const char* slots) : next_(slots) {}

    // The next argument, read as a T.
    template <typename T>
    T Take() {
        static_assert(sizeof(T) <= kSlot, "larger arguments are passed by address");
        T value;
        std::memcpy(&value, next_, sizeof value);
        next_ += kSlot;
        return value;
    }
    void Skip() { next_ += kSlot; }

private:
    const char* next_;
};

// Whether `c` is one of `set`. Written out, because the sets are short and this runs several times
// for every conversion.
inline bool IsOneOf(char c, std::string_view set) {
    for (const char each : set) {
        if (each == c) return true;
    }
    return false;
}

// Steps over the decimal digits at `text` and returns their value, at most UINT32_MAX; 0 for none.
inline std::uint32_t ReadDigits(const char*& text) {
    std::uint64_t value = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        value = value * 10 + static_cast<unsigned>(*text - '0');
        if (value > UINT32_MAX) value = UINT32_MAX;
    }
    return static_cast<std::uint32_t>(value);
}

}  // namespace kit
