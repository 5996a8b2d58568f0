#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>

namespace kit {

// One block of a version resource. All blocks have one form, every part on a boundary of 4 bytes:
//   length        16 bits, of the whole block with its children
//   value length  16 bits, in characters of 16 bits for texts, else in bytes
//   type          16 bits, 1 for texts
//   key           UTF-16, terminated
//   value, then child blocks up to the length
// A resource may come from anybody's file: nothing outside of the given bytes is read, whatever
// the lengths say, and a block that does not fit its surroundings is not there.
class VersionBlock {
public:
    // The block at the beginning of `bytes`, which may go on behind it.
    static std::optional<VersionBlock> Parse(std::span<const unsigned char> bytes);

    // The block that is reached through children of these keys, in which the case of ASCII letters
    // does not matter; the first of several.
    std::optional<VersionBlock> Find(std::initializer_list<std::string_view> keys) const;

    // The value, cut to what lies in the block; empty when there is none.
    std::span<const unsigned char> value() const { return value_; }

private:
    VersionBlock() = default;
    bool HasKey(std::string_view key) const;
    std::optional<VersionBlock> Child(std::string_view key) const;

    std::size_t length_ = 0;
    std::span<const unsigned char> key_, value_, children_;
};

}  // namespace kit
