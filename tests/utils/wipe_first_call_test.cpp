// WipeDirectory takes its arguments apart in the first recursive call of a process only, so each
// suite runs in a process of its own, its tests in this order.

#include <gtest/gtest.h>

#include <string>

#include "support/folder_link.h"
#include "support/temp_folder.h"
#include "utils/wipe.h"

namespace {

class WipeTree : public ::testing::Test {
protected:
    WipeTree() {
        folder_.MakeFolder("canaries");
        folder_.Write("canaries\\a.tmp", "lives");
        folder_.MakeFolder("tree");
        folder_.MakeFolder("tree\\sub");
        for (const char* name :
             {"tree\\a.tmp", "tree\\b.dat", "tree\\sub\\c.tmp", "tree\\sub\\d.dat"}) {
            folder_.Write(name, "x");
        }
    }
    ~WipeTree() override { EXPECT_EQ("lives", folder_.Read("canaries\\a.tmp")); }

    ulong32 Wipe(const std::string& name, int recurse) {
        return QELUtils::WipeDirectory((folder_ / name).c_str(), mask_, recurse);
    }
    void ExpectFiles(const std::string& present, const std::string& absent) const {
        for (const char c : present) EXPECT_TRUE(folder_.Has(Name(c))) << c;
        for (const char c : absent) EXPECT_FALSE(folder_.Has(Name(c))) << c;
    }
    static std::string Name(char c) {
        return std::string(c < 'c' ? "tree\\" : "tree\\sub\\") + c + (c % 2 ? ".tmp" : ".dat");
    }

    const TempFolder folder_;
    char mask_[MAX_PATH] = "*.tmp";
};
class WipeFolder : public WipeTree {};
class WipeMask : public WipeTree {};

TEST_F(WipeFolder, WithoutRecursionIsOnlyAnEntryOfItself) {
    EXPECT_EQ(0xFFFFFFFFu, Wipe("tree", 0));
    EXPECT_STREQ("*.*", mask_);
    EXPECT_EQ(2u, Wipe("none", 0));
    EXPECT_EQ(206u, Wipe(std::string(260, 'a'), 0));
    ExpectFiles("abcd", "");
}

TEST_F(WipeFolder, GoesWithItsWholeTree) {
    EXPECT_EQ(0u, Wipe("tree", 1));
    EXPECT_FALSE(folder_.Has("tree"));
}

TEST_F(WipeFolder, LaterCallsTakeAPlainFolderAndAMask) {
    const FolderLink link(folder_ / "tree\\sub\\link", folder_ / "canaries");
    EXPECT_EQ(0u, Wipe("tree", 1));
    ExpectFiles("bd", "ac");
    EXPECT_TRUE(folder_.Has("tree\\sub"));  // not empty; what the first call decided holds
    EXPECT_EQ(0u, Wipe("none", 0));
}

TEST_F(WipeMask, WipesItsFilesInTheWholeTree) {
    const FolderLink link(folder_ / "tree\\sub\\link", folder_ / "canaries");
    EXPECT_EQ(0u, Wipe("tree\\*.dat", 0));
    ExpectFiles("acd", "b");
    EXPECT_EQ(0u, Wipe("tree\\*.tmp", 1));
    ExpectFiles("d", "abc");
}

}  // namespace
