#include "utils/detail/version_block.h"

#include <algorithm>

#include "base/byte_order.h"

namespace kit {

namespace {

constexpr std::size_t kHeaderSize = 6;
constexpr std::uint16_t kText = 1;

constexpr std::size_t Aligned(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

std::span<const unsigned char> From(std::span<const unsigned char> bytes, std::size_t offset) {
    return bytes.subspan((std::min)(offset, bytes.size()));
}

constexpr char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

// The length in bytes of the UTF-16 text at the beginning of `bytes`; nothing when it has no
// terminator there.
std::optional<std::size_t> TextLength(std::span<const unsigned char> bytes) {
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
        if (LoadLe16(&bytes[at]) == 0) return at;
    }
    return std::nullopt;
}

}  // namespace

std::optional<VersionBlock> VersionBlock::Parse(std::span<const unsigned char> bytes) {
    if (bytes.size() < kHeaderSize) return std::nullopt;
    const std::size_t length = LoadLe16(&bytes[0]);
    if (length < kHeaderSize || length > bytes.size()) return std::nullopt;
    const auto whole = bytes.first(length);
    const auto key_length = TextLength(whole.subspan(kHeaderSize));
    if (!key_length) return std::nullopt;

    const auto behind_key = From(whole, Aligned(kHeaderSize + *key_length + 2));
    // Some linkers count the bytes of texts instead of the characters; the cut serves both.
    const std::size_t unit = LoadLe16(&bytes[4]) == kText ? 2 : 1;
    const std::size_t value_length = (std::min)(LoadLe16(&bytes[2]) * unit, behind_key.size());

    VersionBlock block;
    block.length_ = length;
    block.key_ = whole.subspan(kHeaderSize, *key_length);
    block.value_ = behind_key.first(value_length);
    block.children_ = From(behind_key, Aligned(value_length));
    return block;
}

bool VersionBlock::HasKey(std::string_view key) const {
    if (key_.size() != key.size() * 2) return false;
    for (std::size_t i = 0; i < key.size(); ++i) {
        if (Lower(LoadLe16(&key_[i * 2])) != Lower(static_cast<unsigned char>(key[i])))
            return false;
    }
    return true;
}

std::optional<VersionBlock> VersionBlock::Child(std::string_view key) const {
    auto rest = children_;
    while (const auto child = Parse(rest)) {
        if (child->HasKey(key)) return child;
        rest = From(rest, Aligned(child->length_));
    }
    return std::nullopt;
}

std::optional<VersionBlock> VersionBlock::Find(std::initializer_list<std::string_view> keys) const {
    std::optional<VersionBlock> block = *this;
    for (const auto key : keys) {
        block = block->Child(key);
        if (!block) break;
    }
    return block;
}

}  // namespace kit
