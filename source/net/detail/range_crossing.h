#pragma once

#include "net/detail/list_work.h"

// Questions about what two lists share; the contracts stand in net/ip_range_list.h. Outputs are not
// inputs.

namespace kit {

bool IsCross(const RangeList& list, const RangeList& b, std::uint64_t price = kCrossingPrice);
bool IsCrossPoints(const RangeList& list, const AddressList& points,
                   std::uint64_t price = kCrossingPrice);
bool IsCrossSubnets(const RangeList& list, const RangeList& subnets,
                    std::uint64_t price = kCrossingPrice);
// The first range of `list` that overlaps one of b, bounds taken as they are; null when none does.
const CQELRangeIP* FirstOverlap(const RangeList& list, const RangeList& b,
                                std::uint64_t price = kCrossingPrice);
// Appends to `out`.
void CrossPoints(const RangeList& list, const AddressList& points, AddressList& out,
                 std::uint64_t price = kCrossingPrice);
void Intersections(const RangeList& list, const RangeList& b, RangeList& out,
                   std::uint64_t price = kCrossingPrice);
// Removes from `addresses` what lies in no subnet; returns whether that was any.
bool KeepSubnets(const RangeList& subnets, AddressList& addresses,
                 std::uint64_t price = kCrossingPrice);

}  // namespace kit
