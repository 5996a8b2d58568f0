#include "datetime/file_time.h"

#include <gtest/gtest.h>

#include <cstdint>

// What depends on the time zone is in every_zone_test.cpp and new_york_test.cpp.

namespace {

constexpr std::uint64_t kYear2000 = 125911584000000000;  // 1 January, 00:00 UTC

std::uint64_t Ticks(const CQELFileTime& ft) { return ft; }

TEST(FileTime, IsTheTwoWordsOfATickCount) {
    const CQELFileTime ft(0x0123456789ABCDEF);
    EXPECT_EQ(0x89ABCDEFu, ft.dwLowDateTime);
    EXPECT_EQ(0x01234567u, ft.dwHighDateTime);
    EXPECT_EQ(0x0123456789ABCDEFu, Ticks(ft));
    EXPECT_EQ(0u, Ticks(CQELFileTime()));
    EXPECT_EQ(8, ft.GetObjectSize());
}

TEST(FileTime, TakesFileTimesNumbersAndLocalReadings) {
    const FILETIME platform = {7, 1};
    const CQELDateTime local(2000, 1, 1, 12, 0, 0, 0);
    const std::uint64_t local_ticks = Ticks(QELDateTime_2_FILETIME(local, true));
    EXPECT_EQ(0x100000007u, Ticks(CQELFileTime(platform)));
    EXPECT_EQ(local_ticks, Ticks(CQELFileTime(local)));
    CQELFileTime ft;
    EXPECT_EQ(0x100000007u, Ticks(ft = platform));
    EXPECT_EQ(local_ticks, Ticks(ft = local));
    EXPECT_EQ(kYear2000, Ticks(ft = kYear2000));
    const CQELFileTime& same = ft;
    EXPECT_EQ(kYear2000, Ticks(ft = same));
}

TEST(FileTime, ComparesWithEitherKind) {
    const CQELFileTime ascending[] = {CQELFileTime(5), CQELFileTime(7), CQELFileTime(0xFFFFFFFF),
                                      CQELFileTime(0x100000000), CQELFileTime(UINT64_MAX)};
    for (const CQELFileTime& a : ascending) {
        for (const CQELFileTime& b : ascending) {
            const FILETIME& platform = b;
            EXPECT_EQ(&a == &b, a == b);
            EXPECT_EQ(&a != &b, a != b);
            EXPECT_EQ(&a < &b, a < b);
            EXPECT_EQ(&a > &b, a > b);
            EXPECT_EQ(&a == &b, a == platform);
            EXPECT_EQ(&a != &b, a != platform);
            EXPECT_EQ(&a < &b, a < platform);
            EXPECT_EQ(&a > &b, a > platform);
        }
    }
}

TEST(FileTime, AddsAndSubtractsModulo64Bits) {
    const CQELFileTime five(5), seven(7), carry(0xFFFFFFFE);
    const FILETIME& platform = seven;
    EXPECT_EQ(UINT64_MAX - 1, Ticks(five - seven));
    EXPECT_EQ(UINT64_MAX - 1, Ticks(five - platform));
    EXPECT_EQ(0x100000005u, Ticks(carry + seven));
    EXPECT_EQ(0x100000005u, Ticks(carry + platform));
    CQELFileTime ft(UINT64_MAX);
    EXPECT_EQ(6u, Ticks(ft += seven));
    EXPECT_EQ(13u, Ticks(ft += platform));
    EXPECT_EQ(6u, Ticks(ft -= platform));
    EXPECT_EQ(UINT64_MAX, Ticks(ft -= seven));
    EXPECT_EQ(UINT64_MAX - 1, Ticks(ft += ft));
}

TEST(FileTime, TakesAUtcReadingAsItIs) {
    const struct {
        CQELDateTime reading;
        std::uint64_t ticks;
    } cases[] = {
        {CQELDateTime(1601, 1, 1, 0, 0, 0, 0), 0},
        {CQELDateTime(1970, 1, 1, 0, 0, 0, 0), 116444736000000000},
        {CQELDateTime(2000, 1, 1, 0, 0, 0, 999), kYear2000},  // milliseconds are dropped
        {CQELDateTime(2024, 7, 15, 12, 0, 0, 0), 133655184000000000},
        {CQELDateTime(2001, 13, 1, 0, 0, 0, 0), 0},
        {CQELDateTime(2000 + 65536, 1, 1, 0, 0, 0, 0), 0},
        {CQELDateTime(2000, 1, 1, -1, 0, 0, 0), 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.ticks);
        EXPECT_EQ(c.ticks, Ticks(QELDateTime_2_FILETIME(c.reading, false)));
    }
}

}  // namespace
