#include "file_com/detail/wildcard_core.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace {

using kit::WildcardMatches;

TEST(Wildcard, FoldsCaseAsItIsTold) {
    const auto lower = [](unsigned char c) {
        return static_cast<unsigned char>(c >= 0xC0 && c < 0xE0 ? c + 0x20 : c);
    };
    EXPECT_TRUE(WildcardMatches("*\xCF?\xFF*", "a\xEFx\xDF", 0x10, lower));
    EXPECT_FALSE(WildcardMatches("*\xCF?\xFF*", "a\xEFx\xDF", 0x00, lower));
    EXPECT_FALSE(WildcardMatches("[a]@", "A`", 0x10));  // brackets and signs are themselves
}

TEST(Wildcard, SearchesForTheCharacterBehindASkippedLiteral) {
    EXPECT_TRUE(WildcardMatches("*aAb", "xaab", 0x12));
    EXPECT_FALSE(WildcardMatches("*ab", "xab", 0x02));
}

TEST(Wildcard, TakesNoMoreThanPatternTimesName) {
    std::string pattern = "*b?";
    while (pattern.size() < 260) pattern.insert(0, "*a");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(WildcardMatches(pattern.c_str(), std::string(260, 'a').c_str(), 0x15));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
}

}  // namespace
