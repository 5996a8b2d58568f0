#include "compress/detail/lz_decoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "base/byte_order.h"
#include "compress/detail/lz_stream.h"

// There is no ring here: what it would hold stands in the destination already, and a place in the
// ring is a distance back from the current byte. Only matches that reach before the first byte see
// the ring's first contents.

namespace kit::lz {
namespace {

// How far the decoder has come.
struct Cursor {
    const unsigned char* in;
    std::uint64_t count;  // bytes produced
};

struct Match {
    std::uint64_t distance;  // back from the current byte, 1..4096
    std::uint64_t length;    // 3..kLongest
};

constexpr std::uint64_t kLongest = 18;

Match ReadMatch(Cursor at) {
    const std::uint32_t token = LoadLe16(at.in);
    const std::uint32_t place = (token & 0xFF) | (token >> 4 & 0xF00);
    return {(at.count + kFirst - 1 - place) % kRing + 1, (token >> 8 & 0x0F) + kMinMatch};
}

// The byte number `at` of the text; those before the first are the ring's first contents.
unsigned char ByteAt(const unsigned char* text, std::int64_t at) {
    if (at >= 0) return text[at];
    return at >= -std::int64_t{kBlanks} ? kBlank : 0;
}

// Byte by byte, for every kind of match.
void CopyNarrow(unsigned char* dst, std::uint64_t count, Match match) {
    unsigned char* const out = dst + count;
    if (match.distance <= count) {
        const unsigned char* const from = out - match.distance;
        for (std::uint64_t k = 0; k < match.length; ++k) out[k] = from[k];
        return;
    }
    auto from = static_cast<std::int64_t>(count - match.distance);
    for (std::uint64_t k = 0; k < match.length; ++k) out[k] = ByteAt(dst, from++);
}

// What stands 1 to 7 bytes back, repeated as far as eight bytes go. In a register: bytes that have
// only just been stored are slow to load.
std::uint64_t ShortPattern(const unsigned char* from, std::uint64_t distance) {
    static constexpr std::uint64_t kRepeat[8] = {0,
                                                 0x0101010101010101,
                                                 0x0001000100010001,
                                                 0x0001000001000001,
                                                 0x0000000100000001,
                                                 0x0000010000000001,
                                                 0x0001000000000001,
                                                 0x0100000000000001};
    if (distance == 1) return *from * kRepeat[1];
    std::uint64_t bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return (bytes & ((std::uint64_t{1} << 8 * distance) - 1)) * kRepeat[distance];
}

// Copies kLongest bytes from 1 to 15 bytes back, which thus repeat.
void CopyRepeating(unsigned char* out, std::uint64_t distance) {
    unsigned char pattern[16];
    std::memcpy(pattern, out - distance, sizeof pattern);
    std::uint64_t step = distance;
    if (distance < 8) {
        const std::uint64_t bytes = ShortPattern(out - distance, distance);
        std::memcpy(pattern, &bytes, sizeof bytes);
        step = 8 - 8 % distance;
    }
    for (std::uint64_t done = 0; done < kLongest; done += step) {
        std::memcpy(out + done, pattern, sizeof pattern);
    }
}

// A match that runs into its own output or reaches before the first byte.
void CopySpecial(unsigned char* dst, std::uint64_t count, Match match) {
    if (match.distance > count || match.distance >= 16) {
        CopyNarrow(dst, count, match);
    } else {
        CopyRepeating(dst + count, match.distance);
    }
}

// Copies a block through registers, so that source and destination may overlap.
template <std::size_t kSize>
void CopyBlock(unsigned char* to, const unsigned char* from) {
    unsigned char block[kSize];
    std::memcpy(block, from, kSize);
    std::memcpy(to, block, kSize);
}

// Copies kLongest bytes. Those of a match have no overlap; what is copied beyond them may be wrong.
void CopyPlain(unsigned char* to, const unsigned char* from) {
    CopyBlock<16>(to, from);
    CopyBlock<8>(to + 16, from + 16);
}

// Whole groups with wide copies. Reads and writes more than a token has: see Decoder.
//
// With kEarly a match may reach before the first byte of the text.
template <bool kEarly>
class GroupDecoder {
public:
    static void Decode(unsigned char* dst, Cursor& at) {
        const std::uint32_t flags = *at.in++;
        if (flags == 0xFF) {
            CopyLiterals(dst, at, 8);
        } else if (kTokenBytes[flags] <= 8 + kFewMatches) {
            RunByRun(dst, at, flags);
        } else {
            TokenByToken(dst, at, flags);
        }
    }

private:
    static constexpr int kFewMatches = 3;  // measured: with more, the runs are too short

    // The bytes that the tokens behind each flag byte have.
    static constexpr auto kTokenBytes = [] {
        std::array<unsigned char, 256> bytes{};
        for (unsigned flags = 0; flags < 256; ++flags) {
            bytes[flags] = static_cast<unsigned char>(16 - std::popcount(flags));
        }
        return bytes;
    }();

    // Up to eight.
    static void CopyLiterals(unsigned char* dst, Cursor& at, int literals) {
        std::memcpy(dst + at.count, at.in, 8);
        at.in += literals;
        at.count += static_cast<unsigned>(literals);
    }

    // The literals up to the next match in one piece, then the match.
    static void RunByRun(unsigned char* dst, Cursor& at, std::uint32_t flags) {
        const unsigned char* const next = at.in + kTokenBytes[flags];
        // A one for each match, and one behind the eighth token.
        for (std::uint32_t matches = 0x100 | (flags ^ 0xFF);;) {
            const int literals = std::countr_zero(matches);
            CopyLiterals(dst, at, literals);
            matches = matches >> literals >> 1;
            if (matches == 0) break;
            const Match match = ReadMatch(at);
            if (match.length > match.distance || (kEarly && match.distance > at.count)) {
                CopySpecial(dst, at.count, match);
            } else {
                CopyPlain(dst + at.count, dst + at.count - match.distance);
            }
            at.in += 2;
            at.count += match.length;
        }
        at.in = next;
    }

    // Literals and matches take the same way, because no branch could foretell which comes next.
    static void TokenByToken(unsigned char* dst, Cursor& at, std::uint32_t flags) {
        for (flags |= 0x100; flags != 1; flags >>= 1) {
            const std::uint64_t literal = flags & 1;
            const std::uint64_t is_match = literal - 1;  // a mask
            Match match = ReadMatch(at);
            match.length = 1 + ((match.length - 1) & is_match);
            const std::uint64_t distance = match.distance & is_match;
            unsigned char* const out = dst + at.count;
            if (match.length > match.distance || (kEarly && distance > at.count)) {
                CopySpecial(dst, at.count, match);
            } else {
                CopyPlain(out, Blend(is_match, out - distance, at.in));
            }
            at.in += 2 - literal;
            at.count += match.length;
        }
    }

    // `a` where the mask is set, `b` elsewhere.
    static const unsigned char* Blend(std::uint64_t mask, const unsigned char* a,
                                      const unsigned char* b) {
        const auto x = reinterpret_cast<std::uintptr_t>(a);
        const auto y = reinterpret_cast<std::uintptr_t>(b);
        return reinterpret_cast<const unsigned char*>(y ^ ((x ^ y) & mask));
    }
};

class Decoder {
public:
    Decoder(const unsigned char* src, std::uint32_t size, unsigned char* dst, std::uint32_t room)
        : at_{src, 0}, in_end_(src + size), dst_(dst), room_(room) {}

    std::int64_t Run() {
        // Once kRing bytes are there, no match reaches before the first any more.
        DecodeGroups<true>(std::min<std::uint64_t>(room_, kRing + kOutMargin));
        DecodeGroups<false>(room_);
        return DecodeRest() ? static_cast<std::int64_t>(at_.count) : -1;
    }

private:
    // Wide copies write up to 32 bytes for a token, which makes up to kLongest.
    static constexpr std::uint64_t kOutMargin = 7 * kLongest + 32;
    // A group has up to 17 bytes. The 48 behind it may be read by wide copies, and they make at
    // least 40 bytes of text, which overwrite the 29 that a wide copy may have written too much.
    static constexpr std::ptrdiff_t kInMargin = 17 + 48;

    // Whole groups, as long as there is enough input and room.
    template <bool kEarly>
    void DecodeGroups(std::uint64_t room) {
        if (room < kOutMargin) return;
        Cursor at = at_;  // on its own: stores to the destination might change members
        while (in_end_ - at.in >= kInMargin && at.count <= room - kOutMargin) {
            GroupDecoder<kEarly>::Decode(dst_, at);
        }
        at_ = at;
    }

    // Token by token up to the end. False when the room does not suffice.
    bool DecodeRest() {
        while (at_.in < in_end_) {
            for (std::uint32_t flags = 0x100u | *at_.in++; flags != 1; flags >>= 1) {
                const bool literal = flags & 1;
                const std::ptrdiff_t size = literal ? 1 : 2;
                if (in_end_ - at_.in < size) return true;
                if (!(literal ? PutLiteral(*at_.in) : PutMatch(ReadMatch(at_)))) return false;
                at_.in += size;
            }
        }
        return true;
    }

    // Quirk: the bytes are stored before the room is checked, so the first one that does not fit
    // lands at dst[room]. Callers keep a spare byte for it and may find it there.
    // Pinned by LzDecompress.WritesOneByteBeyondTheCapacityBeforeItFails.
    bool PutLiteral(unsigned char byte) {
        dst_[at_.count++] = byte;
        return at_.count <= room_;
    }
    bool PutMatch(Match match) {
        match.length = std::min(match.length, room_ + 1 - at_.count);
        CopyNarrow(dst_, at_.count, match);
        at_.count += match.length;
        return at_.count <= room_;
    }

    Cursor at_;
    const unsigned char* const in_end_;
    unsigned char* const dst_;
    const std::uint64_t room_;
};

}  // namespace

std::int64_t Decode(const unsigned char* src, std::uint32_t size, unsigned char* dst,
                    std::uint32_t room) {
    return Decoder(src, size, dst, room).Run();
}

}  // namespace kit::lz
