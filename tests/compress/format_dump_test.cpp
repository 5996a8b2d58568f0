// The dump in docs/formats.md is what the library writes.

#include <gtest/gtest.h>

#include <string>

#include "compress/compress_memory.h"
#include "support/formats_page.h"

TEST(FormatsPage, ShowsTheContainerAsItIsWritten) {
    const std::string text = Fenced("sample=container");
    const std::string dump = DumpedBytes("dump=container");
    ASSERT_EQ(54u, text.size());
    ASSERT_EQ(43u, dump.size());

    unsigned char container[60];
    ulong32 size = sizeof container;
    ASSERT_EQ(1, CompressMemory(text.data(), 54, container, &size, 1));
    EXPECT_EQ(ToHex(dump.data(), dump.size()), ToHex(container, size));
    EXPECT_EQ(1, IsMemoryCompressed(dump.data(), 43));
}
