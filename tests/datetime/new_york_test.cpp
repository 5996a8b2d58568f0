#include <gtest/gtest.h>

#include "datetime/file_time.h"
#include "datetime/tm_datetime.h"
#include "datetime/zone.h"

const Zone kZone = {-5 * 3600, true};

namespace {

const CQELFileTime kWinterNoon(133497936000000000);  // 15 January 2024, 12:00 UTC
const CQELFileTime kSummerNoon(133655184000000000);  // 15 July

// The hour that the platform shows for a moment: by the offset in force today, 7 or 8 at noon.
int ShownHour(const FILETIME& ft) {
    FILETIME local;
    SYSTEMTIME st;
    if (!::FileTimeToLocalFileTime(&ft, &local) || !::FileTimeToSystemTime(&local, &st)) return -1;
    return st.wHour;
}

TEST(FileTimeInNewYork, ReadsWinterEarlyAndUtcSummerLate) {
    const int winter = ShownHour(kWinterNoon), summer = ShownHour(kSummerNoon);
    ASSERT_TRUE(winter == 7 || winter == 8);
    EXPECT_EQ(CQELDateTime(2024, 1, 15, winter - 1, 0, 0, 0),
              FILETIME_2_QELDateTime(kWinterNoon, true));
    EXPECT_EQ(CQELDateTime(2024, 7, 15, summer, 0, 0, 0),
              FILETIME_2_QELDateTime(kSummerNoon, true));
    EXPECT_EQ(CQELDateTime(2024, 1, 15, 12, 0, 0, 0), FILETIME_2_QELDateTime(kWinterNoon, false));
    EXPECT_EQ(CQELDateTime(2024, 7, 15, 13, 0, 0, 0), FILETIME_2_QELDateTime(kSummerNoon, false));
}

TEST(FileTimeInNewYork, IsMadeByTheRulesOfTheDay) {
    EXPECT_EQ(kWinterNoon, CQELFileTime(CQELDateTime(2024, 1, 15, 7, 0, 0, 0)));
    EXPECT_EQ(kSummerNoon, CQELFileTime(CQELDateTime(2024, 7, 15, 8, 0, 0, 0)));
}

// Of 10 March 2024 the hour from 2 to 3 is missing; of 3 November the hour from 1 to 2 comes twice.
TEST(DateTimeInNewYork, CountsHoursAsTheyPass) {
    const std::int64_t eve = CQELDateTime(2024, 3, 9, 12, 0, 0, 0);
    EXPECT_EQ(eve + 23 * 3600, std::int64_t{CQELDateTime(2024, 3, 10, 12, 0, 0, 0)});
    EXPECT_EQ(CQELDateTime(2024, 3, 10, 3, 0, 0, 0), CQELDateTime(eve + 14 * 3600));
    const std::int64_t midnight = CQELDateTime(2024, 11, 3, 0, 0, 0, 0);
    EXPECT_EQ(CQELDateTime(2024, 11, 3, 1, 30, 0, 0), CQELDateTime(midnight + 5400));
    EXPECT_EQ(CQELDateTime(2024, 11, 3, 1, 30, 0, 0), CQELDateTime(midnight + 9000));
}

TEST(TmSummerTime, MovesLocalValuesByAnHourEachTime) {
    QEL::CDateTime value(std::int64_t{1721044800}, true);  // 15 July 2024, 12:00, put ahead
    EXPECT_STREQ("13:00:00", value.TextTime(1));
    value.Minute(30);  // takes the summer time away
    EXPECT_STREQ("13:30:00", value.TextTime(1));
    value.Minute(31);
    EXPECT_STREQ("14:31:00", value.TextTime(1));
    value.Minute(31);  // no change
    EXPECT_STREQ("14:31:00", value.TextTime(1));
    EXPECT_EQ(1, value.DayOfWeek());
    EXPECT_STREQ("15:31:00", value.TextTime(1));
    SYSTEMTIME st;
    QEL::CDateTime(std::int64_t{1704063600}, true).GetAsSystemTime(st);  // 31 December, 23:00
    EXPECT_STREQ("2024 1 0", CQELString().Format("%d %d %d", st.wYear, st.wMonth, st.wHour));
}

TEST(TmSummerTime, MakesLocalValuesThatCountAsStandardTime) {
    const QEL::CDateTime winter(2024, 1, 31, 23, 30, 0, 0, true);
    EXPECT_STREQ("01.02.2024 00:30:00", winter.TextDateTime(1, 1, 0));
    EXPECT_EQ(1706743800, static_cast<long32>(winter));  // 31 January, 23:30
    QEL::CDateTime utc(true);
    winter.GetSystemTime(utc);
    EXPECT_STREQ("01.02.2024 03:30:00", utc.TextDateTime(1, 1, 0));
}

}  // namespace
