// Every operation with its allocations failing in turn: each of the first ones, then in growing steps.
// A program of its own: it replaces the allocator.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <new>
#include <random>

#include "net/range_lists.h"

namespace {

constexpr long kNever = -1;
constexpr std::size_t kHuge = std::size_t{1} << 32;  // more than this machine is asked for
long allocations_left = kNever;

void* Allocate(std::size_t size) {
    if (allocations_left == 0 || size > kHuge) throw std::bad_alloc();
    if (allocations_left > 0) --allocations_left;
    if (void* block = std::malloc(size)) return block;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace {

// Whether `work` came to its end with only so many allocations.
template <typename Work>
bool Succeeds(long allocations, Work work) {
    allocations_left = allocations;
    try {
        work();
    } catch (const std::bad_alloc&) {
        allocations_left = kNever;
        return false;
    }
    allocations_left = kNever;
    return true;
}

long Next(long allocations) { return allocations + 1 + allocations / 8; }

// Ranges whose ends never agree with those of the other lists (`last_bit`), so that taking them away
// twice is the same as once.
CQELRangeIPList Scattered(unsigned seed, int count, ulong32 last_bit) {
    std::mt19937 random(seed);
    CQELRangeIPList list;
    for (int i = 0; i < count; ++i) {
        const ulong32 from = (random() % 2000 & ~1U) | last_bit;
        list.emplace_back(from, from + 2 * (random() % 50));
    }
    return list;
}

struct Lists {
    explicit Lists(int count)
        : ranges(Scattered(1, count, 0)), b(Scattered(2, count, 1)), out(Scattered(3, 3, 0)) {
        for (const auto& range : b) addresses.push_back(range.from);
        for (const auto& range : b) subnets.emplace_back(range.from, 0xFFFFFFF0);
        more.push_back(5);
    }
    bool operator==(const Lists& other) const {
        return SameLists(ranges, other.ranges) && SameLists(out, other.out) &&
               SameLists(addresses, other.addresses) && SameLists(more, other.more);
    }

    CQELRangeIPList ranges, b, subnets, out;
    CQELLongList addresses, more;
};

const int kCounts[] = {6, 60};  // without an index and with one

TEST(OutOfMemory, LeavesEveryListUnharmed) {
    const std::function<void(Lists&)> operations[] = {
        [](Lists& l) { l.ranges += l.b; },
        [](Lists& l) { l.more += l.addresses; },
        [](Lists& l) { l.more.ChangeRemainFirst(l.addresses); },
        [](Lists& l) { l.more.FromString("1.2.3.4;5.6.7.8", ';'); },
        [](Lists& l) { l.ranges.IsCross(l.b); },
        [](Lists& l) { l.ranges.IsCrossPoints(l.more); },
        [](Lists& l) { l.ranges.IsCrossSubnets(l.subnets); },
        [](Lists& l) { l.ranges.Cross(l.b, l.more); },
        [](Lists& l) { l.ranges.Cross(l.addresses, l.more); },
        [](Lists& l) { l.ranges.GetCrossRange(l.b, l.out); },
        [](Lists& l) { l.ranges.GetList(l.more); },
        [](Lists& l) { l.ranges.SetList(l.addresses); },
        [](Lists& l) { l.ranges.Left(l.more, 0); },
        [](Lists& l) {
            l.more.Load(reinterpret_cast<const unsigned char*>("four and four and four"), 20);
        },
        [](Lists& l) {
            unsigned int length;
            unsigned char* data;
            l.ranges.Save(length, data);
        },
    };
    for (const int count : kCounts) {
        const Lists before(count);
        for (const auto& operation : operations) {
            Lists lists = before;
            for (long n = 0; !Succeeds(n, [&] { operation(lists); }); n = Next(n)) {
                ASSERT_TRUE(lists == before) << &operation - operations << " after " << n;
            }
        }
    }
}

CQELLongList Expanded(CQELRangeIPList list) {
    CQELLongList addresses;
    list.GetList(addresses);
    addresses.sort();
    addresses.unique();
    return addresses;
}

TEST(OutOfMemory, LosesNoAddressThatShouldStay) {
    const std::function<void(Lists&)> operations[] = {
        [](Lists& l) { l.ranges -= l.b; },
        [](Lists& l) { l.ranges.RemovePoints(l.addresses); },
        [](Lists& l) { l.ranges.RemoveSubnets(l.subnets); },
    };
    for (const int count : kCounts) {
        const Lists before(count);
        long failures = 0;
        for (const auto& operation : operations) {
            Lists done = before;
            operation(done);
            const auto expected = Expanded(done.ranges);
            ASSERT_NE(Expanded(before.ranges), expected);
            long n = 0;
            for (Lists lists = before; !Succeeds(n, [&] { operation(lists); });
                 lists = before, n = Next(n)) {
                operation(lists);  // does what the failure left undone
                ASSERT_EQ(expected, Expanded(lists.ranges)) << &operation - operations << " " << n;
            }
            failures += n;
        }
        EXPECT_GT(failures, 0);
    }
}

}  // namespace
