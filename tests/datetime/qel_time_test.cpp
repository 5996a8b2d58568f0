#include "datetime/qel_time.h"

#include <gtest/gtest.h>

#include "datetime/ordering.h"
#include "platform/windows.h"

namespace {

TEST(Time, IsValidWithinOneDay) {
    using T = CQELTime;
    EXPECT_TRUE(T(0, 0, 0, 0).IsValid());
    EXPECT_TRUE(T(23, 59, 59, 999).IsValid());
    int n = 0;
    for (const T& time : {T(24, 0, 0, 0), T(0, 60, 0, 0), T(0, 0, 60, 0), T(0, 0, 0, 1000),
                          T(-1, 0, 0, 0), T(0, -1, 0, 0), T(0, 0, -1, 0), T(0, 0, 0, -1)}) {
        EXPECT_FALSE(time.IsValid()) << "time " << n++;
    }
}

TEST(Time, OrdersByHourThenMinuteSecondAndMillisecond) {
    using T = CQELTime;
    ExpectOrder({T(-1, 59, 59, 999), T(8, 59, 59, 999), T(9, 4, 59, 999), T(9, 5, 6, 999),
                 T(9, 5, 7, 3), T(9, 5, 7, 4)});
}

TEST(Time, HasTextsOfFixedFormAndOfTheUsersLocale) {
    const CQELTime time(9, 5, 7, 3);
    EXPECT_STREQ(" 9:05:07", time.TextTime(0));
    EXPECT_STREQ("09:05:07", time.TextTime(1));
    for (const int form : {2, 4, -1}) EXPECT_STREQ("", time.TextTime(form));
    const SYSTEMTIME st = {2024, 3, 0, 5, 9, 5, 7, 3};
    char expected[100] = "";
    ASSERT_NE(0, ::GetTimeFormatA(LOCALE_USER_DEFAULT, LOCALE_NOUSEROVERRIDE, &st, nullptr,
                                  expected, 100));
    EXPECT_STREQ(expected, time.TextTime(3));
    EXPECT_STREQ("", CQELTime(24, 0, 0, 0).TextTime(3));
    EXPECT_STREQ("", CQELTime(9 + 65536, 0, 0, 0).TextTime(3));
    EXPECT_STREQ("", CQELTime(9, 0, 0, 1000).TextTime(3));
}

}  // namespace
