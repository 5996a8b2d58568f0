#include "file_com/file_finder.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "file_com/qel_file.h"
#include "pauses.h"
#include "support/folder_link.h"
#include "support/temp_folder.h"

namespace {

using QEL::FILENAME_MASK;
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
        SetFileAttributesA((folder_ / "tree\\e.dat").c_str(), FILE_ATTRIBUTE_READONLY);
    }
    ~FinderTree() override { EXPECT_EQ("lives", folder_.Read("canaries\\z.txt")); }

    Names Find(const std::vector<FILENAME_MASK>& masks) {
        Names names;
        EXPECT_TRUE(finder_.StartFind(tree_.c_str(), masks));
        while (finder_.Next()) {
            names.push_back(finder_.GetFullFilename().operator const char*() + tree_.size() + 1);
            EXPECT_TRUE(QEL::FILENAME(finder_.GetCurDir(), finder_.GetFilename()) ==
                        finder_.GetFullFilename());
        }
        EXPECT_FALSE(finder_.Next());
        EXPECT_TRUE(finder_.GetFilename().isEmpty());
        return names;
    }

    const TempFolder folder_;
    const std::string tree_ = folder_ / "tree";
    std::optional<FolderLink> link_;
    QEL::FileFinder finder_;
};

TEST_F(FinderTree, FindsByMasksAndAttributes) {
    EXPECT_EQ(Names{"a.txt"}, Find({{"*.txt", false, 0}}));
    EXPECT_EQ((Names{"a.txt", "b\\f.txt", "b\\c\\g.txt"}), Find({{"?.txt", true, 0}}));
    EXPECT_EQ((Names{"e.dat", "b\\f.txt", "d.txt\\h.dat"}),
              Find({{"b\\*.txt", false, 0}, {"*.dat", true, 0}}));
    EXPECT_EQ((Names{"d.txt"}), Find({{"*.txt", false, 0x10}}));
    EXPECT_EQ((Names{"b", "d.txt", "b\\c", "b\\link"}), Find({{"*", true, 0x10}}));
    EXPECT_EQ((Names{"e.dat"}), Find({{"*", true, 0x01}}));
    EXPECT_EQ((Names{".x.txt"}), Find({{".*", false, 0x4000}}));
    EXPECT_EQ(Names{}, Find({}));
    EXPECT_FALSE(finder_.StartFind((folder_ / "none").c_str(), FILENAME_MASK("*", true, 0)));
    EXPECT_FALSE(finder_.Next());
}

TEST_F(FinderTree, SkipsTheRestOfAFolder) {
    finder_.StartFind(tree_.c_str(), FILENAME_MASK("*", true, 0x4010));
    ASSERT_TRUE(finder_.NextFile());
    EXPECT_STREQ("a.txt", finder_.GetFilename());
    finder_.SkipFiles();
    ASSERT_TRUE(finder_.NextFile());
    EXPECT_STREQ("f.txt", finder_.GetFilename());
    EXPECT_EQ(5u, finder_.GetFileInfo().size);
    EXPECT_EQ(tree_ + "\\b", finder_.GetCurDir().operator const char*());
}

TEST_F(FinderTree, DeletesWhatItLists) {
    finder_.StartFind(tree_.c_str(), FILENAME_MASK("*.??t", true, 0x4010));
    QEL::FilesList list;
    list.Append(finder_);
    ASSERT_EQ(6u, list.size());
    EXPECT_EQ(25u, list.TotalSize());
    const Pauses pauses;
    const HeldFile held(tree_ + "\\b\\f.txt");
    EXPECT_EQ(1, list.DeleteFiles());
    EXPECT_EQ(tree_ + "\\b\\f.txt", list[0].name.operator const char*());
    EXPECT_FALSE(folder_.Has("tree\\d.txt"));
    EXPECT_TRUE(folder_.Has("tree\\.x.txt"));
    list.Append(list);
    EXPECT_EQ(2u, list.size());
}

TEST_F(FinderTree, FoldersGoWithTheirContents) {
    std::string path;
    {
        const QEL::TEMPFOLDER temporary(folder_.path().c_str(), "tmp");
        path = temporary.operator const char*();
        EXPECT_TRUE(QEL::FOLDER(QEL::FILENAME(temporary, "sub\\deep")).Create());
        folder_.Write(path.substr(folder_.path().size() + 1) + "\\sub\\.file", "");
        EXPECT_TRUE(CQELFile::IsFolder(path.c_str()));
    }
    EXPECT_FALSE(CQELFile::IsExists(path.c_str()));
    QEL::FOLDER(tree_.c_str()).Delete();  // its link may resist
    EXPECT_FALSE(folder_.Has("tree\\a.txt"));
    EXPECT_FALSE(QEL::FOLDER("").Delete());
    EXPECT_FALSE(QEL::FOLDER("C:\\").Delete());
}

}  // namespace
