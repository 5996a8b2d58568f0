#include <gtest/gtest.h>

#include "datetime/file_time.h"
#include "datetime/zone.h"

const Zone kZone = {0, false};

namespace {

TEST(FileTimeInUtc, DropsFractionsOfASecond) {
    const CQELDateTime year_2000(2000, 1, 1, 0, 0, 0, 0), one_second_later(2000, 1, 1, 0, 0, 1, 0);
    for (const bool local : {true, false}) {
        EXPECT_EQ(year_2000, FILETIME_2_QELDateTime(CQELFileTime(125911584000000000), local));
        EXPECT_EQ(year_2000, FILETIME_2_QELDateTime(CQELFileTime(125911584009999999), local));
        EXPECT_EQ(one_second_later,
                  FILETIME_2_QELDateTime(CQELFileTime(125911584010000000), local));
    }
}

}  // namespace
