#pragma once

#include "net/detail/list_work.h"

// Taking addresses away from a list of ranges; the contracts stand in net/ip_range_list.h. `taken`
// is not the list itself.

namespace kit {

void RemoveRanges(RangeList& list, const RangeList& taken, std::uint64_t price = kRemovalPrice);
bool RemovePoints(RangeList& list, const AddressList& points, std::uint64_t price = kRemovalPrice);
// Without the question whether any subnet crosses.
bool RemoveSubnets(RangeList& list, const RangeList& subnets, std::uint64_t price = kRemovalPrice);

}  // namespace kit
