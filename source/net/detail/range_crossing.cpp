#include "net/detail/range_crossing.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "net/detail/address_index.h"
#include "net/detail/exact_set.h"

namespace kit {
namespace {

// How many of the `outer` elements are tested against the `inner` ones before an index is made: all
// where it does not pay, otherwise a few. In lists that cross, one of these mostly does.
std::size_t PlainLimit(std::size_t outer, std::size_t inner, std::uint64_t price) {
    if (!IndexPays(outer, inner, price)) return outer;
    return static_cast<std::size_t>(price / 4 * (outer + inner) / inner);
}

// The first of `limit` elements of `outer` that fits one of `inner`, by a test that `test` makes for
// it; null when none does.
template <typename Outer, typename Inner, typename Test>
const typename Outer::value_type* FirstFit(const Outer& outer, const Inner& inner,
                                           std::size_t limit, Test test) {
    for (auto o = outer.begin(); limit > 0; ++o, --limit) {
        const auto fits = test(*o);
        for (const auto& i : inner) {
            if (fits(i)) return &*o;
        }
    }
    return nullptr;
}

bool AnyInverted(const RangeList& list) {
    return std::any_of(list.begin(), list.end(), IsInverted);
}

// The addresses of the points and ranges.
ReachTable TableOf(const RangeList& list) {
    ReachTable table(list.size());
    for (const auto& range : list) {
        if (!IsInverted(range)) table.Add(range.from, LastOf(range));
    }
    table.Build();
    return table;
}

ReachTable TableOfRangesProper(const RangeList& list) {
    ReachTable table(list.size());
    for (const auto& range : list) {
        if (range.from < range.to) table.Add(range.from, range.to);
    }
    table.Build();
    return table;
}

// --- Range lists -------------------------------------------------------------------------------------

// The pairs that have an inverted range on one side or on both.
bool IsCrossInverted(const RangeList& list, const RangeList& b) {
    const ReachTable mine = TableOfRangesProper(list), theirs = TableOfRangesProper(b);
    ExactSet inverted;
    for (const auto& x : list) {
        if (!IsInverted(x)) continue;
        if (theirs.Has(x.from)) return true;
        inverted.Insert(x);
    }
    return std::any_of(b.begin(), b.end(), [&](const CQELRangeIP& r) {
        return IsInverted(r) && (mine.Has(r.from) || mine.Has(r.to) || inverted.Has(r));
    });
}

bool IsCrossIndexed(const RangeList& list, const RangeList& b) {
    const ReachTable table = TableOf(list);
    for (const auto& r : b) {
        if (!IsInverted(r) && table.Meets(r.from, LastOf(r))) return true;
    }
    return (AnyInverted(list) || AnyInverted(b)) && IsCrossInverted(list, b);
}

bool IsCrossPointsIndexed(const RangeList& list, const AddressList& points) {
    const ReachTable table = TableOf(list);
    return std::any_of(points.begin(), points.end(), [&](ulong32 p) { return table.Has(p); });
}

// --- First overlap, bounds taken as they are ---------------------------------------------------------

bool Overlaps(const CQELRangeIP& a, const CQELRangeIP& b) {
    return LiesBetween(b.from, a) || LiesBetween(b.to, a) || (b.from <= a.from && b.to >= a.to);
}

const CQELRangeIP* FirstOverlapIndexed(const RangeList& list, const RangeList& b) {
    ReachTable froms(b.size()), tos(b.size()), covering(b.size());
    for (const auto& r : b) {
        froms.Add(r.from, r.from);
        tos.Add(r.to, r.to);
        covering.Add(r.from, r.to);
    }
    for (auto* table : {&froms, &tos, &covering}) table->Build();
    const auto overlaps = [&](const CQELRangeIP& a) {
        const bool holds_some =
            a.from <= a.to && (froms.Meets(a.from, a.to) || tos.Meets(a.from, a.to));
        return holds_some || covering.Reaches(a.from, a.to);
    };
    const auto found = std::find_if(list.begin(), list.end(), overlaps);
    return found == list.end() ? nullptr : &*found;
}

// --- Intersections -----------------------------------------------------------------------------------

// Collects intersections, each once.
class IntersectionSink {
public:
    explicit IntersectionSink(RangeList& out) : out_(out) {}
    void Add(const CQELRangeIP& a, const CQELRangeIP& b) {
        if (!a.IsCross(b)) return;
        const auto end = [](const CQELRangeIP& r) { return r.IsPoint() ? r.from : r.to; };
        const CQELRangeIP both((std::max)(a.from, b.from), (std::min)(end(a), end(b)));
        if (both.from <= both.to && seen_.Insert(both)) out_.push_back(both);
    }

private:
    RangeList& out_;
    ExactSet seen_;
};

void IntersectionsIndexed(const RangeList& list, const RangeList& b, IntersectionSink& sink) {
    const std::vector<CQELRangeIP> ranges(list.begin(), list.end());
    OverlapIndex index;
    // What an inverted range crosses has no address in common with it.
    for (std::uint32_t i = 0; i < ranges.size(); ++i) {
        if (!IsInverted(ranges[i])) index.Add(ranges[i].from, LastOf(ranges[i]), i);
    }
    index.Build();
    std::vector<std::uint32_t> met;
    for (const auto& r : b) {
        if (IsInverted(r)) continue;
        met.clear();
        index.ForEach(r.from, LastOf(r), [&](std::uint32_t i) { met.push_back(i); });
        std::sort(met.begin(), met.end());
        for (const std::uint32_t i : met) sink.Add(ranges[i], r);
    }
}

// --- Subnets -----------------------------------------------------------------------------------------

bool MeetsSubnet(const CQELRangeIP& x, const Subnet& subnet) {
    const ulong32 low = x.from & subnet.mask;
    if (x.IsPoint()) return low == subnet.net;
    return low <= subnet.net && subnet.net <= (x.to & subnet.mask);
}

// Whether a subnet counts at all; those of the zero net do not.
bool IsCrossNet(const Subnet& subnet) { return subnet.net != 0; }

bool IsCrossSubnetsIndexed(const RangeList& list, const RangeList& subnets) {
    ReachTable table(list.size());  // an inverted range meets the nets that hold both its bounds
    for (const auto& x : list) table.Add(x.from, x.IsPoint() ? x.from : x.to);
    table.Build();
    return std::any_of(subnets.begin(), subnets.end(), [&](const CQELRangeIP& s) {
        const Subnet subnet(s);
        if (!IsCrossNet(subnet)) return false;
        if (subnet.IsInterval()) return table.Meets(subnet.net, subnet.LastAddress());
        return std::any_of(list.begin(), list.end(),
                           [&](const CQELRangeIP& x) { return MeetsSubnet(x, subnet); });
    });
}

// The addresses of many subnets. Masks with holes are searched one by one.
class SubnetIndex {
public:
    explicit SubnetIndex(const RangeList& subnets) : intervals_(subnets.size()) {
        for (const auto& s : subnets) {
            const Subnet subnet(s);
            if (subnet.IsInterval()) {
                intervals_.Add(subnet.net, subnet.LastAddress());
            } else {
                with_holes_[subnet.mask].Insert(subnet.net);
            }
        }
        intervals_.Build();
    }
    bool Has(ulong32 address) const {
        return intervals_.Has(address) ||
               std::any_of(with_holes_.begin(), with_holes_.end(),
                           [&](const auto& nets) { return nets.second.Has(address & nets.first); });
    }

private:
    ReachTable intervals_;
    std::map<ulong32, ExactSet> with_holes_;  // the nets of each mask
};

bool HasPlainly(const RangeList& subnets, ulong32 address) {
    return std::any_of(subnets.begin(), subnets.end(),
                       [&](const CQELRangeIP& s) { return Subnet(s).Has(address); });
}

}  // namespace

bool IsCross(const RangeList& list, const RangeList& b, std::uint64_t price) {
    const std::size_t limit = PlainLimit(b.size(), list.size(), price);
    const auto crosses = [](const CQELRangeIP& r) { return CrossTest(r); };
    return FirstFit(b, list, limit, crosses) || (limit < b.size() && IsCrossIndexed(list, b));
}

bool IsCrossPoints(const RangeList& list, const AddressList& points, std::uint64_t price) {
    const std::size_t limit = PlainLimit(list.size(), points.size(), price);
    const auto holds = [](const CQELRangeIP& x) {
        return [&x](ulong32 point) { return LiesIn(point, x); };
    };
    return FirstFit(list, points, limit, holds) ||
           (limit < list.size() && IsCrossPointsIndexed(list, points));
}

bool IsCrossSubnets(const RangeList& list, const RangeList& subnets, std::uint64_t price) {
    const std::size_t limit = PlainLimit(subnets.size(), list.size(), price);
    const auto meets = [](const CQELRangeIP& s) {
        return [subnet = Subnet(s)](const CQELRangeIP& x) {
            return IsCrossNet(subnet) && MeetsSubnet(x, subnet);
        };
    };
    return FirstFit(subnets, list, limit, meets) ||
           (limit < subnets.size() && IsCrossSubnetsIndexed(list, subnets));
}

const CQELRangeIP* FirstOverlap(const RangeList& list, const RangeList& b, std::uint64_t price) {
    const std::size_t limit = PlainLimit(list.size(), b.size(), price);
    const auto overlaps = [](const CQELRangeIP& x) {
        return [&x](const CQELRangeIP& r) { return Overlaps(x, r); };
    };
    const CQELRangeIP* found = FirstFit(list, b, limit, overlaps);
    return found || limit == list.size() ? found : FirstOverlapIndexed(list, b);
}

void CrossPoints(const RangeList& list, const AddressList& points, AddressList& out,
                 std::uint64_t price) {
    ExactSet seen;
    const auto keep = [&](auto lies_in_some) {
        for (const ulong32 point : points) {
            if (lies_in_some(point) && seen.Insert(point)) out.push_back(point);
        }
    };
    if (IndexPays(list.size(), points.size(), price)) {
        keep([table = TableOf(list)](ulong32 point) { return table.Has(point); });
    } else {
        keep([&](ulong32 point) {
            return std::any_of(list.begin(), list.end(),
                               [&](const CQELRangeIP& x) { return LiesIn(point, x); });
        });
    }
}

void Intersections(const RangeList& list, const RangeList& b, RangeList& out, std::uint64_t price) {
    IntersectionSink sink(out);
    if (IndexPays(list.size(), b.size(), price)) return IntersectionsIndexed(list, b, sink);
    for (const auto& r : b) {
        for (const auto& x : list) sink.Add(x, r);
    }
}

bool KeepSubnets(const RangeList& subnets, AddressList& addresses, std::uint64_t price) {
    if (!IndexPays(subnets.size(), addresses.size(), price)) {
        return addresses.remove_if([&](ulong32 a) { return !HasPlainly(subnets, a); }) != 0;
    }
    const SubnetIndex index(subnets);
    return addresses.remove_if([&](ulong32 a) { return !index.Has(a); }) != 0;
}

}  // namespace kit
