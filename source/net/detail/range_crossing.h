#pragma once

#include "net/detail/list_work.h"

// Questions about what two lists share; the contracts stand in net/ip_range_list.h. Outputs are not
// inputs.

namespace kit {

bool IsCross(const RangeList& list, const RangeList& b, double price = kIndexPrice);
bool IsCrossPoints(const RangeList& list, const AddressList& points, double price = kIndexPrice);
bool IsCrossSubnets(const RangeList& list, const RangeList& subnets, double price = kIndexPrice);
// The first range of `list` that overlaps one of b, bounds taken as they are; null when none does.
const CQELRangeIP* FirstOverlap(const RangeList& list, const RangeList& b,
                                double price = kIndexPrice);
// Appends to `out`.
void CrossPoints(const RangeList& list, const AddressList& points, AddressList& out,
                 double price = kIndexPrice);
void Intersections(const RangeList& list, const RangeList& b, RangeList& out,
                   double price = kIndexPrice);
// Removes from `addresses` what lies in no subnet; returns whether that was any.
bool KeepSubnets(const RangeList& subnets, AddressList& addresses, double price = kIndexPrice);

}  // namespace kit
