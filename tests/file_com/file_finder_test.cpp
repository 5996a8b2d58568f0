#include "file_com/file_finder.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "pauses.h"
#include "support/folder_link.h"
#include "support/temp_folder.h"

namespace {

using Names = std::vector<std::string>;

class FinderTree : public ::testing::Test {
protected:
    FinderTree() {
        for (const char* name : {"canaries", "tree", "tree\\b", "tree\\b\\c", "tree\\d.txt"}) {
            folder_.MakeFolder(name);
        }
        folder_.Write("canaries\\z.txt", "lives");
        for (const char* name :
             {"a.txt", "e.dat", ".x.txt", "b\\f.txt", "b\\c\\g.txt", "d.txt\\h.dat"}) {
            folder_.Write(std::string("tree\\") + name, "12345");
        }
        link_.emplace(tree_ + "\\b\\link", folder_ / "canaries");
    }
    ~FinderTree() override { EXPECT_EQ("lives", folder_.Read("canaries\\z.txt")); }

    Names Find(const std::vector<QEL::FILENAME_MASK>& masks) {
        Names names;
        EXPECT_TRUE(finder_.StartFind(tree_.c_str(), masks));
        while (finder_.Next()) {
            const QEL::FILENAME full(finder_.GetCurDir(), finder_.GetFilename());
            names.push_back(full.operator const char*() + tree_.size() + 1);
            EXPECT_TRUE(full == finder_.GetFullFilename());
        }
        EXPECT_FALSE(finder_.Next());
        return names;
    }

    const TempFolder folder_;
    const std::string tree_ = folder_ / "tree";
    std::optional<FolderLink> link_;
    QEL::FileFinder finder_;
};

TEST_F(FinderTree, FindsByMasksAndAttributes) {
    SetFileAttributesA((tree_ + "\\e.dat").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Names{"a.txt"}, Find({{"*.txt", false, 0}}));
    EXPECT_EQ((Names{"a.txt", "b\\f.txt", "b\\c\\g.txt"}), Find({{"?.txt", true, 0}}));
    EXPECT_EQ((Names{"e.dat", "b\\f.txt", "d.txt\\h.dat"}),
              Find({{"b\\*.txt", false, 0}, {"*.dat", true, 0}}));
    EXPECT_EQ((Names{"b", "d.txt", "b\\c", "b\\link"}), Find({{"*", true, 0x10}}));
    EXPECT_EQ((Names{"e.dat"}), Find({{"*", true, 0x01}}));
    EXPECT_EQ((Names{".x.txt"}), Find({{".*", false, 0x4000}}));
    EXPECT_FALSE(finder_.StartFind((folder_ / "none").c_str(), {{"*", true, 0}}));
}

TEST_F(FinderTree, SkipsTheRestOfAFolderAndDeletesWhatItLists) {
    finder_.StartFind(tree_.c_str(), QEL::FILENAME_MASK("*.??t", true, 0x4010));
    ASSERT_TRUE(finder_.NextFile());
    EXPECT_STREQ("a.txt", finder_.GetFilename());
    finder_.SkipFiles();
    QEL::FilesList list;
    list.Append(finder_);
    EXPECT_EQ(15u, list.TotalSize());
    const Pauses pauses;
    const HeldFile held(tree_ + "\\b\\f.txt");
    EXPECT_EQ(1, list.DeleteFiles());
    EXPECT_EQ(tree_ + "\\b\\f.txt", list[0].name.operator const char*());
    EXPECT_TRUE(folder_.Has("tree\\a.txt"));
}

TEST_F(FinderTree, FoldersGoWithTheirContents) {
    std::string path;
    {
        const QEL::TEMPFOLDER temporary(tree_.c_str(), "tmp");
        path = temporary.operator const char*();
        EXPECT_TRUE(QEL::FOLDER(QEL::FILENAME(temporary, ".sub\\deep")).Create());
    }
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesA(path.c_str()));
    QEL::FOLDER(tree_.c_str()).Delete();  // its link may resist
    EXPECT_FALSE(folder_.Has("tree\\.x.txt"));
    EXPECT_FALSE(QEL::FOLDER("").Delete());
    EXPECT_FALSE(QEL::FOLDER("C:\\").Delete());
}

}  // namespace
