#include "datetime/time_span.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

#include "datetime/ordering.h"
#include "support/code_page.h"

namespace {

using QEL::CTimeSpan;

CQELString Fields(const CTimeSpan& span) { return span.Format("%D %H %M %S %m"); }

TEST(TimeSpan, HasTheFieldsOfItsSeconds) {
    EXPECT_STREQ("0 00 00 00 000", Fields(CTimeSpan()));
    EXPECT_STREQ("1 02 03 04 005", Fields(CTimeSpan(1, 2, 3, 4, 5)));
    EXPECT_STREQ("0 00 00 01 500", Fields(CTimeSpan(1500)));
    EXPECT_STREQ("-1 -1 -1 -1 -07", Fields(CTimeSpan(-1, -1, -1, -1, -7)));
    EXPECT_STREQ("-24855 -3 -14 -8 000", Fields(CTimeSpan(0, 0, 0, INT_MIN, 0)));
    EXPECT_STREQ("0 00 00 -1 000",
                 Fields(CTimeSpan(0, 0, INT_MAX, 59, 0)));  // 60 * (2^31 - 1) + 59
    const CTimeSpan long_span((std::int64_t{1} << 32) + 90061, 0);
    EXPECT_EQ(90061, long_span.GetTotalSeconds());
    EXPECT_EQ(1193071, long_span.GetTotalHours());
    EXPECT_EQ(71584289, long_span.GetTotalMinutes());
}

TEST(TimeSpan, ComparesAndAddsTotalsWithoutASign) {
    ExpectOrder({CTimeSpan((std::int64_t{1} << 32), 0), CTimeSpan(std::int64_t{0}, 1),
                 CTimeSpan(999), CTimeSpan(1, 0, 0, 0, 0), CTimeSpan(std::int64_t{-1}, 0)});
    EXPECT_EQ(4294967295000u, CTimeSpan(std::int64_t{-1}, 0).GetTotalMilliseconds());
    CTimeSpan span(0, 0, 0, 1, 700);
    span += CTimeSpan(600);
    EXPECT_STREQ("0 00 00 02 300", Fields(span));
    EXPECT_STREQ("0 00 00 01 999", Fields(span -= CTimeSpan(301)));
    EXPECT_STREQ("0 00 00 02 998", Fields(span + CTimeSpan(999)));
    EXPECT_EQ(615, (CTimeSpan(1) - CTimeSpan(2)).GetMilliseconds());  // of 2^64 - 1
}

TEST(TimeSpan, FillsInPictures) {
    const CTimeSpan span(1, 2, 3, 4, 5);
    const std::string lead_byte = "\x81%D";  // one character of code page 932, then "D"
    const MultiByteCodePage japanese(932);
    EXPECT_STREQ("1 days 02:03:04.005", span.Format("%D days %H:%M:%S.%m"));
    const std::string most(254, 'a');
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"100%", "100"},
        {"%%", "%"},
        {"%x%\x01%z", "x\x01z"},
        {"\x81", "\x81"},
        {"%" + lead_byte, lead_byte},
        {most + "%H", most + "0"},
        {most + "bc", most + "b"},
        {most + "\x81\x81y", most},
    };
    for (const auto& [picture, text] : cases) {
        EXPECT_EQ(text, std::string(span.Format(picture.c_str())));
    }
    EXPECT_STREQ("", span.Format(nullptr));
}

}  // namespace
