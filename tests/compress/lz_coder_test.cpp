#include "compress/lz_coder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"

namespace {

unsigned char* Bytes(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

std::string Compressed(std::string text) {
    GuardedBuffer packed(text.size() + text.size() / 8 + 1);
    auto size = static_cast<unsigned int>(packed.size());
    const auto length = static_cast<unsigned int>(text.size());
    EXPECT_EQ(0, LzCompress(Bytes(text), length, packed.data(), &size));
    return std::string(packed.text(), size);
}

// With source and destination, spare byte included, against inaccessible pages.
std::string Decompressed(const std::string& stream, unsigned int room) {
    GuardedBuffer source(stream.data(), stream.size());
    GuardedBuffer text(room + 1);
    unsigned int size = room;
    const auto length = static_cast<unsigned int>(stream.size());
    EXPECT_EQ(0, LzDecompress(source.data(), length, text.data(), &size));
    return std::string(text.text(), size);
}

// Each case was followed through the search tree by hand.
TEST(LzCompress, WritesTheBytesThatTheSearchTreeLeadsTo) {
    using namespace std::string_literals;
    const std::pair<std::string, const char*> cases[] = {
        {"a", "01 61"},
        {"ab", "03 61 62"},
        // A match overlaps what it makes and ends at 16, not 18. The last three letters match every
        // longer run of them; the tree meets first the one that runs on for 16, at 4084.
        {std::string(20, 'a'), "01 61 F0 FD F4 F0"},
        // Places go on behind 4095 at 0, and each full match moves the node of the run on.
        {std::string(64, 'a'), "01 61 F0 FD 00 0D 10 0D 20 0C"},
        // Blanks match those before the beginning, the last of which is in the tree first.
        {"   x", "02 EF F0 78"},
        // Of equally long matches the first one met wins: the older at 4080, not that at 4084.
        {"abcXabcYabcZ", "AF 61 62 63 58 F0 F0 59 F0 F0 5A"},
        // What lies behind the end takes part in comparisons: zeros near the beginning ...
        {"abcXabc\0\0Yabc"s, "EF 61 62 63 58 F0 F0 00 00 59 00 F4 F0"},
        {std::string(4, '\0'), "01 00 F0 F0"},
        // ... and blanks further on. They make the second "abc" the longest match for the third.
        {"abcXQWERTYUIOPLKJHGFabc   Zabc",
         "FF 61 62 63 58 51 57 45 52 FF 54 59 55 49 4F 50 4C 4B "
         "4F 4A 48 47 46 F0 F0 ED F0 5A 04 00"},
    };
    for (const auto& [text, stream] : cases) {
        const std::string packed = Compressed(text);
        EXPECT_EQ(stream, ToHex(packed.data(), packed.size())) << text;
        EXPECT_EQ(text, Decompressed(packed, static_cast<unsigned int>(text.size())));
    }
}

// "abcM" is the root, with "abcC" on its left and "abcT" on its right. When it leaves the window
// the left one takes its place, and is thus met first by the last "abc".
TEST(LzCompress, ReplacesANodeThatLeavesByItsPredecessor) {
    std::string stream = Compressed("abcMabcCabcT" + std::string(4069, 'z') + "abcN");
    EXPECT_EQ("F4 F0 4E", ToHex(&stream[stream.size() - 3], 3));  // 4084, where "abcC" began
    // One byte earlier the root is still there.
    stream = Compressed("abcMabcCabcT" + std::string(4068, 'z') + "abcN");
    EXPECT_EQ("F0 F0 4E", ToHex(&stream[stream.size() - 3], 3));
}

TEST(LzCoder, RefusesNullPointersAndLeavesEverythingAloneForAnEmptyInput) {
    unsigned char bytes[8] = {};
    unsigned int size = sizeof bytes;
    for (const auto& code : {LzCompress, LzDecompress}) {
        EXPECT_EQ(-1, code(nullptr, 1, bytes, &size));
        EXPECT_EQ(-1, code(bytes, 1, nullptr, &size));
        EXPECT_EQ(-1, code(bytes, 1, bytes, nullptr));
    }
    EXPECT_EQ(0, LzCompress(nullptr, 0, nullptr, &size));
    EXPECT_EQ(sizeof bytes, size);
    EXPECT_EQ(0, LzDecompress(nullptr, 0, bytes, &size));
    EXPECT_EQ(0u, size);
}

// Incomplete tokens at the end are dropped.
TEST(LzDecompress, ReadsWhatTheEncoderNeverWrites) {
    using namespace std::string_literals;
    const std::pair<const char*, std::string> cases[] = {
        {"01 61 F0 FE", std::string(18, 'a')},  // length code 14: 17 bytes
        {"01 61 F0 FF", std::string(19, 'a')},  // length code 15: 18 bytes
        {"00 FF F0", "\0  "s},                  // the ring's end and beginning
        {"00 F0 F0", "\0\0\0"s},                // the current place itself, a whole round back
        {"01 61 F1 F1", "a\0\0\0\0"s},          // the same, one byte later
        {"00 EF F0 F0 F0", "      "},           // a blank once more behind what it made
    };
    for (const auto& [stream, text] : cases) EXPECT_EQ(text, Decompressed(FromHex(stream), 30));
    EXPECT_EQ("", Decompressed(FromHex("00 12"), 30));
    EXPECT_EQ("ab", Decompressed(FromHex("07 61 62"), 30));
    EXPECT_EQ("a", Decompressed(FromHex("01 61 F0"), 30));
}

TEST(LzDecompress, WritesOneByteBeyondTheCapacityBeforeItFails) {
    std::string stream = FromHex("01 61 F0 FD F4 F0");  // twenty letters
    for (unsigned int room = 0; room < 20; ++room) {
        SCOPED_TRACE(room);
        GuardedBuffer text(room + 1);
        unsigned int size = room;
        EXPECT_EQ(-1, LzDecompress(Bytes(stream), 6, text.data(), &size));
        EXPECT_EQ(room, size);
        EXPECT_EQ(std::string(room + 1, 'a'), std::string(text.text(), room + 1));
    }
}

}  // namespace
