#include "blob/int64.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

// As callers read it: the object's memory as one number.
std::uint64_t Memory(const CQELInt64& x) {
    std::uint64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return bits;
}

constexpr std::uint64_t kAllOnes = 0xFFFFFFFFFFFFFFFF;

TEST(Int64, KeepsTheLowHalfFirstExtendsIntsBySignAndWrapsAround) {
    EXPECT_EQ(0u, Memory(CQELInt64()));
    EXPECT_EQ(0xFFFFFFFFu, Memory(CQELInt64(ulong32{0xFFFFFFFF})));
    EXPECT_EQ(0x89ABCDEF01234567u, Memory(CQELInt64(ulong32{0x01234567}, ulong32{0x89ABCDEF})));
    EXPECT_EQ(0x89ABCDEF01234567u, Memory(CQELInt64(std::uint64_t{0x89ABCDEF01234567})));
    EXPECT_EQ(kAllOnes - 4, Memory(CQELInt64(std::int64_t{-5})));
    CQELInt64 x(7, 7);
    EXPECT_EQ(0xFFFFFFFFu, Memory(x = ulong32{0xFFFFFFFF}));
    EXPECT_EQ(kAllOnes - 1, Memory(x = std::int64_t{-2}));
    EXPECT_EQ(kAllOnes, Memory(x = -1));
    EXPECT_EQ(1u, Memory(x += CQELInt64(2)));
    EXPECT_EQ(kAllOnes - 1, Memory(x -= CQELInt64(3)));
    EXPECT_EQ(kAllOnes - 8, Memory(x - CQELInt64(7)));
    EXPECT_EQ(kAllOnes - 3, Memory(x += -2));
    EXPECT_EQ(0xFFFFFFFBu, Memory(x += ulong32{0xFFFFFFFF}));
    x = CQELInt64(ulong32{3}, ulong32{0x80000000});
    x *= CQELInt64(ulong32{4}, ulong32{1});
    EXPECT_EQ(0x30000000Cu, Memory(x));  // 3 * 4, and 3 in the high half; 2^63 * 4 is lost
}

template <typename T>
int Relations(const T& a, const T& b) {
    return (a < b) | (a <= b) << 1 | (a > b) << 2 | (a >= b) << 3 | (a == b) << 4 | (a != b) << 5;
}

TEST(Int64, IsOrderedAsUnsignedAndConvertsAsSigned) {
    const CQELInt64 ascending[] = {{0, 0}, {9, 0}, {1, 1}, {2, 1}, {0, 0x80000000}, {~0u, ~0u}};
    for (const auto& a : ascending) {
        for (const auto& b : ascending) {
            EXPECT_EQ(Relations(&a, &b), Relations(a, b)) << Memory(a) << ' ' << Memory(b);
        }
    }
    const CQELInt64& minus_one = ascending[5];
    EXPECT_EQ(-1.0, static_cast<double>(minus_one));
    EXPECT_EQ(-1.0f, static_cast<float>(minus_one));
    EXPECT_EQ(-1, static_cast<std::int64_t>(minus_one));
    EXPECT_EQ(kAllOnes, static_cast<std::uint64_t>(minus_one));
    EXPECT_EQ(4294967296.0, static_cast<double>(CQELInt64(ulong32{0}, ulong32{1})));
}

}  // namespace
