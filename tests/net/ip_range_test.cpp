#include "net/ip_range.h"

#include <gtest/gtest.h>

namespace {

using Range = CQELRangeIP;

TEST(Range, TakesTheHalvesOfANumber) {
    EXPECT_EQ(0u, Range().from + Range().to);
    const Range range(std::uint64_t{0x0000000900000005});
    EXPECT_EQ(5u, range.from);
    EXPECT_EQ(9u, range.to);
}

TEST(Range, NormalisesPointsOnly) {
    const struct {
        Range range;
        bool point;
        ulong32 to;
    } cases[] = {
        {{0, 0}, true, 0},  {{5, 0}, true, 5},  {{5, 5}, true, 5},
        {{5, 9}, false, 9}, {{5, 4}, false, 4},
    };
    for (auto c : cases) {
        EXPECT_EQ(c.point, c.range.IsPoint());
        c.range.Normalize();
        EXPECT_EQ(c.to, c.range.to);
    }
}

TEST(Range, ComparesCrossesAndIncludes) {
    // clang-format off
    const struct {
        Range a, b;
        bool equal, less, greater, cross, crossed, within, around;
    } cases[] = {
        // a        b         ==  a<b b<a  cross both ways  a in b, b in a
        {{10, 0}, {10, 10},   true, false, false, true, true, true, true},
        {{10, 0}, {11, 0},    false, true, false, false, false, false, false},
        {{5, 0}, {1, 10},     false, false, true, true, true, true, false},
        {{1, 0}, {1, 10},     false, true, false, true, true, true, false},
        {{10, 0}, {1, 10},    false, false, true, true, true, true, false},
        {{11, 0}, {1, 10},    false, false, true, false, false, false, false},
        {{3, 4}, {1, 10},     false, false, true, true, true, true, false},
        {{1, 10}, {1, 10},    true, false, false, true, true, true, true},
        {{1, 10}, {1, 11},    false, true, false, true, true, true, false},
        {{1, 5}, {5, 9},      false, true, false, true, true, false, false},
        {{1, 4}, {5, 9},      false, true, false, false, false, false, false},
        {{0, 0xFFFFFFFF}, {0xFFFFFFFF, 0}, false, true, false, true, true, false, true},
        // (7, 3) and (9, 3) are inverted
        {{7, 3}, {7, 3},      true, false, false, true, true, true, true},
        {{7, 3}, {7, 0},      false, false, true, false, false, false, false},
        {{7, 3}, {1, 5},      false, false, true, true, false, false, false},
        {{7, 3}, {6, 9},      false, false, true, true, true, false, false},
        {{7, 3}, {1, 9},      false, false, true, true, true, true, false},
        {{7, 3}, {9, 3},      false, true, false, false, false, false, false},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.a.from << "-" << c.a.to << " and " << c.b.from << "-" << c.b.to);
        EXPECT_EQ(c.equal, c.a == c.b);
        EXPECT_EQ(c.less, c.a < c.b);
        EXPECT_EQ(c.greater, c.b < c.a);
        EXPECT_EQ(c.cross, c.a.IsCross(c.b));
        EXPECT_EQ(c.crossed, c.b.IsCross(c.a));
        EXPECT_EQ(c.within, c.a.IsInclude(c.b));
        EXPECT_EQ(c.around, c.b.IsInclude(c.a));
    }
}

}  // namespace
