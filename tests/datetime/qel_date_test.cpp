#include "datetime/qel_date.h"

#include <gtest/gtest.h>

#include <cstring>

#include "datetime/ordering.h"
#include "platform/windows.h"

namespace {

TEST(Date, IsValidFrom2January1971To31December2037) {
    using D = CQELDate;
    for (const D& date : {D(1971, 1, 2), D(1971, 2, 1), D(1972, 1, 1), D(2000, 2, 29),
                          D(2001, 2, 28), D(2005, 4, 30), D(2037, 12, 31)}) {
        EXPECT_TRUE(date.IsValid()) << date.TextDate(1);
    }
    for (const D& date : {D(1970, 12, 31), D(1971, 1, 1), D(2038, 1, 1), D(2001, 2, 29),
                          D(2004, 2, 30), D(2005, 4, 31), D(2005, 12, 32), D(2005, 1, 0),
                          D(2005, 0, 1), D(2005, 13, 1), D(2005, -1, 1), D(-2005, 1, 1)}) {
        EXPECT_FALSE(date.IsValid()) << date.TextDate(1);
    }
}

TEST(Date, OrdersByYearThenMonthThenDay) {
    using D = CQELDate;
    ExpectOrder({D(-1, 12, 31), D(2023, 12, 31), D(2024, -5, 9), D(2024, 2, 29), D(2024, 3, 1)});
}

TEST(Date, HasTextsOfFixedFormAndOfTheUsersLocale) {
    const CQELDate date(2024, 3, 5);
    EXPECT_STREQ(" 5.03.2024", date.TextDate(0));
    EXPECT_STREQ("05.03.2024", date.TextDate(1));
    for (const int form : {2, 6, -1}) EXPECT_STREQ("", date.TextDate(form));
    constexpr DWORD kFlags[] = {DATE_SHORTDATE, DATE_LONGDATE, DATE_YEARMONTH};
    for (int form = 3; form <= 5; ++form) {
        SCOPED_TRACE(form);
        const SYSTEMTIME st = {2024, 3, 0, 5, 0, 0, 0, 0};
        char expected[100] = "";
        ::GetDateFormatA(LOCALE_USER_DEFAULT, kFlags[form - 3], &st, nullptr, expected, 100);
        ASSERT_NE(nullptr, std::strstr(expected, "2024"));
        EXPECT_STREQ(expected, date.TextDate(form));
        EXPECT_STREQ("", CQELDate(2024, 13, 5).TextDate(form));
        EXPECT_STREQ("", CQELDate(2024 + 65536, 3, 5).TextDate(form));
    }
}

}  // namespace
