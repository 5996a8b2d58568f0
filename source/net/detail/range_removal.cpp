#include "net/detail/range_removal.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

#include "net/detail/address_index.h"

namespace kit {
namespace {

// What taking something from a range does to it. kCut leaves the lower part and makes an upper one.
enum class Effect { kNone, kTrimmed, kCut, kErased };

Effect Cut(CQELRangeIP& x, ulong32 first, ulong32 last, CQELRangeIP& upper) {
    upper = CQELRangeIP(last + 1, x.to);
    x.to = first - 1;
    return Effect::kCut;
}

// --- What is taken: a range, an address, a subnet ----------------------------------------------------

Effect TakeInside(const CQELRangeIP& taken, CQELRangeIP& x, CQELRangeIP& upper) {
    const ulong32 last = taken.IsPoint() ? taken.from : taken.to;
    if (taken.from == x.from) {
        x.from = last + 1;
    } else if (last != x.to) {
        return Cut(x, taken.from, last, upper);
    } else if (taken.IsPoint()) {
        x.to = last - 1;
    } else {
        // Quirk: the lower bound of x, not of what is taken: all of x goes but its `from`, which
        // (1, 0) still counts as the point 1. Stored lists were made this way, and subtracting
        // again must find the same ranges. Pinned by TakeRanges.LosesTheRangeWhenTheEndsAgree.
        x.to = x.from - 1;
    }
    return Effect::kTrimmed;
}

Effect Take(const CQELRangeIP& taken, CQELRangeIP& x, CQELRangeIP& upper) {
    if (!taken.IsCross(x)) return Effect::kNone;
    if (x.IsInclude(taken)) return Effect::kErased;
    if (taken.IsInclude(x)) return TakeInside(taken, x, upper);
    if (LiesBetween(taken.from, x)) {
        x.to = taken.from - 1;
    } else if (LiesBetween(x.from, taken)) {
        x.from = taken.to + 1;
    }
    return Effect::kTrimmed;
}

Effect Take(ulong32 point, CQELRangeIP& x, CQELRangeIP& upper) {
    if (!LiesIn(point, x)) return Effect::kNone;
    if (x.IsPoint()) return Effect::kErased;
    if (point == x.from) {
        x.from += 1;
    } else if (point == x.to) {
        x.to -= 1;
    } else {
        return Cut(x, point, point, upper);
    }
    return Effect::kTrimmed;
}

Effect Take(const Subnet& subnet, CQELRangeIP& x, CQELRangeIP& upper) {
    const ulong32 low = x.from & subnet.mask, high = x.to & subnet.mask;
    if (x.IsPoint() || low == high) return subnet.net == low ? Effect::kErased : Effect::kNone;
    if (subnet.net < low || subnet.net > high) return Effect::kNone;
    if (subnet.net != low && subnet.net != high) {
        return Cut(x, subnet.net, subnet.LastAddress(), upper);
    }
    if (subnet.net == low) {
        x.from = subnet.LastAddress() + 1;
    } else {
        x.to = subnet.net - 1;
    }
    return Effect::kTrimmed;
}

// Takes something from the list's range at `x`. The upper part of a cut is put in before `place`:
// before the lower part changes, so that nothing is lost should memory run out. `x` steps to the
// next range when this one is erased.
template <typename Taken>
Effect TakeFromList(RangeList& list, RangeList::iterator& x, const Taken& taken,
                    RangeList::iterator place) {
    CQELRangeIP rest = *x, upper;
    const Effect effect = Take(taken, rest, upper);
    if (effect == Effect::kErased) {
        x = list.erase(x);
        return effect;
    }
    if (effect == Effect::kCut) list.insert(place, upper);
    if (effect != Effect::kNone) *x = rest;
    return effect;
}

// --- Which pass comes next ---------------------------------------------------------------------------

// The intervals that are taken, one a pass.
class Passes {
public:
    static constexpr std::uint32_t kNone = FirstHit::kNone;

    explicit Passes(std::size_t count) : count_(static_cast<std::uint32_t>(count)), hits_(count) {}

    void Add(std::uint32_t pass, ulong32 first, ulong32 last) { hits_.Add(first, last, pass); }
    // For what is no interval: this pass looks at every range.
    void AddAlways(std::uint32_t pass) { always_.push_back(pass); }
    void Build() { hits_.Build(); }

    // Goes through the passes that may do something to one range, in their order, while the range
    // changes under it.
    class Walk {
    public:
        Walk(const Passes& passes, std::uint32_t from)
            : passes_(passes),
              next_(from),
              one_by_one_(passes.always_.size() > passes.count_ / 8) {}
        // The next pass for the range as it now is; kNone at the end.
        std::uint32_t Next(const CQELRangeIP& x) {
            const std::uint32_t found = one_by_one_ ? kNone : FindNext(x);
            if (!one_by_one_) return found;
            return next_ < passes_.count_ ? next_++ : kNone;
        }

    private:
        std::uint32_t FindNext(const CQELRangeIP& x);

        const Passes& passes_;
        std::uint32_t next_;
        std::uint32_t steps_ = 0;
        bool one_by_one_;
    };

private:
    std::uint32_t count_;
    FirstHit hits_;
    std::vector<std::uint32_t> always_;
};

// A range does not meet what was already taken from it, so the first interval of all that it meets
// is the next. What ends that goes on pass by pass: inverted ranges, which keep addresses that were
// taken from them, ranges that so many passes trim that asking costs more than trying, and many
// passes that look at every range anyhow.
std::uint32_t Passes::Walk::FindNext(const CQELRangeIP& x) {
    const auto always = std::lower_bound(passes_.always_.begin(), passes_.always_.end(), next_);
    const std::uint32_t other = always == passes_.always_.end() ? kNone : *always;
    const std::uint32_t hit = passes_.hits_.Find(x.from, LastOf(x));
    one_by_one_ = hit < next_ || steps_++ > 16 + passes_.count_ / 16;
    const std::uint32_t found = (std::min)(hit, other);
    if (!one_by_one_) next_ = found + 1;
    return found;
}

// --- Ranges, by index --------------------------------------------------------------------------------

// Every range goes through the passes by itself; where the upper parts belong is found afterwards.
// The list, which is not empty, changes only in Apply(), when nothing can fail any more.
class RangeRemoval {
public:
    RangeRemoval(RangeList& list, RangeList::const_iterator taken, std::size_t passes);
    void Run();
    void Apply();

private:
    struct Change {
        RangeList::iterator place;
        CQELRangeIP range;
        Effect effect;
    };
    struct Piece {
        CQELRangeIP range;
        std::size_t parent;  // the place in the list of the range that it was cut from
        std::uint32_t pass;  // by which it was; it is visited in the same pass
        bool erased;
    };

    Effect RunRange(CQELRangeIP& x, std::size_t place, std::uint32_t pass);
    std::vector<std::size_t> OrderOfPieces() const;

    RangeList& list_;
    std::vector<CQELRangeIP> taken_;
    Passes passes_;
    std::vector<Change> changes_;  // of the ranges that are in the list
    std::vector<Piece> pieces_;    // their places follow those of the list, in this order
};

RangeRemoval::RangeRemoval(RangeList& list, RangeList::const_iterator taken, std::size_t passes)
    : list_(list), passes_(passes) {
    taken_.reserve(passes);
    for (std::uint32_t pass = 0; pass < passes; ++pass, ++taken) {
        // An inverted range crosses with its `to` as well, but takes something only with its `from`.
        taken_.push_back(*taken);
        passes_.Add(pass, taken->from, LastOf(*taken));
    }
    passes_.Build();
}

void RangeRemoval::Run() {
    std::size_t place = 0;
    CQELRangeIP following = list_.front();  // read ahead: fetching it takes as long as the work
    for (auto x = list_.begin(), next = x; x != list_.end(); x = next, ++place) {
        CQELRangeIP range = following;
        if (++next != list_.end()) following = *next;
        const Effect effect = RunRange(range, place, 0);
        if (effect != Effect::kNone) changes_.push_back({x, range, effect});
    }
    for (std::size_t i = 0; i < pieces_.size(); ++i, ++place) {
        CQELRangeIP range = pieces_[i].range;
        pieces_[i].erased = RunRange(range, place, pieces_[i].pass) == Effect::kErased;
        pieces_[i].range = range;
    }
}

Effect RangeRemoval::RunRange(CQELRangeIP& x, std::size_t place, std::uint32_t pass) {
    Effect all = Effect::kNone;
    CQELRangeIP upper;
    Passes::Walk walk(passes_, pass);
    while ((pass = walk.Next(x)) != Passes::kNone) {
        const Effect effect = Take(taken_[pass], x, upper);
        if (effect == Effect::kErased) return effect;
        if (effect == Effect::kCut) pieces_.push_back({upper, place, pass, false});
        if (effect != Effect::kNone) all = effect;
    }
    return all;
}

// The passes append the pieces one after another, each in the order of the ranges that it cuts. No
// piece is cut by the pass that made it, so where those stand is known when it is their turn.
std::vector<std::size_t> RangeRemoval::OrderOfPieces() const {
    std::vector<std::size_t> end(taken_.size() + 1, 0);  // of each pass in `order`
    for (const Piece& piece : pieces_) ++end[piece.pass + 1];
    std::partial_sum(end.begin(), end.end(), end.begin());
    std::vector<std::size_t> order(pieces_.size());
    for (std::size_t i = 0; i < pieces_.size(); ++i) order[end[pieces_[i].pass]++] = i;

    const std::size_t originals = list_.size();
    std::vector<std::size_t> final_place(pieces_.size());
    const auto parent_of = [&](std::size_t piece) {
        const std::size_t parent = pieces_[piece].parent;
        return parent < originals ? parent : originals + final_place[parent - originals];
    };
    std::size_t begin = 0;
    for (std::size_t pass = 0; pass < taken_.size(); begin = end[pass++]) {
        std::sort(order.begin() + begin, order.begin() + end[pass],
                  [&](std::size_t a, std::size_t b) { return parent_of(a) < parent_of(b); });
        for (std::size_t i = begin; i < end[pass]; ++i) final_place[order[i]] = i;
    }
    return order;
}

void RangeRemoval::Apply() {
    RangeList appended;
    for (const std::size_t piece : OrderOfPieces()) {
        if (!pieces_[piece].erased) appended.push_back(pieces_[piece].range);
    }
    for (const Change& change : changes_) {  // from here on nothing can fail
        if (change.effect == Effect::kErased) {
            list_.erase(change.place);
        } else {
            *change.place = change.range;
        }
    }
    list_.splice(list_.end(), appended);
}

// --- Subnets, by index -------------------------------------------------------------------------------

class SubnetRemoval {
public:
    SubnetRemoval(RangeList::const_iterator subnets, std::size_t passes) : passes_(passes) {
        for (std::uint32_t pass = 0; pass < passes; ++pass, ++subnets) {
            const Subnet& subnet = subnets_.emplace_back(*subnets);
            if (subnet.IsInterval()) {
                passes_.Add(pass, subnet.net, subnet.LastAddress());
            } else {
                passes_.AddAlways(pass);
            }
        }
        passes_.Build();
    }

    // Takes all subnets from the range at `x` and from the parts that this puts before it. Returns
    // whether anything changed.
    bool Run(RangeList& list, RangeList::iterator x) {
        bool changed = false;
        pending_.assign(1, {x, 0});
        while (!pending_.empty()) {
            const auto [part, pass] = pending_.back();
            pending_.pop_back();
            changed |= RunPart(list, part, pass);
        }
        return changed;
    }

private:
    struct Part {
        RangeList::iterator at;
        std::uint32_t pass;  // the first that it has not been through
    };

    bool RunPart(RangeList& list, RangeList::iterator x, std::uint32_t from) {
        bool changed = false;
        Passes::Walk walk(passes_, from);
        for (std::uint32_t pass; (pass = walk.Next(*x)) != Passes::kNone;) {
            const auto part = x;
            const Effect effect = TakeFromList(list, x, subnets_[pass], part);
            changed |= effect != Effect::kNone;
            if (effect == Effect::kErased) break;
            if (effect == Effect::kCut) pending_.push_back({std::prev(x), pass + 1});
        }
        return changed;
    }

    Passes passes_;
    std::vector<Subnet> subnets_;
    std::vector<Part> pending_;
};

// --- Points, by index --------------------------------------------------------------------------------

class PointRemoval {
public:
    explicit PointRemoval(const AddressList& points)
        : points_(points.begin(), points.end()), passes_(points.size()) {
        for (std::uint32_t pass = 0; pass < points_.size(); ++pass) {
            passes_.Add(pass, points_[pass], points_[pass]);
        }
        passes_.Build();
    }

    // Takes all points from the range at `x`, the upper parts going to the end of the list, and
    // steps to the next range.
    Effect Run(RangeList& list, RangeList::iterator& x) const {
        Effect all = Effect::kNone;
        Passes::Walk walk(passes_, 0);
        for (std::uint32_t pass; !IsInverted(*x) && (pass = walk.Next(*x)) != Passes::kNone;) {
            if (!LiesIn(points_[pass], *x)) continue;
            all = TakeFromList(list, x, points_[pass], list.end());
            if (all == Effect::kErased) return all;
        }
        ++x;
        return all;
    }

private:
    std::vector<ulong32> points_;
    Passes passes_;
};

bool RemovePointsIndexed(RangeList& list, RangeList::iterator from, const AddressList& points) {
    const PointRemoval removal(points);
    bool changed = false;
    for (auto x = from; x != list.end();) changed |= removal.Run(list, x) != Effect::kNone;
    return changed;
}

Effect RemovePointsPlainly(RangeList& list, RangeList::iterator& x, const AddressList& points) {
    Effect all = Effect::kNone;
    for (const ulong32 point : points) {
        if (!LiesIn(point, *x)) continue;
        all = TakeFromList(list, x, point, list.end());
        if (all == Effect::kErased) return all;
    }
    ++x;
    return all;
}

}  // namespace

// Each plain form turns to the index as soon as the list has grown enough for it.

void RemoveRanges(RangeList& list, const RangeList& taken, std::uint64_t price) {
    std::size_t left = taken.size();
    for (auto r = taken.begin(); r != taken.end(); ++r, --left) {
        if (IndexPays(list.size(), left, price)) {
            RangeRemoval removal(list, r, left);
            removal.Run();
            removal.Apply();
            return;
        }
        const CrossTest crosses(*r);
        for (auto x = list.begin(); x != list.end();) {
            const bool is_erased =
                crosses(*x) && TakeFromList(list, x, *r, list.end()) == Effect::kErased;
            if (!is_erased) ++x;
        }
    }
}

bool RemovePoints(RangeList& list, const AddressList& points, std::uint64_t price) {
    bool changed = false;
    std::size_t done = 0;
    std::size_t greatest = 0;  // of the list so far
    for (auto x = list.begin(); x != list.end();) {
        if (list.size() > greatest) {
            greatest = list.size();
            if (IndexPays(greatest - done, points.size(), price)) {
                return RemovePointsIndexed(list, x, points) || changed;
            }
        }
        const Effect effect = RemovePointsPlainly(list, x, points);
        changed |= effect != Effect::kNone;
        done += effect != Effect::kErased;
    }
    return changed;
}

bool RemoveSubnets(RangeList& list, const RangeList& subnets, std::uint64_t price) {
    bool changed = false;
    std::size_t left = subnets.size();
    for (auto s = subnets.begin(); s != subnets.end(); ++s, --left) {
        if (IndexPays(list.size(), left, price)) {
            SubnetRemoval removal(s, left);
            for (auto x = list.begin(); x != list.end();) changed |= removal.Run(list, x++);
            return changed;
        }
        const Subnet subnet(*s);
        for (auto x = list.begin(); x != list.end();) {
            const auto place = x;
            const Effect effect = TakeFromList(list, x, subnet, place);
            changed |= effect != Effect::kNone;
            if (effect != Effect::kErased) ++x;
        }
    }
    return changed;
}

}  // namespace kit
