#include "utils/detail/version_block.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "support/guarded_buffer.h"

namespace {

// The comments of a resource. Every read beyond its bytes ends the program.
std::string Comments(const std::string& resource) {
    GuardedBuffer bytes(resource.data(), resource.size());
    const auto root = kit::VersionBlock::Parse({bytes.data(), bytes.size()});
    const auto found = root ? root->Find({"StringFileInfo", "041904e3", "Comments"}) : std::nullopt;
    return found ? std::string(found->value().begin(), found->value().end()) : "none";
}

TEST(VersionBlock, SurvivesDamage) {
    std::string good(4096, '\0');
    FILE* file = std::fopen(QELKIT_TEST_DATA "/../../fuzz/corpus/version_block/good", "rb");
    ASSERT_NE(nullptr, file);
    good.resize(std::fread(good.data(), 1, good.size(), file));
    std::fclose(file);
    const std::string text("R\0e\0m\0a\0r\0k\0s\0\0", 16);
    EXPECT_EQ(text, Comments(good));

    std::mt19937 random(20240229);
    int changed = 0;
    for (int round = 0; round < 500; ++round) {
        std::string bad = good;
        for (auto n = random() % 8 + 1; n > 0; --n) {
            bad[random() % bad.size()] = static_cast<char>(random() % 3 ? random() : -1);
        }
        bad.resize(bad.size() - (random() % 2 ? 0 : random() % bad.size()));
        changed += Comments(bad) != text;
    }
    EXPECT_GT(changed, 100) << "the damage does reach the answer";
}

}  // namespace
