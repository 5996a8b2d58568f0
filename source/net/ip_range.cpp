#include "net/ip_range.h"

namespace {

// The bounds as they are: nothing lies between those of (a, 0) or of an inverted range.
bool LiesBetween(ulong32 address, const CQELRangeIP& bounds) {
    return bounds.from <= address && address <= bounds.to;
}

}  // namespace

bool CQELRangeIP::IsCross(const CQELRangeIP& b) const {
    if (*this == b) return true;
    if (IsPoint()) return !b.IsPoint() && LiesBetween(from, b);
    if (b.IsPoint()) return LiesBetween(b.from, *this);
    return LiesBetween(from, b) || LiesBetween(to, b) || LiesBetween(b.from, *this);
}

bool CQELRangeIP::IsInclude(const CQELRangeIP& b) const {
    if (*this == b) return true;
    if (b.IsPoint()) return false;
    return LiesBetween(from, b) && (IsPoint() || LiesBetween(to, b));
}
