// Range lists beside the literal form of each operation (every pair looked at, on std::list), Boost.ICL
// and CRoaring. These two keep sets: sorted and merged, without order, duplicates or lists of equal
// points, and they start from sets that are made already. Where they have no such operation their
// column is empty.

#include <benchmark/benchmark.h>
#include <roaring/roaring.h>

#include <boost/icl/interval_set.hpp>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "net/ip_range_list.h"
#include "yardsticks/literal_ranges.h"

namespace {

using IclInterval = boost::icl::closed_interval<ulong32>;
using IclSet = boost::icl::interval_set<ulong32, std::less, IclInterval>;
struct FreeBitmap {
    void operator()(roaring_bitmap_t* bitmap) const { roaring_bitmap_free(bitmap); }
};
using Bitmap = std::unique_ptr<roaring_bitmap_t, FreeBitmap>;

// The same input for all: ranges of some hundred addresses, one in four a point, spread so that
// about half of them cross something on the other side.
struct Input {
    explicit Input(std::size_t count);

    CQELRangeIPList a, b, subnets, far;  // `far` crosses nothing in a
    CQELLongList points, far_points;
    literal::Ranges literal_a, literal_b, literal_subnets, literal_far;
    literal::Addresses literal_points, literal_far_points;
    IclSet icl_a, icl_b, icl_subnets, icl_far;
    Bitmap bitmap_a, bitmap_b, bitmap_subnets, bitmap_far;
};

void Append(const CQELRangeIPList& list, literal::Ranges& ranges, IclSet& set, Bitmap& bitmap) {
    bitmap.reset(roaring_bitmap_create());
    for (const auto& range : list) {
        const ulong32 last = range.IsPoint() ? range.from : range.to;
        ranges.push_back({range.from, range.to});
        set.add(IclInterval(range.from, last));
        roaring_bitmap_add_range_closed(bitmap.get(), range.from, last);
    }
    roaring_bitmap_run_optimize(bitmap.get());
}

Input::Input(std::size_t count) {
    std::mt19937 random(20240603);
    const ulong32 cell = 0xF0000000 / static_cast<ulong32>(count);
    const ulong32 longest = cell / 2 < 600 ? cell / 2 : 600;
    const auto even = [&](ulong32 address) { return address & ~ulong32{1}; };
    const auto range = [&](ulong32 odd) {
        // Half of the ranges of both lists begin in the same few hundred addresses of a cell. The
        // ends differ in their last bit, so that none loses a range by agreeing with its end.
        const ulong32 from =
            even(random() % static_cast<ulong32>(count) * cell + random() % longest);
        return random() % 4 == 0 ? CQELRangeIP(from + odd, odd == 0 ? from : 0)
                                 : CQELRangeIP(from, even(from + 2 + random() % longest) + odd);
    };
    for (std::size_t i = 0; i < count; ++i) {
        a.push_back(range(0));
        b.push_back(range(1));
        far.emplace_back(a.back().from + 2 * longest + 4, a.back().from + 2 * longest + 5);
        subnets.emplace_back(b.back().from, ~ulong32{0} << random() % 9);
        points.push_back(random() % 2 != 0 ? b.back().from : a.back().from + random() % 400);
        far_points.push_back(far.back().from);
    }
    Append(a, literal_a, icl_a, bitmap_a);
    Append(b, literal_b, icl_b, bitmap_b);
    Append(far, literal_far, icl_far, bitmap_far);
    CQELRangeIPList blocks;
    for (const auto& subnet : subnets) {
        literal_subnets.push_back({subnet.from, subnet.to});
        blocks.emplace_back(subnet.from & subnet.to, (subnet.from & subnet.to) + ~subnet.to);
    }
    literal::Ranges unused;
    Append(blocks, unused, icl_subnets, bitmap_subnets);
    literal_points.assign(points.begin(), points.end());
    literal_far_points.assign(far_points.begin(), far_points.end());
}

const Input& InputOf(std::size_t count) {
    static std::map<std::size_t, Input> inputs;
    return inputs.try_emplace(count, count).first->second;
}

// --- Measuring ---------------------------------------------------------------------------------------

template <typename T>
std::unique_ptr<T> CopyOf(const T& list) {
    return std::make_unique<T>(list);
}
Bitmap CopyOf(const Bitmap& bitmap) { return Bitmap(roaring_bitmap_copy(bitmap.get())); }

template <typename T>
std::size_t SizeOf(const T& list) {
    return list.size();
}
std::size_t SizeOf(const IclSet& set) { return boost::icl::iterative_size(set); }
std::size_t SizeOf(const Bitmap&) { return 1000; }

// Measures Work(copy, input) on copies of one of the input's lists. Making and destroying them is not
// measured, and so many are made at a time that stopping the clock does not count.
template <auto List, auto Work>
void Change(benchmark::State& state, const Input& in) {
    const auto& list = in.*List;
    const std::size_t batch = 20000 / SizeOf(list) + 1;
    std::vector<decltype(CopyOf(list))> copies;
    copies.reserve(batch);
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        state.PauseTiming();
        copies.clear();
        for (std::size_t i = 0; i < batch; ++i) copies.push_back(CopyOf(list));
        state.ResumeTiming();
        for (auto& copy : copies) Work(*copy, in);
    }
}

template <auto Work>
void Ask(benchmark::State& state, const Input& in) {
    for (auto _ : state) benchmark::DoNotOptimize(Work(in));
}

// The literal form stands behind a call, as the functions of a library do.
template <auto List, auto Work>
void ChangeLiterally(benchmark::State& state, const Input& in) {
    Change < List, [](auto& list, const Input& input) __attribute__((noinline)) {
        Work(list, input);
    }
    > (state, in);
}
template <auto Work>
void AskLiterally(benchmark::State& state, const Input& in) {
    Ask < [](const Input& input) __attribute__((noinline)) { return Work(input); }
    > (state, in);
}

// --- The peers' ways to ask for many addresses -------------------------------------------------------

bool Has(const IclSet& set, ulong32 address) { return boost::icl::contains(set, address); }
bool Has(const Bitmap& bitmap, ulong32 address) {
    return roaring_bitmap_contains(bitmap.get(), address);
}

template <typename Set>
bool HasAny(const Set& set, const CQELLongList& points) {
    for (const ulong32 point : points) {
        if (Has(set, point)) return true;
    }
    return false;
}

template <typename Set>
literal::Addresses AllIn(const Set& set, const CQELLongList& points) {
    literal::Addresses all;
    for (const ulong32 point : points) {
        if (Has(set, point)) all.push_back(point);
    }
    return all;
}

bool Cross(const Bitmap& a, const Bitmap& b) { return roaring_bitmap_intersect(a.get(), b.get()); }

// --- The table ---------------------------------------------------------------------------------------

using Runner = void (*)(benchmark::State&, const Input&);

struct Case {
    const char* operation;
    Runner ours, literal, icl, bitmap;  // null where there is none
};

using R = CQELRangeIPList;
using In = const Input&;
using I = Input;

// clang-format off
const Case kCases[] = {
    {"-=",
     Change<&I::a, [](R& l, In in) { l -= in.b; }>,
     ChangeLiterally<&I::literal_a, [](auto& l, In in) { literal::RemoveRanges(l, in.literal_b); }>,
     Change<&I::icl_a, [](IclSet& l, In in) { l -= in.icl_b; }>,
     Change<&I::bitmap_a, [](auto& l, In in) { roaring_bitmap_andnot_inplace(&l, in.bitmap_b.get()); }>},
    {"RemovePoints",
     Change<&I::a, [](R& l, In in) { l.RemovePoints(in.points); }>,
     ChangeLiterally<&I::literal_a, [](auto& l, In in) { literal::RemovePoints(l, in.literal_points); }>,
     Change<&I::icl_a, [](IclSet& l, In in) { for (const ulong32 p : in.points) l -= p; }>,
     Change<&I::bitmap_a, [](auto& l, In in) { for (const ulong32 p : in.points) roaring_bitmap_remove(&l, p); }>},
    {"RemoveSubnets",
     Change<&I::a, [](R& l, In in) { l.RemoveSubnets(in.subnets); }>,
     ChangeLiterally<&I::literal_a, [](auto& l, In in) { literal::RemoveSubnets(l, in.literal_subnets); }>,
     Change<&I::icl_a, [](IclSet& l, In in) { l -= in.icl_subnets; }>,
     Change<&I::bitmap_a, [](auto& l, In in) { roaring_bitmap_andnot_inplace(&l, in.bitmap_subnets.get()); }>},
    {"+=",
     Change<&I::a, [](R& l, In in) { l += in.b; }>,
     ChangeLiterally<&I::literal_a, [](auto& l, In in) { literal::Add(l, in.literal_b); }>,
     Change<&I::icl_a, [](IclSet& l, In in) { l += in.icl_b; }>,
     Change<&I::bitmap_a, [](auto& l, In in) { roaring_bitmap_or_inplace(&l, in.bitmap_b.get()); }>},
    {"Subtract",
     Change<&I::a, [](R& l, In in) { l.Subtract(in.b); }>,
     ChangeLiterally<&I::literal_a, [](auto& l, In in) { literal::Subtract(l, in.literal_b); }>,
     nullptr, nullptr},
    {"RemoveList",
     Change<&I::a, [](R& l, In in) { l.RemoveList(in.b); }>,
     ChangeLiterally<&I::literal_a, [](auto& l, In in) { literal::RemoveList(l, in.literal_b); }>,
     nullptr, nullptr},
    {"GetSubnetIPL",
     Change<&I::points, [](CQELLongList& l, In in) { in.subnets.GetSubnetIPL(l); }>,
     ChangeLiterally<&I::literal_points, [](auto& l, In in) { literal::GetSubnetIPL(in.literal_subnets, l); }>,
     Ask<[](In in) { return AllIn(in.icl_subnets, in.points).size(); }>,
     Ask<[](In in) { return AllIn(in.bitmap_subnets, in.points).size(); }>},
    {"GetCrossRange",
     Ask<[](In in) { R out; return in.a.GetCrossRange(in.b, out); }>,
     AskLiterally<[](In in) { literal::Ranges out; return literal::GetCrossRange(in.literal_a, in.literal_b, out); }>,
     Ask<[](In in) { return IclSet(in.icl_a & in.icl_b).iterative_size(); }>,
     Ask<[](In in) { return Bitmap(roaring_bitmap_and(in.bitmap_a.get(), in.bitmap_b.get())) != nullptr; }>},
    {"Cross of points",
     Ask<[](In in) { CQELLongList out; return in.a.Cross(in.points, out); }>,
     AskLiterally<[](In in) { literal::Addresses out; return literal::CrossPoints(in.literal_a, in.literal_points, out); }>,
     Ask<[](In in) { return AllIn(in.icl_a, in.points).size(); }>,
     Ask<[](In in) { return AllIn(in.bitmap_a, in.points).size(); }>},
    {"Cross of ranges",
     Ask<[](In in) { CQELLongList out; return in.a.Cross(in.far, out); }>,
     AskLiterally<[](In in) { literal::Addresses out; return literal::Cross(in.literal_a, in.literal_far, out); }>,
     nullptr, nullptr},
    {"IsCross",
     Ask<[](In in) { return in.a.IsCross(in.far); }>,
     AskLiterally<[](In in) { return literal::IsCross(in.literal_a, in.literal_far); }>,
     Ask<[](In in) { return boost::icl::intersects(in.icl_a, in.icl_far); }>,
     Ask<[](In in) { return Cross(in.bitmap_a, in.bitmap_far); }>},
    {"IsCross, crossing",
     Ask<[](In in) { return in.a.IsCross(in.b); }>,
     AskLiterally<[](In in) { return literal::IsCross(in.literal_a, in.literal_b); }>,
     Ask<[](In in) { return boost::icl::intersects(in.icl_a, in.icl_b); }>,
     Ask<[](In in) { return Cross(in.bitmap_a, in.bitmap_b); }>},
    {"IsCrossPoints",
     Ask<[](In in) { return in.a.IsCrossPoints(in.far_points); }>,
     AskLiterally<[](In in) { return literal::IsCrossPoints(in.literal_a, in.literal_far_points); }>,
     Ask<[](In in) { return HasAny(in.icl_a, in.far_points); }>,
     Ask<[](In in) { return HasAny(in.bitmap_a, in.far_points); }>},
    {"IsCrossSubnets",
     Ask<[](In in) { return in.far.IsCrossSubnets(in.subnets); }>,
     AskLiterally<[](In in) { return literal::IsCrossSubnets(in.literal_far, in.literal_subnets); }>,
     Ask<[](In in) { return boost::icl::intersects(in.icl_far, in.icl_subnets); }>,
     Ask<[](In in) { return Cross(in.bitmap_far, in.bitmap_subnets); }>},
};
// clang-format on

void Register(const Case& c, const char* contender, Runner run, std::size_t count) {
    if (!run) return;
    const std::string name =
        "range lists of " + std::to_string(count) + "/" + c.operation + "/" + contender;
    benchmark::RegisterBenchmark(
        name.c_str(), [run, count](benchmark::State& state) { run(state, InputOf(count)); });
}

}  // namespace

int main(int argc, char** argv) {
    for (const std::size_t count : {2, 16, 10000}) {
        for (const Case& c : kCases) {
            Register(c, "qelkit", c.ours, count);
            Register(c, "literal", c.literal, count);
            Register(c, "Boost.ICL", c.icl, count);
            Register(c, "CRoaring", c.bitmap, count);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
