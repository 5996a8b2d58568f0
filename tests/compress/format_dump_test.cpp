// The dump in docs/formats.md is what the library writes.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "compress/compress_memory.h"
#include "support/hex_bytes.h"

namespace {

// The text between the fence ```text <label> and the next one.
std::string Fenced(const std::string& label) {
    std::ifstream file(std::string(QELKIT_TEST_DATA) + "/../../docs/formats.md", std::ios::binary);
    const std::string page(std::istreambuf_iterator<char>(file), {});
    const std::string fence = "```text " + label + "\n";
    const std::size_t begin = page.find(fence) + fence.size();
    const std::size_t end = page.find("\n```", begin);
    EXPECT_NE(std::string::npos, page.find(fence)) << label;
    return end == std::string::npos ? "" : page.substr(begin, end - begin);
}

// The bytes of a dump whose lines begin with an offset.
std::string DumpedBytes(const std::string& dump) {
    std::istringstream lines(dump);
    std::string hex;
    for (std::string line; std::getline(lines, line);) hex += line.substr(line.find(' '));
    return FromHex(hex);
}

}  // namespace

TEST(FormatsPage, ShowsTheContainerAsItIsWritten) {
    const std::string text = Fenced("sample=container");
    const std::string dump = DumpedBytes(Fenced("dump=container"));
    ASSERT_EQ(54u, text.size());
    ASSERT_EQ(43u, dump.size());

    unsigned char container[60];
    ulong32 size = sizeof container;
    ASSERT_EQ(1, CompressMemory(text.data(), 54, container, &size, 1));
    EXPECT_EQ(ToHex(dump.data(), dump.size()), ToHex(container, size));
    EXPECT_EQ(1, IsMemoryCompressed(dump.data(), 43));
}
