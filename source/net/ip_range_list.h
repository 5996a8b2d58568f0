#pragma once

#include <string>

#include "base/export.h"
#include "base/types.h"
#include "net/ip_range.h"
#include "net/long_list.h"
#include "net/std_list_safe.h"

class CQELString;

// An ordered list of IPv4 ranges. Beside what is here it is a std::list: size() counts the ranges
// (Size() the addresses), and there are iterators, push_back and so on.
//
// - No operation sorts the list or merges ranges. "Equal" is CQELRangeIP's ==, so that (a, 0) and
//   (a, a) are one; overlaps count only where it is said.
// - Every list argument may be this list, and an output may be an input: what was in it on entry
//   counts.
// - Long lists are searched by index, so that the time of every operation grows with (n + m)
//   log (n + m) for lists of n and m ranges and with what it finds or changes, not with n x m.
//   Subnets whose mask has holes (255.0.255.0) are looked at one by one.
// - Memory that runs out throws std::bad_alloc. Operations that take something away may then have
//   done part of it; all others leave every list as it was.
//
// A subnet is a range whose `from` is an address and whose `to` is the mask.
class QELKIT_API CQELRangeIPList : public StdListSafe<CQELRangeIP> {
public:
    // No ranges.
    CQELRangeIPList();
    // (a, a) for each address of `points`.
    CQELRangeIPList(const CQELLongList& points);
    // (froms[i], tos[i]), up to the end of the shorter list.
    CQELRangeIPList(const CQELLongList& froms, const CQELLongList& tos);

    // The i-th range from 0 on; for any other index a default range (0, 0), one for each of the two
    // forms, shared by the process and unguarded.
    CQELRangeIP& operator[](int i);
    const CQELRangeIP& operator[](int i) const;

    // --- Sets of ranges ----------------------------------------------------------------------

    // Appends each range of b that is not equal to one in this list by then.
    CQELRangeIPList& operator+=(const CQELRangeIPList& b);
    // Keeps the ranges that are equal to none of b, and of equal ones only the first.
    CQELRangeIPList& Subtract(const CQELRangeIPList& b);

    // --- Taking addresses away ---------------------------------------------------------------

    // Takes each range of b in turn from the ranges that it crosses: these are erased, trimmed, or
    // cut in two, where the upper part goes to the end of the list.
    //   (1, 10) - (5, 5) = (1, 4), (6, 10)
    //   (1, 10) - (8, 10) = (1, 0), the point 1: a range that ends where the one that is taken out
    //   of it ends loses everything but its `from`, and is left inverted.
    CQELRangeIPList& operator-=(const CQELRangeIPList& b);
    // Takes single addresses from the ranges, the upper part of a cut going to the end of the list.
    // Returns whether anything changed.
    bool RemovePoints(const CQELLongList& points);
    // Takes whole subnets from the ranges; the upper part of a cut comes just before the lower.
    // Does nothing unless IsCrossSubnets(subnets); then subnets of the zero net count too. Returns
    // whether anything changed.
    bool RemoveSubnets(const CQELRangeIPList& subnets);

    // --- Crossing ----------------------------------------------------------------------------

    // Whether some range of b crosses some range of this list.
    bool IsCross(const CQELRangeIPList& b) const;
    // The first range of this list that crosses r and is not equal to *skip (null skips none). Null
    // when there is none.
    const CQELRangeIP* IsCross(const CQELRangeIP& r, const CQELRangeIP* skip) const;
    // Whether some address lies in some range.
    bool IsCrossPoints(const CQELLongList& points) const;
    // Whether some subnet meets some range: for a net other than zero, a point that lies in it or a
    // range whose bounds, cut to the mask, have the net between them.
    bool IsCrossSubnets(const CQELRangeIPList& subnets) const;

    // Finds the first range of this list that overlaps a range of b; bounds are taken as they are,
    // so that (a, 0) holds nothing. Appends its `to` and then its `from` to out, which is NOT
    // cleared, and returns true; false when nothing overlaps.
    bool Cross(const CQELRangeIPList& b, CQELLongList& out) const;
    // Makes out the addresses of `points` that lie in some range, each once, in their order.
    // Returns whether there are any.
    bool Cross(const CQELLongList& points, CQELLongList& out) const;
    // Makes out the intersections: for each range of b, and each of this list that crosses it, the
    // addresses that both have, as a range that out does not have yet. Returns whether there are
    // any.
    bool GetCrossRange(const CQELRangeIPList& b, CQELRangeIPList& out) const;
    // Reads this list as subnets and removes from `list` every address that lies in none of them.
    // Returns whether that removed any.
    bool GetSubnetIPL(CQELLongList& list) const;

    // --- Lists of addresses ------------------------------------------------------------------

    // Makes out every address of each range in turn, `from` to `to`; a point written as (a, 0),
    // with a above 0, gives nothing: only normalised points expand.
    void GetList(CQELLongList& out);
    // Becomes (a, a) for each address of `points` but 0.
    void SetList(const CQELLongList& points);
    // Makes out the `from` (Left) or `to` (Right) of each range; skipPoints other than 0 leaves out
    // ranges whose bounds are the same.
    void Left(CQELLongList& out, int skipPoints) const;
    void Right(CQELLongList& out, int skipPoints) const;
    // Overwrite the `from` (SetLeft) or `to` (SetRight) of the ranges by those of l one by one, up
    // to the end of the shorter list.
    void SetLeft(const CQELLongList& l);
    void SetRight(const CQELLongList& l);

    // The number of addresses, modulo 2^32: points count 1, inverted ranges 0.
    int Size() const;
    // Whether the list is empty or is one point.
    kit::ReturnedBool IsPoint() const;

    // --- Text --------------------------------------------------------------------------------

    // "0.0.0.0" for an empty list, otherwise the first range in style 1 of
    // CQELRangeIP::GetItemIpString, and "..." behind it when there are more.
    const std::string GetItemIpString() const;
    // "0.0.0.0" for an empty list, otherwise every range in style 1, ", " between two.
    const std::string GetRangeListIpString() const;
    // Style 1: "rl: size=2 1.0.0.1-1.0.0.9, 2.0.0.0-0.0.0.0", both bounds even of points.
    // Style 2: every range in style 2, "; " behind each. Any other style: "".
    const std::string DumpRangeIpList(ulong32 style) const;
    // For lists that pair an identifier (`from`) with an address (`to`): appends
    // "rl: size=2 0000002A-10.0.0.1, 0000002B-10.0.0.2" and "\r\n" to out.
    void DumpIDIPList(CQELString& out) const;
};
