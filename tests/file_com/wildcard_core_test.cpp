#include "file_com/detail/wildcard_core.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "support/guarded_buffer.h"

namespace {

bool Matches(const char* pattern, const char* name, int flags,
             kit::FoldHighByte fold_high = nullptr) {
    GuardedBuffer guarded_pattern(pattern);
    GuardedBuffer guarded_name(name);
    return kit::WildcardMatches(guarded_pattern.text(), guarded_name.text(), flags, fold_high);
}

TEST(Wildcard, AnswersByItsFlags) {
    const struct {
        const char* pattern;
        const char* name;
        int flags;
        bool matches;
    } cases[] = {
        {"*.txt", "a.txt", 0x15, true},
        {"*.txt", "A.TXT", 0x15, true},
        {"*.TXT", "a.txt", 0x15, true},
        {"*.txt", "A.TXT", 0x05, false},
        {"*.txt", "dir\\a.txt", 0x01, false},
        {"*.txt", "dir\\a.txt", 0x00, true},
        {"*", ".profile", 0x04, false},
        {"?profile", ".profile", 0x04, false},
        {".*", ".profile", 0x04, true},
        {"d\\*", "d\\.p", 0x05, false},
        {"d\\*", "d\\.p", 0x04, true},  // without path mode only the start leads
        {"*\\*", "d\\.p", 0x05, true},  // not looked for behind the first star
        {"a?c", "ac", 0x00, false},
        {"a*", "a", 0x00, true},
        {"a*\\b", "a\\b", 0x01, true},  // a separator may be what the star ends at
        {"*.*", "a", 0x00, false},      // no dot, no match
        {"*a*?b", "xaab", 0x00, true},
        {"", "", 0x00, true},
        {"", "a", 0x00, false},
        {"*[a]", "x[a]", 0x00, true},  // brackets mean themselves
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.pattern) + " / " + c.name);
        EXPECT_EQ(c.matches, Matches(c.pattern, c.name, c.flags));
    }
}

TEST(Wildcard, SearchesForTheCharacterBehindASkippedLiteral) {
    EXPECT_TRUE(Matches("*aab", "xaab", 0x02));
    EXPECT_FALSE(Matches("*ab", "xab", 0x02));
    EXPECT_FALSE(Matches("*a", "xa", 0x02));
    EXPECT_TRUE(Matches("*aAb", "xaab", 0x12));
}

TEST(Wildcard, FoldsHighBytesAsItIsTold) {
    const auto lower = [](unsigned char c) {
        return static_cast<unsigned char>(c >= 0xC0 && c < 0xE0 ? c + 0x20 : c);
    };
    EXPECT_TRUE(Matches("*\xCF\xFF", "a\xEF\xDF", 0x10, lower));
    EXPECT_FALSE(Matches("*\xCF\xFF", "a\xEF\xDF", 0x00, lower));
    EXPECT_FALSE(Matches("\xCF", "\xEF", 0x10));
}

TEST(Wildcard, TakesNoMoreThanPatternTimesName) {
    std::string pattern;
    while (pattern.size() < 258) pattern += "*a";
    pattern += "*b";
    const std::string name(260, 'a');
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(Matches(pattern.c_str(), name.c_str(), 0x15));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
}

}  // namespace
