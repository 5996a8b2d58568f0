#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/option_blob.h"
#include "support/failing_memory.h"

namespace {

const std::vector<unsigned char> kData(1000, 'x');

unsigned int CodeAt(CQelOpts& options, int index) {
    unsigned int code = 99, length;
    unsigned char* data;
    if (options.SeekAt(index) == index) options.GetOption(code, length, data);
    return code;
}

}  // namespace

TEST(OptionBlobMemory, LeavesAnEmptyOptionWhenTheDataCannotBeCopied) {
    CQelOpt option(5, 3, kData.data());
    {
        const failing_memory::After limit(0);
        option.Set(6, 4, kData.data());
    }
    unsigned int code = 99, length = 99;
    unsigned char* data;
    option.Get(code, length, data);
    EXPECT_EQ(0u, code);
    EXPECT_EQ(0u, length);
    EXPECT_EQ(nullptr, data);
}

TEST(OptionBlobMemory, AddsAnEmptyOptionOrNone) {
    CQelOpts options;
    {
        const failing_memory::After limit(0);
        EXPECT_EQ(0, options.AddOption(1, 10, kData.data()));
        EXPECT_EQ(0u, options.GetLength());
    }
    options.AddOption(2, 10, kData.data());  // takes a block with room to spare
    {
        const failing_memory::After limit(0);
        EXPECT_EQ(0, options.AddOption(3, 1000, kData.data()));  // no room for so much data
    }
    EXPECT_EQ(18u + 8u, options.GetLength());
    EXPECT_EQ(2u, CodeAt(options, 0));
    EXPECT_EQ(0u, CodeAt(options, 1));
}

TEST(OptionBlobMemory, BuildsNoBlobWithoutMemoryAndKeepsTheOptions) {
    CQelOpts options;
    options.AddOption(1, 10, kData.data());
    unsigned int length = 99;
    unsigned char* blob;
    options.GetAllOptions(length, blob);
    {
        const failing_memory::After limit(0);
        options.GetAllOptions(length, blob);
    }
    EXPECT_EQ(0u, length);
    EXPECT_EQ(nullptr, blob);
    options.GetAllOptions(length, blob);
    EXPECT_EQ(18u, length);
}

// The generous block cannot be had, the one that just suffices can.
TEST(OptionBlobMemory, TriesASmallerBlock) {
    std::vector<unsigned char> blob(18, 0);
    blob[4] = 10;
    const failing_memory::After limit(1, /*failing_first=*/1);
    CQelOpts options(blob.data(), 18);
    EXPECT_EQ(18u, options.GetLength());
}
