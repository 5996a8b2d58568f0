#include "datetime/qel_time.h"

#include <gtest/gtest.h>

#include <climits>

#include "platform/windows.h"

namespace {

TEST(Time, IsTheLocalTimeOfDayByDefault) {
    SYSTEMTIME before, after;
    ::GetLocalTime(&before);
    const CQELTime time;
    ::GetLocalTime(&after);
    if (after.wDay != before.wDay) GTEST_SKIP() << "midnight has just passed";
    EXPECT_LE(CQELTime(before.wHour, before.wMinute, before.wSecond, before.wMilliseconds), time);
    EXPECT_LE(time, CQELTime(after.wHour, after.wMinute, after.wSecond, after.wMilliseconds));
}

TEST(Time, HoldsAnyFieldsUnchecked) {
    const CQELTime time(9, 5, 7, 3);
    EXPECT_EQ(9, time.Hour());
    EXPECT_EQ(5, time.Minute());
    EXPECT_EQ(7, time.Second());
    EXPECT_EQ(3, time.Milliseconds());
    CQELTime changed = time;
    changed.Hour(-1).Minute(INT_MAX).Second(61).Milliseconds(INT_MIN);
    EXPECT_EQ(-1, changed.Hour());
    EXPECT_EQ(INT_MAX, changed.Minute());
    EXPECT_EQ(61, changed.Second());
    EXPECT_EQ(INT_MIN, changed.Milliseconds());
    EXPECT_EQ(9, time.Hour());
}

TEST(Time, IsValidWithinOneDay) {
    const struct {
        int hour, minute, second, millisecond;
        bool valid;
    } cases[] = {
        {0, 0, 0, 0, true},   {23, 59, 59, 999, true},   {24, 0, 0, 0, false},
        {0, 60, 0, 0, false}, {0, 0, 60, 0, false},      {0, 0, 0, 1000, false},
        {-1, 0, 0, 0, false}, {0, -1, 0, 0, false},      {0, 0, -1, 0, false},
        {0, 0, 0, -1, false}, {INT_MIN, 0, 0, 0, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.valid, CQELTime(c.hour, c.minute, c.second, c.millisecond).IsValid())
            << c.hour << ':' << c.minute << ':' << c.second << '.' << c.millisecond;
    }
}

TEST(Time, OrdersByHourThenMinuteSecondAndMillisecond) {
    const CQELTime ascending[] = {CQELTime(-1, 59, 59, 999), CQELTime(8, 59, 59, 999),
                                  CQELTime(9, 4, 59, 999),   CQELTime(9, 5, 6, 999),
                                  CQELTime(9, 5, 7, 3),      CQELTime(9, 5, 7, 4)};
    for (const CQELTime& a : ascending) {
        for (const CQELTime& b : ascending) {
            EXPECT_EQ(&a < &b, a < b);
            EXPECT_EQ(&a <= &b, a <= b);
            EXPECT_EQ(&a > &b, a > b);
            EXPECT_EQ(&a >= &b, a >= b);
            EXPECT_EQ(&a == &b, a == b);
            EXPECT_EQ(&a != &b, a != b);
        }
    }
}

TEST(Time, HasTextsOfFixedForm) {
    const struct {
        CQELTime time;
        int form;
        const char* text;
    } cases[] = {
        {CQELTime(9, 5, 7, 3), 0, " 9:05:07"},
        {CQELTime(9, 5, 7, 3), 1, "09:05:07"},
        {CQELTime(23, 59, 59, 999), 0, "23:59:59"},
        {CQELTime(-1, 100, 0, 0), 1, "-1:100:00"},
        {CQELTime(9, 5, 7, 3), 2, ""},
        {CQELTime(9, 5, 7, 3), 4, ""},
        {CQELTime(9, 5, 7, 3), -1, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "form " << c.form << " \"" << c.text << '"');
        EXPECT_STREQ(c.text, c.time.TextTime(c.form));
    }
}

TEST(Time, HasTheTextOfTheUsersLocale) {
    const SYSTEMTIME st = {2024, 3, 0, 5, 9, 5, 7, 3};
    char expected[100] = "";
    ASSERT_NE(0, ::GetTimeFormatA(LOCALE_USER_DEFAULT, LOCALE_NOUSEROVERRIDE, &st, nullptr,
                                  expected, 100));
    ASSERT_STRNE("", expected);
    EXPECT_STREQ(expected, CQELTime(9, 5, 7, 3).TextTime(3));
    EXPECT_STREQ("", CQELTime(24, 0, 0, 0).TextTime(3));
    EXPECT_STREQ("", CQELTime(9 + 65536, 0, 0, 0).TextTime(3));
    EXPECT_STREQ("", CQELTime(9, 0, 0, 1000).TextTime(3));
}

}  // namespace
