#include "runtime/detail/window_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/guarded_buffer.h"

namespace {

std::vector<std::uint64_t> Read(const kit::WindowTable& table) {
    std::vector<std::uint64_t> windows;
    for (std::uint64_t i = 0; i < table.Count(); ++i) windows.push_back(table.At(i));
    return windows;
}

// Other processes find the count at offset 0 and the windows from offset 8 on; they may also have
// left nonsense there.
TEST(WindowTable, IsAListOfAtMost31DifferentWindows) {
    GuardedBuffer block(256);
    auto& table = *reinterpret_cast<kit::WindowTable*>(block.data());
    std::uint64_t cells[2] = {32, 0};
    std::memcpy(block.data(), cells, sizeof cells);
    std::mt19937 random(7);
    std::vector<std::uint64_t> model;
    for (int step = 0; step < 20000; ++step) {
        const std::uint64_t window = random() % 40 + 0x100000000;
        const auto found = std::find(model.begin(), model.end(), window);
        if (random() % 5 < 3) {
            const bool fits = found != model.end() || model.size() < 31;
            if (found == model.end() && fits) model.push_back(window);
            ASSERT_EQ(fits, table.Add(window));
        } else {
            if (found != model.end()) model.erase(found);
            table.RemoveIf([=](std::uint64_t w) { return w == window; });
        }
        ASSERT_EQ(model, Read(table)) << step;
        std::memcpy(cells, block.data(), sizeof cells);
        ASSERT_EQ(model.size(), cells[0]);
        ASSERT_TRUE(model.empty() || model[0] == cells[1]);
    }
}

}  // namespace
