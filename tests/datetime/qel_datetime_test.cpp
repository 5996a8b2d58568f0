#include "datetime/qel_datetime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "platform/windows.h"

namespace {

using Platform = void(WINAPI*)(SYSTEMTIME*);

CQELDateTime Read(Platform clock) {
    SYSTEMTIME now;
    clock(&now);
    return CQELDateTime(now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
                        now.wMilliseconds);
}

TEST(DateTime, ReadsTheLocalAndTheUtcClock) {
    const CQELDateTime local_before = Read(::GetLocalTime);
    const CQELDateTime utc_before = Read(::GetSystemTime);
    const CQELDateTime local(true), utc(false);
    const CQELUTCDateTime utc_by_default;
    EXPECT_LE(local_before, local);
    EXPECT_LE(local, Read(::GetLocalTime));
    EXPECT_LE(utc_before, utc);
    EXPECT_LE(utc, utc_by_default);
    EXPECT_LE(utc_by_default, Read(::GetSystemTime));
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
    const CQELDateTime ascending[] = {
        CQELDateTime(2024, 3, 4, 23, 59, 59, 999), CQELDateTime(2024, 3, 5, 0, 0, 0, 0),
        CQELDateTime(2024, 3, 5, 9, 5, 7, 3),      CQELDateTime(2024, 3, 5, 9, 5, 7, 4),
        CQELDateTime(2024, 3, 6, 0, 0, 0, 0),
    };
    for (const CQELDateTime& a : ascending) {
        for (const CQELDateTime& b : ascending) {
            EXPECT_EQ(&a < &b, a < b);
            EXPECT_EQ(&a <= &b, a <= b);
            EXPECT_EQ(&a > &b, a > b);
            EXPECT_EQ(&a >= &b, a >= b);
            EXPECT_EQ(&a == &b, a == b);
            EXPECT_EQ(&a != &b, a != b);
        }
    }
}

TEST(DateTime, IsValidWhenBothPartsAre) {
    EXPECT_TRUE(CQELDateTime(1971, 1, 2, 0, 0, 0, 0).IsValid());
    EXPECT_TRUE(CQELDateTime(2037, 12, 31, 23, 59, 59, 999).IsValid());
    EXPECT_FALSE(CQELDateTime(1971, 1, 1, 12, 0, 0, 0).IsValid());
    EXPECT_FALSE(CQELDateTime(2024, 3, 5, 24, 0, 0, 0).IsValid());
}

TEST(DateTime, JoinsTheTextsOfItsPartsInEitherOrder) {
    const CQELDateTime value(2024, 3, 5, 9, 5, 7, 3);
    const struct {
        int date_form, time_form, order;
        const char* text;
    } cases[] = {
        {1, 1, 0, "05.03.2024 09:05:07"},
        {1, 1, 1, "09:05:07 05.03.2024"},
        {0, 0, 0, " 5.03.2024  9:05:07"},
        {1, 1, 7, ""},
        {1, 1, -1, ""},
        {2, 1, 0, " 09:05:07"},
        {1, 2, 0, "05.03.2024 "},
        {2, 2, 1, " "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_STREQ(c.text, value.TextDateTime(c.date_form, c.time_form, c.order));
    }
}

// A program that was built against the library knows where the parts of an object are.
TEST(DateTime, KeepsItsTwoPartsWhereProgramsExpectThem) {
    const CQELUTCDateTime value;
    const auto* const start = reinterpret_cast<const char*>(&value);
    EXPECT_EQ(start, reinterpret_cast<const char*>(static_cast<const CQELDate*>(&value)));
    EXPECT_EQ(start + 24, reinterpret_cast<const char*>(static_cast<const CQELTime*>(&value)));
    EXPECT_EQ(48u, sizeof value);
    EXPECT_EQ(value.Day(), *reinterpret_cast<const int*>(start + 8));
    EXPECT_EQ(value.Hour(), *reinterpret_cast<const int*>(start + 24 + 8));
}

TEST(DateTime, IsDeletedThroughEitherPart) {
    struct Counted : CQELDateTime {
        explicit Counted(int& count) : CQELDateTime(true), destroyed(count) {}
        ~Counted() override { ++destroyed; }
        int& destroyed;
    };
    int destroyed = 0;
    std::unique_ptr<CQELDate>(new Counted(destroyed)).reset();
    std::unique_ptr<CQELTime>(new Counted(destroyed)).reset();
    EXPECT_EQ(2, destroyed);
}

}  // namespace
