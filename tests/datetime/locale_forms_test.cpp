#include "datetime/detail/locale_forms.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

TEST(OldPlatform, IsNtBeforeVersion5) {
    const std::tuple<DWORD, DWORD, bool> cases[] = {
        {2, 4, true}, {2, 3, true}, {2, 5, false}, {2, 10, false}, {1, 4, false}};
    for (const auto& [platform, major, old] : cases) {
        OSVERSIONINFOA version = {};
        version.dwPlatformId = platform;
        version.dwMajorVersion = major;
        EXPECT_EQ(old, kit::IsOldPlatform(version)) << platform << ", " << major;
    }
}

// 0xE3 is the Cyrillic letter ge in code page 1251.
TEST(OldPlatform, GetsMonthAndYearFromAPictureOfOurOwn) {
    const SYSTEMTIME st = {2024, 3, 0, 5, 0, 0, 0, 0};
    char expected[100] = "";
    ASSERT_NE(0, ::GetDateFormatA(LOCALE_USER_DEFAULT, 0, &st, "MMMM yyyy '\xE3.'", expected, 100));
    ASSERT_STREQ(" 2024 \xE3.", expected + 4);
    EXPECT_STREQ(expected, kit::LocaleDateText(DATE_YEARMONTH, &st, true));
    EXPECT_STRNE(expected, kit::LocaleDateText(DATE_YEARMONTH, &st, false));
    EXPECT_STREQ("05.03.2024", kit::LocaleDateText(DATE_SHORTDATE, &st, true));
}

TEST(Language, HasAnIdForEachOfSixTags) {
    const char* const tags[] = {"RUS", "ENU", "ENI", "DEU", "ESP", "FRA"};
    for (int id = 0; id < 6; ++id) EXPECT_EQ(id, kit::LanguageId(tags[id]));
    for (const char* tag : {"rus", "RUSS", "", "ITA"}) EXPECT_EQ(-1, kit::LanguageId(tag)) << tag;
}

}  // namespace
