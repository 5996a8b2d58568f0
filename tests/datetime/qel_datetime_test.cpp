// Dates, times of day, both together, and their texts. What depends on the time zone is in
// every_zone_test.cpp.

#include "datetime/qel_datetime.h"

#include <gtest/gtest.h>

#include <cstring>

#include "datetime/locale_text.h"
#include "datetime/ordering.h"
#include "platform/windows.h"

namespace {

using D = CQELDate;
using T = CQELTime;
using DT = CQELDateTime;

TEST(Date, IsValidFrom2January1971To31December2037) {
    for (const D& date : {D(1971, 1, 2), D(1971, 2, 1), D(1972, 1, 1), D(2000, 2, 29),
                          D(2001, 2, 28), D(2005, 4, 30), D(2037, 12, 31)}) {
        EXPECT_TRUE(date.IsValid()) << date.TextDate(1);
    }
    for (const D& date : {D(1970, 12, 31), D(1971, 1, 1), D(2038, 1, 1), D(2001, 2, 29),
                          D(2004, 2, 30), D(2005, 4, 31), D(2005, 12, 32), D(2005, 1, 0),
                          D(2005, 0, 1), D(2005, 13, 1), D(2005, -1, 1), D(-2005, 1, 1)}) {
        EXPECT_FALSE(date.IsValid()) << date.TextDate(1);
        EXPECT_FALSE(DT(date.Year(), date.Month(), date.Day(), 12, 0, 0, 0).IsValid());
    }
}

TEST(Time, IsValidWithinOneDay) {
    EXPECT_TRUE(T(0, 0, 0, 0).IsValid());
    EXPECT_TRUE(T(23, 59, 59, 999).IsValid());
    EXPECT_TRUE(DT(1971, 1, 2, 23, 59, 59, 999).IsValid());
    EXPECT_FALSE(DT(2024, 3, 5, 24, 0, 0, 0).IsValid());
    int n = 0;
    for (const T& time : {T(24, 0, 0, 0), T(0, 60, 0, 0), T(0, 0, 60, 0), T(0, 0, 0, 1000),
                          T(-1, 0, 0, 0), T(0, -1, 0, 0), T(0, 0, -1, 0), T(0, 0, 0, -1)}) {
        EXPECT_FALSE(time.IsValid()) << "time " << n++;
    }
}

TEST(DateTime, OrdersByEachFieldInTurn) {
    ExpectOrder({D(-1, 12, 31), D(2023, 12, 31), D(2024, -5, 9), D(2024, 2, 29), D(2024, 3, 1)});
    ExpectOrder({T(-1, 59, 59, 999), T(8, 59, 59, 999), T(9, 4, 59, 999), T(9, 5, 6, 999),
                 T(9, 5, 7, 3), T(9, 5, 7, 4)});
    ExpectOrder({DT(2024, 3, 4, 23, 59, 59, 999), DT(2024, 3, 5, 0, 0, 0, 0),
                 DT(2024, 3, 5, 9, 5, 7, 3), DT(2024, 3, 5, 9, 5, 7, 4),
                 DT(2024, 3, 6, 0, 0, 0, 0)});
}

DT Read(void(WINAPI* clock)(SYSTEMTIME*)) {
    SYSTEMTIME now;
    clock(&now);
    return DT(now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
              now.wMilliseconds);
}

TEST(DateTime, ReadsTheLocalAndTheUtcClock) {
    DT before = Read(::GetLocalTime), parts(true);
    EXPECT_LE(before, DT(true));
    EXPECT_LE(DT(true), Read(::GetLocalTime));
    before = Read(::GetSystemTime);
    EXPECT_LE(before, DT(false));
    const CQELUTCDateTime utc;
    EXPECT_LE(before, utc);
    EXPECT_LE(utc, Read(::GetSystemTime));
    do {  // on one day
        before = Read(::GetLocalTime);
        static_cast<D&>(parts) = D();
        static_cast<T&>(parts) = T();
    } while (before.Day() != D().Day());
    EXPECT_LE(before, parts);
    EXPECT_LE(parts, Read(::GetLocalTime));
}

TEST(DateTime, TakesAnyIntegerForSecondsAndATruthValueForAClock) {
    const DT expected(1970, 1, 1, 0, 1, 5, 0);
    EXPECT_EQ(expected, DT(65));
    EXPECT_EQ(expected, DT(65ull));
    EXPECT_EQ(expected, CQELUTCDateTime(65));
    EXPECT_NE(1970, DT(true).Year());
}

// --- Texts ---------------------------------------------------------------------------------------

TEST(DateTime, HasTextsOfFixedFormInEitherOrder) {
    const DT value(2024, 3, 5, 9, 5, 7, 3);
    EXPECT_STREQ(" 5.03.2024 09:05:07", value.TextDateTime(0, 1, 0));
    EXPECT_STREQ(" 9:05:07 05.03.2024", value.TextDateTime(1, 0, 1));
    EXPECT_STREQ(" 09:05:07", value.TextDateTime(2, 1, 0));  // no text, and the blank
    for (const int order : {2, 7, -1}) EXPECT_STREQ("", value.TextDateTime(1, 1, order));
    for (const int form : {2, 6, -1}) EXPECT_STREQ("", value.TextDate(form));
    for (const int form : {2, 4, -1}) EXPECT_STREQ("", value.TextTime(form));
}

TEST(DateTime, HasTextsOfTheUsersLocale) {
    const SYSTEMTIME st = {2024, 3, 0, 5, 9, 5, 7, 3};
    constexpr DWORD kFlags[] = {DATE_SHORTDATE, DATE_LONGDATE, DATE_YEARMONTH};
    char expected[100] = "";
    for (int form = 3; form <= 5; ++form) {
        SCOPED_TRACE(form);
        ::GetDateFormatA(LOCALE_USER_DEFAULT, kFlags[form - 3], &st, nullptr, expected, 100);
        ASSERT_NE(nullptr, std::strstr(expected, "2024"));
        EXPECT_STREQ(expected, D(2024, 3, 5).TextDate(form));
        EXPECT_STREQ("", D(2024, 13, 5).TextDate(form));
        EXPECT_STREQ("", D(2024 + 65536, 3, 5).TextDate(form));
    }
    ::GetTimeFormatA(LOCALE_USER_DEFAULT, LOCALE_NOUSEROVERRIDE, &st, nullptr, expected, 100);
    EXPECT_STREQ(expected, T(9, 5, 7, 3).TextTime(3));
    EXPECT_STREQ("", T(24, 0, 0, 0).TextTime(3));
    EXPECT_STREQ("", T(9 + 65536, 0, 0, 0).TextTime(3));
    EXPECT_STREQ("", T(9, 0, 0, 1000).TextTime(3));
}

TEST(LocaleText, IsEmptyWhereThePlatformRefuses) {
    const SYSTEMTIME st = {2024, 3, 0, 5, 9, 5, 7, 0}, impossible = {2024, 13, 0, 5, 24, 0, 0, 0};
    EXPECT_STREQ("05.03.2024", GetDateFormatLocaleUserDefault(DATE_SHORTDATE, &st));
    EXPECT_STREQ("", GetDateFormatLocaleUserDefault(DATE_SHORTDATE | DATE_LONGDATE, &st));
    EXPECT_STREQ("", GetDateFormatLocaleUserDefault(DATE_SHORTDATE, &impossible));
    EXPECT_STRNE("", GetTimeFormatLocaleUserDefault(&st));
    EXPECT_STREQ("", GetTimeFormatLocaleUserDefault(&impossible));
}

TEST(Locale, IsRussianAsTheResourceSays) {
    CQELLocaleInfo info;
    info.language_id = -5;
    EXPECT_EQ(1, CQELGetLocale(&info));
    EXPECT_EQ(0, info.language_id);
    EXPECT_STREQ("RUS", info.language_tag);
    EXPECT_EQ(0, CQELGetLocale(nullptr));
}

}  // namespace
