// What works on whole trees: random ones, with folder links to canaries in them.

#include <gtest/gtest.h>

#include <direct.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "file_com/qel_file.h"
#include "file_com/qel_folder.h"
#include "pauses.h"
#include "support/folder_link.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"
#include "working_folder.h"

namespace {

using Paths = std::set<std::string>;

std::vector<std::string> removed_folders;

int __cdecl RememberAndRemove(const char* path) {
    removed_folders.push_back(path);
    return _rmdir(path);
}

// A tree of files, folders and links below "tree", and the canaries that the links lead to.
class Tree {
public:
    explicit Tree(unsigned seed) : random_(seed) {
        folder_.MakeFolder("canaries");
        folder_.Write("canaries\\canary", "lives");
        folder_.MakeFolder("tree");
        Fill("tree", 0, false);
        AddLink("tree\\link");
    }

    std::string path() const { return folder_ / "tree"; }
    const TempFolder& folder() const { return folder_; }
    std::uint64_t sum() const { return sum_; }
    const Paths& hidden() const { return hidden_; }  // what a walk leaves alone
    const Paths& links() const { return link_names_; }

    bool CanaryLives() const { return folder_.Read("canaries\\canary") == "lives"; }
    bool IsLink(const std::string& path) const {
        return (GetFileAttributesA((folder_ / path).c_str()) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    }
    // All files and links below `name`, no link entered.
    Paths Files(const std::string& name = "tree") const {
        Paths files;
        Collect(name, files);
        return files;
    }

private:
    void Fill(const std::string& folder, int depth, bool hidden) {
        for (int i = 0; i < 4; ++i) {
            const bool dot = random_() % 4 == 0;
            const std::string path = folder + (dot ? "\\." : "\\") + "e" + std::to_string(i);
            if (depth < 3 && random_() % 2 == 0) {
                folder_.MakeFolder(path);
                Fill(path, depth + 1, hidden || dot);
            } else {
                AddFile(path, hidden || dot);
            }
        }
        if (depth == 2 && links_.size() < 3 && !hidden) AddLink(folder + "\\link");
    }
    void AddFile(const std::string& path, bool hidden) {
        const std::size_t size = random_() % 100;
        const std::string file = folder_.Write(path, std::string(size, 'x'));
        if (random_() % 4 == 0) SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
        if (hidden) hidden_.insert(path);
        if (!hidden) sum_ += size;
    }
    void AddLink(const std::string& path) {
        links_.push_back(std::make_unique<FolderLink>(folder_ / path, folder_ / "canaries"));
        link_names_.insert(path);
    }
    void Collect(const std::string& name, Paths& files) const {
        const std::string pattern = folder_ / (name + "\\*");
        WIN32_FIND_DATAA entry;
        const kit::FindHandle find(FindFirstFileA(pattern.c_str(), &entry));
        for (bool found = static_cast<bool>(find); found;
             found = FindNextFileA(find.get(), &entry)) {
            const std::string path = name + "\\" + entry.cFileName;
            if (path.ends_with("\\.") || path.ends_with("\\..")) continue;
            const bool is_folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            if (is_folder && !IsLink(path))
                Collect(path, files);
            else
                files.insert(path);
        }
    }

    const TempFolder folder_;
    std::mt19937 random_;
    Paths hidden_;
    std::vector<std::unique_ptr<FolderLink>> links_;
    Paths link_names_;
    std::uint64_t sum_ = 0;
};

Paths WithoutLinks(const Tree& tree) {
    Paths files;
    for (const auto& path : tree.Files()) {
        if (!tree.IsLink(path)) files.insert(path);
    }
    return files;
}

// The system may be unable to remove a link; what counts is that its removal was asked for, and
// no other one behind it.
void ExpectLinksRemoved(const Tree& tree) {
    for (const auto& link : tree.links()) {
        const std::string path = tree.folder() / link;
        EXPECT_EQ(1, std::count(removed_folders.begin(), removed_folders.end(), path)) << path;
    }
}

class TreeWalks : public ::testing::TestWithParam<unsigned> {
protected:
    TreeWalks() { removed_folders.clear(); }
    std::uint64_t Process(unsigned char flags) {
        CQELInt64 total(std::uint64_t{777});
        EXPECT_TRUE(CQELFolder::RecursiveDirProcess(tree_.path().c_str(), flags, total));
        return static_cast<std::uint64_t>(total);
    }

    const Tree tree_{GetParam()};
    const ImportPatch watch_{kLibrary, "_rmdir", &RememberAndRemove};
};

TEST_P(TreeWalks, SumAndResetTouchNothingElse) {
    const Paths before = tree_.Files();
    EXPECT_EQ(tree_.sum(), Process(CQELFolder::DIR_SUM_LENGTHS | CQELFolder::DIR_RESET_ATTRIBUTES));
    EXPECT_EQ(before, tree_.Files());
    for (const auto& path : WithoutLinks(tree_)) {
        if (tree_.hidden().count(path)) continue;
        EXPECT_EQ(0x20u, GetFileAttributesA((tree_.folder() / path).c_str())) << path;
    }
    EXPECT_EQ(777u, Process(0));
    EXPECT_TRUE(tree_.CanaryLives());
}

TEST_P(TreeWalks, DeletingFilesKeepsFoldersAndLinks) {
    EXPECT_EQ(tree_.sum(), Process(CQELFolder::DIR_SUM_LENGTHS | CQELFolder::DIR_DELETE_FILES));
    EXPECT_EQ(tree_.hidden(), WithoutLinks(tree_));
    EXPECT_TRUE(removed_folders.empty());
    EXPECT_EQ(0u, Process(CQELFolder::DIR_DELETE_ALL));
    ExpectLinksRemoved(tree_);
    EXPECT_EQ(tree_.hidden(), WithoutLinks(tree_));
    EXPECT_TRUE(tree_.CanaryLives());
}

TEST_P(TreeWalks, ClearingKeepsTheFolderAndDotNames) {
    EXPECT_EQ(0, CQELFolder::ClearFolder(tree_.path().c_str(), 0));
    EXPECT_EQ(tree_.hidden(), WithoutLinks(tree_));
    EXPECT_TRUE(removed_folders.empty());
    EXPECT_EQ(0, CQELFolder::ClearFolder((tree_.path() + "\\").c_str(), 1));
    ExpectLinksRemoved(tree_);
    EXPECT_TRUE(CQELFile::IsFolder(tree_.path().c_str()));
    EXPECT_TRUE(tree_.CanaryLives());
}

TEST_P(TreeWalks, CopyingLeavesLinksOut) {
    const std::string target = tree_.folder() / "copy\\deep";
    EXPECT_EQ(0, CQELFolder::CopyFolder(tree_.path().c_str(), target.c_str(), true));
    Paths expected;
    for (const auto& path : WithoutLinks(tree_)) expected.insert("copy\\deep" + path.substr(4));
    EXPECT_EQ(expected, tree_.Files("copy"));
    EXPECT_EQ(28,
              CQELFolder::CopyFolder(tree_.path().c_str(), (tree_.path() + "\\in").c_str(), true));
    EXPECT_TRUE(tree_.CanaryLives());
}

INSTANTIATE_TEST_SUITE_P(Random, TreeWalks, ::testing::Range(1u, 5u));

TEST(TreeWalk, LeavesTheWorkingFolderAlone) {
    const TempFolder folder;
    folder.MakeFolder("Sub");
    folder.Write("Sub\\file", "12345");
    folder.Write("file", "12");
    CQELInt64 total;
    {
        const WorkingFolder working(folder / "Sub");
        EXPECT_EQ(0, CQELFolder::ClearFolder(".", 1));
        EXPECT_EQ(0, CQELFolder::ClearFolder((folder / "sUB").c_str(), 1));
        EXPECT_TRUE(CQELFolder::RecursiveDirProcess("..", 0x0C, total));
        EXPECT_EQ(CQELInt64(std::uint64_t{2}), total);
    }
    EXPECT_TRUE(folder.Has("Sub\\file"));
    EXPECT_FALSE(folder.Has("file"));
    EXPECT_FALSE(CQELFolder::RecursiveDirProcess((folder / "none").c_str(), 8, total));
    EXPECT_TRUE(CQELFolder::RecursiveDirProcess("", 8, total));
    EXPECT_EQ(0, CQELFolder::ClearFolder((folder / "none").c_str(), 1));
    EXPECT_TRUE(CQELFolder::RecursiveDirProcess(folder.path().c_str(), 8, total));
    EXPECT_EQ(CQELInt64(std::uint64_t{5}), total);
}

TEST(ClearFolder, TellsOfTheLastFileAtTheTop) {
    const Pauses pauses;
    const TempFolder folder;
    folder.MakeFolder("sub");
    const std::string last = folder.Write("z", "");
    HeldFile deep(folder.Write("sub\\held", ""));
    HeldFile first(folder.Write("a", ""));
    EXPECT_EQ(0, CQELFolder::ClearFolder(folder.path().c_str(), 1));
    EXPECT_FALSE(folder.Has("z"));
    EXPECT_TRUE(folder.Has("a"));
    const ReadOnlyFile read_only(folder.Write("z", ""));
    HeldFile held(last);
    EXPECT_EQ(62, CQELFolder::ClearFolder(folder.path().c_str(), 1));
    EXPECT_EQ(0x21u, GetFileAttributesA(last.c_str()) | 0x20u);  // as it was
    EXPECT_EQ(0, CQELFolder::UnLink((folder / "none").c_str()));
}

TEST(FolderFiles, CopyAndDeleteWhatMatches) {
    const TempFolder folder;
    folder.MakeFolder("from");
    folder.MakeFolder("from\\sub.txt");
    folder.Write("from\\a.txt", "new");
    folder.Write("from\\b.txt", "b");
    folder.Write("from\\c.dat", "c");
    folder.MakeFolder("to");
    folder.Write("to\\a.txt", "old");
    const std::string from = folder / "from";
    const std::string to = folder / "to";
    int count = 9;
    const auto copy = [&](int overwrite) {
        return CQELFolder::CopyFilesFromDirToDir(from.c_str(), to.c_str(), "*.txt", &count, nullptr,
                                                 overwrite);
    };
    EXPECT_EQ(0, copy(0));
    EXPECT_EQ(1, count);
    EXPECT_EQ("old", folder.Read("to\\a.txt"));
    EXPECT_EQ(0, copy(1));
    EXPECT_EQ(2, count);
    EXPECT_EQ("new", folder.Read("to\\a.txt"));
    EXPECT_FALSE(folder.Has("to\\c.dat"));

    const Pauses pauses;
    HeldFile held(from + "\\a.txt");
    char error_text[255];
    EXPECT_NE(0, CQELFolder::DelFilesFromDir(from.c_str(), "*.*", error_text));
    EXPECT_EQ(from + "\\a.txt", error_text);
    EXPECT_FALSE(folder.Has("from\\c.dat"));
    EXPECT_TRUE(folder.Has("from\\sub.txt"));
}

}  // namespace
