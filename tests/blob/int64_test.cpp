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

TEST(Int64, KeepsTheLowHalfFirst) {
    EXPECT_EQ(0u, Memory(CQELInt64()));
    EXPECT_EQ(0xFFFFFFFFu, Memory(CQELInt64(ulong32{0xFFFFFFFF})));
    EXPECT_EQ(0x89ABCDEF01234567u, Memory(CQELInt64(ulong32{0x01234567}, ulong32{0x89ABCDEF})));
    EXPECT_EQ(0x89ABCDEF01234567u, Memory(CQELInt64(std::uint64_t{0x89ABCDEF01234567})));
    EXPECT_EQ(kAllOnes - 4, Memory(CQELInt64(std::int64_t{-5})));
    EXPECT_EQ(1u, Memory(CQELInt64(1)));
    EXPECT_EQ(kAllOnes, Memory(CQELInt64(-1)));
}

TEST(Int64, ExtendsIntsBySignAndUnsignedsByZero) {
    CQELInt64 x(7, 7);
    x = -1;
    EXPECT_EQ(kAllOnes, Memory(x));
    x = ulong32{0xFFFFFFFF};
    EXPECT_EQ(0xFFFFFFFFu, Memory(x));
    x = std::int64_t{-2};
    EXPECT_EQ(kAllOnes - 1, Memory(x));

    x = CQELInt64(ulong32{0}, ulong32{1});
    x += -1;
    EXPECT_EQ(0xFFFFFFFFu, Memory(x));
    x += ulong32{0xFFFFFFFF};
    EXPECT_EQ(0x1FFFFFFFEu, Memory(x));
}

TEST(Int64, WrapsAround) {
    CQELInt64 x(kAllOnes);
    x += CQELInt64(2);
    EXPECT_EQ(1u, Memory(x));
    x -= CQELInt64(3);
    EXPECT_EQ(kAllOnes - 1, Memory(x));
    EXPECT_EQ(kAllOnes - 8, Memory(x - CQELInt64(7)));
    EXPECT_EQ(kAllOnes - 1, Memory(x));
    x = CQELInt64(ulong32{3}, ulong32{0x80000000});
    x *= CQELInt64(ulong32{4}, ulong32{1});
    EXPECT_EQ(0x30000000Cu, Memory(x));  // 3 * 4, and 3 in the high half; 2^63 * 4 is lost
}

TEST(Int64, IsOrderedAsUnsignedAndConvertsAsSigned) {
    const CQELInt64 minus_one(ulong32{0xFFFFFFFF}, ulong32{0xFFFFFFFF});
    EXPECT_TRUE(minus_one > CQELInt64(1));
    EXPECT_FALSE(minus_one < CQELInt64(1));
    EXPECT_EQ(-1.0, static_cast<double>(minus_one));
    EXPECT_EQ(-1.0f, static_cast<float>(minus_one));
    EXPECT_EQ(-1, static_cast<std::int64_t>(minus_one));
    EXPECT_EQ(kAllOnes, static_cast<std::uint64_t>(minus_one));
    EXPECT_EQ(4294967296.0, static_cast<double>(CQELInt64(ulong32{0}, ulong32{1})));
}

TEST(Int64, ComparesTheHighHalvesFirst) {
    const CQELInt64 ascending[] = {{ulong32{0}, ulong32{0}},
                                   {ulong32{9}, ulong32{0}},
                                   {ulong32{1}, ulong32{1}},
                                   {ulong32{2}, ulong32{1}},
                                   {ulong32{0}, ulong32{0x80000000}}};
    for (const auto& a : ascending) {
        for (const auto& b : ascending) {
            SCOPED_TRACE(testing::Message() << std::hex << Memory(a) << ' ' << Memory(b));
            EXPECT_EQ(&a < &b, a < b);
            EXPECT_EQ(&a <= &b, a <= b);
            EXPECT_EQ(&a > &b, a > b);
            EXPECT_EQ(&a >= &b, a >= b);
            EXPECT_EQ(&a == &b, a == b);
            EXPECT_EQ(&a != &b, a != b);
        }
    }
}

}  // namespace
