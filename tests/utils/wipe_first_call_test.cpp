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
        for (const char* name : {"canaries", "tree", "tree\\sub"}) folder_.MakeFolder(name);
        for (const char* name :
             {"canaries\\c.tmp", "tree\\a.tmp", "tree\\b.dat", "tree\\sub\\c.tmp"}) {
            folder_.Write(name, "x");
        }
    }
    ~WipeTree() override { EXPECT_EQ("x", folder_.Read("canaries\\c.tmp")); }

    ulong32 Wipe(const std::string& name, int recurse) {
        return QELUtils::WipeDirectory((folder_ / name).c_str(), mask_, recurse);
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
    EXPECT_TRUE(folder_.Has("tree\\a.tmp"));
}

TEST_F(WipeFolder, GoesWithItsWholeTree) {
    EXPECT_EQ(0u, Wipe("tree", 1));
    EXPECT_FALSE(folder_.Has("tree"));
}

TEST_F(WipeFolder, LaterCallsTakeAPlainFolderAndAMask) {
    const FolderLink link(folder_ / "tree\\link", folder_ / "canaries");
    EXPECT_EQ(0u, Wipe("none", 0));
    EXPECT_EQ(0u, Wipe("tree", 1));
    EXPECT_FALSE(folder_.Has("tree\\a.tmp"));
    EXPECT_TRUE(folder_.Has("tree\\b.dat"));
    EXPECT_FALSE(folder_.Has("tree\\sub"));  // what the first call decided holds
}

TEST_F(WipeMask, WipesItsFilesInTheWholeTree) {
    const FolderLink link(folder_ / "tree\\sub\\link", folder_ / "canaries");
    EXPECT_EQ(0xFFFFFFFFu, Wipe("tree\\*b", 0));  // the folder "sub"
    EXPECT_EQ(0u, Wipe("tree\\*.tmp", 1));
    EXPECT_FALSE(folder_.Has("tree\\a.tmp") || folder_.Has("tree\\sub\\c.tmp"));
    EXPECT_TRUE(folder_.Has("tree\\b.dat") && folder_.Has("tree\\sub"));
}

}  // namespace
