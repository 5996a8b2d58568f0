// What the exported faces add: failures are thrown, and the wide forms take wchar_t.

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "blob/ident_obj.h"
#include "status/qel_status.h"
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

TEST(Base64, ThrowsItsFailures) {
    unsigned char bytes[8];
    char* const query = nullptr;
    wchar_t* const wide_query = nullptr;
    const char* const lf = nullptr;
    const wchar_t* const wide_lf = nullptr;
    EXPECT_EQ(28, ThrownBy([&] { QEL::Base64Encode(nullptr, 0, query, 0, 0, 0, lf); }));
    EXPECT_EQ(28, ThrownBy([&] { QEL::Base64Encode(nullptr, 0, wide_query, 0, 0, 0, wide_lf); }));
    EXPECT_EQ(28, ThrownBy([&] { QEL::Base64Decode(lf, 4, bytes, 8, 0); }));
    EXPECT_EQ(131, ThrownBy([&] { QEL::Base64Decode("QQ", 0, bytes, 8, 0); }));
    EXPECT_EQ(131, ThrownBy([&] { QEL::Base64Decode(L"Q?==", 0, bytes, 8, 1); }));
    EXPECT_EQ(0, ThrownBy([&] { QEL::Base64Decode("QQ", 0, bytes, 8, 4); }));
}

TEST(Base64, WritesAndReadsBothWidths) {
    char text[9];
    EXPECT_EQ(8u, QEL::Base64Encode("\xD0\x9F\xFF\xFE", 4, text, sizeof text, 0, 0, nullptr));
    EXPECT_STREQ("0J///g==", text);
    wchar_t wide[11];
    EXPECT_EQ(10u, QEL::Base64Encode("\xD0\x9F\xFF\xFE", 4, wide, 11, 1, 4, L"|"));
    EXPECT_EQ(std::wstring(L"0J//|/g==|"), wide);
    unsigned char bytes[9];
    EXPECT_EQ(4u, QEL::Base64Decode(text, 0, bytes, sizeof bytes, 0));
    EXPECT_EQ("D0 9F FF FE", ToHex(bytes, 4));
    bytes[0] = 0;
    EXPECT_EQ(4u, QEL::Base64Decode(wide, 0, bytes, sizeof bytes, 2));
    EXPECT_EQ("D0 9F FF FE", ToHex(bytes, 4));
}

TEST(Hex2Bin, SkipsWhatTheLocaleCallsWhite) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    unsigned char bytes[2];
    EXPECT_EQ(1u, QELHex2Bin("41\xA0"
                             "42",
                             bytes, 2));
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "Russian_Russia.1251"));
    EXPECT_EQ(2u, QELHex2Bin("41\xA0"
                             "42",
                             bytes, 2));  // a blank that does not break
    std::setlocale(LC_ALL, before.c_str());
}

TEST(DumpBlob2String, WritesDigitsWithoutBlanks) {
    EXPECT_TRUE(DumpBlob2String(IdentObj()).IsEmpty());
    EXPECT_STREQ("000AFF", DumpBlob2String(IdentObj("\x00\x0A\xFF", 3)));
    // Longer than any work buffer on the stack.
    EXPECT_EQ(std::string(2000, 'A'), static_cast<const char*>(DumpBlob2String(
                                          IdentObj(std::string(1000, '\xAA').data(), 1000))));
}

}  // namespace
