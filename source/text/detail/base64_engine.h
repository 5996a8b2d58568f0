#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/detail/base64_groups.h"

// Base64 for characters of one and of two bytes: everything that QEL::Base64Encode and
// QEL::Base64Decode do (text/codecs.h says it), except that failures are returned.

namespace kit {

enum class Base64Failure { kNone, kBadParameter, kBadText };

struct Base64Result {
    std::uint64_t size;
    Base64Failure failure = Base64Failure::kNone;
};

// --- Encoding ------------------------------------------------------------------------------------

inline constexpr unsigned kBase64BreakLines = 1;

// Where a text is broken into lines: every `length` characters, a multiple of 4, and at its end.
template <typename Char>
struct Base64Lines {
    std::uint64_t length;  // 0: no lines
    std::basic_string_view<Char> separator;
};

template <typename Char>
Base64Lines<Char> MakeBase64Lines(unsigned flags, std::uint64_t length, const Char* separator) {
    static constexpr Char kLineFeed[] = {'\n', 0};
    if ((flags & kBase64BreakLines) == 0) return {0, {}};
    constexpr std::uint64_t kLongest = UINT64_MAX / 4 * 4;
    const std::uint64_t wanted = length == 0 ? 64 : (std::min)(length, kLongest);
    return {(wanted + 3) / 4 * 4, separator ? separator : kLineFeed};
}

// The room for the text of `size` bytes with its terminator; 0 when no number says it.
template <typename Char>
std::uint64_t Base64Room(std::uint64_t size, const Base64Lines<Char>& lines) {
    if (size > UINT64_MAX / 2) return 0;
    const std::uint64_t length = (size + 2) / 3 * 4;
    if (lines.length == 0 || length == 0 || lines.separator.empty()) return length + 1;
    const std::uint64_t line_count = (length - 1) / lines.length + 1;
    const std::uint64_t left = UINT64_MAX - 1 - length;
    return line_count > left / lines.separator.size()
               ? 0
               : length + line_count * lines.separator.size() + 1;
}

// Writes every line with its separator; returns the end.
template <typename Char>
Char* EncodeBase64Lines(const unsigned char* from, std::size_t size, const Base64Lines<Char>& lines,
                        Char* to) {
    const std::uint64_t line_size = lines.length / 4 * 3;
    while (size > 0) {
        const auto taken = static_cast<std::size_t>((std::min<std::uint64_t>)(size, line_size));
        to = EncodeBase64Groups(from, taken, size, to);
        to = std::copy(lines.separator.begin(), lines.separator.end(), to);
        from += taken;
        size -= taken;
    }
    return to;
}

template <typename Char>
Base64Result EncodeBase64(const void* data, std::uint64_t size, Char* out, std::uint64_t out_size,
                          unsigned flags, std::uint64_t line_length, const Char* separator) {
    if (!data) return {0, Base64Failure::kBadParameter};
    const auto lines = MakeBase64Lines(flags, line_length, separator);
    const std::uint64_t room = Base64Room(size, lines);
    if (!out) return {room};
    if (room == 0 || out_size < room) return {0};
    const auto* const from = static_cast<const unsigned char*>(data);
    const auto bytes = static_cast<std::size_t>(size);
    Char* const end = lines.length == 0 ? EncodeBase64Groups(from, bytes, bytes, out)
                                        : EncodeBase64Lines(from, bytes, lines, out);
    *end = 0;
    return {room - 1};
}

// --- Decoding ------------------------------------------------------------------------------------

inline constexpr unsigned kBase64AllowWhiteSpace = 1;
inline constexpr unsigned kBase64IgnoreGarbage = 2;
inline constexpr unsigned kBase64AllowUnpadded = 4;

// One walk through a text. What is in the middle of a group is in `bits_` and `places_`.
template <typename Char>
class Base64Walk {
public:
    Base64Walk(const Char* text, std::uint64_t length, unsigned char* out, unsigned flags)
        : at_(text), end_(text + length), begin_(out), out_(out), flags_(flags) {}

    Base64Result Run() {
        const bool is_good =
            TakeData() && CloseGroup() && ((flags_ & kBase64AllowUnpadded) != 0 || TakePadding());
        if (!is_good) return {0, Base64Failure::kBadText};
        return {static_cast<std::uint64_t>(out_ - begin_)};
    }

private:
    // Up to the first "=", or the end.
    bool TakeData() {
        for (;;) {
            if (places_ == 0) TakeWholeGroups();
            if (at_ == end_ || *at_ == static_cast<Char>('=')) return true;
            const std::uint8_t value = Base64Value(*at_);
            if (value != kNoBase64Value) {
                TakeValue(value);
            } else if (!MaySkip(*at_)) {
                return false;
            }
            ++at_;
        }
    }

    void TakeWholeGroups() {
        DecodeBase64Groups(at_, end_, out_);
#ifdef QELKIT_SSSE3
        // The flags that allow white space to be skipped.
        if (!kHasSsse3 || (flags_ & (kBase64AllowWhiteSpace | kBase64IgnoreGarbage)) == 0) return;
        if (end_ - at_ < kBase64Block) return;
        for (const std::uint8_t value : DecodeBrokenBase64Blocks(at_, end_, out_)) TakeValue(value);
#endif
    }

    void TakeValue(std::uint8_t value) {
        bits_ = bits_ << 6 | value;
        if (++places_ < 4) return;
        StoreBase64Group(bits_, out_);
        out_ += 3;
        bits_ = 0;
        places_ = 0;
    }

    // The whole bytes of an unfinished group; false when there is not even one.
    bool CloseGroup() {
        if (places_ == 1) return false;
        if (places_ >= 2) *out_++ = static_cast<unsigned char>(bits_ >> (places_ == 2 ? 4 : 10));
        if (places_ == 3) *out_++ = static_cast<unsigned char>(bits_ >> 2);
        return true;
    }

    // From the first "=" on: nothing but what fills up the last group, and what may be skipped.
    bool TakePadding() {
        for (; at_ != end_; ++at_) {
            if (*at_ != static_cast<Char>('=')) {
                if (!MaySkip(*at_)) return false;
            } else if (places_ == 0 || ++places_ > 4) {
                return false;
            }
        }
        return places_ == 0 || places_ == 4;
    }

    bool MaySkip(Char c) const {
        if ((flags_ & kBase64IgnoreGarbage) != 0) return true;
        const bool is_white = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        return is_white && (flags_ & kBase64AllowWhiteSpace) != 0;
    }

    const Char* at_;
    const Char* const end_;
    unsigned char* const begin_;
    unsigned char* out_;
    const unsigned flags_;
    std::uint32_t bits_ = 0;
    int places_ = 0;
};

template <typename Char>
Base64Result DecodeBase64(const Char* text, std::uint64_t length, void* out, std::uint64_t out_size,
                          unsigned flags) {
    if (!text) return {0, Base64Failure::kBadParameter};
    if (length == 0) length = std::char_traits<Char>::length(text);
    const std::uint64_t room = (length / 4 + (length % 4 != 0)) * 3;
    if (!out) return {room};
    if (out_size < room) return {0};
    return Base64Walk<Char>(text, length, static_cast<unsigned char*>(out), flags).Run();
}

}  // namespace kit
