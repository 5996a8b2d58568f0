// Every operation on two lists against its literal form, by index and as the library chooses, and
// the set operations against a bitmap. The lists are short, so that everything strange meets
// everything else often: both forms of points, inverted ranges, duplicates, the ends of the
// addresses, masks with holes.

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include "net/detail/range_crossing.h"
#include "net/detail/range_removal.h"
#include "net/range_lists.h"

namespace {

constexpr std::uint64_t kAlwaysIndex = 0;

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
        Input in;
        for (auto* ranges : {&in.a, &in.b}) {
            Fill([&] { ranges->push_back(Again(*ranges) ? ranges->front() : MakeRange()); });
        }
        Fill([&] { in.subnets.push_back({Address(), MakeMask()}); });
        for (auto* points : {&in.points, &in.more_points}) {
            Fill([&] { points->push_back(Address()); });
        }
        return in;
    }

private:
    ulong32 Below(ulong32 end) { return static_cast<ulong32>(random_()) % end; }
    ulong32 Address() { return style_.base + Below(style_.span); }
    bool Again(const literal::Ranges& ranges) { return !ranges.empty() && Below(8) == 0; }

    template <typename Push>
    void Fill(Push push) {
        for (ulong32 left = Below(style_.length + 1); left > 0; --left) push();
    }
    literal::Range MakeRange() {
        const auto [low, high] = std::minmax({Address(), Address()});
        if (style_.inverted != 0 && Below(style_.inverted) == 0) return {high, low};
        const ulong32 form = Below(6);
        return {low, form == 0 ? 0 : form == 1 ? low : high};
    }
    ulong32 MakeMask() {
        const ulong32 mask = ~ulong32{0} << Below(6);
        if (Below(8) != 0) return mask;
        return Below(2) != 0 ? 0 : mask ^ ulong32 { 1 } << Below(32);
    }

    Style style_;
    std::mt19937 random_;
};

// Whether each of `ours` makes of the library's list what `literally` makes of the literal one, and
// answers alike, if there is an answer.
template <typename List, typename Literally, typename... Work>
bool Same(List expected, Literally literally, Work... ours) {
    const auto run = [](auto work, auto& list) {
        if constexpr (std::is_same_v<decltype(work(list)), bool>) return work(list);
        work(list);
        return true;
    };
    const auto before = Ours(expected);
    const bool answer = run(literally, expected);
    const auto agrees = [&](auto work) {
        auto list = before;
        return run(work, list) == answer && SameLists(list, expected);
    };
    return (agrees(ours) && ...);
}

bool Adds(const Input& in) {
    return Same(
               in.a, [&](auto& l) { literal::Add(l, in.b); }, [&](auto& l) { l += Ours(in.b); }) &&
           Same(
               in.points, [&](auto& l) { literal::Add(l, in.more_points); },
               [&](auto& l) { l += Ours(in.more_points); });
}

bool RemovesEqual(const Input& in) {
    return Same(
               in.a, [&](auto& l) { literal::RemoveList(l, in.b); },
               [&](auto& l) { l.RemoveList(Ours(in.b)); }) &&
           Same(
               in.points, [&](auto& l) { literal::RemoveList(l, in.more_points); },
               [&](auto& l) { l -= Ours(in.more_points); }) &&
           Same(
               in.a, [&](auto& l) { literal::Subtract(l, in.b); },
               [&](auto& l) { l.Subtract(Ours(in.b)); });
}

bool RemovesRanges(const Input& in) {
    return Same(
        in.a, [&](auto& l) { literal::RemoveRanges(l, in.b); }, [&](auto& l) { l -= Ours(in.b); },
        [&](auto& l) { kit::RemoveRanges(l, Ours(in.b), kAlwaysIndex); });
}

bool RemovesPoints(const Input& in) {
    return Same(
        in.a, [&](auto& l) { return literal::RemovePoints(l, in.points); },
        [&](auto& l) { return bool{l.RemovePoints(Ours(in.points))}; },
        [&](auto& l) { return kit::RemovePoints(l, Ours(in.points), kAlwaysIndex); });
}

bool RemovesSubnets(const Input& in) {
    const auto subnets = Ours(in.subnets);
    return Same(
        in.a, [&](auto& l) { return literal::RemoveSubnets(l, in.subnets); },
        [&](auto& l) { return bool{l.RemoveSubnets(subnets)}; },
        [&](auto& l) {
            return kit::IsCrossSubnets(l, subnets, kAlwaysIndex) &&
                   kit::RemoveSubnets(l, subnets, kAlwaysIndex);
        });
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
    const auto a = Ours(in.a), b = Ours(in.b);
    return Same(
        in.points, [&](auto& out) { return literal::Cross(in.a, in.b, out); },
        [&](auto& out) { return bool{a.Cross(b, out)}; },
        [&](auto& out) {
            const CQELRangeIP* const first = kit::FirstOverlap(a, b, kAlwaysIndex);
            if (first) out.insert(out.end(), {first->to, first->from});
            return first != nullptr;
        });
}

bool CrossesPoints(const Input& in) {
    const auto a = Ours(in.a);
    const auto points = Ours(in.points);
    return Same(
        in.more_points, [&](auto& out) { return literal::CrossPoints(in.a, in.points, out); },
        [&](auto& out) { return bool{a.Cross(points, out)}; },
        [&](auto& out) {
            out.clear();
            kit::CrossPoints(a, points, out, kAlwaysIndex);
            return !out.empty();
        });
}

bool Intersects(const Input& in) {
    const auto a = Ours(in.a), b = Ours(in.b);
    return Same(
        in.subnets, [&](auto& out) { return literal::GetCrossRange(in.a, in.b, out); },
        [&](auto& out) { return bool{a.GetCrossRange(b, out)}; },
        [&](auto& out) {
            out.clear();
            kit::Intersections(a, b, out, kAlwaysIndex);
            return !out.empty();
        });
}

bool FiltersBySubnets(const Input& in) {
    const auto subnets = Ours(in.subnets);
    return Same(
        in.points, [&](auto& l) { return literal::GetSubnetIPL(in.subnets, l); },
        [&](auto& l) { return bool{subnets.GetSubnetIPL(l)}; },
        [&](auto& l) { return kit::KeepSubnets(subnets, l, kAlwaysIndex); });
}

bool WorksOnItself(const Input& in) {
    return Same(
               in.a, [&](auto& l) { literal::RemoveRanges(l, in.a); }, [](auto& l) { l -= l; }) &&
           Same(
               in.a, [&](auto& l) { literal::Subtract(l, in.a); },
               [](auto& l) { l.Subtract(l); }) &&
           Same(
               in.a, [&](auto& l) { literal::Add(l, in.a); }, [](auto& l) { l += l; }) &&
           Same(
               in.a, [&](auto& l) { literal::GetCrossRange(in.a, in.a, l); },
               [](auto& l) { l.GetCrossRange(l, l); }) &&
           Same(
               in.subnets, [&](auto& l) { return literal::RemoveSubnets(l, in.subnets); },
               [](auto& l) { return bool{l.RemoveSubnets(l)}; });
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

const std::pair<const char*, bool (*)(const Input&)> kChecks[] = {
    {"adding", Adds},
    {"removing equal", RemovesEqual},
    {"removing ranges", RemovesRanges},
    {"removing points", RemovesPoints},
    {"removing subnets", RemovesSubnets},
    {"asking for crossing", AsksForCrossing},
    {"first overlap", FindsTheFirstOverlap},
    {"crossing points", CrossesPoints},
    {"intersections", Intersects},
    {"subnets", FiltersBySubnets},
    {"itself", WorksOnItself},
    {"single ranges", ComparesSingleRanges},
};

std::string Text(const Input& in) {
    const auto text = [](const auto& ranges) { return testing::PrintToString(Bits(Ours(ranges))); };
    return "\na " + text(in.a) + "\nb " + text(in.b) + "\nsubnets " + text(in.subnets) +
           "\npoints " + testing::PrintToString(in.points) + "\nmore " +
           testing::PrintToString(in.more_points);
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
    for (const Style& style : kStyles) {
        SCOPED_TRACE(style.name);
        InputMaker maker(style, 20240607);
        for (int i = 0; i < style.inputs; ++i) {
            const Input input = maker.Make();
            for (const auto& [name, agrees] : kChecks)
                ASSERT_TRUE(agrees(input)) << name << Text(input);
        }
    }
}

// The second range is cut first, by (8, 15); the first, which that leaves as all addresses, by 12.
// So 20 cuts what came from the second before what came from the first.
TEST(RangeModel, PiecesOfPiecesFollowThePlacesOfThosePieces) {
    const auto taken = Ranges({{8, 15}, {0, 0}, {12, 0}, {20, 20}});
    const auto expected = Ranges({{1, 11}, {3, 7}, {16, 19}, {13, 19}, {21, 22}, {21, kAll}});
    auto list = Ranges({{0, 15}, {3, 22}}), indexed = list;
    EXPECT_EQ(Bits(expected), Bits(list -= taken));
    kit::RemoveRanges(indexed, taken, kAlwaysIndex);
    EXPECT_EQ(Bits(expected), Bits(indexed));
}

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

TEST(RangeModel, SetsOfAddressesAreThoseOfABitmap) {
    std::mt19937 random(20240608);
    for (int round = 0; round < 500; ++round) {
        const int length = round % 3 == 0 ? 10 : 150;
        const auto a = RandomRanges(random, length, 0), b = RandomRanges(random, length, 1);
        CQELLongList points;
        CQELRangeIPList subnets, blocks;
        for (int i = 0; i < length; ++i) {
            points.push_back(random() % kUniverse);
            const ulong32 base = random() % kUniverse, mask = kAll << random() % 9;
            subnets.emplace_back(base, mask);
            blocks.emplace_back(base & mask, (base & mask) | ~mask);
        }
        const Bitmap in_a = BitmapOf(a), in_b = BitmapOf(b);
        const Bitmap in_points = BitmapOf(points), in_subnets = BitmapOf(blocks);

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
