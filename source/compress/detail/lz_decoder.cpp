#include "compress/detail/lz_decoder.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "compress/detail/lz_stream.h"

// There is no ring here: what it would hold stands in the destination already, and a place in the
// ring is a distance back from the current byte. Only matches that reach before the first byte see
// the ring's first contents.

namespace kit::lz {
namespace {

struct Match {
    std::uint32_t distance;  // back from the current byte, 1..4096
    std::uint32_t length;    // 3..18
};

// `count`: the bytes produced so far; its low bits suffice.
Match ReadMatch(const unsigned char* token, std::uint32_t count) {
    const std::uint32_t place = token[0] | (token[1] & 0xF0u) << 4;
    return {(count + kFirst - 1 - place) % kRing + 1, (token[1] & 0x0F) + kMinMatch};
}

// What stands `distance` before the byte number `count`.
unsigned char ByteBack(const unsigned char* dst, std::uint64_t count, std::uint32_t distance) {
    if (distance <= count) return dst[count - distance];
    return distance - count <= kBlanks ? kBlank : 0;
}

void Copy8(unsigned char* to, const unsigned char* from) {
    std::uint64_t bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    std::memcpy(to, &bytes, sizeof bytes);
}

class Decoder {
public:
    Decoder(const unsigned char* src, std::uint32_t size, unsigned char* dst, std::uint32_t room)
        : in_(src), in_end_(src + size), dst_(dst), out_(dst), room_(room) {}

    std::int64_t Run() {
        // Once the window is full no match reaches before the first byte any more.
        DecodeGroups<true>(std::min<std::uint64_t>(room_, kRing + kOutMargin));
        DecodeGroups<false>(room_);
        return DecodeRest();
    }

private:
    // A group has at most 1 + 16 bytes, literals are read eight at a time. What a wide copy writes
    // too much, at most 30 bytes, the rest of the input overwrites: 48 bytes make at least 40.
    static constexpr std::ptrdiff_t kInMargin = 17 + 48;
    // Eight matches of 18 bytes, and what a wide copy writes too much.
    static constexpr std::ptrdiff_t kOutMargin = 8 * 18 + 32;

    std::uint64_t count() const { return static_cast<std::uint64_t>(out_ - dst_); }

    // Whole groups with wide copies, as long as both sides have some room to spare.
    template <bool kEarly>
    void DecodeGroups(std::uint64_t room) {
        if (in_end_ - in_ < kInMargin || room < kOutMargin) return;
        const unsigned char* const last_in = in_end_ - kInMargin;
        const unsigned char* const last_out = dst_ + room - kOutMargin;
        while (in_ <= last_in && out_ <= last_out) DecodeGroup<kEarly>();
    }

    template <bool kEarly>
    void DecodeGroup() {
        const unsigned char* in = in_ + 1;
        unsigned char* out = out_;
        // A one for each match and one more behind the eighth token: the zeros in front of a one
        // are literals.
        for (std::uint32_t matches = 0x100 | (*in_ ^ 0xFFu);;) {
            const int literals = std::countr_zero(matches);
            Copy8(out, in);
            in += literals;
            out += literals;
            matches >>= literals + 1;
            if (matches == 0) break;
            const Match match = ReadMatch(in, static_cast<std::uint32_t>(out - dst_));
            in += 2;
            if (kEarly && match.distance > out - dst_) {
                CopyEarly(out, match);
            } else {
                CopyWide(out, match.distance);
            }
            out += match.length;
        }
        in_ = in;
        out_ = out;
    }

    void CopyEarly(unsigned char* out, Match match) const {
        const auto count = static_cast<std::uint64_t>(out - dst_);
        for (std::uint32_t k = 0; k < match.length; ++k) {
            out[k] = ByteBack(dst_, count + k, match.distance);
        }
    }

    // Copies 18 bytes and some more. Where source and destination overlap the bytes repeat; the
    // loop lays down the pattern often enough that eight bytes can be copied at once.
    static void CopyWide(unsigned char* out, std::uint32_t distance) {
        for (; distance < 8; distance *= 2) {
            Copy8(out, out - distance);
            out += distance;
        }
        Copy8(out, out - distance);
        Copy8(out + 8, out + 8 - distance);
        Copy8(out + 16, out + 16 - distance);
    }

    // Token by token and byte by byte, up to the end.
    std::int64_t DecodeRest() {
        std::uint64_t count = this->count();
        for (std::uint32_t flags = 1; in_ < in_end_; flags >>= 1) {
            if (flags == 1) flags = 0x100u | *in_++;
            const bool literal = flags & 1;
            if (in_end_ - in_ < (literal ? 1 : 2)) break;
            const Match match =
                literal ? Match{0, 1} : ReadMatch(in_, static_cast<std::uint32_t>(count));
            for (std::uint32_t k = 0; k < match.length; ++k) {
                dst_[count] = literal ? *in_ : ByteBack(dst_, count, match.distance);
                // Quirk: the byte is stored before the room is checked, so one that does not fit
                // lands at dst[room]. Callers keep a spare byte for it and may look at it.
                // Pinned by LzDecompress.WritesOneByteBeyondTheCapacityBeforeItFails.
                if (++count > room_) return -1;
            }
            in_ += literal ? 1 : 2;
        }
        return static_cast<std::int64_t>(count);
    }

    const unsigned char* in_;
    const unsigned char* const in_end_;
    unsigned char* const dst_;
    unsigned char* out_;
    const std::uint64_t room_;
};

}  // namespace

std::int64_t Decode(const unsigned char* src, std::uint32_t size, unsigned char* dst,
                    std::uint32_t room) {
    return Decoder(src, size, dst, room).Run();
}

}  // namespace kit::lz
