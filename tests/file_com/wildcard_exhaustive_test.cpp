// Every short pattern against every short name, with every combination of the flags.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "file_com/detail/wildcard_core.h"
#include "yardsticks/textbook_wildcard.h"

namespace {

// All texts of up to `longest` of these letters.
std::vector<std::string> Texts(const std::string& letters, std::size_t longest) {
    std::vector<std::string> texts = {""};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (texts[i].size() == longest) break;
        for (const char c : letters) texts.push_back(texts[i] + c);
    }
    return texts;
}

std::string Capitals(std::string text) {
    for (char& c : text) c = c == 'a' ? 'A' : c;
    return text;
}

// Compares with every name, and with case folded once more; returns how many match.
std::size_t Try(const std::string& pattern, const std::vector<std::string>& names, int flags) {
    const std::string capitals = Capitals(pattern);
    std::size_t matches = 0;
    for (const auto& name : names) {
        const bool expected = textbook::Match(pattern.c_str(), name.c_str(), flags);
        matches += expected;
        if (expected != kit::WildcardMatches(pattern.c_str(), name.c_str(), flags) ||
            expected != kit::WildcardMatches(capitals.c_str(), name.c_str(), flags | 0x10)) {
            ADD_FAILURE() << pattern << " / " << name << " flags " << flags;
        }
    }
    return matches;
}

TEST(WildcardExhaustive, AgreesWithTheRecursiveForm) {
    const auto patterns = Texts("a*?.\\", 6);
    const auto names = Texts("ab.\\", 5);
    std::atomic<std::size_t> matches = 0;
    const auto run = [&](std::size_t first) {
        for (std::size_t i = first; i < patterns.size(); i += 2) {
            for (int flags = 0; flags < 8; ++flags) matches += Try(patterns[i], names, flags);
        }
    };
    std::thread other(run, 1);
    run(0);
    other.join();
    EXPECT_GT(matches, 1000000u);
}

}  // namespace
