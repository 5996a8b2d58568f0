// Every operation on two lists against its literal form, by index and as the library chooses, and
// the set operations against a bitmap. The lists are short, so that everything strange meets
// everything else often: both forms of points, inverted ranges, duplicates, the ends of the
// addresses, masks with holes.

#include <gtest/gtest.h>

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>

#include "net/detail/range_crossing.h"
#include "net/detail/range_removal.h"
#include "net/range_lists.h"

namespace {

constexpr std::uint64_t kAlwaysIndex = 0;

// --- Inputs --------------------------------------------------------------------------------------------

struct Input {
    literal::Ranges a, b, subnets;
    literal::Addresses points, more_points;
};

// What the lists of a run are like.
struct Style {
    const char* name;
    ulong32 base;       // addresses lie from here on, wrapping around,
    ulong32 span;       // this many
    unsigned length;    // of the longest list
    unsigned inverted;  // one range in so many, 0 for none
    int inputs;
};

class InputMaker {
public:
    InputMaker(const Style& style, unsigned seed) : style_(style), random_(seed) {}

    Input Make() {
        Input input;
        input.a = MakeRanges();
        input.b = MakeRanges();
        input.subnets = MakeSubnets();
        input.points = MakePoints();
        input.more_points = MakePoints();
        return input;
    }

private:
    ulong32 Below(ulong32 end) { return static_cast<ulong32>(random_()) % end; }
    ulong32 Address() { return style_.base + Below(style_.span); }

    literal::Range MakeRange() {
        const ulong32 x = Address(), y = Address();
        if (style_.inverted != 0 && Below(style_.inverted) == 0)
            return {(std::max)(x, y), (std::min)(x, y)};
        switch (Below(6)) {
            case 0:
                return {x, 0};
            case 1:
                return {x, x};
            default:
                return {(std::min)(x, y), (std::max)(x, y)};
        }
    }
    literal::Ranges MakeRanges() {
        literal::Ranges ranges;
        for (ulong32 left = Below(style_.length + 1); left > 0; --left) {
            const bool again = !ranges.empty() && Below(8) == 0;
            ranges.push_back(again ? ranges.front() : MakeRange());
        }
        return ranges;
    }
    literal::Ranges MakeSubnets() {
        literal::Ranges subnets;
        for (ulong32 left = Below(style_.length + 1); left > 0; --left) {
            ulong32 mask = ~ulong32{0} << Below(6);
            if (Below(8) == 0) mask = Below(2) != 0 ? 0 : mask ^ ulong32 { 1 } << Below(32);
            subnets.push_back({Address(), mask});
        }
        return subnets;
    }
    literal::Addresses MakePoints() {
        literal::Addresses points;
        for (ulong32 left = Below(style_.length + 1); left > 0; --left) points.push_back(Address());
        return points;
    }

    Style style_;
    std::mt19937 random_;
};

// --- Operations ----------------------------------------------------------------------------------------

// Each returns whether the library's forms agree with the literal one on this input.

bool Adds(const Input& in) {
    auto ranges = in.a;
    auto addresses = in.points;
    literal::Add(ranges, in.b);
    literal::Add(addresses, in.more_points);
    auto our_ranges = Ours(in.a);
    auto our_addresses = Ours(in.points);
    our_ranges += Ours(in.b);
    our_addresses += Ours(in.more_points);
    return SameLists(our_ranges, ranges) && SameLists(our_addresses, addresses);
}

bool RemovesEqual(const Input& in) {
    auto ranges = in.a;
    auto addresses = in.points;
    literal::RemoveList(ranges, in.b);
    literal::RemoveList(addresses, in.more_points);
    auto our_ranges = Ours(in.a);
    auto our_addresses = Ours(in.points);
    our_ranges.RemoveList(Ours(in.b));
    our_addresses -= Ours(in.more_points);
    return SameLists(our_ranges, ranges) && SameLists(our_addresses, addresses);
}

bool Subtracts(const Input& in) {
    auto expected = in.a;
    literal::Subtract(expected, in.b);
    auto ours = Ours(in.a);
    return SameLists(ours.Subtract(Ours(in.b)), expected);
}

bool RemovesRanges(const Input& in) {
    auto expected = in.a;
    literal::RemoveRanges(expected, in.b);
    auto ours = Ours(in.a), indexed = Ours(in.a);
    ours -= Ours(in.b);
    kit::RemoveRanges(indexed, Ours(in.b), kAlwaysIndex);
    return SameLists(ours, expected) && SameLists(indexed, expected);
}

bool RemovesPoints(const Input& in) {
    auto expected = in.a;
    const bool changed = literal::RemovePoints(expected, in.points);
    auto ours = Ours(in.a), indexed = Ours(in.a);
    return ours.RemovePoints(Ours(in.points)) == changed && SameLists(ours, expected) &&
           kit::RemovePoints(indexed, Ours(in.points), kAlwaysIndex) == changed &&
           SameLists(indexed, expected);
}

bool RemovesSubnets(const Input& in) {
    auto expected = in.a;
    const bool changed = literal::RemoveSubnets(expected, in.subnets);
    auto ours = Ours(in.a), indexed = Ours(in.a);
    const auto subnets = Ours(in.subnets);
    const bool crosses = kit::IsCrossSubnets(indexed, subnets, kAlwaysIndex);
    return ours.RemoveSubnets(subnets) == changed && SameLists(ours, expected) &&
           (crosses && kit::RemoveSubnets(indexed, subnets, kAlwaysIndex)) == changed &&
           SameLists(indexed, expected);
}

bool AsksForCrossing(const Input& in) {
    const auto a = Ours(in.a), b = Ours(in.b), subnets = Ours(in.subnets);
    const auto points = Ours(in.points);
    const bool ranges = literal::IsCross(in.a, in.b);
    const bool addresses = literal::IsCrossPoints(in.a, in.points);
    const bool nets = literal::IsCrossSubnets(in.a, in.subnets);
    return a.IsCross(b) == ranges && kit::IsCross(a, b, kAlwaysIndex) == ranges &&
           a.IsCrossPoints(points) == addresses &&
           kit::IsCrossPoints(a, points, kAlwaysIndex) == addresses &&
           a.IsCrossSubnets(subnets) == nets &&
           kit::IsCrossSubnets(a, subnets, kAlwaysIndex) == nets;
}

bool FindsTheFirstOverlap(const Input& in) {
    literal::Addresses expected = in.points;
    const bool found = literal::Cross(in.a, in.b, expected);
    const auto a = Ours(in.a), b = Ours(in.b);
    auto out = Ours(in.points);
    const CQELRangeIP* first = kit::FirstOverlap(a, b, kAlwaysIndex);
    return a.Cross(b, out) == found && SameLists(out, expected) && (first != nullptr) == found &&
           (!found ||
            (first->from == expected.back() && first->to == *std::next(expected.rbegin())));
}

bool CrossesPoints(const Input& in) {
    literal::Addresses expected;
    const bool any = literal::CrossPoints(in.a, in.points, expected);
    const auto a = Ours(in.a);
    const auto points = Ours(in.points);
    auto out = Ours(in.more_points);
    kit::AddressList indexed;
    kit::CrossPoints(a, points, indexed, kAlwaysIndex);
    return a.Cross(points, out) == any && SameLists(out, expected) && SameLists(indexed, expected);
}

bool Intersects(const Input& in) {
    literal::Ranges expected;
    const bool any = literal::GetCrossRange(in.a, in.b, expected);
    const auto a = Ours(in.a), b = Ours(in.b);
    auto out = b;
    kit::RangeList indexed;
    kit::Intersections(a, b, indexed, kAlwaysIndex);
    return a.GetCrossRange(b, out) == any && SameLists(out, expected) &&
           SameLists(indexed, expected);
}

bool FiltersBySubnets(const Input& in) {
    auto expected = in.points;
    const bool changed = literal::GetSubnetIPL(in.subnets, expected);
    auto ours = Ours(in.points), indexed = Ours(in.points);
    return Ours(in.subnets).GetSubnetIPL(ours) == changed && SameLists(ours, expected) &&
           kit::KeepSubnets(Ours(in.subnets), indexed, kAlwaysIndex) == changed &&
           SameLists(indexed, expected);
}

bool WorksOnItself(const Input& in) {
    auto minus = in.a, difference = in.a, sum = in.a, nets = in.subnets;
    literal::RemoveRanges(minus, in.a);
    literal::Subtract(difference, in.a);
    literal::Add(sum, in.a);
    const bool changed = literal::RemoveSubnets(nets, in.subnets);
    literal::Ranges crossing;
    literal::GetCrossRange(in.a, in.a, crossing);
    auto our_minus = Ours(in.a), our_difference = our_minus, our_sum = our_minus;
    auto our_crossing = our_minus, our_nets = Ours(in.subnets);
    our_minus -= our_minus;
    our_difference.Subtract(our_difference);
    our_sum += our_sum;
    our_crossing.GetCrossRange(our_crossing, our_crossing);
    return SameLists(our_minus, minus) && SameLists(our_difference, difference) &&
           SameLists(our_sum, sum) && SameLists(our_crossing, crossing) &&
           our_nets.RemoveSubnets(our_nets) == changed && SameLists(our_nets, nets);
}

bool ComparesSingleRanges(const Input& in) {
    for (const auto& x : in.a) {
        for (const auto& y : in.b) {
            const CQELRangeIP a(x.from, x.to), b(y.from, y.to);
            if ((a == b) != (x == y) || (a < b) != (x < y)) return false;
            if (a.IsCross(b) != IsCross(x, y) || a.IsInclude(b) != IsInclude(x, y)) return false;
        }
    }
    return true;
}

constexpr struct {
    const char* name;
    int operations;  // that it compares
    bool (*agrees)(const Input&);
} kChecks[] = {
    {"+= of ranges and of addresses", 2, Adds},
    {"RemoveList, -= of addresses", 2, RemovesEqual},
    {"Subtract", 1, Subtracts},
    {"-=", 1, RemovesRanges},
    {"RemovePoints", 1, RemovesPoints},
    {"RemoveSubnets", 1, RemovesSubnets},
    {"IsCross, IsCrossPoints, IsCrossSubnets", 3, AsksForCrossing},
    {"Cross of ranges", 1, FindsTheFirstOverlap},
    {"Cross of points", 1, CrossesPoints},
    {"GetCrossRange", 1, Intersects},
    {"GetSubnetIPL", 1, FiltersBySubnets},
    {"five operations on a list with itself", 5, WorksOnItself},
    {"single ranges", 1, ComparesSingleRanges},
};

std::string Text(const Input& in) {
    std::ostringstream text;
    const auto put = [&](const char* name, const literal::Ranges& ranges) {
        text << "\n" << name;
        for (const auto& range : ranges) text << " {" << range.from << ", " << range.to << "}";
    };
    put("a", in.a);
    put("b", in.b);
    put("subnets", in.subnets);
    text << "\npoints";
    for (const ulong32 point : in.points) text << " " << point;
    text << "\nmore points";
    for (const ulong32 point : in.more_points) text << " " << point;
    return text.str();
}

constexpr ulong32 kAll = 0xFFFFFFFF;

// clang-format off
constexpr Style kStyles[] = {
    // name                    base        span  length inverted inputs
    {"few addresses",          0,          12,    5,    0,       12000},
    {"inverted ranges",        1,          16,    6,    4,       12000},
    {"the last addresses",     kAll - 15,  16,    6,    8,        6500},
    {"around both ends",       kAll - 7,   16,    6,    8,        6500},
    {"a class of subnets",     0x0A000000, 200,  12,    0,        6500},
    {"all addresses",          0,          kAll,  9,    8,        4500},
    {"longer lists",           0,          3000, 120,   0,          40},
    {"longer lists, inverted", 0,          3000, 120,  16,          40},
    {"long and dense",         0,          300,  120,  12,          30},
};
// clang-format on

TEST(RangeModel, EveryOperationGivesWhatItsStepsGive) {
    int operations = 0;
    for (const Style& style : kStyles) {
        SCOPED_TRACE(style.name);
        InputMaker maker(style, 20240607);
        for (int i = 0; i < style.inputs; ++i) {
            const Input input = maker.Make();
            for (const auto& check : kChecks) {
                ASSERT_TRUE(check.agrees(input)) << check.name << Text(input);
                operations += check.operations;
            }
        }
    }
    EXPECT_GE(operations, 1000000);
}

// The second range is cut first, by (8, 15); the first, which that leaves as all addresses, by 12.
// So 20 cuts what came from the second before what came from the first.
TEST(RangeModel, PiecesOfPiecesFollowThePlacesOfThosePieces) {
    const auto taken = Ranges({{8, 15}, {0, 0}, {12, 0}, {20, 20}});
    const auto expected =
        Ranges({{1, 11}, {3, 7}, {16, 19}, {13, 19}, {21, 22}, {21, kAll}});
    auto list = Ranges({{0, 15}, {3, 22}}), indexed = list;
    EXPECT_EQ(Bits(expected), Bits(list -= taken));
    kit::RemoveRanges(indexed, taken, kAlwaysIndex);
    EXPECT_EQ(Bits(expected), Bits(indexed));
}

// --- Sets of addresses ---------------------------------------------------------------------------------

constexpr std::size_t kUniverse = 0x10000;
using Bitmap = std::bitset<kUniverse>;

Bitmap BitmapOf(const CQELRangeIPList& list) {
    Bitmap bitmap;
    for (const auto& range : list) {
        const ulong32 last = range.to == 0 ? range.from : range.to;
        for (ulong32 address = range.from; address <= last; ++address) bitmap.set(address);
    }
    return bitmap;
}

Bitmap BitmapOf(const CQELLongList& addresses) {
    Bitmap bitmap;
    for (const ulong32 address : addresses) bitmap.set(address);
    return bitmap;
}

// Overlapping ranges and points. The last addresses of all ranges are `odd`, or none: where the
// last addresses agree, subtraction is no set operation.
CQELRangeIPList RandomRanges(std::mt19937& random, int count, ulong32 odd) {
    CQELRangeIPList list;
    for (int i = 0; i < count; ++i) {
        const ulong32 from = (random() % kUniverse & ~1U) | odd;
        const ulong32 to = from + 2 * (random() % 200);
        list.emplace_back(from, random() % 4 == 0 || to >= kUniverse ? 0 : to);
    }
    return list;
}

CQELRangeIPList RandomSubnets(std::mt19937& random, int count) {
    CQELRangeIPList list;
    for (int i = 0; i < count; ++i) list.emplace_back(random() % kUniverse, kAll << random() % 9);
    return list;
}

CQELRangeIPList Blocks(const CQELRangeIPList& subnets) {
    CQELRangeIPList blocks;
    for (const auto& s : subnets) blocks.emplace_back(s.from & s.to, (s.from & s.to) | ~s.to);
    return blocks;
}

TEST(RangeModel, SetsOfAddressesAreThoseOfABitmap) {
    std::mt19937 random(20240608);
    for (int round = 0; round < 500; ++round) {
        const int length = round % 3 == 0 ? 10 : 150;
        const auto a = RandomRanges(random, length, 0), b = RandomRanges(random, length, 1);
        const auto subnets = RandomSubnets(random, length);
        CQELLongList points;
        for (int i = 0; i < length; ++i) points.push_back(random() % kUniverse);
        const Bitmap in_a = BitmapOf(a), in_b = BitmapOf(b), in_points = BitmapOf(points);
        const Bitmap in_subnets = BitmapOf(Blocks(subnets));

        auto list = a;
        EXPECT_EQ(in_a & ~in_b, BitmapOf(list -= b));
        list = a;
        EXPECT_EQ(in_a | in_b, BitmapOf(list += b));
        list = a;
        EXPECT_EQ((in_a & in_points).any(), list.RemovePoints(points));
        EXPECT_EQ(in_a & ~in_points, BitmapOf(list));
        list = a;
        EXPECT_EQ((in_a & in_subnets).any(), list.RemoveSubnets(subnets));
        EXPECT_EQ(in_a & ~in_subnets, BitmapOf(list));
        EXPECT_EQ((in_a & in_b).any(), a.GetCrossRange(b, list));
        EXPECT_EQ(in_a & in_b, BitmapOf(list));
        EXPECT_EQ((in_a & in_b).any(), a.IsCross(b));
        EXPECT_EQ((in_a & in_points).any(), a.IsCrossPoints(points));

        CQELLongList addresses;
        EXPECT_EQ((in_a & in_points).any(), a.Cross(points, addresses));
        EXPECT_EQ(in_a & in_points, BitmapOf(addresses));
        addresses = points;
        subnets.GetSubnetIPL(addresses);
        EXPECT_EQ(in_points & in_subnets, BitmapOf(addresses));
    }
}

}  // namespace
