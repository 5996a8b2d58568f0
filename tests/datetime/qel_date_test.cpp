#include "datetime/qel_date.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "platform/windows.h"

namespace {

CQELDate Today() {
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    return CQELDate(now.wYear, now.wMonth, now.wDay);
}

TEST(Date, IsTodayByDefault) {
    const CQELDate before = Today();
    const CQELDate date;
    EXPECT_LE(before, date);
    EXPECT_LE(date, Today());
}

TEST(Date, HoldsAnyFieldsUnchecked) {
    const CQELDate date(2024, 3, 5);
    EXPECT_EQ(2024, date.Year());
    EXPECT_EQ(3, date.Month());
    EXPECT_EQ(5, date.Day());
    CQELDate changed = date;
    changed.Day(INT_MAX).Month(-7).Year(INT_MIN);
    EXPECT_EQ(INT_MAX, changed.Day());
    EXPECT_EQ(-7, changed.Month());
    EXPECT_EQ(INT_MIN, changed.Year());
    EXPECT_EQ(5, date.Day());
}

TEST(Date, IsValidFrom2January1971To31December2037) {
    const struct {
        int year, month, day;
        bool valid;
    } cases[] = {
        {1970, 12, 31, false}, {1971, 1, 1, false},   {1971, 1, 2, true},
        {1971, 2, 1, true},    {1972, 1, 1, true},    {2037, 12, 31, true},
        {2038, 1, 1, false},   {2000, 2, 29, true},   {2001, 2, 29, false},
        {2001, 2, 28, true},   {2004, 2, 30, false},  {2005, 4, 30, true},
        {2005, 4, 31, false},  {2005, 12, 32, false}, {2005, 1, 0, false},
        {2005, 1, -1, false},  {2005, 0, 1, false},   {2005, 13, 1, false},
        {2005, -1, 1, false},  {-2005, 1, 1, false},  {INT_MAX, INT_MAX, INT_MAX, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.valid, CQELDate(c.year, c.month, c.day).IsValid())
            << c.year << '-' << c.month << '-' << c.day;
    }
}

TEST(Date, OrdersByYearThenMonthThenDay) {
    const CQELDate ascending[] = {CQELDate(-1, 12, 31),  CQELDate(2023, 12, 31),
                                  CQELDate(2024, -5, 9), CQELDate(2024, 2, 29),
                                  CQELDate(2024, 3, 1),  CQELDate(2024, 3, 2)};
    for (const CQELDate& a : ascending) {
        for (const CQELDate& b : ascending) {
            EXPECT_EQ(&a < &b, a < b);
            EXPECT_EQ(&a <= &b, a <= b);
            EXPECT_EQ(&a > &b, a > b);
            EXPECT_EQ(&a >= &b, a >= b);
            EXPECT_EQ(&a == &b, a == b);
            EXPECT_EQ(&a != &b, a != b);
        }
    }
}

TEST(Date, HasTextsOfFixedForm) {
    const struct {
        CQELDate date;
        int form;
        const char* text;
    } cases[] = {
        {CQELDate(2024, 3, 5), 0, " 5.03.2024"},
        {CQELDate(2024, 3, 5), 1, "05.03.2024"},
        {CQELDate(2024, 12, 31), 0, "31.12.2024"},
        {CQELDate(7, 3, 5), 1, "05.03.   7"},
        {CQELDate(-20, -1, 100), 0, "100.-1. -20"},
        {CQELDate(INT_MIN, INT_MIN, INT_MIN), 1, "-2147483648.-2147483648.-2147483648"},
        {CQELDate(2024, 3, 5), 2, ""},
        {CQELDate(2024, 3, 5), 6, ""},
        {CQELDate(2024, 3, 5), -1, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "form " << c.form << " \"" << c.text << '"');
        EXPECT_STREQ(c.text, c.date.TextDate(c.form));
    }
}

TEST(Date, HasTheTextsOfTheUsersLocale) {
    const struct {
        int form;
        DWORD flags;
    } cases[] = {{3, DATE_SHORTDATE}, {4, DATE_LONGDATE}, {5, DATE_YEARMONTH}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.form);
        const SYSTEMTIME st = {2024, 3, 0, 5, 0, 0, 0, 0};
        char expected[100] = "";
        ASSERT_NE(0, ::GetDateFormatA(LOCALE_USER_DEFAULT, c.flags, &st, nullptr, expected, 100));
        ASSERT_NE(nullptr, std::strstr(expected, "2024"));
        EXPECT_STREQ(expected, CQELDate(2024, 3, 5).TextDate(c.form));
        EXPECT_STREQ("", CQELDate(2024, 13, 5).TextDate(c.form));
        EXPECT_STREQ("", CQELDate(2024 + 65536, 3, 5).TextDate(c.form));
        EXPECT_STREQ("", CQELDate(2024, 3, -1).TextDate(c.form));
    }
}

}  // namespace
