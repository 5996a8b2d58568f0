#include "net/ip_range_list.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "net/range_lists.h"

namespace {

constexpr ulong32 kLast = 0xFFFFFFFF;

struct Removal {
    CQELRangeIPList list, taken, left;
};

TEST(TakeRanges, ErasesTrimsAndCuts) {
    const Removal cases[] = {
        {Ranges({{1, 10}}), Ranges({{5, 5}}), Ranges({{1, 4}, {6, 10}})},
        {Ranges({{1, 10}}), Ranges({{5, 0}}), Ranges({{1, 4}, {6, 10}})},
        {Ranges({{3, 4}}), Ranges({{1, 10}}), Ranges({})},
        {Ranges({{5, 0}, {5, 5}, {6, 0}}), Ranges({{5, 0}}), Ranges({{6, 0}})},
        {Ranges({{5, 10}}), Ranges({{1, 6}}), Ranges({{7, 10}})},
        {Ranges({{5, 10}}), Ranges({{9, 20}}), Ranges({{5, 8}})},
        {Ranges({{5, 10}}), Ranges({{5, 7}}), Ranges({{8, 10}})},
        {Ranges({{5, 10}}), Ranges({{5, 0}}), Ranges({{6, 10}})},
        {Ranges({{5, 10}}), Ranges({{10, 0}}), Ranges({{5, 9}})},
        {Ranges({{5, 10}}), Ranges({{11, 20}, {4, 0}}), Ranges({{5, 10}})},
        {Ranges({{5, 10}}), Ranges({{5, 10}}), Ranges({})},
        {Ranges({{0, kLast}}), Ranges({{0, 0}, {kLast, 0}}), Ranges({{1, kLast - 1}})},
        // Pieces go to the end, in the order of the ranges that are cut, and are cut themselves.
        {Ranges({{1, 9}, {0, 20}}), Ranges({{5, 0}, {8, 0}}),
         Ranges({{1, 4}, {0, 4}, {6, 7}, {6, 7}, {9, 9}, {9, 20}})},
        // An inverted range takes its bounds, and is taken where its `from` lies.
        {Ranges({{1, 10}}), Ranges({{7, 3}}), Ranges({{1, 6}, {4, 6}})},
        {Ranges({{7, 3}}), Ranges({{6, 8}}), Ranges({{9, 3}})},
        {Ranges({{7, 3}}), Ranges({{7, 0}}), Ranges({{7, 3}})},
    };
    for (const auto& c : cases) {
        auto list = c.list;
        EXPECT_EQ(Bits(c.left), Bits(list -= c.taken)) << testing::PrintToString(Bits(c.taken));
    }
    auto list = Ranges({{1, 10}, {5, 20}, {7, 0}});
    list -= list;
    EXPECT_EQ(Bits(Ranges({})), Bits(list));
}

TEST(TakeRanges, LosesTheRangeWhenTheEndsAgree) {
    const Removal cases[] = {
        {Ranges({{1, 10}}), Ranges({{8, 10}}), Ranges({{1, 0}})},
        {Ranges({{5, 10}}), Ranges({{8, 10}}), Ranges({{5, 4}})},
        {Ranges({{0, 10}}), Ranges({{8, 10}}), Ranges({{0, kLast}})},
        {Ranges({{1, 10}}), Ranges({{8, 10}, {1, 0}}), Ranges({})},
    };
    for (const auto& c : cases) {
        auto list = c.list;
        EXPECT_EQ(Bits(c.left), Bits(list -= c.taken)) << testing::PrintToString(Bits(c.taken));
    }
    EXPECT_EQ(1, Ranges({{1, 0}}).Size());  // what is left of (1, 10) without (8, 10)
}

TEST(Sets, GoByEqualityAlone) {
    auto sum = Ranges({{5, 0}, {1, 9}});
    sum += Ranges({{5, 5}, {1, 8}, {7, 0}, {7, 7}, {1, 9}});
    EXPECT_EQ(Bits(Ranges({{5, 0}, {1, 9}, {1, 8}, {7, 0}})), Bits(sum));
    auto difference = Ranges({{3, 0}, {5, 0}, {1, 9}, {3, 3}, {1, 8}, {1, 9}});
    difference.Subtract(Ranges({{5, 5}, {1, 10}}));
    EXPECT_EQ(Bits(Ranges({{3, 0}, {1, 9}, {1, 8}})), Bits(difference));
}

TEST(RemovePoints, TrimsCutsAndErases) {
    const struct {
        CQELRangeIPList list;
        CQELLongList points;
        bool changed;
        CQELRangeIPList left;
    } cases[] = {
        {Ranges({{1, 10}}), Addresses({1, 10, 5}), true, Ranges({{2, 4}, {6, 9}})},
        {Ranges({{1, 10}, {3, 0}}), Addresses({3, 3}), true, Ranges({{1, 2}, {4, 10}})},
        {Ranges({{1, 3}}), Addresses({1, 2, 3}), true, Ranges({})},
        {Ranges({{1, 10}}), Addresses({5, 7, 6}), true, Ranges({{1, 4}, {8, 10}})},
        {Ranges({{1, 10}}), Addresses({0, 11}), false, Ranges({{1, 10}})},
        {Ranges({{7, 3}}), Addresses({7, 5, 3}), false, Ranges({{7, 3}})},
        {Ranges({{kLast - 1, kLast}}), Addresses({kLast}), true, Ranges({{kLast - 1, kLast - 1}})},
        {Ranges({{0, 1}}), Addresses({1}), true, Ranges({{0, 0}})},
        {Ranges({}), Addresses({1}), false, Ranges({})},
    };
    for (const auto& c : cases) {
        auto list = c.list;
        EXPECT_EQ(c.changed, list.RemovePoints(c.points));
        EXPECT_EQ(Bits(c.left), Bits(list));
    }
}

constexpr ulong32 kMask8 = 0xFFFFFF00;  // nets of 256 addresses

TEST(RemoveSubnets, ErasesTrimsAndCutsBeforeTheRange) {
    const Removal cases[] = {
        {Ranges({{0x100, 0x4FF}}), Ranges({{0x2AA, kMask8}}),
         Ranges({{0x300, 0x4FF}, {0x100, 0x1FF}})},
        {Ranges({{0x180, 0x2FF}}), Ranges({{0x100, kMask8}}), Ranges({{0x200, 0x2FF}})},
        {Ranges({{0x180, 0x280}}), Ranges({{0x200, kMask8}}), Ranges({{0x180, 0x1FF}})},
        {Ranges({{0x180, 0x1FF}, {0x1FF, 0}, {0x200, 0}}), Ranges({{0x100, kMask8}}),
         Ranges({{0x200, 0}})},
        {Ranges({{0x100, 0x5FF}}), Ranges({{0x200, kMask8}, {0x400, kMask8}}),
         Ranges({{0x500, 0x5FF}, {0x300, 0x3FF}, {0x100, 0x1FF}})},
        {Ranges({{0xFFFFFE00, kLast}}), Ranges({{0xFFFFFF00, kMask8}}),
         Ranges({{0xFFFFFE00, 0xFFFFFEFF}})},
        // An inverted range goes with the net that holds both its bounds.
        {Ranges({{0x1F0, 0x110}, {0x2F0, 0x110}}), Ranges({{0x100, kMask8}}),
         Ranges({{0x2F0, 0x110}})},
    };
    for (const auto& c : cases) {
        auto list = c.list;
        EXPECT_TRUE(list.RemoveSubnets(c.taken));
        EXPECT_EQ(Bits(c.left), Bits(list)) << testing::PrintToString(Bits(c.taken));
    }
    auto list = Ranges({{0x100, 0x1FF}});
    EXPECT_FALSE(list.RemoveSubnets(Ranges({{0x200, kMask8}})));
    EXPECT_EQ(Bits(Ranges({{0x100, 0x1FF}})), Bits(list));
}

TEST(RemoveSubnets, TakesTheZeroNetOnlyWithAnother) {
    auto list = Ranges({{0x10, 0}, {0x110, 0}});
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

TEST(IsCross, AsksWholeLists) {
    const auto list = Ranges({{5, 0}, {0x100, 0x300}});
    EXPECT_TRUE(list.IsCross(Ranges({{9, 0}, {1, 5}})));
    EXPECT_FALSE(list.IsCross(Ranges({{6, 0xFF}, {0x301, 0}})));
    EXPECT_TRUE(list.IsCrossPoints(Addresses({4, 0x300})));
    EXPECT_FALSE(list.IsCrossPoints(Addresses({4, 6, 0, 0x301})));
    EXPECT_TRUE(list.IsCrossSubnets(Ranges({{0x211, kMask8}})));
    EXPECT_FALSE(list.IsCrossSubnets(Ranges({{0x400, kMask8}})));
    EXPECT_FALSE(list.IsCrossSubnets(Ranges({{5, kMask8}, {0, 0}})));  // the zero net
    EXPECT_FALSE(Ranges({}).IsCross(list));
}

TEST(Cross, AppendsTheFirstOverlapUpperEndFirst) {
    const auto list = Ranges({{0, 2}, {1, 3}, {2, 9}});
    auto out = Addresses({77});
    EXPECT_TRUE(list.Cross(Ranges({{20, 30}, {3, 4}}), out));
    EXPECT_EQ(Addresses({77, 3, 1}), out);
    EXPECT_FALSE(list.Cross(Ranges({{20, 30}}), out));
    EXPECT_EQ(Addresses({77, 3, 1}), out);
    // By their bounds: (5, 0) holds no address, but (5, 6) begins at it and ends above 0.
    EXPECT_FALSE(Ranges({{5, 0}}).Cross(Ranges({{6, 7}}), out));
    EXPECT_TRUE(Ranges({{5, 0}}).Cross(Ranges({{5, 6}}), out));
    EXPECT_EQ(Addresses({77, 3, 1, 0, 5}), out);
}

TEST(Cross, MakesTheListOfCrossingPoints) {
    auto points = Addresses({9, 5, 5, 20, 2});
    auto out = Addresses({77});
    const auto list = Ranges({{5, 0}, {8, 9}, {2, 0}});
    EXPECT_TRUE(list.Cross(points, out));
    EXPECT_EQ(Addresses({9, 5, 2}), out);
    EXPECT_TRUE(list.Cross(points, points));
    EXPECT_EQ(Addresses({9, 5, 2}), points);
    EXPECT_FALSE(list.Cross(Addresses({6}), out));
    EXPECT_TRUE(out.empty());
}

TEST(GetCrossRange, ListsIntersectionsOnce) {
    auto out = Ranges({{7, 7}});
    EXPECT_TRUE(
        Ranges({{1, 10}, {5, 0}, {20, 30}}).GetCrossRange(Ranges({{25, 40}, {5, 8}, {8, 0}}), out));
    EXPECT_EQ(Bits(Ranges({{25, 30}, {5, 8}, {5, 5}, {8, 8}})), Bits(out));
    EXPECT_FALSE(Ranges({{1, 10}}).GetCrossRange(Ranges({{11, 12}}), out));
    EXPECT_TRUE(out.empty());
    auto self = Ranges({{1, 4}, {3, 0}});
    EXPECT_TRUE(self.GetCrossRange(self, self));
    EXPECT_EQ(Bits(Ranges({{1, 4}, {3, 3}})), Bits(self));
}

TEST(GetSubnetIPL, KeepsTheAddressesOfTheSubnets) {
    const auto subnets = Ranges({{0x101, kMask8}, {0x0A000001, 0xFF0000FF}});
    auto list = Addresses({0x1FF, 0x200, 0x0A777701, 0x1FF, 0x0A000002});
    EXPECT_TRUE(subnets.GetSubnetIPL(list));
    EXPECT_EQ(Addresses({0x1FF, 0x0A777701, 0x1FF}), list);
    EXPECT_FALSE(subnets.GetSubnetIPL(list));
    EXPECT_TRUE(Ranges({}).GetSubnetIPL(list));
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(Ranges({}).GetSubnetIPL(list));
}

TEST(GetList, ExpandsRangesAndOnlyNormalisedPoints) {
    const struct {
        CQELRangeIPList list;
        CQELLongList addresses;
    } cases[] = {
        {Ranges({{5, 7}, {6, 6}}), Addresses({5, 6, 7, 6})},
        {Ranges({{5, 0}, {9, 3}}), Addresses({})},
        {Ranges({{0, 0}}), Addresses({0})},
        {Ranges({{kLast - 1, kLast}, {kLast, kLast}}), Addresses({kLast - 1, kLast, kLast})},
    };
    for (auto c : cases) {
        auto out = Addresses({77});
        c.list.GetList(out);
        EXPECT_EQ(c.addresses, out);
    }
}

TEST(SetList, MakesPointsOfAllButZero) {
    auto list = Ranges({{1, 2}});
    list.SetList(Addresses({5, 0, 7, 5}));
    EXPECT_EQ(Bits(Ranges({{5, 5}, {7, 7}, {5, 5}})), Bits(list));
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
    const struct {
        CQELRangeIPList list;
        int size;
    } cases[] = {
        {Ranges({}), 0},
        {Ranges({{5, 0}, {5, 5}, {0, 0}}), 3},
        {Ranges({{5, 7}, {5, 7}}), 6},
        {Ranges({{7, 5}}), 0},
        {Ranges({{0, kLast}}), 0},
        {Ranges({{1, kLast}}), -1},
        {Ranges({{0, kLast}, {1, 2}}), 2},
    };
    for (const auto& c : cases) EXPECT_EQ(c.size, c.list.Size());
}

TEST(IsPoint, HoldsForNothingAndForOnePoint) {
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

}  // namespace
