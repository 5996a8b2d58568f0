#include <gtest/gtest.h>

#include <vector>

#include "config/option_blob.h"
#include "support/failing_memory.h"

namespace {

const std::vector<unsigned char> kData(1000, 0);

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
    EXPECT_TRUE(code == 0 && length == 0 && data == nullptr);
}

TEST(OptionBlobMemory, AddsAnEmptyOptionOrNoneAndBuildsNoBlob) {
    CQelOpts options;
    unsigned int length = 99;
    unsigned char* blob;
    {
        const failing_memory::After limit(0);
        EXPECT_EQ(0, options.AddOption(1, 10, kData.data()));
        EXPECT_EQ(0u, options.GetLength());
    }
    options.AddOption(2, 10, kData.data());  // takes a block with room to spare
    {
        const failing_memory::After limit(0);
        EXPECT_EQ(0, options.AddOption(3, 1000, kData.data()));  // no room for so much data
        options.GetAllOptions(length, blob);
        EXPECT_TRUE(length == 0 && blob == nullptr);
    }
    options.GetAllOptions(length, blob);
    EXPECT_EQ(18u + 8u, length);
    EXPECT_EQ(0, blob[18]);  // the code of the empty option
}

// The generous block cannot be had, the one that just suffices can.
TEST(OptionBlobMemory, TriesASmallerBlock) {
    const unsigned char blob[18] = {0, 0, 0, 0, 10};
    const failing_memory::After limit(1, /*failing_first=*/1);
    CQelOpts options(blob, sizeof blob);
    EXPECT_EQ(18u, options.GetLength());
}
