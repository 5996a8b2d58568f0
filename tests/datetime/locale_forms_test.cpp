#include "datetime/detail/locale_forms.h"

#include <gtest/gtest.h>

namespace {

TEST(OldPlatform, IsNtBeforeVersion5) {
    const struct {
        DWORD platform, major;
        bool old;
    } cases[] = {{2, 4, true}, {2, 3, true}, {2, 5, false}, {2, 10, false}, {1, 4, false}};
    for (const auto& c : cases) {
        OSVERSIONINFOA version = {};
        version.dwPlatformId = c.platform;
        version.dwMajorVersion = c.major;
        EXPECT_EQ(c.old, kit::IsOldPlatform(version)) << c.platform << ", " << c.major;
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
    const struct {
        const char* tag;
        int id;
    } cases[] = {{"RUS", 0}, {"ENU", 1},  {"ENI", 2},   {"DEU", 3}, {"ESP", 4},
                 {"FRA", 5}, {"rus", -1}, {"RUSS", -1}, {"", -1},   {"ITA", -1}};
    for (const auto& c : cases) EXPECT_EQ(c.id, kit::LanguageId(c.tag)) << c.tag;
}

}  // namespace
