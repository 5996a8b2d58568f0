#include <gtest/gtest.h>

#include "datetime/file_time.h"
#include "datetime/zone.h"

const Zone kZone = {0, false};

namespace {

TEST(FileTimeInUtc, DropsFractionsOfASecond) {
    const struct {
        std::uint64_t ticks;
        CQELDateTime reading;
    } cases[] = {
        {116444736000000000, CQELDateTime(1970, 1, 1, 0, 0, 0, 0)},
        {125911584000000000, CQELDateTime(2000, 1, 1, 0, 0, 0, 0)},
        {125911584009999999, CQELDateTime(2000, 1, 1, 0, 0, 0, 0)},
        {125911584010000000, CQELDateTime(2000, 1, 1, 0, 0, 1, 0)},
        {133497936000000000, CQELDateTime(2024, 1, 15, 12, 0, 0, 0)},
        {133655184000000000, CQELDateTime(2024, 7, 15, 12, 0, 0, 0)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.ticks);
        EXPECT_EQ(c.reading, FILETIME_2_QELDateTime(CQELFileTime(c.ticks), true));
        EXPECT_EQ(c.reading, FILETIME_2_QELDateTime(CQELFileTime(c.ticks), false));
    }
}

}  // namespace
