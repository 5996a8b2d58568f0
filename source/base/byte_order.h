#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kit {

// Little-endian fields of every format, at any alignment and on any machine.
inline std::uint16_t LoadLe16(const void* from) {
    const auto* p = static_cast<const unsigned char*>(from);
    return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}

inline std::uint32_t LoadLe32(const void* from) {
    const auto* p = static_cast<const unsigned char*>(from);
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

inline void StoreLe16(void* to, std::uint16_t value) {
    auto* p = static_cast<unsigned char*>(to);
    p[0] = static_cast<unsigned char>(value);
    p[1] = static_cast<unsigned char>(value >> 8);
}

inline void StoreLe32(void* to, std::uint32_t value) {
    auto* p = static_cast<unsigned char*>(to);
    p[0] = static_cast<unsigned char>(value);
    p[1] = static_cast<unsigned char>(value >> 8);
    p[2] = static_cast<unsigned char>(value >> 16);
    p[3] = static_cast<unsigned char>(value >> 24);
}

// Reads fields one after another from a block of known size. A read past the end yields 0 (or
// null), moves nothing and clears ok() for good, so that a parser may test once, at its end.
class ByteReader {
public:
    ByteReader(const void* data, std::size_t size)
        : at_(static_cast<const unsigned char*>(data)), left_(size) {}

    bool ok() const { return ok_; }
    std::size_t left() const { return left_; }

    std::uint8_t U8() {
        const auto* p = Take(1);
        return p ? *p : std::uint8_t{0};
    }
    std::uint16_t U16() {
        const auto* p = Take(2);
        return p ? LoadLe16(p) : std::uint16_t{0};
    }
    std::uint32_t U32() {
        const auto* p = Take(4);
        return p ? LoadLe32(p) : 0;
    }
    // The next `size` bytes, or null when fewer are left.
    const unsigned char* Take(std::size_t size) {
        if (!ok_ || size > left_) {
            ok_ = false;
            return nullptr;
        }
        const auto* p = at_;
        at_ += size;
        left_ -= size;
        return p;
    }

private:
    const unsigned char* at_;
    std::size_t left_;
    bool ok_ = true;
};

// Writes fields one after another into a block of known room. A write past the end writes
// nothing and clears ok() for good.
class ByteWriter {
public:
    ByteWriter(void* data, std::size_t room)
        : begin_(static_cast<unsigned char*>(data)), at_(begin_), left_(room) {}

    bool ok() const { return ok_; }
    std::size_t written() const { return static_cast<std::size_t>(at_ - begin_); }

    void U8(std::uint8_t value) {
        if (auto* p = Take(1)) *p = value;
    }
    void U16(std::uint16_t value) {
        if (auto* p = Take(2)) StoreLe16(p, value);
    }
    void U32(std::uint32_t value) {
        if (auto* p = Take(4)) StoreLe32(p, value);
    }
    void Bytes(const void* data, std::size_t size) {
        auto* p = Take(size);
        if (p && size > 0) std::memcpy(p, data, size);
    }

private:
    unsigned char* Take(std::size_t size) {
        if (!ok_ || size > left_) {
            ok_ = false;
            return nullptr;
        }
        auto* p = at_;
        at_ += size;
        left_ -= size;
        return p;
    }

    unsigned char* begin_;
    unsigned char* at_;
    std::size_t left_;
    bool ok_ = true;
};

}  // namespace kit
