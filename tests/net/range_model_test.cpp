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

// An input in the library's form, and the lists that an operation works on: its own of what it may
// change.
struct OurInput {
    CQELRangeIPList a, b, subnets;
    CQELLongList points, more_points;
};

template <typename In>
struct Lists {
    explicit Lists(const In& in)
        : a(in.a), subnets(in.subnets), points(in.points), b(in.b), more_points(in.more_points) {}
    decltype(In::a) a, subnets;
    decltype(In::points) points;
    const decltype(In::a)& b;
    const decltype(In::points)& more_points;
};

// An input in both forms.
struct Case {
    explicit Case(const Input& in)
        : literally(in),
          ours{Ours(in.a), Ours(in.b), Ours(in.subnets), Ours(in.points), Ours(in.more_points)} {}
    const Input literally;
    const OurInput ours;
};

std::string Text(const Input& in) {
    const auto text = [](const auto& list) { return testing::PrintToString(Bits(Ours(list))); };
    return "\na " + text(in.a) + "\nb " + text(in.b) + "\nsubnets " + text(in.subnets) +
           "\npoints " + testing::PrintToString(in.points) + "\nmore points " +
           testing::PrintToString(in.more_points);
}

// Expects each of `ours` to make of the library's lists what `literally` makes of the literal ones,
// and to answer alike, if there is an answer.
template <typename Literally, typename... Work>
void Compare(const char* name, const Case& in, Literally literally, Work... ours) {
    const auto run = [](auto work, auto& lists) {
        if constexpr (std::is_void_v<decltype(work(lists))>) {
            work(lists);
            return true;
        } else {
            return static_cast<bool>(work(lists));
        }
    };
    Lists expected(in.literally);
    const bool answer = run(literally, expected);
    const auto agrees = [&](auto work) {
        Lists lists(in.ours);
        return run(work, lists) == answer && SameLists(lists.a, expected.a) &&
               SameLists(lists.subnets, expected.subnets) &&
               SameLists(lists.points, expected.points);
    };
    EXPECT_TRUE((agrees(ours) && ...)) << name << Text(in.literally);
}

// The operations under way: literally, as the library chooses and always by index.

void CompareSets(const Case& in) {
    Compare(
        "+= of ranges", in, [](auto& i) { literal::Add(i.a, i.b); }, [](auto& i) { i.a += i.b; });
    Compare(
        "+= of addresses", in, [](auto& i) { literal::Add(i.points, i.more_points); },
        [](auto& i) { i.points += i.more_points; });
    Compare(
        "RemoveList", in, [](auto& i) { literal::RemoveList(i.a, i.b); },
        [](auto& i) { i.a.RemoveList(i.b); });
    Compare(
        "-= of addresses", in, [](auto& i) { literal::RemoveList(i.points, i.more_points); },
        [](auto& i) { i.points -= i.more_points; });
    Compare(
        "Subtract", in, [](auto& i) { literal::Subtract(i.a, i.b); },
        [](auto& i) { i.a.Subtract(i.b); });
}

void CompareRemoval(const Case& in) {
    Compare(
        "-=", in, [](auto& i) { literal::RemoveRanges(i.a, i.b); }, [](auto& i) { i.a -= i.b; },
        [](auto& i) { kit::RemoveRanges(i.a, i.b, kAlwaysIndex); });
    Compare(
        "RemovePoints", in, [](auto& i) { return literal::RemovePoints(i.a, i.points); },
        [](auto& i) { return i.a.RemovePoints(i.points); },
        [](auto& i) { return kit::RemovePoints(i.a, i.points, kAlwaysIndex); });
    Compare(
        "RemoveSubnets", in, [](auto& i) { return literal::RemoveSubnets(i.a, i.subnets); },
        [](auto& i) { return i.a.RemoveSubnets(i.subnets); },
        [](auto& i) {
            return kit::IsCrossSubnets(i.a, i.subnets, kAlwaysIndex) &&
                   kit::RemoveSubnets(i.a, i.subnets, kAlwaysIndex);
        });
    Compare(
        "GetSubnetIPL", in, [](auto& i) { return literal::GetSubnetIPL(i.subnets, i.points); },
        [](auto& i) { return i.subnets.GetSubnetIPL(i.points); },
        [](auto& i) { return kit::KeepSubnets(i.subnets, i.points, kAlwaysIndex); });
}

void CompareCrossing(const Case& in) {
    Compare(
        "IsCross", in, [](auto& i) { return literal::IsCross(i.a, i.b); },
        [](auto& i) { return i.a.IsCross(i.b); },
        [](auto& i) { return kit::IsCross(i.a, i.b, kAlwaysIndex); });
    Compare(
        "IsCrossPoints", in, [](auto& i) { return literal::IsCrossPoints(i.a, i.points); },
        [](auto& i) { return i.a.IsCrossPoints(i.points); },
        [](auto& i) { return kit::IsCrossPoints(i.a, i.points, kAlwaysIndex); });
    Compare(
        "IsCrossSubnets", in, [](auto& i) { return literal::IsCrossSubnets(i.a, i.subnets); },
        [](auto& i) { return i.a.IsCrossSubnets(i.subnets); },
        [](auto& i) { return kit::IsCrossSubnets(i.a, i.subnets, kAlwaysIndex); });
    Compare(
        "Cross of ranges", in, [](auto& i) { return literal::Cross(i.a, i.b, i.points); },
        [](auto& i) { return i.a.Cross(i.b, i.points); },
        [](auto& i) {
            const CQELRangeIP* const first = kit::FirstOverlap(i.a, i.b, kAlwaysIndex);
            if (first) i.points.insert(i.points.end(), {first->to, first->from});
            return first != nullptr;
        });
    Compare(
        "Cross of points", in,
        [](auto& i) { return literal::CrossPoints(i.a, i.more_points, i.points); },
        [](auto& i) { return i.a.Cross(i.more_points, i.points); },
        [](auto& i) {
            i.points.clear();
            kit::CrossPoints(i.a, i.more_points, i.points, kAlwaysIndex);
            return !i.points.empty();
        });
    Compare(
        "GetCrossRange", in, [](auto& i) { return literal::GetCrossRange(i.a, i.b, i.subnets); },
        [](auto& i) { return i.a.GetCrossRange(i.b, i.subnets); },
        [](auto& i) {
            i.subnets.clear();
            kit::Intersections(i.a, i.b, i.subnets, kAlwaysIndex);
            return !i.subnets.empty();
        });
}

void CompareWorkOnItself(Input input) {
    input.b = input.a;
    const Case in(input);
    Compare(
        "-= itself", in, [](auto& i) { literal::RemoveRanges(i.a, i.b); },
        [](auto& i) { i.a -= i.a; });
    Compare(
        "Subtract itself", in, [](auto& i) { literal::Subtract(i.a, i.b); },
        [](auto& i) { i.a.Subtract(i.a); });
    Compare(
        "+= itself", in, [](auto& i) { literal::Add(i.a, i.b); }, [](auto& i) { i.a += i.a; });
    Compare(
        "GetCrossRange of itself", in, [](auto& i) { literal::GetCrossRange(i.b, i.b, i.a); },
        [](auto& i) { i.a.GetCrossRange(i.a, i.a); });
    input.a = input.subnets;
    Compare(
        "RemoveSubnets of itself", Case(input),
        [](auto& i) { literal::RemoveSubnets(i.a, i.subnets); },
        [](auto& i) { i.a.RemoveSubnets(i.a); });
}

void CompareSingleRanges(const Input& in) {
    for (const auto& x : in.a) {
        for (const auto& y : in.b) {
            const CQELRangeIP a(x.from, x.to), b(y.from, y.to);
            EXPECT_TRUE((a == b) == (x == y) && (a < b) == (x < y) &&
                        a.IsCross(b) == IsCross(x, y) && a.IsInclude(b) == IsInclude(x, y))
                << testing::PrintToString(a) << testing::PrintToString(b);
        }
    }
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
        for (int i = 0; i < style.inputs && !HasFailure(); ++i) {
            const Input input = maker.Make();
            const Case both(input);
            CompareSets(both);
            CompareRemoval(both);
            CompareCrossing(both);
            CompareWorkOnItself(input);
            CompareSingleRanges(input);
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
