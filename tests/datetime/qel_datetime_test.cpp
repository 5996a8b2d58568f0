#include "datetime/qel_datetime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "datetime/ordering.h"
#include "platform/windows.h"

namespace {

CQELDateTime Read(void(WINAPI* clock)(SYSTEMTIME*)) {
    SYSTEMTIME now;
    clock(&now);
    return CQELDateTime(now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
                        now.wMilliseconds);
}

TEST(DateTime, ReadsTheLocalAndTheUtcClock) {
    CQELDateTime before = Read(::GetLocalTime);
    EXPECT_LE(before, CQELDateTime(true));
    EXPECT_LE(CQELDateTime(true), Read(::GetLocalTime));
    before = Read(::GetSystemTime);
    EXPECT_LE(before, CQELDateTime(false));
    const CQELUTCDateTime utc;
    EXPECT_LE(before, utc);
    EXPECT_LE(utc, Read(::GetSystemTime));
}

TEST(DateTime, HasPartsThatReadTheLocalClock) {
    CQELDateTime before(true), parts(true);
    do {  // on one day
        before = Read(::GetLocalTime);
        static_cast<CQELDate&>(parts) = CQELDate();
        static_cast<CQELTime&>(parts) = CQELTime();
    } while (before.Day() != CQELDate().Day());
    EXPECT_LE(before, parts);
    EXPECT_LE(parts, Read(::GetLocalTime));
}

TEST(DateTime, TakesAnyIntegerForSecondsAndATruthValueForAClock) {
    const CQELDateTime expected(1970, 1, 1, 0, 1, 5, 0);
    EXPECT_EQ(expected, CQELDateTime(65));
    EXPECT_EQ(expected, CQELDateTime(65u));
    EXPECT_EQ(expected, CQELDateTime(65l));
    EXPECT_EQ(expected, CQELDateTime(65ull));
    EXPECT_EQ(expected, CQELUTCDateTime(65));
    EXPECT_NE(1970, CQELDateTime(true).Year());
}

TEST(DateTime, OrdersByDateThenByTime) {
    using D = CQELDateTime;
    ExpectOrder({D(2024, 3, 4, 23, 59, 59, 999), D(2024, 3, 5, 0, 0, 0, 0),
                 D(2024, 3, 5, 9, 5, 7, 3), D(2024, 3, 5, 9, 5, 7, 4), D(2024, 3, 6, 0, 0, 0, 0)});
}

TEST(DateTime, IsValidWhenBothPartsAre) {
    EXPECT_TRUE(CQELDateTime(1971, 1, 2, 0, 0, 0, 0).IsValid());
    EXPECT_TRUE(CQELDateTime(2037, 12, 31, 23, 59, 59, 999).IsValid());
    EXPECT_FALSE(CQELDateTime(1971, 1, 1, 12, 0, 0, 0).IsValid());
    EXPECT_FALSE(CQELDateTime(2024, 3, 5, 24, 0, 0, 0).IsValid());
}

TEST(DateTime, JoinsTheTextsOfItsPartsInEitherOrder) {
    const CQELDateTime value(2024, 3, 5, 9, 5, 7, 3);
    EXPECT_STREQ(" 5.03.2024 09:05:07", value.TextDateTime(0, 1, 0));
    EXPECT_STREQ(" 9:05:07 05.03.2024", value.TextDateTime(1, 0, 1));
    EXPECT_STREQ(" 09:05:07", value.TextDateTime(2, 1, 0));  // no text, and the blank
    for (const int order : {2, 7, -1}) EXPECT_STREQ("", value.TextDateTime(1, 1, order));
}

// A program that was built against the library knows where the parts of an object are.
static_assert(std::has_virtual_destructor_v<CQELDate> && std::has_virtual_destructor_v<CQELTime>);

TEST(DateTime, KeepsItsTwoPartsWhereProgramsExpectThem) {
    const CQELUTCDateTime value;
    const auto* const start = reinterpret_cast<const char*>(&value);
    EXPECT_EQ(start, reinterpret_cast<const char*>(static_cast<const CQELDate*>(&value)));
    EXPECT_EQ(start + 24, reinterpret_cast<const char*>(static_cast<const CQELTime*>(&value)));
    EXPECT_EQ(value.Day(), *reinterpret_cast<const int*>(start + 8));
    EXPECT_EQ(value.Hour(), *reinterpret_cast<const int*>(start + 24 + 8));
}

}  // namespace
