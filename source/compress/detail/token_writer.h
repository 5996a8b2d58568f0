#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "compress/detail/lz_stream.h"

namespace kit::lz {

// Gathers tokens into groups of eight behind their flag byte and writes each group when it is full.
// When the room runs out the writer fills what is left of it and fails.
class TokenWriter {
public:
    TokenWriter(unsigned char* dst, std::uint32_t room) : dst_(dst), room_(room) {}

    std::uint32_t written() const { return written_; }

    bool Literal(unsigned char byte) {
        group_[0] |= flag_;
        group_[size_++] = byte;
        return NextToken();
    }
    bool Match(std::uint32_t place, std::uint32_t length) {
        group_[size_++] = static_cast<unsigned char>(place);
        group_[size_++] = static_cast<unsigned char>((place >> 4 & 0xF0) | (length - kMinMatch));
        return NextToken();
    }
    // Writes the last group, which may be short of tokens. Without tokens it writes nothing.
    bool Finish() { return size_ == 1 || Flush(); }

private:
    bool NextToken() {
        flag_ = static_cast<unsigned char>(flag_ << 1);
        return flag_ != 0 || Flush();
    }
    bool Flush() {
        const std::uint32_t count = std::min(size_, room_ - written_);
        std::memcpy(dst_ + written_, group_, count);
        written_ += count;
        if (count < size_) return false;
        group_[0] = 0;
        size_ = 1;
        flag_ = 1;
        return true;
    }

    unsigned char* dst_;
    std::uint32_t room_;
    std::uint32_t written_ = 0;
    unsigned char group_[17] = {};
    std::uint32_t size_ = 1;
    unsigned char flag_ = 1;
};

}  // namespace kit::lz
