// The coder beside its textbook form, byte for byte, on many kinds of data.

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "compress/lz_coder.h"
#include "support/guarded_buffer.h"
#include "yardsticks/textbook_lz.h"

namespace {

using Random = std::mt19937;  // its numbers are the same everywhere

struct Kind {
    const char* name;
    char (*next)(const std::string& before, Random& random);
};

char Back(const std::string& text, std::size_t distance) {
    return text.size() < distance ? 'b' : text[text.size() - distance];
}

constexpr Kind kKinds[] = {
    {"random", [](const std::string&, Random& r) { return static_cast<char>(r()); }},
    {"two letters", [](const std::string&, Random& r) { return "ab"[r() % 2]; }},
    {"one letter", [](const std::string&, Random&) { return 'a'; }},
    {"zeros and blanks", [](const std::string&, Random& r) { return "\0\0\0 "[r() % 4]; }},
    {"mostly blanks", [](const std::string&, Random& r) { return r() % 9 ? ' ' : char(r() % 3); }},
    {"runs", [](const std::string& t, Random& r) { return r() % 40 ? Back(t, 1) : char(r()); }},
    {"period 3", [](const std::string& t, Random&) { return "xyz"[t.size() % 3]; }},
    {"period 1000 with slips",
     [](const std::string& t, Random& r) {
         return t.size() < 1000 || r() % 300 == 0 ? "abcde"[r() % 5] : Back(t, 1000);
     }},
    {"period 4081, the window",
     [](const std::string& t, Random& r) {
         return t.size() < 4081 ? char(r() % 8) : Back(t, 4081);
     }},
    {"words",
     [](const std::string& t, Random& r) {
         return r() % 6 ? Back(t, 20 + r() % 3) : "etaoin shrdlu\n"[r() % 14];
     }},
    {"ascending, which makes the tree a list",
     [](const std::string& t, Random&) {
         return t.size() % 3 ? char(t.size() / 3 >> (t.size() % 3 == 1 ? 8 : 0)) : 'k';
     }},
};

std::string Sample(const Kind& kind, std::size_t size, Random& random) {
    std::string text;
    while (text.size() < size) text += kind.next(text, random);
    return text;
}

using TextbookCoder = decltype(textbook::Compress);

// Both coders with this room; the destinations, parts behind the output included, are the same.
// Returns what they made, empty when the room did not suffice.
std::string Both(TextbookCoder* textbook, decltype(LzCompress)* ours, std::string from,
                 unsigned int room, unsigned int spare) {
    GuardedBuffer source(from.data(), from.size()), expected(room + spare), made(room + spare);
    std::uint32_t expected_size = room;
    unsigned int size = room;
    const auto length = static_cast<unsigned int>(from.size());
    const int result = textbook(source.data(), length, expected.data(), &expected_size);
    EXPECT_EQ(result, ours(source.data(), length, made.data(), &size));
    EXPECT_EQ(expected_size, size);
    EXPECT_EQ(0, std::memcmp(expected.data(), made.data(), room + spare));
    return result == 0 && length > 0 ? std::string(made.text(), size) : "";
}

std::string CompressBoth(const std::string& text, std::size_t room) {
    return Both(textbook::Compress, LzCompress, text, static_cast<unsigned int>(room), 0);
}

std::string DecompressBoth(const std::string& stream, std::size_t room) {
    return Both(textbook::Decompress, LzDecompress, stream, static_cast<unsigned int>(room), 1);
}

std::size_t WorstCase(std::size_t size) { return size + size / 8 + 1; }

void CheckSample(const Kind& kind, std::size_t size, Random& random) {
    SCOPED_TRACE(std::string(kind.name) + ", " + std::to_string(size) + " bytes");
    const std::string text = Sample(kind, size, random);
    const std::string stream = CompressBoth(text, WorstCase(size));
    CompressBoth(text, random() % (stream.size() + 1));
    EXPECT_EQ(text, DecompressBoth(stream, size));
    DecompressBoth(stream, size + random() % 300);
    DecompressBoth(stream, random() % (size + 1));
    DecompressBoth(text, random() % (4 * size + 1));  // any bytes will do
}

TEST(LzTextbook, AgreesOnEveryShortLength) {
    Random random(1);
    for (const auto& kind : kKinds) {
        for (std::size_t size = 0; size <= 64; ++size) CheckSample(kind, size, random);
    }
}

// Short inputs end at 800, the window is full at 4065, the ring turns over at 4096 (and what repeats
// its beginning 16 later), and the encoder's blocks end at 24544 and 45023.
TEST(LzTextbook, AgreesAroundEveryBoundary) {
    Random random(2);
    for (const std::size_t boundary : {800u, 4065u, 4096u, 4112u, 8192u, 24544u, 45023u}) {
        for (const auto& kind : kKinds) {
            CheckSample(kind, boundary - 2 + random() % 5, random);
        }
    }
}

TEST(LzTextbook, AgreesOnLongSamplesOfMixedKinds) {
    Random random(3);
    std::string text;
    while (text.size() < 200000) {
        text += Sample(kKinds[random() % std::size(kKinds)], 1 + random() % 9000, random);
    }
    const std::string stream = CompressBoth(text, WorstCase(text.size()));
    EXPECT_EQ(text, DecompressBoth(stream, text.size()));
}

// A stream cut anywhere is still a stream.
TEST(LzTextbook, AgreesOnStreamsOfEveryLength) {
    Random random(4);
    const std::string stream = CompressBoth(Sample(kKinds[9], 1200, random), WorstCase(1200));
    for (std::size_t length = 0; length <= stream.size(); ++length) {
        DecompressBoth(stream.substr(0, length), 1200);
    }
}

}  // namespace
