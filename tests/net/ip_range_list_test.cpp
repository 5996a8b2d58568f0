// What range_model_test.cpp leaves out, and its strangest results worked out by hand.

#include "net/ip_range_list.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "net/range_lists.h"

namespace {

constexpr ulong32 kLast = 0xFFFFFFFF;
constexpr ulong32 kMask8 = 0xFFFFFF00;  // nets of 256 addresses

using R = std::vector<std::pair<ulong32, ulong32>>;
using A = std::vector<ulong32>;

struct Removal {
    R list, taken, left;
};

template <typename Operation, std::size_t N>
void ExpectLeft(const Removal (&cases)[N], Operation remove) {
    for (const auto& [before, taken, left] : cases) {
        auto list = Ranges(before);
        remove(list, Ranges(taken));
        EXPECT_EQ(Bits(Ranges(left)), Bits(list)) << "case " << &left - &cases[0].left;
    }
}

constexpr auto kTake = [](auto& list, const auto& taken) { list -= taken; };

TEST(TakeRanges, CutsPiecesThatGoToTheEndAndAreCutThemselves) {
    const Removal cases[] = {
        {{{1, 9}, {0, 20}}, {{5, 0}, {8, 0}}, {{1, 4}, {0, 4}, {6, 7}, {6, 7}, {9, 9}, {9, 20}}},
        {{{5, 10}}, {{9, 20}, {4, 5}}, {{6, 8}}},
        // An inverted range takes its bounds, and is taken where its `from` lies.
        {{{1, 10}}, {{7, 3}}, {{1, 6}, {4, 6}}},
        {{{7, 3}}, {{6, 8}}, {{9, 3}}},
    };
    ExpectLeft(cases, kTake);
}

TEST(TakeRanges, LosesTheRangeWhenTheEndsAgree) {
    const Removal cases[] = {
        {{{1, 10}}, {{8, 10}}, {{1, 0}}},
        {{{5, 10}}, {{8, 10}}, {{5, 4}}},
        {{{0, 10}}, {{8, 10}}, {{0, kLast}}},
        {{{1, 10}}, {{8, 10}, {1, 0}}, {}},
    };
    ExpectLeft(cases, kTake);
}

TEST(RemoveSubnets, CutsBeforeTheRange) {
    const Removal cases[] = {
        {{{0x100, 0x4FF}}, {{0x2AA, kMask8}}, {{0x300, 0x4FF}, {0x100, 0x1FF}}},
        {{{0xFFFFFE00, kLast}}, {{0xFFFFFF00, kMask8}}, {{0xFFFFFE00, 0xFFFFFEFF}}},
        // An inverted range goes with the net that holds both its bounds.
        {{{0x1F0, 0x110}, {0x2F0, 0x110}}, {{0x100, kMask8}}, {{0x2F0, 0x110}}},
    };
    ExpectLeft(cases, [](auto& list, const auto& nets) { EXPECT_TRUE(list.RemoveSubnets(nets)); });
}

TEST(RemoveSubnets, TakesTheZeroNetOnlyWithAnother) {
    auto list = Ranges({{0x10, 0}, {0x110, 0}});
    EXPECT_FALSE(list.IsCrossSubnets(Ranges({{0x20, kMask8}, {0, 0}})));
    EXPECT_FALSE(list.RemoveSubnets(Ranges({{0x20, kMask8}})));
    EXPECT_EQ(2u, list.size());
    EXPECT_TRUE(list.RemoveSubnets(Ranges({{0x20, kMask8}, {0x100, kMask8}})));
    EXPECT_TRUE(list.empty());
}

TEST(IsCross, FindsTheFirstRangeButTheSkippedOnes) {
    const auto list = Ranges({{5, 0}, {1, 10}, {5, 9}});
    const CQELRangeIP point(5, 5), whole(1, 10);
    EXPECT_EQ(&list.front(), list.IsCross(point, nullptr));
    EXPECT_EQ(&list[1], list.IsCross(point, &point));
    EXPECT_EQ(&list[2], list.IsCross(CQELRangeIP(9, 20), &whole));
    EXPECT_EQ(nullptr, list.IsCross(CQELRangeIP(11, 20), nullptr));
}

TEST(Cross, AppendsTheFirstOverlapUpperEndFirst) {
    const auto list = Ranges({{0, 2}, {1, 3}, {2, 9}});
    auto out = Addresses({77});
    EXPECT_TRUE(list.Cross(Ranges({{20, 30}, {3, 4}}), out));
    EXPECT_EQ(Addresses({77, 3, 1}), out);
    EXPECT_FALSE(list.Cross(Ranges({{20, 30}}), out));
    // By their bounds: (5, 0) holds no address, but (5, 6) begins at it and ends above 0.
    EXPECT_FALSE(Ranges({{5, 0}}).Cross(Ranges({{6, 7}}), out));
    EXPECT_TRUE(Ranges({{5, 0}}).Cross(Ranges({{5, 6}}), out));
    EXPECT_EQ(Addresses({77, 3, 1, 0, 5}), out);
}

TEST(GetList, ExpandsRangesAndOnlyNormalisedPoints) {
    const std::pair<R, A> cases[] = {
        {{{5, 7}, {6, 6}}, {5, 6, 7, 6}},
        {{{5, 0}, {9, 3}}, {}},
        {{{0, 0}}, {0}},
        {{{kLast - 1, kLast}, {kLast, kLast}}, {kLast - 1, kLast, kLast}},
    };
    for (const auto& [list, addresses] : cases) {
        auto out = Addresses({77});
        Ranges(list).GetList(out);
        EXPECT_EQ(Addresses(addresses), out);
    }
    auto points = Ranges({{1, 2}});
    points.SetList(Addresses({5, 0, 7, 5}));  // of all but zero
    EXPECT_EQ(Bits(Ranges({{5, 5}, {7, 7}, {5, 5}})), Bits(points));
}

TEST(Bounds, AreTakenAndSetPairwise) {
    auto list = Ranges({{1, 5}, {7, 7}, {9, 0}});
    auto out = Addresses({77});
    list.Left(out, 0);
    EXPECT_EQ(Addresses({1, 7, 9}), out);
    list.Left(out, 1);
    EXPECT_EQ(Addresses({1, 9}), out);
    list.Right(out, 0);
    EXPECT_EQ(Addresses({5, 7, 0}), out);
    list.Right(out, -1);
    EXPECT_EQ(Addresses({5, 0}), out);
    list.SetLeft(Addresses({2, 3}));
    list.SetRight(Addresses({6, 7, 8, 9}));
    EXPECT_EQ(Bits(Ranges({{2, 6}, {3, 7}, {9, 8}})), Bits(list));
    EXPECT_EQ(Bits(Ranges({{4, 4}, {0, 0}})), Bits(CQELRangeIPList(Addresses({4, 0}))));
    EXPECT_EQ(Bits(Ranges({{4, 1}})), Bits(CQELRangeIPList(Addresses({4, 5}), Addresses({1}))));
}

TEST(Size, CountsAddressesModulo32Bits) {
    const std::pair<R, int> cases[] = {
        {{}, 0},
        {{{5, 0}, {5, 5}, {0, 0}}, 3},
        {{{5, 7}, {5, 7}}, 6},
        {{{7, 5}}, 0},
        {{{0, kLast}}, 0},
        {{{1, kLast}}, -1},
        {{{0, kLast}, {1, 2}}, 2},
        {{{1, 0}}, 1},
    };
    for (const auto& [list, size] : cases) EXPECT_EQ(size, Ranges(list).Size());
    EXPECT_TRUE(Ranges({}).IsPoint());
    EXPECT_TRUE(Ranges({{5, 0}}).IsPoint());
    EXPECT_FALSE(Ranges({{5, 6}}).IsPoint());
    EXPECT_FALSE(Ranges({{5, 0}, {5, 0}}).IsPoint());
}

TEST(Index, GivesADefaultRangeOutsideTheList) {
    auto list = Ranges({{1, 2}, {3, 4}});
    const auto& constant = list;
    list[1].to = 9;
    EXPECT_EQ(9u, constant[1].to);
    EXPECT_TRUE(SameBits(CQELRangeIP(0, 0), constant[2]));
    EXPECT_TRUE(SameBits(CQELRangeIP(0, 0), list[-1]));
    EXPECT_EQ(&list[2], &Ranges({})[0]);
    EXPECT_NE(&list[2], &constant[2]);
}

using Range = CQELRangeIP;

TEST(Range, NormalisesPointsOnly) {
    const std::tuple<Range, bool, ulong32> cases[] = {
        {{0, 0}, true, 0},  {{5, 0}, true, 5},  {{5, 5}, true, 5},
        {{5, 9}, false, 9}, {{5, 4}, false, 4},
    };
    for (auto [range, point, to] : cases) {
        EXPECT_EQ(point, range.IsPoint());
        range.Normalize();
        EXPECT_EQ(to, range.to);
    }
    EXPECT_TRUE(SameBits(Range(5, 9), Range(std::uint64_t{0x0000000900000005})));
}

TEST(Range, ComparesCrossesAndIncludes) {
    // clang-format off
    const std::tuple<Range, Range, bool, bool, bool, bool, bool, bool, bool> cases[] = {
        // a     b          ==     a < b  b < a  cross both ways  a in b b in a
        {{10, 0}, {10, 10}, true,  false, false, true,  true,     true,  true},
        {{1, 10}, {1, 11},  false, true,  false, true,  true,     true,  false},
        {{1, 5},  {5, 9},   false, true,  false, true,  true,     false, false},
        {{1, 4},  {5, 9},   false, true,  false, false, false,    false, false},
        // (7, 3) is inverted
        {{7, 3},  {1, 5},   false, false, true,  true,  false,    false, false},
        {{7, 3},  {6, 9},   false, false, true,  true,  true,     false, false},
        {{7, 3},  {1, 9},   false, false, true,  true,  true,     true,  false},
    };
    // clang-format on
    for (const auto& [a, b, equal, less, greater, cross, crossed, within, around] : cases) {
        const std::tuple expected(equal, less, greater, cross, crossed, within, around);
        EXPECT_EQ(expected, std::tuple(a == b, a < b, b < a, bool{a.IsCross(b)}, bool{b.IsCross(a)},
                                       bool{a.IsInclude(b)}, bool{b.IsInclude(a)}))
            << a.from << '-' << a.to << " and " << b.from << '-' << b.to;
    }
}

}  // namespace
