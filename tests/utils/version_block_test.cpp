#include "utils/detail/version_block.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/guarded_buffer.h"
#include "utils/version_blocks.h"

namespace {

std::string Query(const std::string& resource, std::initializer_list<std::string_view> keys) {
    GuardedBuffer bytes(resource.data(), resource.size());
    const auto root = kit::VersionBlock::Parse({bytes.data(), bytes.size()});
    const auto found = root ? root->Find(keys) : std::nullopt;
    if (!found) return "none";
    return std::string(found->value().begin(), found->value().end());
}

TEST(VersionBlock, FindsValuesByTheirKeysInAnyCase) {
    const std::string good = GoodResource();
    EXPECT_EQ(FixedRecord(), Query(good, {}));
    EXPECT_EQ(Le16(0x419) + Le16(1251), Query(good, {"VarFileInfo", "Translation"}));
    EXPECT_EQ(Utf16("Rights") + Le16(0),
              Query(good, {"STRINGFILEINFO", "041904e3", "LegalCopyRight"}));
    EXPECT_EQ(Utf16("Remarks") + Le16(0), Query(good, {"StringFileInfo", "041904e3", "Comments"}));
    for (const char* key : {"Comment", "Commentss", ""}) {
        EXPECT_EQ("none", Query(good, {"StringFileInfo", "041904e3", key})) << key;
    }
    EXPECT_EQ("none", Query(good, {"StringFileInfo", "041904e3", "Comments", "Comments"}));
}

TEST(VersionBlock, CutsAValueToItsBlock) {
    // The length in bytes, where it is counted in characters.
    const std::string text = Utf16("text") + Le16(0);
    EXPECT_EQ(text, Query(Folder("root", {Block("a", text.size(), 1, text, {})}), {"a"}));
    EXPECT_EQ("ab", Query(Folder("root", {Block("a", 0xFFFF, 0, "ab", {})}), {"a"}));
}

TEST(VersionBlock, RefusesWhatDoesNotFit) {
    const std::string good = Folder("root", {TextBlock("a", "text")});
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_EQ("none", Query(good.substr(0, size), {"a"})) << size;
    }
    EXPECT_EQ("none", Query(Le16(5) + good.substr(2), {"a"})) << "shorter than a header";
    EXPECT_EQ("none", Query(Le16(8) + good.substr(2), {"a"})) << "a key without its end";
    const std::string endless = Folder("root", {std::string(64, '\0')});
    EXPECT_EQ("none", Query(endless, {"a"})) << "children without length";
}

// Every read beyond the bytes ends the program.
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
        const std::string text = Query(bad, {"StringFileInfo", "041904e3", "Comments"});
        changed += text != Utf16("Remarks") + Le16(0);
    }
    EXPECT_GT(changed, 100) << "the damage does reach the answer";
}

}  // namespace
