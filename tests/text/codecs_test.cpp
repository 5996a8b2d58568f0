#include "text/codecs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <tuple>

#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"

namespace {

// --- MIME ----------------------------------------------------------------------------------------

std::string MimeEncode(const std::string& bytes) {
    const std::size_t length = (bytes.size() + 2) / 3 * 4;
    GuardedBuffer data(bytes.data(), bytes.size()), out(length + 1);
    const int size = static_cast<int>(bytes.size());
    EXPECT_EQ(static_cast<int>(length), QEL_MIMEBase64Encode(data.text(), out.text(), size));
    return out.text();
}

// The counted bytes in hexadecimal. The buffer has the documented room and no more.
std::string MimeDecode(const std::string& text, unsigned limit = 0) {
    GuardedBuffer source(text.c_str());
    const std::size_t length =
        limit == 0 ? text.size() : (std::min)(text.size(), (std::size_t{limit} + 3) / 4 * 4 + 4);
    GuardedBuffer out((length + 3) / 4 * 3 + 1);
    std::memset(out.data(), '#', out.size());
    const int size = QEL_MIMEBase64Decode(source.text(), out.text(), limit);
    EXPECT_EQ('\0', out.text()[size]);
    return ToHex(out.data(), static_cast<std::size_t>(size));
}

TEST(MimeEncode, PadsTheLastGroupAndBreaksNoLines) {
    EXPECT_EQ("", MimeEncode(""));
    EXPECT_EQ("QUI=", MimeEncode("AB"));
    std::string bytes, expected;
    for (int group = 0; group < 30; ++group, bytes += "ABC", expected += "QUJD") {
        EXPECT_EQ(expected + "QQ==", MimeEncode(bytes + "A"));
    }
    for (const int size : {-1, INT_MIN, 1610612734, INT_MAX}) {  // sizes without a text
        char out[] = "##";
        EXPECT_EQ(0, QEL_MIMEBase64Encode("A", out, size));
        EXPECT_STREQ("", out);
    }
    char out[] = "##";
    EXPECT_EQ(0, QEL_MIMEBase64Encode(nullptr, out, 3));
    EXPECT_STREQ("", out);
    EXPECT_EQ(0, QEL_MIMEBase64Encode("A", nullptr, 1));
}

// In the middle "=" shortens the whole, not its group.
TEST(MimeDecode, ChecksNothing) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"QUJD", "41 42 43"},
        {"QUI=", "41 42"},
        {"QQ==", "41"},
        {"QU!D", "41 40 03"},
        {"=UJD", "01 42 43"},
        {"Q===", "40"},
        {"QU", "41 40 00"},
        {"QU\xC0=", "41 40"},
        {"QQ==QUJD", "41 00 00 41"},
        {"QUJDR", "41 42 43 44 00 00"},
    };
    for (const auto& [text, bytes] : cases) EXPECT_EQ(bytes, MimeDecode(text)) << text;
    EXPECT_EQ("41 42 43 41 42 43 41 40 00 41", MimeDecode("QUJDQUJDQU==QUJD"));
    char out[] = "#";
    EXPECT_EQ(0, QEL_MIMEBase64Decode(nullptr, out, 0));
    EXPECT_EQ('\0', out[0]);
    EXPECT_EQ(0, QEL_MIMEBase64Decode("QUJD", nullptr, 0));
}

TEST(MimeDecode, TakesThePaddingOfTheGroupBehindTheLimit) {
    const std::tuple<const char*, unsigned, const char*> cases[] = {
        {"QUJDQQ==", 4, "41"},       {"QUJDQQ==", 3, "41"},   {"QUJDQQ==", 5, "41 42 43 41"},
        {"QUJDREVG", 4, "41 42 43"}, {"QUJD", 4, "41 42 43"}, {"QUJDREVGQQ==", 4, "41 42 43"},
        {"QQ==QQ==", 4, ""},
    };
    for (const auto& [text, limit, bytes] : cases) {
        EXPECT_EQ(bytes, MimeDecode(text, limit)) << text << ' ' << limit;
    }
    EXPECT_EQ("41 42 43 44 45 46", MimeDecode("QUJDREVG", UINT_MAX));
    char out[7];
    QEL_MIMEBase64Decode("QUJDREVG", out, 4);
    EXPECT_EQ("45 46", ToHex(out + 4, 2));  // written, though not counted
}

// --- Hexadecimal ---------------------------------------------------------------------------------

std::string Bin2Hex(const std::string& bytes, std::size_t room, bool spaced) {
    GuardedBuffer data(bytes.data(), bytes.size()), out(room);
    const ulong32 written = QELBin2Hex(data.data(), static_cast<ulong32>(bytes.size()), out.text(),
                                       static_cast<ulong32>(room), spaced);
    if (written == 0) return "";
    EXPECT_EQ(std::strlen(out.text()) + 1, written);
    return out.text();
}

TEST(Bin2Hex, WritesWholeBytesAsFarAsThereIsRoom) {
    const std::tuple<std::size_t, const char*, const char*> cases[] = {
        {0, "", ""},     {1, "", ""},       {2, "", ""},          {3, "0A", "0A"},
        {4, "0A", "0A"}, {5, "0AFF", "0A"}, {6, "0AFF", "0A FF"}, {9, "0AFF", "0A FF"},
    };
    for (const auto& [room, plain, spaced] : cases) {
        EXPECT_EQ(plain, Bin2Hex("\x0A\xFF", room, false)) << room;
        EXPECT_EQ(spaced, Bin2Hex("\x0A\xFF", room, true)) << room;
    }
    char untouched = '#';
    EXPECT_EQ(0u, QELBin2Hex(nullptr, 2, &untouched, 1, false));
    EXPECT_EQ(0u, QELBin2Hex(reinterpret_cast<const unsigned char*>("A"), 0, &untouched, 1, false));
    EXPECT_EQ('#', untouched);
    const std::tuple<ulong32, ulong32, ulong32> rooms[] = {
        {0, 1, 1},
        {1, 3, 3},
        {2, 5, 6},
        {0x55555555, 0xAAAAAAAB, UINT_MAX},
        {0x55555556, 0xAAAAAAAD, 0},
        {0x7FFFFFFF, UINT_MAX, 0},
        {0xFFFFFFFF, 0, 0},
    };
    for (const auto& [size, plain, spaced] : rooms) {  // the query for the room of all
        EXPECT_EQ(plain, QELBin2Hex(nullptr, size, nullptr, 0, false)) << size;
        EXPECT_EQ(spaced, QELBin2Hex(nullptr, size, nullptr, 0, true)) << size;
    }
}

// Reads with exactly `room` bytes; the size query must agree when that is enough.
std::string Hex2Bin(const std::string& text, std::size_t room) {
    GuardedBuffer source(text.c_str()), out(room);
    const ulong32 count = QELHex2Bin(source.text(), out.data(), static_cast<ulong32>(room));
    const ulong32 all = QELHex2Bin(source.text(), nullptr, 0);
    EXPECT_EQ((std::min<std::size_t>)(all, room), count);
    return ToHex(out.data(), count);
}

TEST(Hex2Bin, ReadsDigitsUpToSomethingElse) {
    const std::tuple<const char*, std::size_t, const char*> cases[] = {
        {"", 1, ""},
        {"0a0B", 2, "0A 0B"},
        {"a b c", 2, "AB C0"},
        {"123", 2, "12 30"},
        {"12 3g45", 4, "12 30"},
        {"12-34", 2, "12"},
        {"g", 1, ""},
        {"1234", 1, "12"},
        {"1234", 0, ""},
        {"0x12", 2, "00"},
        {"12\xC0"
         "34",
         2, "12"},
        {" \t1\n\v2\f\r3 4 ", 2, "12 34"},
    };
    for (const auto& [text, room, bytes] : cases) EXPECT_EQ(bytes, Hex2Bin(text, room)) << text;
    EXPECT_EQ(0u, QELHex2Bin(nullptr, nullptr, 0));
    unsigned char out[32];
    EXPECT_EQ(0u, QELHex2Bin(nullptr, out, 1));
    for (const char intruder : {'/', ':', '@', 'G', '`', 'g', '\x10', '\xB0', '\xFF'}) {
        for (std::size_t place = 0; place < 64; ++place) {
            std::string text(64, 'F');
            text[place] = intruder;
            ASSERT_EQ((place + 1) / 2, QELHex2Bin(text.c_str(), out, 32)) << place;
            ASSERT_TRUE(place % 2 == 0 || out[place / 2] == 0xF0) << place;
        }
    }
}

TEST(Hex, IsWrittenAndReadAtEveryLength) {
    std::string bytes;
    for (std::size_t count = 1; count < 70; ++count) {
        bytes += static_cast<char>(count * 37);
        const std::string spaced = ToHex(bytes.data(), count);
        std::string plain = spaced;
        std::erase(plain, ' ');
        EXPECT_EQ(plain, Bin2Hex(bytes, 2 * count + 1, false));
        EXPECT_EQ(spaced, Bin2Hex(bytes, 3 * count, true));
        EXPECT_EQ(spaced, Hex2Bin(spaced, count));
        EXPECT_EQ(spaced, Hex2Bin(plain, count));
        EXPECT_EQ(ToHex(bytes.data(), count - 1), Hex2Bin(plain, count - 1));
    }
}

}  // namespace
