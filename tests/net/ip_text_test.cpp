#include "net/ip_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

#include "support/guarded_buffer.h"

namespace {

constexpr ulong32 kUntouched = 0xDEADBEEF;

// The result and the address of a copy of the text whose terminator is the last byte to be read.
std::pair<int, ulong32> Parse(const std::string& text) {
    GuardedBuffer guarded(text.c_str());
    ulong32 address = kUntouched;
    const int result = CQELIpToLong(guarded.text(), &address);
    EXPECT_EQ(result, CQELIpToLong(guarded.text(), nullptr)) << text;
    return {result, address};
}

TEST(IpToLong, AcceptsFourDecimalFields) {
    const std::pair<const char*, ulong32> cases[] = {
        {"0000000010.0.0.08", 0x0A000008}, {"255.255.255.255", 0xFFFFFFFF},
        {"01.002.0003.4", 0x01020304},     {"10.20.30.40", 0x0A141E28},
        {"100.99.10.9", 0x64630A09},       {"0.0.0.0", 0},
    };
    for (const auto& [text, address] : cases) EXPECT_EQ(std::pair(0, address), Parse(text)) << text;
    EXPECT_EQ(std::pair(0, ulong32{0xFF0000FF}), Parse(std::string(30, '0') + "255.0.0.0000255"));
}

TEST(IpToLong, RejectsEverythingElseAndLeavesTheAddressAlone) {
    // clang-format off
    const char* const texts[] = {
        "", ".", "1", "1.2.3", "1.2.3.", "1.2.3.4.", "1.2.3.4.5", "1..2.3", ".1.2.3", "16909060",
        "1.2.3.4 ", " 1.2.3.4", "1. 2.3.4", "1.2.3.4\n", "-1.2.3.4", "+1.2.3.4", "0x1.2.3.4",
        "a.b.c.d", "1.2.3.4a", "1,2,3,4", "1:2.3.4", "1.2.3/4", "1.2.3.\xB2", "1\xB0.2.3.4",
        "1.2.3.4\xFF", "256.1.1.1", "1.256.1.1", "1.1.256.1", "1.1.1.256", "1.1.1.999",
        "1.1.1.1000", "00256.1.1.1", "4294967297.0.0.0", "1.2.3.18446744073709551617",
    };
    // clang-format on
    for (const char* text : texts) EXPECT_EQ(std::pair(-1, kUntouched), Parse(text)) << text;
    EXPECT_EQ(-1, CQELIpToLong(nullptr, nullptr));
}

// Every shape of a field beside every other, cut off at every place.
TEST(IpToLong, ReadsNoByteBehindTheTerminator) {
    const char* const fields[] = {"7", "42", "199", "007"};
    for (int shape = 0; shape < 4 * 4 * 4 * 4; ++shape) {
        const std::string text = std::string(fields[shape & 3]) + "." + fields[shape >> 2 & 3] +
                                 "." + fields[shape >> 4 & 3] + "." + fields[shape >> 6];
        EXPECT_EQ(0, Parse(text).first) << text;
        const std::size_t last_dot = text.rfind('.');
        for (std::size_t length = 0; length <= last_dot + 1; ++length) {
            EXPECT_EQ(-1, Parse(text.substr(0, length)).first) << text.substr(0, length);
        }
    }
}

TEST(IpToText, WritesEveryOctetAtEveryPlaceInSixteenBytes) {
    for (int place = 0; place < 4; ++place) {
        for (unsigned octet = 0; octet < 256; ++octet) {
            unsigned o[] = {10, 200, 0, 3};
            o[place] = octet;
            const ulong32 address = o[0] << 24 | o[1] << 16 | o[2] << 8 | o[3];
            char plain[32], padded[32];
            std::snprintf(plain, 32, "%u.%u.%u.%u", o[0], o[1], o[2], o[3]);
            std::snprintf(padded, 32, "%03u.%03u.%03u.%03u", o[0], o[1], o[2], o[3]);
            GuardedBuffer buffer(16);
            ASSERT_EQ(buffer.text(), CQELIpToText(buffer.text(), address, 0));
            ASSERT_STREQ(plain, buffer.text());
            ASSERT_EQ(buffer.text(), CQELIpToText(buffer.text(), address, 1));
            ASSERT_STREQ(padded, buffer.text());
            ASSERT_EQ(address, Parse(plain).second);
            ASSERT_EQ(address, Parse(padded).second);
        }
    }
}

TEST(IpToText, SharesOneBuffer) {
    const char* const first = CQELIpToText(0x01020304, 0);
    EXPECT_STREQ("1.2.3.4", first);
    EXPECT_EQ(first, CQELIpToText(0x0A000001, 1));
    EXPECT_STREQ("010.000.000.001", first);
    EXPECT_STREQ("10.0.0.1", CQELIpToText(0x0A000001));
    EXPECT_EQ(nullptr, CQELIpToText(nullptr, 0x01020304, 0));
    EXPECT_EQ(0xFFFEFDFCu, CQELIpAddress(255, 254, 253, 252));
}

}  // namespace
