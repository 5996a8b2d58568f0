#include "datetime/locale_text.h"

#include <gtest/gtest.h>

namespace {

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
    EXPECT_EQ(24u, sizeof info);
    EXPECT_EQ(reinterpret_cast<char*>(&info) + 8, reinterpret_cast<char*>(&info.language_tag));
}

}  // namespace
