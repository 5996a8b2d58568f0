#pragma once

// The header of a record file, number by number, and a file of bytes that are in memory.

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include "file_com/detail/record_header.h"

// 32-bit numbers, lowest byte first.
inline std::string Numbers(std::initializer_list<std::int64_t> numbers) {
    std::string bytes;
    for (const std::int64_t number : numbers) {
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift);
    }
    return bytes;
}

class BytesSource : public kit::HeaderSource {
public:
    explicit BytesSource(std::string bytes) : bytes_(std::move(bytes)) {}

    std::int64_t Length() override { return static_cast<std::int64_t>(bytes_.size()); }
    int Read(unsigned char* to, std::size_t size) override {
        if (size > bytes_.size()) return 5;
        std::memcpy(to, bytes_.data(), size);
        return 0;
    }

private:
    std::string bytes_;
};
