#include "runtime/detail/window_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/guarded_buffer.h"

namespace {

using Windows = std::vector<std::uint64_t>;

Windows Read(const kit::WindowTable& table) {
    Windows windows;
    for (std::uint64_t i = 0; i < table.Count(); ++i) windows.push_back(table.At(i));
    return windows;
}

class WindowTableTest : public testing::Test {
protected:
    WindowTableTest() { std::memset(block_.data(), 0, block_.size()); }
    kit::WindowTable& table() { return *reinterpret_cast<kit::WindowTable*>(block_.data()); }
    GuardedBuffer block_{256};
};

TEST_F(WindowTableTest, IsAListOfAtMost31DifferentWindows) {
    std::mt19937 random(7);
    Windows model;
    for (int step = 0; step < 20000; ++step) {
        const std::uint64_t window = random() % 40 + 0x100000000;
        const auto found = std::find(model.begin(), model.end(), window);
        if (random() % 5 < 3) {
            const bool fits = found != model.end() || model.size() < 31;
            if (found == model.end() && fits) model.push_back(window);
            ASSERT_EQ(fits, table().Add(window));
        } else {
            if (found != model.end()) model.erase(found);
            table().RemoveIf([=](std::uint64_t w) { return w == window; });
        }
        ASSERT_EQ(model, Read(table())) << step;
    }
}

TEST_F(WindowTableTest, LiesInTheBlockWhereOtherProcessesLook) {
    table().Add(0x1122334455667788);
    table().Add(2);
    constexpr unsigned char kBytes[] = {2,    0,    0,    0,    0,    0,    0,    0, 0x88,
                                        0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11, 2};
    EXPECT_EQ(0, std::memcmp(kBytes, block_.data(), sizeof kBytes));
}

TEST_F(WindowTableTest, DoesNotBelieveACountBeyond31) {
    for (const std::uint64_t count : {std::uint64_t{32}, ~std::uint64_t{0}}) {
        std::memcpy(block_.data(), &count, sizeof count);
        EXPECT_EQ(Windows{}, Read(table()));
        EXPECT_TRUE(table().Add(5));
        EXPECT_EQ(Windows{5}, Read(table()));
    }
}

}  // namespace
