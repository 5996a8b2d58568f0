// Any bytes as stored lists. They must be saved as they were loaded, and whatever ranges they hold,
// the operations must do what their steps say: short lists in both ways of the library.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "net/detail/range_removal.h"
#include "net/ip_range_list.h"
#include "yardsticks/literal_ranges.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

template <typename List>
List Load(const std::uint8_t* data, std::size_t size) {
    List list;
    list.Load(data, static_cast<unsigned int>(size));
    const auto element = static_cast<std::size_t>(list.Sizeof());
    Require(list.size() == size / element);
    unsigned int length = 0;
    unsigned char* saved = nullptr;
    list.Save(length, saved);
    Require(length == list.size() * element);
    Require(length == 0 || std::memcmp(saved, data, length) == 0);
    return list;
}

literal::Ranges Literal(const CQELRangeIPList& list) {
    literal::Ranges ranges;
    for (const auto& range : list) ranges.push_back({range.from, range.to});
    return ranges;
}

bool Same(const kit::RangeList& list, const literal::Ranges& ranges) {
    return std::equal(list.begin(), list.end(), ranges.begin(), ranges.end(),
                      [](const CQELRangeIP& a, const literal::Range& b) {
                          return a.from == b.from && a.to == b.to;
                      });
}

void RequireLiteralRemoval(const CQELRangeIPList& a, const CQELRangeIPList& b) {
    auto expected = Literal(a);
    literal::RemoveRanges(expected, Literal(b));
    auto plain = a, indexed = a;
    plain -= b;
    kit::RemoveRanges(indexed, b, 0);
    Require(Same(plain, expected) && Same(indexed, expected));

    expected = Literal(a);
    const bool changed = literal::RemoveSubnets(expected, Literal(b));
    plain = indexed = a;
    Require(plain.RemoveSubnets(b) == changed && Same(plain, expected));
    if (changed) Require(kit::RemoveSubnets(indexed, b, 0) && Same(indexed, expected));

    literal::Ranges crossing;
    literal::GetCrossRange(Literal(a), Literal(b), crossing);
    a.GetCrossRange(b, plain);
    Require(Same(plain, crossing));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> exact(data, data + size);
    Load<CQELLongList>(exact.data(), size);
    const auto a = Load<CQELRangeIPList>(exact.data(), size / 2);
    const auto b = Load<CQELRangeIPList>(exact.data() + size / 2, size - size / 2);
    if (a.size() + b.size() <= 40) RequireLiteralRemoval(a, b);
    return 0;
}
