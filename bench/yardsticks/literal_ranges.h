#pragma once

// The operations of ranges and range lists, written down step by step: every pair is looked at, in
// order, on plain std::lists. What the library does by index must give the same. Tests compare with
// it, benchmarks measure against it. Nothing here comes from the library. No argument is the list
// that an operation changes.

#include <algorithm>
#include <cstdint>
#include <list>

namespace literal {

using Address = std::uint32_t;
using Addresses = std::list<Address>;

struct Range {
    Address from = 0;
    Address to = 0;

    bool IsPoint() const { return to == from || to == 0; }
    bool Holds(Address a) const { return from <= a && a <= to; }  // by its bounds, points too
};
using Ranges = std::list<Range>;

inline bool operator==(const Range& a, const Range& b) {
    if (a.IsPoint() && b.IsPoint()) return a.from == b.from;
    return a.from == b.from && a.to == b.to;
}

inline bool operator<(const Range& a, const Range& b) {
    if (a.IsPoint() && b.IsPoint()) return a.from < b.from;
    return a.from != b.from ? a.from < b.from : a.to < b.to;
}

inline bool IsCross(const Range& a, const Range& b) {
    if (a == b) return true;
    if (a.IsPoint() && b.IsPoint()) return a.from == b.from;
    if (a.IsPoint()) return b.Holds(a.from);
    if (b.IsPoint()) return a.Holds(b.from);
    if (b.Holds(a.from) || b.Holds(a.to)) return true;
    return a.Holds(b.from);
}

inline bool IsInclude(const Range& a, const Range& b) {
    if (a == b) return true;
    if (a.IsPoint() && b.IsPoint()) return false;
    if (a.IsPoint()) return b.Holds(a.from);
    if (b.IsPoint()) return false;
    return b.Holds(a.from) && b.Holds(a.to);
}

// --- Sets --------------------------------------------------------------------------------------------

template <typename T>
bool Contains(const std::list<T>& list, const T& element) {
    return std::find(list.begin(), list.end(), element) != list.end();
}

template <typename T>
void Add(std::list<T>& list, const std::list<T>& b) {
    for (const T& element : b) {
        if (!Contains(list, element)) list.push_back(element);
    }
}

template <typename T>
void RemoveList(std::list<T>& list, const std::list<T>& b) {
    for (auto x = list.begin(); x != list.end();)
        x = Contains(b, *x) ? list.erase(x) : std::next(x);
}

inline void Subtract(Ranges& list, const Ranges& b) {
    Ranges kept;
    for (const Range& x : list) {
        if (!Contains(b, x) && !Contains(kept, x)) kept.push_back(x);
    }
    list = kept;
}

// --- Taking addresses away ---------------------------------------------------------------------------

// One step of RemoveRanges. True when x was erased; x is then the next range.
inline bool RemoveRange(Ranges& list, Ranges::iterator& x, const Range& r) {
    if (!IsCross(r, *x)) return false;
    if (IsInclude(*x, r)) {
        x = list.erase(x);
        return true;
    }
    if (!IsInclude(r, *x)) {
        if (x->Holds(r.from)) {
            x->to = r.from - 1;
        } else if (r.Holds(x->from)) {
            x->from = r.to + 1;
        }
    } else if (r.IsPoint()) {
        if (r.from == x->from) {
            x->from += 1;
        } else if (r.from == x->to) {
            x->to -= 1;
        } else {
            list.push_back({r.from + 1, x->to});
            x->to = r.from - 1;
        }
    } else if (r.from == x->from) {
        x->from = r.to + 1;
    } else if (r.to == x->to) {
        x->to = x->from - 1;  // of x, not of r
    } else {
        list.push_back({r.to + 1, x->to});
        x->to = r.from - 1;
    }
    return false;
}

inline void RemoveRanges(Ranges& list, const Ranges& b) {
    for (const Range& r : b) {
        for (auto x = list.begin(); x != list.end();) {
            if (!RemoveRange(list, x, r)) ++x;
        }
    }
}

inline bool HoldsPoint(const Range& x, Address p) { return x.IsPoint() ? p == x.from : x.Holds(p); }

inline bool IsCrossPoints(const Ranges& list, const Addresses& points) {
    for (const Range& x : list) {
        for (const Address p : points) {
            if (HoldsPoint(x, p)) return true;
        }
    }
    return false;
}

inline bool RemovePoints(Ranges& list, const Addresses& points) {
    if (!IsCrossPoints(list, points)) return false;
    bool changed = false;
    for (auto x = list.begin(); x != list.end();) {
        bool erased = false;
        for (const Address p : points) {
            if (x->IsPoint()) {
                if (p != x->from) continue;
                x = list.erase(x);
                erased = changed = true;
                break;
            }
            if (!x->Holds(p)) continue;
            changed = true;
            if (p == x->from) {
                x->from += 1;
            } else if (p == x->to) {
                x->to -= 1;
            } else {
                list.push_back({p + 1, x->to});
                x->to = p - 1;
            }
        }
        if (!erased) ++x;
    }
    return changed;
}

inline bool IsCrossSubnets(const Ranges& list, const Ranges& subnets) {
    for (const Range& s : subnets) {
        const Address mask = s.to, net = s.from & mask;
        if (net == 0) continue;
        for (const Range& x : list) {
            if (x.IsPoint() ? (x.from & mask) == net
                            : (x.from & mask) <= net && net <= (x.to & mask)) {
                return true;
            }
        }
    }
    return false;
}

inline bool RemoveSubnets(Ranges& list, const Ranges& subnets) {
    if (!IsCrossSubnets(list, subnets)) return false;
    bool changed = false;
    for (const Range& s : subnets) {
        const Address mask = s.to, net = s.from & mask, end = net + ~mask;
        for (auto x = list.begin(); x != list.end();) {
            const Address low = x->from & mask, high = x->to & mask;
            if (x->IsPoint() || low == high) {
                if (net == low) {
                    x = list.erase(x);
                    changed = true;
                    continue;
                }
            } else if (net < low || net > high) {
                // not touched
            } else if (net == low) {
                x->from = end + 1;
                changed = true;
            } else if (net != high) {
                list.insert(x, {end + 1, x->to});
                x->to = net - 1;
                changed = true;
            } else {
                x->to = net - 1;
                changed = true;
            }
            ++x;
        }
    }
    return changed;
}

// --- Crossing ----------------------------------------------------------------------------------------

inline bool IsCross(const Ranges& list, const Ranges& b) {
    for (const Range& r : b) {
        for (const Range& x : list) {
            if (IsCross(r, x)) return true;
        }
    }
    return false;
}

// `out` is not cleared.
inline bool Cross(const Ranges& list, const Ranges& b, Addresses& out) {
    for (const Range& x : list) {
        for (const Range& r : b) {
            if (x.Holds(r.from) || x.Holds(r.to) || (r.from <= x.from && r.to >= x.to)) {
                out.push_back(x.to);
                out.push_back(x.from);
                return true;
            }
        }
    }
    return false;
}

inline bool CrossPoints(const Ranges& list, const Addresses& points, Addresses& out) {
    out.clear();
    for (const Address p : points) {
        for (const Range& x : list) {
            if (HoldsPoint(x, p) && !Contains(out, p)) out.push_back(p);
        }
    }
    return !out.empty();
}

inline bool GetCrossRange(const Ranges& list, const Ranges& b, Ranges& out) {
    out.clear();
    for (const Range& r : b) {
        for (const Range& x : list) {
            if (!IsCross(x, r)) continue;
            const Range both{(std::max)(x.from, r.from),
                             (std::min)(x.IsPoint() ? x.from : x.to, r.IsPoint() ? r.from : r.to)};
            if (both.from <= both.to && !Contains(out, both)) out.push_back(both);
        }
    }
    return !out.empty();
}

inline bool GetSubnetIPL(const Ranges& subnets, Addresses& list) {
    Addresses kept;
    for (const Address a : list) {
        for (const Range& s : subnets) {
            if ((s.from & s.to) == (a & s.to)) {
                kept.push_back(a);
                break;
            }
        }
    }
    if (kept == list) return false;
    list = kept;
    return true;
}

}  // namespace literal
