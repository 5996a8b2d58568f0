#include <gtest/gtest.h>

#include "datetime/file_time.h"
#include "datetime/zone.h"

const Zone kZone = {3 * 3600, false};

namespace {

TEST(FileTimeInMoscow, IsThreeHoursFromUtcAndBack) {
    const CQELFileTime noon(133655184000000000);  // 15 July 2024, 12:00 UTC
    const CQELDateTime local(2024, 7, 15, 15, 0, 0, 0), utc(2024, 7, 15, 12, 0, 0, 0);
    EXPECT_EQ(local, FILETIME_2_QELDateTime(noon, true));
    EXPECT_EQ(utc, FILETIME_2_QELDateTime(noon, false));
    EXPECT_EQ(noon, CQELFileTime(local));
    EXPECT_EQ(noon, QELDateTime_2_FILETIME(utc, false));
}

// 1 January 1970, 01:30 local time, is 22:30 of the year before in UTC.
TEST(FileTimeInMoscow, ReadsTheFirstHoursOf1970) {
    const std::uint64_t ticks = 116444736000000000 - 5400ull * 10000000;
    EXPECT_EQ(CQELDateTime(1970, 1, 1, 1, 30, 0, 0),
              FILETIME_2_QELDateTime(CQELFileTime(ticks), true));
}

}  // namespace
