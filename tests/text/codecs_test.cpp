#include "text/codecs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>

#include "support/guarded_buffer.h"
#include "support/hex_bytes.h"

namespace {

// --- MIME ----------------------------------------------------------------------------------------

std::string MimeEncode(const std::string& bytes) {
    const std::size_t length = (bytes.size() + 2) / 3 * 4;
    GuardedBuffer data(bytes.data(), bytes.size());
    GuardedBuffer out(length + 1);
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

TEST(MimeEncode, PadsTheLastGroup) {
    EXPECT_EQ("", MimeEncode(""));
    EXPECT_EQ("QQ==", MimeEncode("A"));
    EXPECT_EQ("QUI=", MimeEncode("AB"));
    EXPECT_EQ("QUJD", MimeEncode("ABC"));
    // Long enough for lines, but there are none.
    std::string expected;
    for (int group = 0; group < 30; ++group) expected += "QUJD";
    std::string bytes;
    for (int group = 0; group < 30; ++group) bytes += "ABC";
    EXPECT_EQ(expected + "QQ==", MimeEncode(bytes + "A"));
}

TEST(MimeEncode, WritesAnEmptyTextForSizesWithoutOne) {
    for (const int size : {-1, INT_MIN, 1610612734, INT_MAX}) {
        char out[] = "##";
        EXPECT_EQ(0, QEL_MIMEBase64Encode("A", out, size));
        EXPECT_STREQ("", out);
    }
    char out[] = "##";
    EXPECT_EQ(0, QEL_MIMEBase64Encode(nullptr, out, 3));
    EXPECT_STREQ("", out);
    EXPECT_EQ(0, QEL_MIMEBase64Encode("A", nullptr, 1));
}

TEST(MimeDecode, ChecksNothing) {
    const struct {
        const char* text;
        const char* bytes;
    } cases[] = {
        {"", ""},
        {"QUJD", "41 42 43"},
        {"QUI=", "41 42"},
        {"QQ==", "41"},
        {"QQ==QUJD", "41 00 00 41"},  // in the middle "=" shortens the whole, not its group
        {"QU!D", "41 40 03"},
        {"QU\xC0"
         "D",
         "41 40 03"},
        {"=UJD", "01 42 43"},
        {"Q===", "40"},
        {"QU", "41 40 00"},
        {"QUJDR", "41 42 43 44 00 00"},
        {"QUJDQUJDQUJDQUJDQU==QUJDQUJDQUJDQUJD",
         "41 42 43 41 42 43 41 42 43 41 42 43 41 40 00 41 42 43 41 42 43 41 42 43 41"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.bytes, MimeDecode(c.text));
    }
    char out[] = "#";
    EXPECT_EQ(0, QEL_MIMEBase64Decode(nullptr, out, 0));
    EXPECT_EQ('\0', out[0]);
    EXPECT_EQ(0, QEL_MIMEBase64Decode("QUJD", nullptr, 0));
}

TEST(MimeDecode, TakesThePaddingOfTheGroupBehindTheLimit) {
    const struct {
        const char* text;
        unsigned limit;
        const char* bytes;
    } cases[] = {
        {"QUJDQQ==", 4, "41"},
        {"QUJDQQ==", 3, "41"},
        {"QUJDQQ==", 5, "41 42 43 41"},
        {"QUJDREVG", 4, "41 42 43"},
        {"QUJDREVGQQ==", 4, "41 42 43"},  // the third group is not reached
        {"QUJD", 4, "41 42 43"},
        {"QUJDREVG", UINT_MAX, "41 42 43 44 45 46"},
        {"QQ==QQ==", 4, ""},  // 1 - 2: no byte at all
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.text << ' ' << c.limit);
        EXPECT_EQ(c.bytes, MimeDecode(c.text, c.limit));
    }
    char out[7];
    QEL_MIMEBase64Decode("QUJDREVG", out, 4);
    EXPECT_EQ("45 46", ToHex(out + 4, 2));  // written, though not counted
}

// --- Hexadecimal ---------------------------------------------------------------------------------

std::string BytesFrom(unsigned first, std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(first + i * 7);
    return bytes;
}

std::string Bin2Hex(const std::string& bytes, std::size_t room, bool spaced) {
    GuardedBuffer data(bytes.data(), bytes.size());
    GuardedBuffer out(room);
    const ulong32 written = QELBin2Hex(data.data(), static_cast<ulong32>(bytes.size()), out.text(),
                                       static_cast<ulong32>(room), spaced);
    if (written == 0) return "";
    EXPECT_EQ(std::strlen(out.text()) + 1, written);
    return out.text();
}

TEST(Bin2Hex, WritesWholeBytesAsFarAsThereIsRoom) {
    const std::string bytes("\x0A\xFF");
    const struct {
        std::size_t room;
        const char* plain;
        const char* spaced;
    } cases[] = {
        {0, "", ""},     {1, "", ""},       {2, "", ""},          {3, "0A", "0A"},
        {4, "0A", "0A"}, {5, "0AFF", "0A"}, {6, "0AFF", "0A FF"}, {9, "0AFF", "0A FF"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.room);
        EXPECT_EQ(c.plain, Bin2Hex(bytes, c.room, false));
        EXPECT_EQ(c.spaced, Bin2Hex(bytes, c.room, true));
    }
    char untouched = '#';
    EXPECT_EQ(0u, QELBin2Hex(nullptr, 2, &untouched, 1, false));
    EXPECT_EQ(0u, QELBin2Hex(reinterpret_cast<const unsigned char*>("A"), 0, &untouched, 1, false));
    EXPECT_EQ('#', untouched);
}

TEST(Bin2Hex, TellsTheRoomForAll) {
    const struct {
        ulong32 size, plain, spaced;
    } cases[] = {
        {0, 1, 1},
        {1, 3, 3},
        {2, 5, 6},
        {0x55555555, 0xAAAAAAAB, 0xFFFFFFFF},
        {0x55555556, 0xAAAAAAAD, 0},
        {0x7FFFFFFF, 0xFFFFFFFF, 0},
        {0xFFFFFFFF, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.plain, QELBin2Hex(nullptr, c.size, nullptr, 0, false)) << c.size;
        EXPECT_EQ(c.spaced, QELBin2Hex(nullptr, c.size, nullptr, 0, true)) << c.size;
    }
}

TEST(Bin2Hex, WritesLongDataOfEveryLength) {
    for (std::size_t count = 1; count < 70; ++count) {
        const std::string bytes = BytesFrom(static_cast<unsigned>(count), count);
        const std::string spaced = ToHex(bytes.data(), count);
        std::string plain = spaced;
        std::erase(plain, ' ');
        EXPECT_EQ(plain, Bin2Hex(bytes, 2 * count + 1, false));
        EXPECT_EQ(spaced, Bin2Hex(bytes, 3 * count, true));
    }
}

// Reads with exactly `room` bytes; the size query must agree when that is enough.
std::string Hex2Bin(const std::string& text, std::size_t room) {
    GuardedBuffer source(text.c_str());
    GuardedBuffer out(room);
    const ulong32 count = QELHex2Bin(source.text(), out.data(), static_cast<ulong32>(room));
    const ulong32 all = QELHex2Bin(source.text(), nullptr, 0);
    EXPECT_EQ((std::min<std::size_t>)(all, room), count);
    return ToHex(out.data(), count);
}

TEST(Hex2Bin, ReadsDigitsUpToSomethingElse) {
    const struct {
        const char* text;
        std::size_t room;
        const char* bytes;
    } cases[] = {
        {"", 1, ""},
        {"0a0B", 2, "0A 0B"},
        {"a b c", 2, "AB C0"},
        {" \t1\n\v2\f\r3 4 ", 2, "12 34"},
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
        {"@A", 1, ""},
        {"1/2:3@4G5`6g", 8, "10"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.bytes, Hex2Bin(c.text, c.room));
    }
    EXPECT_EQ(0u, QELHex2Bin(nullptr, nullptr, 0));
    unsigned char out = 9;
    EXPECT_EQ(0u, QELHex2Bin(nullptr, &out, 1));
}

TEST(Hex2Bin, ReadsLongTextsHoweverTheyAreSpaced) {
    for (std::size_t count = 1; count < 70; ++count) {
        const std::string bytes = BytesFrom(static_cast<unsigned>(count * 3), count);
        const std::string spaced = ToHex(bytes.data(), count);
        std::string plain = spaced;
        std::erase(plain, ' ');
        EXPECT_EQ(spaced, Hex2Bin(spaced, count));
        EXPECT_EQ(spaced, Hex2Bin(plain, count));
        EXPECT_EQ(spaced.substr(0, 3 * count - 4 + (count == 1)), Hex2Bin(plain, count - 1))
            << count;
    }
}

TEST(Hex2Bin, FindsAnIntruderAtEveryPlaceOfABlock) {
    for (const char intruder : {'/', ':', '@', 'G', '`', 'g', '\x10', '\xB0', '\xFF'}) {
        for (std::size_t place = 0; place < 64; ++place) {
            std::string text(64, 'F');
            text[place] = intruder;
            unsigned char out[32];
            ASSERT_EQ((place + 1) / 2, QELHex2Bin(text.c_str(), out, 32)) << place;
            if (place % 2 == 1) {
                ASSERT_EQ(0xF0, out[place / 2]);
            }
        }
    }
}

}  // namespace
