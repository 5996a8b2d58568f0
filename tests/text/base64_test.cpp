// What the exported faces add: failures are thrown, and the wide forms take wchar_t.

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "blob/ident_obj.h"
#include "status/qel_status.h"
#include "support/code_page.h"
#include "support/hex_bytes.h"
#include "text/codecs.h"
#include "text/qel_string.h"

namespace {

// The status that a call throws; 0 for none.
template <typename Call>
int ThrownBy(Call call) {
    try {
        call();
        return 0;
    } catch (const XQELStatus& status) {
        EXPECT_THROW(status.SetError(), XQELStatus);  // its raise flag is set
        return status.Status();
    }
}

template <typename Char>
void ExpectBothWays(const std::basic_string<Char>& expected, const Char* bad) {
    Char text[11];
    unsigned char bytes[9] = {};
    const Char separator[] = {'|', 0};
    EXPECT_EQ(10u, QEL::Base64Encode("\xD0\x9F\xFF\xFE", 4, text, 11, 1, 4, separator));
    EXPECT_EQ(expected, text);
    EXPECT_EQ(4u, QEL::Base64Decode(text, 0, bytes, sizeof bytes, 2));
    EXPECT_EQ("D0 9F FF FE", ToHex(bytes, 4));
    EXPECT_EQ(28, ThrownBy([&] { QEL::Base64Encode(nullptr, 0, text, 11, 0, 0, separator); }));
    EXPECT_EQ(28,
              ThrownBy([&] { QEL::Base64Decode(static_cast<Char*>(nullptr), 4, bytes, 9, 0); }));
    EXPECT_EQ(131, ThrownBy([&] { QEL::Base64Decode(bad, 0, bytes, 8, 0); }));
    EXPECT_EQ(0, ThrownBy([&] { QEL::Base64Decode(bad, 0, bytes, 8, 4); }));
}

TEST(Base64, WritesAndReadsBothWidthsAndThrowsItsFailures) {
    ExpectBothWays<char>("0J//|/g==|", "QQ");
    ExpectBothWays<wchar_t>(L"0J//|/g==|", L"QQ");
}

TEST(Hex2Bin, SkipsWhatTheLocaleCallsWhite) {
    const std::string text = std::string("41") + "\xA0" + "42";  // a blank that does not break
    unsigned char bytes[2];
    EXPECT_EQ(1u, QELHex2Bin(text.c_str(), bytes, 2));
    const RuntimeLocale russian(LC_ALL, "Russian_Russia.1251");
    EXPECT_EQ(2u, QELHex2Bin(text.c_str(), bytes, 2));
}

TEST(DumpBlob2String, WritesDigitsWithoutBlanks) {
    EXPECT_TRUE(DumpBlob2String(IdentObj()).IsEmpty());
    EXPECT_STREQ("000AFF", DumpBlob2String(IdentObj("\x00\x0A\xFF", 3)));
    // Longer than any work buffer on the stack.
    const IdentObj long_blob(std::string(1000, '\xAA').data(), 1000);
    EXPECT_EQ(std::string(2000, 'A'), static_cast<const char*>(DumpBlob2String(long_blob)));
}

}  // namespace
