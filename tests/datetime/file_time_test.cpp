#include "datetime/file_time.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "datetime/ordering.h"

// What depends on the time zone is in every_zone_test.cpp and new_york_test.cpp.

namespace {

constexpr std::uint64_t kYear2000 = 125911584000000000;  // 1 January, 00:00 UTC

std::uint64_t Ticks(const CQELFileTime& ft) { return ft; }

TEST(FileTime, TakesFileTimesNumbersAndLocalReadings) {
    const CQELFileTime two_words(0x0123456789ABCDEF);
    EXPECT_EQ(0x89ABCDEFu, two_words.dwLowDateTime);
    EXPECT_EQ(0x01234567u, two_words.dwHighDateTime);
    EXPECT_EQ(0u, Ticks(CQELFileTime()));
    EXPECT_EQ(8, two_words.GetObjectSize());
    const FILETIME platform = {7, 1};
    const CQELDateTime local(2000, 1, 1, 12, 0, 0, 0);
    const std::uint64_t local_ticks = Ticks(QELDateTime_2_FILETIME(local, true));
    EXPECT_EQ(0x100000007u, Ticks(CQELFileTime(platform)));
    EXPECT_EQ(local_ticks, Ticks(CQELFileTime(local)));
    CQELFileTime ft;
    EXPECT_EQ(0x100000007u, Ticks(ft = platform));
    EXPECT_EQ(local_ticks, Ticks(ft = local));
    EXPECT_EQ(kYear2000, Ticks(ft = kYear2000));
}

TEST(FileTime, ComparesWithEitherKind) {
    const CQELFileTime ascending[] = {5, 0xFFFFFFFF, 0x100000000, UINT64_MAX};
    ExpectStrictOrder(ascending);
    ExpectStrictOrder<CQELFileTime, FILETIME>(ascending);
}

TEST(FileTime, AddsAndSubtractsModulo64Bits) {
    const CQELFileTime five(5), seven(7), carry(0xFFFFFFFE);
    const FILETIME& platform = seven;
    EXPECT_EQ(UINT64_MAX - 1, Ticks(five - seven));
    EXPECT_EQ(UINT64_MAX - 1, Ticks(five - platform));
    EXPECT_EQ(0x100000005u, Ticks(carry + seven));
    EXPECT_EQ(0x100000005u, Ticks(carry + platform));
    CQELFileTime ft(UINT64_MAX);
    EXPECT_EQ(13u, Ticks((ft += seven) += platform));
    EXPECT_EQ(UINT64_MAX, Ticks((ft -= seven) -= platform));
}

TEST(FileTime, TakesAUtcReadingAsItIs) {
    const auto ticks = [](int year, int month, int hour) {
        return Ticks(QELDateTime_2_FILETIME(CQELDateTime(year, month, 1, hour, 0, 0, 999), false));
    };
    EXPECT_EQ(116444736000000000u, ticks(1970, 1, 0));
    EXPECT_EQ(kYear2000, ticks(2000, 1, 0));  // milliseconds are dropped
    EXPECT_EQ(kYear2000 + 12 * 36000000000, ticks(2000, 1, 12));
    EXPECT_EQ(0u, ticks(2001, 13, 0));
    EXPECT_EQ(0u, ticks(2000 + 65536, 1, 0));
    EXPECT_EQ(0u, ticks(2000, 1, -1));
}

}  // namespace
