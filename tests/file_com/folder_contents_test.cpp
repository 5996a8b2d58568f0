// What works on whole trees: random ones, with folder links to a canary in them.

#include <gtest/gtest.h>

#include <direct.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "file_com/qel_folder.h"
#include "pauses.h"
#include "support/folder_link.h"
#include "support/temp_folder.h"
#include "support/working_folder.h"

namespace {

using Paths = std::set<std::string>;

// The system may be unable to remove a link; what counts is that it was asked to.
Paths removed_folders;
int __cdecl RememberAndRemove(const char* path) {
    EXPECT_TRUE(removed_folders.insert(path).second) << path;
    return _rmdir(path);
}

class TreeWalks : public ::testing::TestWithParam<unsigned> {
protected:
    TreeWalks() {
        removed_folders.clear();
        folder_.MakeFolder("canaries");
        folder_.Write("canaries\\canary", "lives");
        Fill("tree", 0, false);
    }
    ~TreeWalks() override { EXPECT_EQ("lives", folder_.Read("canaries\\canary")); }

    std::uint64_t Process(unsigned char flags) {
        CQELInt64 total(std::uint64_t{777});
        EXPECT_TRUE(CQELFolder::RecursiveDirProcess(tree_.c_str(), flags, total));
        return static_cast<std::uint64_t>(total);
    }
    bool LinksWent() const {
        return std::includes(removed_folders.begin(), removed_folders.end(), links_.begin(),
                             links_.end());
    }
    // All files below `name`, no link entered.
    Paths Files(const std::string& name = "tree") const {
        Paths files;
        WIN32_FIND_DATAA entry;
        const kit::FindHandle find(FindFirstFileA((folder_ / (name + "\\*")).c_str(), &entry));
        while (FindNextFileA(find.get(), &entry)) {
            const std::string path = name + "\\" + entry.cFileName;
            if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
                files.insert(path);
            else if (!links_.count(folder_ / path) && !path.ends_with(".."))
                files.merge(Files(path));
        }
        return files;
    }

    const TempFolder folder_;
    const std::string tree_ = folder_ / "tree";
    std::mt19937 random_{GetParam()};
    Paths kept_;   // the files that a walk leaves alone
    Paths links_;  // full paths, of those that a walk meets
    std::uint64_t sum_ = 0;

private:
    void Fill(const std::string& folder, int depth, bool kept) {
        folder_.MakeFolder(folder);
        for (int i = 0; i < 4; ++i) {
            const bool dot = random_() % 4 == 0;
            const std::string path = folder + (dot ? "\\." : "\\") + "e" + std::to_string(i);
            if (depth < 3 && random_() % 2 == 0) {
                Fill(path, depth + 1, kept || dot);
            } else {
                AddFile(path, kept || dot, random_() % 100);
            }
        }
        const std::string link = folder_ / (folder + "\\link");
        if (depth % 2 != 0 || links_.size() == 3 || kept) return;
        made_links_.push_back(std::make_unique<FolderLink>(link, folder_ / "canaries"));
        links_.insert(link);
    }
    void AddFile(const std::string& path, bool kept, std::size_t size) {
        const std::string file = folder_.Write(path, std::string(size, 'x'));
        if (size % 4 == 0) SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
        if (kept) kept_.insert(path);
        if (!kept) sum_ += size;
    }

    std::vector<std::unique_ptr<FolderLink>> made_links_;
    const ImportPatch watch_{kLibrary, "_rmdir", &RememberAndRemove};
};

TEST_P(TreeWalks, SumResetAndDelete) {
    const Paths before = Files();
    EXPECT_EQ(sum_, Process(CQELFolder::DIR_SUM_LENGTHS | CQELFolder::DIR_RESET_ATTRIBUTES));
    EXPECT_EQ(before, Files());
    for (const auto& path : before) {
        EXPECT_TRUE(kept_.count(path) || GetFileAttributesA((folder_ / path).c_str()) == 0x20);
    }
    EXPECT_EQ(777u, Process(0));
    EXPECT_EQ(sum_, Process(CQELFolder::DIR_SUM_LENGTHS | CQELFolder::DIR_DELETE_FILES));
    EXPECT_EQ(kept_, Files());
    EXPECT_TRUE(removed_folders.empty());
    EXPECT_EQ(0u, Process(CQELFolder::DIR_DELETE_ALL));
    EXPECT_TRUE(LinksWent());
}

TEST_P(TreeWalks, CopyAndClear) {
    const std::string copy = folder_ / "copy\\deep";
    EXPECT_EQ(28, CQELFolder::CopyFolder(tree_.c_str(), (tree_ + "\\in").c_str(), true));
    EXPECT_EQ(0, CQELFolder::CopyFolder(tree_.c_str(), copy.c_str(), true));
    Paths copies;
    for (const auto& path : Files()) copies.insert("copy\\deep" + path.substr(4));
    EXPECT_EQ(copies, Files("copy"));
    EXPECT_EQ(0, CQELFolder::ClearFolder(tree_.c_str(), 0));
    EXPECT_EQ(kept_, Files());
    EXPECT_TRUE(removed_folders.empty());
    EXPECT_EQ(0, CQELFolder::ClearFolder((tree_ + "\\").c_str(), 1));
    EXPECT_TRUE(LinksWent());
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
    EXPECT_FALSE(CQELFolder::RecursiveDirProcess((folder / "none").c_str(), 8, total));
    EXPECT_TRUE(CQELFolder::RecursiveDirProcess("", 8, total));
    EXPECT_TRUE(CQELFolder::RecursiveDirProcess(folder.path().c_str(), 8, total));
    EXPECT_EQ(CQELInt64(std::uint64_t{5}), total);
}

TEST(ClearFolder, TellsOfTheLastFileAtTheTop) {
    const Pauses pauses;
    const TempFolder folder;
    const std::string last = folder.Write("z", "");
    const HeldFile first(folder.Write("a", ""));
    folder.MakeFolder("zz");
    const HeldFile deeper(folder.Write("zz\\file", ""));
    EXPECT_EQ(0, CQELFolder::ClearFolder(folder.path().c_str(), 1));
    EXPECT_TRUE(folder.Has("a"));
    const ReadOnlyFile read_only(folder.Write("z", ""));
    const HeldFile held(last);
    EXPECT_EQ(62, CQELFolder::ClearFolder(folder.path().c_str(), 1));
    EXPECT_TRUE(GetFileAttributesA(last.c_str()) & FILE_ATTRIBUTE_READONLY);  // as it was
}

TEST(FolderFiles, CopyAndDeleteWhatMatches) {
    const Pauses pauses;
    const TempFolder folder;
    const std::string from = folder.MakeFolder("from"), to = folder.MakeFolder("to");
    for (const char* name : {"from\\a.txt", "from\\b.txt", "from\\c.dat", "to\\a.txt"})
        folder.Write(name, name);
    int count = 9;
    EXPECT_EQ(0, CQELFolder::CopyFilesFromDirToDir(from.c_str(), to.c_str(), "*.txt", &count,
                                                   nullptr, 0));
    EXPECT_EQ(1, count);
    EXPECT_EQ("to\\a.txt", folder.Read("to\\a.txt"));
    const HeldFile held(from + "\\a.txt");
    char error_text[255];
    EXPECT_EQ(43, CQELFolder::DelFilesFromDir(from.c_str(), "*.*", error_text));
    EXPECT_EQ(from + "\\a.txt", error_text);
    EXPECT_FALSE(folder.Has("from\\c.dat"));
}

}  // namespace
