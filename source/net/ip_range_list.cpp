#include "net/ip_range_list.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <new>
#include <stdexcept>
#include <utility>

#include "net/detail/exact_set.h"
#include "net/detail/list_work.h"
#include "net/detail/range_crossing.h"
#include "net/detail/range_removal.h"

namespace {

// Runs `work` on an argument that may be the list which the work changes: then on a copy of it.
template <typename Work>
void WithArgument(const CQELRangeIPList& list, const CQELRangeIPList& argument, Work work) {
    if (&list != &argument) return work(argument);
    work(kit::RangeList(argument));
}

// How many addresses a range gives when it is written out.
std::uint64_t ExpandedSize(const CQELRangeIP& range) {
    return range.from <= range.to ? std::uint64_t{range.to} - range.from + 1 : 0;
}

// Throws at once what adding so many addresses would come to throw, after minutes in which it
// takes all memory from everybody else.
void RequireRoom(std::uint64_t count) {
    constexpr std::uint64_t kNode = 24;         // two links and an address, at least
    constexpr std::uint64_t kFreely = 1 << 20;  // not worth the question
    if (count > std::list<ulong32>().max_size()) throw std::length_error("list<T> too long");
    if (count > kFreely) ::operator delete(::operator new(static_cast<std::size_t>(count * kNode)));
}

template <typename List>
auto& ElementAt(List& list, int i) {
    return *std::next(list.begin(), i);
}

bool IsIndex(int i, std::size_t size) { return i >= 0 && static_cast<std::size_t>(i) < size; }

void TakeBounds(const CQELRangeIPList& list, ulong32 CQELRangeIP::*bound, bool skip_points,
                CQELLongList& out) {
    std::list<ulong32> bounds;
    for (const auto& range : list) {
        if (!skip_points || range.from != range.to) bounds.push_back(range.*bound);
    }
    out.swap(bounds);
}

void SetBounds(CQELRangeIPList& list, ulong32 CQELRangeIP::*bound, const CQELLongList& values) {
    auto range = list.begin();
    for (auto value = values.begin(); value != values.end() && range != list.end(); ++value) {
        *range++.*bound = *value;
    }
}

}  // namespace

CQELRangeIPList::CQELRangeIPList() = default;

CQELRangeIPList::CQELRangeIPList(const CQELLongList& points) {
    for (const ulong32 point : points) emplace_back(point, point);
}

CQELRangeIPList::CQELRangeIPList(const CQELLongList& froms, const CQELLongList& tos) {
    auto to = tos.begin();
    for (auto from = froms.begin(); from != froms.end() && to != tos.end(); ++from, ++to) {
        emplace_back(*from, *to);
    }
}

CQELRangeIP& CQELRangeIPList::operator[](int i) {
    static CQELRangeIP none;
    return IsIndex(i, size()) ? ElementAt(*this, i) : none;
}

const CQELRangeIP& CQELRangeIPList::operator[](int i) const {
    static const CQELRangeIP none;
    return IsIndex(i, size()) ? ElementAt(*this, i) : none;
}

// --- Sets of ranges ----------------------------------------------------------------------------------

CQELRangeIPList& CQELRangeIPList::operator+=(const CQELRangeIPList& b) {
    auto missing = kit::MissingIn<CQELRangeIP>(*this, b);
    splice(end(), missing);
    return *this;
}

CQELRangeIPList& CQELRangeIPList::Subtract(const CQELRangeIPList& b) {
    kit::KeepFirstOfMissing(*this, b);
    return *this;
}

// --- Taking addresses away ---------------------------------------------------------------------------

CQELRangeIPList& CQELRangeIPList::operator-=(const CQELRangeIPList& b) {
    WithArgument(*this, b, [&](const kit::RangeList& taken) { kit::RemoveRanges(*this, taken); });
    return *this;
}

bool CQELRangeIPList::RemovePoints(const CQELLongList& points) {
    return kit::RemovePoints(*this, points);
}

bool CQELRangeIPList::RemoveSubnets(const CQELRangeIPList& subnets) {
    // Quirk: subnets of the zero net do not count in the question, but once another subnet has
    // answered it they are removed like the rest. Rule lists rely on 0.0.0.0 alone meaning nothing.
    // Pinned by RemoveSubnets.TakesTheZeroNetOnlyWithAnother.
    if (!IsCrossSubnets(subnets)) return false;
    bool changed = false;
    WithArgument(*this, subnets,
                 [&](const kit::RangeList& taken) { changed = kit::RemoveSubnets(*this, taken); });
    return changed;
}

// --- Crossing ----------------------------------------------------------------------------------------

bool CQELRangeIPList::IsCross(const CQELRangeIPList& b) const { return kit::IsCross(*this, b); }

const CQELRangeIP* CQELRangeIPList::IsCross(const CQELRangeIP& r, const CQELRangeIP* skip) const {
    const auto found = std::find_if(begin(), end(), [&](const CQELRangeIP& range) {
        return !(skip && range == *skip) && range.IsCross(r);
    });
    return found == end() ? nullptr : &*found;
}

bool CQELRangeIPList::IsCrossPoints(const CQELLongList& points) const {
    return kit::IsCrossPoints(*this, points);
}

bool CQELRangeIPList::IsCrossSubnets(const CQELRangeIPList& subnets) const {
    return kit::IsCrossSubnets(*this, subnets);
}

bool CQELRangeIPList::Cross(const CQELRangeIPList& b, CQELLongList& out) const {
    const CQELRangeIP* found = kit::FirstOverlap(*this, b);
    if (!found) return false;
    // Quirk: out is not cleared, unlike in the form for addresses, and `to` comes first. Callers
    // gather the overlaps of several lists in one. Pinned by Cross.AppendsTheFirstOverlapUpperEndFirst.
    std::list<ulong32> bounds = {found->to, found->from};
    out.splice(out.end(), bounds);
    return true;
}

bool CQELRangeIPList::Cross(const CQELLongList& points, CQELLongList& out) const {
    std::list<ulong32> crossing;
    kit::CrossPoints(*this, points, crossing);
    out.swap(crossing);
    return !out.empty();
}

bool CQELRangeIPList::GetCrossRange(const CQELRangeIPList& b, CQELRangeIPList& out) const {
    kit::RangeList intersections;
    kit::Intersections(*this, b, intersections);
    out.swap(intersections);
    return !out.empty();
}

bool CQELRangeIPList::GetSubnetIPL(CQELLongList& list) const {
    return kit::KeepSubnets(*this, list);
}

// --- Lists of addresses ------------------------------------------------------------------------------

void CQELRangeIPList::GetList(CQELLongList& out) {
    std::uint64_t count = 0;
    for (const auto& range : *this) count += ExpandedSize(range);
    RequireRoom(count);
    std::list<ulong32> addresses;
    for (const auto& range : *this) {
        // Quirk: the bounds as they are, so that (a, 0) gives nothing unless a is 0. Callers tell
        // points that were entered from points that were left over by it.
        // Pinned by GetList.ExpandsRangesAndOnlyNormalisedPoints.
        std::uint64_t left = ExpandedSize(range);
        for (ulong32 address = range.from; left > 0; --left) addresses.push_back(address++);
    }
    out.swap(addresses);
}

void CQELRangeIPList::SetList(const CQELLongList& points) {
    kit::RangeList ranges;
    for (const ulong32 point : points) {
        if (point != 0) ranges.emplace_back(point, point);
    }
    swap(ranges);
}

void CQELRangeIPList::Left(CQELLongList& out, int skipPoints) const {
    TakeBounds(*this, &CQELRangeIP::from, skipPoints != 0, out);
}

void CQELRangeIPList::Right(CQELLongList& out, int skipPoints) const {
    TakeBounds(*this, &CQELRangeIP::to, skipPoints != 0, out);
}

void CQELRangeIPList::SetLeft(const CQELLongList& l) { SetBounds(*this, &CQELRangeIP::from, l); }

void CQELRangeIPList::SetRight(const CQELLongList& l) { SetBounds(*this, &CQELRangeIP::to, l); }

int CQELRangeIPList::Size() const {
    std::uint32_t count = 0;
    for (const auto& range : *this) {
        count += range.IsPoint() ? 1 : static_cast<std::uint32_t>(ExpandedSize(range));
    }
    return static_cast<int>(count);
}

kit::ReturnedBool CQELRangeIPList::IsPoint() const {
    return empty() || (size() == 1 && front().IsPoint());
}
