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
#include "../tests/support/literal_ranges.h"

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
        const ulong32 from = even(random() % static_cast<ulong32>(count) * cell + random() % longest);
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

// Runs work(copy) on copies of `target`. Making and destroying them is not measured, and so many
// are made at a time that stopping the clock does not count.
template <typename Copy, typename Work>
void OnCopies(benchmark::State& state, std::size_t size, Copy copy, Work work) {
    using T = decltype(copy());
    const std::size_t batch = 20000 / size + 1;
    std::vector<T> copies;
    copies.reserve(batch);
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        state.PauseTiming();
        copies.clear();
        for (std::size_t i = 0; i < batch; ++i) copies.push_back(copy());
        state.ResumeTiming();
        for (T& one : copies) work(one);
    }
}

template <typename T, typename Work>
void OnCopies(benchmark::State& state, const T& target, Work work) {
    OnCopies(state, target.size(), [&] { return std::make_unique<T>(target); },
             [&](auto& copy) { work(*copy); });
}
template <typename Work>
void OnCopies(benchmark::State& state, const IclSet& target, Work work) {
    OnCopies(state, boost::icl::iterative_size(target), [&] { return std::make_unique<IclSet>(target); },
             [&](auto& copy) { work(*copy); });
}

template <typename Work>
void OnBitmaps(benchmark::State& state, const Bitmap& target, Work work) {
    OnCopies(state, 100, [&] { return Bitmap(roaring_bitmap_copy(target.get())); },
             [&](auto& copy) { work(copy.get()); });
}

template <typename Work>
void Repeat(benchmark::State& state, Work work) {
    for (auto _ : state) benchmark::DoNotOptimize(work());
}

using Runner = void (*)(benchmark::State&, const Input&);

struct Case {
    const char* operation;
    Runner ours, literal, icl, bitmap;  // null where there is none
};

// A row of the table an operation. The short forms of the names: s is the state, in the input.
const Case kCases[] = {
    {"-=",
     [](auto& s, auto& in) { OnCopies(s, in.a, [&](auto& l) { l -= in.b; }); },
     [](auto& s, auto& in) { OnCopies(s, in.literal_a, [&](auto& l) { literal::RemoveRanges(l, in.literal_b); }); },
     [](auto& s, auto& in) { OnCopies(s, in.icl_a, [&](auto& l) { l -= in.icl_b; }); },
     [](auto& s, auto& in) { OnBitmaps(s, in.bitmap_a, [&](auto* l) { roaring_bitmap_andnot_inplace(l, in.bitmap_b.get()); }); }},
    {"RemovePoints",
     [](auto& s, auto& in) { OnCopies(s, in.a, [&](auto& l) { l.RemovePoints(in.points); }); },
     [](auto& s, auto& in) { OnCopies(s, in.literal_a, [&](auto& l) { literal::RemovePoints(l, in.literal_points); }); },
     [](auto& s, auto& in) { OnCopies(s, in.icl_a, [&](auto& l) { for (const ulong32 p : in.points) l -= p; }); },
     [](auto& s, auto& in) { OnBitmaps(s, in.bitmap_a, [&](auto* l) { for (const ulong32 p : in.points) roaring_bitmap_remove(l, p); }); }},
    {"RemoveSubnets",
     [](auto& s, auto& in) { OnCopies(s, in.a, [&](auto& l) { l.RemoveSubnets(in.subnets); }); },
     [](auto& s, auto& in) { OnCopies(s, in.literal_a, [&](auto& l) { literal::RemoveSubnets(l, in.literal_subnets); }); },
     [](auto& s, auto& in) { OnCopies(s, in.icl_a, [&](auto& l) { l -= in.icl_subnets; }); },
     [](auto& s, auto& in) { OnBitmaps(s, in.bitmap_a, [&](auto* l) { roaring_bitmap_andnot_inplace(l, in.bitmap_subnets.get()); }); }},
    {"+=",
     [](auto& s, auto& in) { OnCopies(s, in.a, [&](auto& l) { l += in.b; }); },
     [](auto& s, auto& in) { OnCopies(s, in.literal_a, [&](auto& l) { literal::Add(l, in.literal_b); }); },
     [](auto& s, auto& in) { OnCopies(s, in.icl_a, [&](auto& l) { l += in.icl_b; }); },
     [](auto& s, auto& in) { OnBitmaps(s, in.bitmap_a, [&](auto* l) { roaring_bitmap_or_inplace(l, in.bitmap_b.get()); }); }},
    {"Subtract",
     [](auto& s, auto& in) { OnCopies(s, in.a, [&](auto& l) { l.Subtract(in.b); }); },
     [](auto& s, auto& in) { OnCopies(s, in.literal_a, [&](auto& l) { literal::Subtract(l, in.literal_b); }); },
     nullptr, nullptr},
    {"RemoveList",
     [](auto& s, auto& in) { OnCopies(s, in.a, [&](auto& l) { l.RemoveList(in.b); }); },
     [](auto& s, auto& in) { OnCopies(s, in.literal_a, [&](auto& l) { literal::RemoveList(l, in.literal_b); }); },
     nullptr, nullptr},
    {"IsCross",
     [](auto& s, auto& in) { Repeat(s, [&] { return in.a.IsCross(in.far); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return literal::IsCross(in.literal_a, in.literal_far); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return boost::icl::intersects(in.icl_a, in.icl_far); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return roaring_bitmap_intersect(in.bitmap_a.get(), in.bitmap_far.get()); }); }},
    {"IsCross, soon found",
     [](auto& s, auto& in) { Repeat(s, [&] { return in.a.IsCross(in.b); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return literal::IsCross(in.literal_a, in.literal_b); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return boost::icl::intersects(in.icl_a, in.icl_b); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return roaring_bitmap_intersect(in.bitmap_a.get(), in.bitmap_b.get()); }); }},
    {"IsCrossPoints",
     [](auto& s, auto& in) { Repeat(s, [&] { return in.a.IsCrossPoints(in.far_points); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return literal::IsCrossPoints(in.literal_a, in.literal_far_points); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { bool any = false; for (const ulong32 p : in.far_points) any |= boost::icl::contains(in.icl_a, p); return any; }); },
     [](auto& s, auto& in) { Repeat(s, [&] { bool any = false; for (const ulong32 p : in.far_points) any |= roaring_bitmap_contains(in.bitmap_a.get(), p); return any; }); }},
    {"IsCrossSubnets",
     [](auto& s, auto& in) { Repeat(s, [&] { return in.far.IsCrossSubnets(in.subnets); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return literal::IsCrossSubnets(in.literal_far, in.literal_subnets); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return boost::icl::intersects(in.icl_far, in.icl_subnets); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { return roaring_bitmap_intersect(in.bitmap_far.get(), in.bitmap_subnets.get()); }); }},
    {"Cross of ranges",
     [](auto& s, auto& in) { Repeat(s, [&] { CQELLongList out; return in.a.Cross(in.far, out); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { literal::Addresses out; return literal::Cross(in.literal_a, in.literal_far, out); }); },
     nullptr, nullptr},
    {"Cross of points",
     [](auto& s, auto& in) { Repeat(s, [&] { CQELLongList out; return in.a.Cross(in.points, out); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { literal::Addresses out; return literal::CrossPoints(in.literal_a, in.literal_points, out); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { literal::Addresses out; for (const ulong32 p : in.points) { if (boost::icl::contains(in.icl_a, p)) out.push_back(p); } return out.empty(); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { literal::Addresses out; for (const ulong32 p : in.points) { if (roaring_bitmap_contains(in.bitmap_a.get(), p)) out.push_back(p); } return out.empty(); }); }},
    {"GetCrossRange",
     [](auto& s, auto& in) { Repeat(s, [&] { CQELRangeIPList out; return in.a.GetCrossRange(in.b, out); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { literal::Ranges out; return literal::GetCrossRange(in.literal_a, in.literal_b, out); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { IclSet out = in.icl_a & in.icl_b; return out.iterative_size(); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { Bitmap out(roaring_bitmap_and(in.bitmap_a.get(), in.bitmap_b.get())); return roaring_bitmap_is_empty(out.get()); }); }},
    {"GetSubnetIPL",
     [](auto& s, auto& in) { OnCopies(s, in.points, [&](auto& l) { in.subnets.GetSubnetIPL(l); }); },
     [](auto& s, auto& in) { OnCopies(s, in.literal_points, [&](auto& l) { literal::GetSubnetIPL(in.literal_subnets, l); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { literal::Addresses out; for (const ulong32 p : in.points) { if (boost::icl::contains(in.icl_subnets, p)) out.push_back(p); } return out.empty(); }); },
     [](auto& s, auto& in) { Repeat(s, [&] { literal::Addresses out; for (const ulong32 p : in.points) { if (roaring_bitmap_contains(in.bitmap_subnets.get(), p)) out.push_back(p); } return out.empty(); }); }},
};

void Register(const Case& c, const char* contender, Runner run, std::size_t count) {
    if (!run) return;
    const std::string name =
        "range lists, " + std::to_string(count) + "/" + c.operation + "/" + contender;
    benchmark::RegisterBenchmark(name.c_str(), [run, count](benchmark::State& state) {
        run(state, InputOf(count));
    });
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
