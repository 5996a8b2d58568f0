#include "base/code_table.h"

#include <gtest/gtest.h>

namespace {

constexpr kit::CodeRow kRows[] = {{2, 2, 20}, {5, 7, 50}, {0x80000000, 0xFFFFFFFF, 9}};

TEST(CodeTable, FindsRangesTheirEndsAndTheGapsBetween) {
    const struct {
        std::uint32_t code, value;
    } cases[] = {{0, 36}, {1, 36}, {2, 20}, {3, 36},          {4, 36},         {5, 50},
                 {6, 50}, {7, 50}, {8, 36}, {0x7FFFFFFF, 36}, {0x80000000, 9}, {0xFFFFFFFF, 9}};
    for (const auto& c : cases) EXPECT_EQ(c.value, kit::Convert(kRows, c.code, 36)) << c.code;
}

TEST(CodeTable, OrderCheckRefusesWhatSearchingByHalvesWouldMiss) {
    constexpr kit::CodeRow descending[] = {{5, 5, 0}, {2, 2, 0}};
    constexpr kit::CodeRow overlapping[] = {{2, 5, 0}, {5, 6, 0}};
    constexpr kit::CodeRow reversed[] = {{5, 2, 0}};
    EXPECT_TRUE(kit::IsOrdered(kRows));
    EXPECT_FALSE(kit::IsOrdered(descending));
    EXPECT_FALSE(kit::IsOrdered(overlapping));
    EXPECT_FALSE(kit::IsOrdered(reversed));
}

}  // namespace
