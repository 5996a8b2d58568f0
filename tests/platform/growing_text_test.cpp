#include "platform/growing_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

// Behaves as the string loader: at most size - 1 characters, terminated.
struct Loader {
    std::string text;
    std::size_t operator()(char* buffer, std::size_t size) const {
        const std::size_t n = (std::min)(text.size(), size - 1);
        std::memcpy(buffer, text.data(), n);
        buffer[n] = '\0';
        return n;
    }
};

TEST(GrowingText, LoadsTextsWholeAroundEachBufferSize) {
    for (std::size_t length : {0, 1, 254, 255, 256, 257, 510, 511, 512, 513, 2000}) {
        const Loader loader{std::string(length, 'x')};
        EXPECT_EQ(loader.text, kit::GrowingText(loader, 256, 256)) << length;
    }
}

TEST(GrowingText, StopsAtItsLimitWhenTheCallAlwaysFillsTheBuffer) {
    std::size_t calls = 0;
    const auto text =
        kit::GrowingText([&](char*, std::size_t size) { return ++calls, size; }, 16, 16, 64);
    EXPECT_EQ(63u, text.size());
    EXPECT_EQ(4u, calls);
}

}  // namespace
