#pragma once

#include <gtest/gtest.h>

#include <cstddef>

// Compares every value with every other; `values` are different and in ascending order.
template <typename Left, typename Right = Left, std::size_t N>
void ExpectStrictOrder(const Left (&values)[N]) {
    for (const Left& a : values) {
        for (const Left& b : values) {
            const Right& right = b;
            EXPECT_EQ(&a == &b, a == right);
            EXPECT_EQ(&a != &b, a != right);
            EXPECT_EQ(&a < &b, a < right);
            EXPECT_EQ(&a > &b, a > right);
        }
    }
}

template <typename Value, std::size_t N>
void ExpectOrder(const Value (&values)[N]) {
    ExpectStrictOrder(values);
    for (const Value& a : values) {
        for (const Value& b : values) {
            EXPECT_EQ(&a <= &b, a <= b);
            EXPECT_EQ(&a >= &b, a >= b);
        }
    }
}
