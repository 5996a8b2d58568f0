#pragma once

// The examples of docs/formats.md.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "support/hex_bytes.h"

// The text between the fence ```text <label> and the next one.
inline std::string Fenced(const std::string& label) {
    std::ifstream file(std::string(QELKIT_TEST_DATA) + "/../../docs/formats.md", std::ios::binary);
    const std::string page(std::istreambuf_iterator<char>(file), {});
    const std::string fence = "```text " + label + "\n";
    const std::size_t begin = page.find(fence) + fence.size();
    const std::size_t end = page.find("\n```", begin);
    EXPECT_NE(std::string::npos, page.find(fence)) << label;
    return end == std::string::npos ? "" : page.substr(begin, end - begin);
}

// The bytes of a dump whose lines begin with an offset.
inline std::string DumpedBytes(const std::string& label) {
    std::istringstream lines(Fenced(label));
    std::string hex;
    for (std::string line; std::getline(lines, line);) hex += line.substr(line.find(' '));
    return FromHex(hex);
}
