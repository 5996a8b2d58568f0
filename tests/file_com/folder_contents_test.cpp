// What works on whole trees, with folder links to a canary in them.

#include <gtest/gtest.h>

#include <direct.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "file_com/qel_folder.h"
#include "pauses.h"
#include "support/folder_link.h"
#include "support/temp_folder.h"
#include "support/working_folder.h"

namespace {

// The system may be unable to remove a link; what counts is that it was asked to.
std::set<std::string> removed_folders;
int __cdecl RememberAndRemove(const char* path) {
    EXPECT_TRUE(removed_folders.insert(path).second) << path;
    return _rmdir(path);
}

// Each file has another length, by which the tests know it.
const std::vector<std::pair<std::size_t, std::string>> kFiles = {
    {3, "\\one"},       {5, "\\.dot"},         {0, "\\empty"},
    {7, "\\a\\two"},    {11, "\\a\\b\\three"}, {9, "\\a\\.x\\deep\\four"},
    {13, "\\.y\\five"}, {17, "\\z\\six"},      {19, "\\z\\.seven"}};
using Lengths = std::vector<std::size_t>;
const Lengths kAll = {3, 5, 0, 7, 11, 9, 13, 17, 19};
const Lengths kKept = {5, 9, 13, 19};            // of, or below, names that begin with a dot
constexpr std::uint64_t kSum = 3 + 7 + 11 + 17;  // of the others

class TreeWalks : public ::testing::Test {
protected:
    TreeWalks() {
        for (const char* name : {"canaries", "tree", "tree\\a", "tree\\a\\b", "tree\\a\\.x",
                                 "tree\\a\\.x\\deep", "tree\\.y", "tree\\z"}) {
            folder_.MakeFolder(name);
        }
        folder_.Write("canaries\\canary", "lives");
        for (const auto& [length, name] : kFiles) {
            const std::string file = folder_.Write("tree" + name, std::string(length, 'x'));
            if (length % 4 == 3) SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
        }
        link_.emplace(tree_ + "\\link", folder_ / "canaries");
        deep_link_.emplace(tree_ + "\\a\\b\\link", folder_ / "canaries");
        removed_folders.clear();
    }
    ~TreeWalks() override { EXPECT_EQ("lives", folder_.Read("canaries\\canary")); }

    std::uint64_t Process(unsigned char flags) {
        CQELInt64 total(std::uint64_t{777});
        EXPECT_TRUE(CQELFolder::RecursiveDirProcess(tree_.c_str(), flags, total));
        return static_cast<std::uint64_t>(total);
    }
    bool LinksWent() const {
        return removed_folders.count(tree_ + "\\link") &&
               removed_folders.count(tree_ + "\\a\\b\\link");
    }
    // The files that are there.
    Lengths Files(const std::string& root = "tree") const {
        Lengths files;
        for (const auto& [length, name] : kFiles) {
            if (folder_.Has(root + name)) files.push_back(folder_.Read(root + name).size());
        }
        return files;
    }

    const TempFolder folder_;
    const std::string tree_ = folder_ / "tree";
    std::optional<FolderLink> link_, deep_link_;
    const ImportPatch watch_{kLibrary, "_rmdir", &RememberAndRemove};
};

TEST_F(TreeWalks, SumResetAndDelete) {
    EXPECT_EQ(kSum, Process(CQELFolder::DIR_SUM_LENGTHS | CQELFolder::DIR_RESET_ATTRIBUTES));
    EXPECT_EQ(kAll, Files());
    for (const auto& [length, name] : kFiles) {
        EXPECT_TRUE(std::count(kKept.begin(), kKept.end(), length) ||
                    GetFileAttributesA((tree_ + name).c_str()) == FILE_ATTRIBUTE_ARCHIVE)
            << name;
    }
    EXPECT_EQ(777u, Process(0));
    EXPECT_EQ(kSum, Process(CQELFolder::DIR_SUM_LENGTHS | CQELFolder::DIR_DELETE_FILES));
    EXPECT_EQ(kKept, Files());
    EXPECT_TRUE(removed_folders.empty());
    EXPECT_EQ(0u, Process(CQELFolder::DIR_DELETE_ALL));
    EXPECT_TRUE(LinksWent() && !folder_.Has("tree\\z\\six") && folder_.Has("tree\\z"));
}

TEST_F(TreeWalks, CopyAndClear) {
    EXPECT_EQ(28, CQELFolder::CopyFolder(tree_.c_str(), (tree_ + "\\in").c_str(), true));
    EXPECT_EQ(0, CQELFolder::CopyFolder(tree_.c_str(), (folder_ / "copy\\deep").c_str(), true));
    EXPECT_EQ(kAll, Files("copy\\deep"));
    EXPECT_FALSE(folder_.Has("copy\\deep\\link"));
    EXPECT_EQ(0, CQELFolder::ClearFolder(tree_.c_str(), 0));
    EXPECT_EQ(kKept, Files());
    EXPECT_TRUE(removed_folders.empty());
    EXPECT_EQ(0, CQELFolder::ClearFolder((tree_ + "\\").c_str(), 1));
    EXPECT_TRUE(LinksWent());
}

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
