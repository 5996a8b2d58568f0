// Every short pattern against every short name, with every combination of the flags.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "file_com/detail/wildcard_core.h"
#include "support/textbook_wildcard.h"

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

TEST(WildcardExhaustive, AgreesWithTheRecursiveForm) {
    const auto patterns = Texts("a*?.\\", 6);
    const auto names = Texts("ab.\\", 5);
    std::size_t matches = 0;
    for (const int flags : {0, 1, 2, 3, 4, 5, 6, 7, 16, 17, 18, 19, 20, 21, 22, 23}) {
        for (const auto& pattern : patterns) {
            for (const auto& name : names) {
                const bool expected = textbook::Match(pattern.c_str(), name.c_str(), flags);
                matches += expected;
                ASSERT_EQ(expected, kit::WildcardMatches(pattern.c_str(), name.c_str(), flags))
                    << pattern << " / " << name << " flags " << flags;
            }
        }
    }
    EXPECT_GT(matches, 1000000u);
}

}  // namespace
