#include "utils/detail/version_block.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/guarded_buffer.h"
#include "utils/version_blocks.h"

namespace {

// Every read beyond the bytes ends the program.
std::string Query(const std::string& resource, std::initializer_list<std::string_view> keys) {
    GuardedBuffer bytes(resource.data(), resource.size());
    const auto root = kit::VersionBlock::Parse({bytes.data(), bytes.size()});
    const auto found = root ? root->Find(keys) : std::nullopt;
    return found ? std::string(found->value().begin(), found->value().end()) : "none";
}

TEST(VersionBlock, FindsValuesByTheirKeysInAnyCase) {
    const std::string good = GoodResource();
    EXPECT_EQ(Le16(0x419) + Le16(1251), Query(good, {"VarFileInfo", "Translation"}));
    EXPECT_EQ(Utf16("Rights"), Query(good, {"STRINGFILEINFO", "041904e3", "LegalCopyRight"}));
    for (const char* key : {"Comment", "Commentss", ""}) {
        EXPECT_EQ("none", Query(good, {"StringFileInfo", "041904e3", key})) << key;
    }
    // Lengths in bytes, where they are counted in characters, and beyond the block.
    EXPECT_EQ(Utf16("text"), Query(Folder("root", {Block("a", 10, 1, Utf16("text"), {})}), {"a"}));
    EXPECT_EQ("ab", Query(Folder("root", {Block("a", 0xFFFF, 0, "ab", {})}), {"a"}));
    EXPECT_EQ("none", Query(Folder("root", {std::string(64, '\0')}), {"a"})) << "no lengths";
}

TEST(VersionBlock, SurvivesDamage) {
    const std::string good = GoodResource();
    std::mt19937 random(20240229);
    int changed = 0;
    for (int round = 0; round < 500; ++round) {
        std::string bad = good;
        for (auto n = random() % 8 + 1; n > 0; --n) {
            bad[random() % bad.size()] = static_cast<char>(random() % 3 ? random() : -1);
        }
        bad.resize(bad.size() - (random() % 2 ? 0 : random() % bad.size()));
        changed += Utf16("Remarks") != Query(bad, {"StringFileInfo", "041904e3", "Comments"});
    }
    EXPECT_GT(changed, 100) << "the damage does reach the answer";
}

}  // namespace
