#include <gtest/gtest.h>

#include "datetime/file_time.h"
#include "datetime/zone.h"

const Zone kZone = {3 * 3600, false};

namespace {

TEST(FileTimeInMoscow, IsThreeHoursFromUtcAndBack) {
    const struct {
        std::uint64_t ticks;
        CQELDateTime local, utc;
    } cases[] = {
        {125911584000000000, CQELDateTime(2000, 1, 1, 3, 0, 0, 0),
         CQELDateTime(2000, 1, 1, 0, 0, 0, 0)},
        {133497936000000000, CQELDateTime(2024, 1, 15, 15, 0, 0, 0),
         CQELDateTime(2024, 1, 15, 12, 0, 0, 0)},
        {133655184000000000, CQELDateTime(2024, 7, 15, 15, 0, 0, 0),
         CQELDateTime(2024, 7, 15, 12, 0, 0, 0)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.ticks);
        EXPECT_EQ(c.local, FILETIME_2_QELDateTime(CQELFileTime(c.ticks), true));
        EXPECT_EQ(c.utc, FILETIME_2_QELDateTime(CQELFileTime(c.ticks), false));
        EXPECT_EQ(c.ticks, std::uint64_t{CQELFileTime(c.local)});
        EXPECT_EQ(c.ticks, std::uint64_t{CQELFileTime(QELDateTime_2_FILETIME(c.utc, false))});
    }
}

// 1 January 1970, 01:30 local time, is 22:30 of the year before in UTC.
TEST(FileTimeInMoscow, ReadsTheFirstHoursOf1970) {
    const std::uint64_t ticks = 116444736000000000 - 5400ull * 10000000;
    EXPECT_EQ(CQELDateTime(1970, 1, 1, 1, 30, 0, 0),
              FILETIME_2_QELDateTime(CQELFileTime(ticks), true));
}

}  // namespace
