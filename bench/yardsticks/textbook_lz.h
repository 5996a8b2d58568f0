#pragma once

// The LZSS coder step by step in its textbook form: a binary search tree of pointers for the
// encoder, a ring for the decoder. It defines the bytes that LzCompress() must produce and is the
// yardstick of its speed; do not tune it. Used by tests, fuzz targets and benchmarks.

#include <cstdint>
#include <memory>

namespace textbook {

constexpr int kRing = 4096;
constexpr int kLookAhead = 16;
constexpr int kThreshold = 2;
constexpr int kNil = kRing;

class Encoder {
public:
    // As LzCompress(): 0 and the bytes written in *dst_len, or -1 when dst is too small.
    int Run(const unsigned char* src, std::uint32_t src_len, unsigned char* dst,
            std::uint32_t* dst_len) {
        src_ = src;
        src_end_ = src + src_len;
        dst_ = dst;
        capacity_ = *dst_len;
        const int result = Encode();
        if (result == 0 && src_len > 0) *dst_len = written_;
        return result;
    }

private:
    int Encode() {
        for (int i = kRing + 1; i <= kRing + 256; ++i) rson_[i] = kNil;
        for (int i = 0; i < kRing; ++i) dad_[i] = kNil;
        for (int i = 0; i < kRing - kLookAhead; ++i) text_[i] = 0x20;
        int s = 0;
        int r = kRing - kLookAhead;
        int len = 0;
        while (len < kLookAhead && src_ < src_end_) text_[r + len++] = *src_++;
        if (len == 0) return 0;
        for (int i = 1; i <= kLookAhead; ++i) InsertNode(r - i);
        InsertNode(r);

        unsigned char code[17] = {0};
        int code_size = 1;
        unsigned char mask = 1;
        while (len > 0) {
            if (match_length_ > len) match_length_ = len;
            if (match_length_ <= kThreshold) {
                match_length_ = 1;
                code[0] |= mask;
                code[code_size++] = text_[r];
            } else {
                code[code_size++] = static_cast<unsigned char>(match_position_);
                code[code_size++] = static_cast<unsigned char>(((match_position_ >> 4) & 0xF0) |
                                                               (match_length_ - (kThreshold + 1)));
            }
            mask = static_cast<unsigned char>(mask << 1);
            if (mask == 0) {
                if (!Write(code, code_size)) return -1;
                code[0] = 0;
                code_size = 1;
                mask = 1;
            }
            const int last_match_length = match_length_;
            int i = 0;
            for (; i < last_match_length && src_ < src_end_; ++i) {
                const unsigned char c = *src_++;
                DeleteNode(s);
                text_[s] = c;
                if (s < kLookAhead - 1) text_[s + kRing] = c;
                s = (s + 1) & (kRing - 1);
                r = (r + 1) & (kRing - 1);
                InsertNode(r);
            }
            for (; i < last_match_length; ++i) {
                DeleteNode(s);
                s = (s + 1) & (kRing - 1);
                r = (r + 1) & (kRing - 1);
                if (--len > 0) InsertNode(r);
            }
        }
        if (code_size > 1 && !Write(code, code_size)) return -1;
        return 0;
    }

    bool Write(const unsigned char* bytes, int count) {
        for (int i = 0; i < count; ++i) {
            if (written_ >= capacity_) return false;
            dst_[written_++] = bytes[i];
        }
        return true;
    }

    void InsertNode(int r) {
        const unsigned char* key = &text_[r];
        int p = kRing + 1 + key[0];
        int c = 1;
        lson_[r] = rson_[r] = kNil;
        match_length_ = 0;
        for (;;) {
            if (c >= 0) {
                if (rson_[p] == kNil) {
                    rson_[p] = r;
                    dad_[r] = p;
                    return;
                }
                p = rson_[p];
            } else {
                if (lson_[p] == kNil) {
                    lson_[p] = r;
                    dad_[r] = p;
                    return;
                }
                p = lson_[p];
            }
            int i = 1;
            for (; i < kLookAhead; ++i) {
                c = key[i] - text_[p + i];
                if (c != 0) break;
            }
            if (i > match_length_) {
                match_position_ = p;
                match_length_ = i;
                if (i >= kLookAhead) break;
            }
        }
        Replace(p, r);
    }

    // r takes the place of p, whose 16 bytes are the same.
    void Replace(int p, int r) {
        dad_[r] = dad_[p];
        lson_[r] = lson_[p];
        rson_[r] = rson_[p];
        dad_[lson_[p]] = r;
        dad_[rson_[p]] = r;
        if (rson_[dad_[p]] == p) {
            rson_[dad_[p]] = r;
        } else {
            lson_[dad_[p]] = r;
        }
        dad_[p] = kNil;
    }

    void DeleteNode(int p) {
        if (dad_[p] == kNil) return;
        int q;
        if (rson_[p] == kNil) {
            q = lson_[p];
        } else if (lson_[p] == kNil) {
            q = rson_[p];
        } else {
            q = lson_[p];
            if (rson_[q] != kNil) {
                while (rson_[q] != kNil) q = rson_[q];
                rson_[dad_[q]] = lson_[q];
                dad_[lson_[q]] = dad_[q];
                lson_[q] = lson_[p];
                dad_[lson_[p]] = q;
            }
            rson_[q] = rson_[p];
            dad_[rson_[p]] = q;
        }
        dad_[q] = dad_[p];
        if (rson_[dad_[p]] == p) {
            rson_[dad_[p]] = q;
        } else {
            lson_[dad_[p]] = q;
        }
        dad_[p] = kNil;
    }

    unsigned char text_[kRing + kLookAhead - 1] = {};  // the ring, its first 15 bytes repeated
    std::int32_t lson_[kRing + 1] = {};
    std::int32_t rson_[kRing + 257] = {};  // the last 256: a root for each first byte
    std::int32_t dad_[kRing + 1] = {};
    int match_position_ = 0;
    int match_length_ = 0;
    const unsigned char* src_ = nullptr;
    const unsigned char* src_end_ = nullptr;
    unsigned char* dst_ = nullptr;
    std::uint32_t capacity_ = 0;
    std::uint32_t written_ = 0;
};

inline int Compress(const unsigned char* src, std::uint32_t src_len, unsigned char* dst,
                    std::uint32_t* dst_len) {
    return std::make_unique<Encoder>()->Run(src, src_len, dst, dst_len);
}

// As LzDecompress(): -1 after capacity + 1 bytes have been written.
inline int Decompress(const unsigned char* src, std::uint32_t src_len, unsigned char* dst,
                      std::uint32_t* dst_len) {
    unsigned char text[kRing] = {};
    for (int i = 0; i < kRing - kLookAhead; ++i) text[i] = 0x20;
    const unsigned char* const end = src + src_len;
    const std::uint64_t capacity = *dst_len;
    std::uint64_t count = 0;
    int r = kRing - kLookAhead;
    unsigned flags = 0;
    for (;;) {
        flags >>= 1;
        if ((flags & 0x100) == 0) {
            if (src == end) break;
            flags = *src++ | 0xFF00u;
        }
        if (flags & 1) {
            if (src == end) break;
            const unsigned char c = *src++;
            dst[count++] = c;
            if (count > capacity) return -1;
            text[r] = c;
            r = (r + 1) & (kRing - 1);
        } else {
            if (src == end) break;
            const int b0 = *src++;
            if (src == end) break;
            const int b1 = *src++;
            const int position = b0 | ((b1 & 0xF0) << 4);
            for (int k = 0; k <= (b1 & 0x0F) + kThreshold; ++k) {
                const unsigned char c = text[(position + k) & (kRing - 1)];
                dst[count++] = c;
                if (count > capacity) return -1;
                text[r] = c;
                r = (r + 1) & (kRing - 1);
            }
        }
    }
    *dst_len = static_cast<std::uint32_t>(count);
    return 0;
}

}  // namespace textbook
