#include "file_com/find_file.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "file_com/qel_file.h"
#include "support/temp_folder.h"

namespace {

using Names = std::set<std::string>;

Names Found(const std::string& pattern, int skip_mask) {
    Names names;
    CQELFindFile found(pattern.c_str(), skip_mask, false);
    while (const char* name = found.Get()) {
        EXPECT_STREQ(name, found.GetLast());
        names.insert(name);
    }
    EXPECT_EQ(nullptr, found.Get());
    EXPECT_FALSE(found.IsError());
    return names;
}

TEST(FindFile, ListsWhatTheMaskDoesNotSkip) {
    const TempFolder folder;
    folder.Write("a.txt", "12345");
    folder.Write(".hid", "");
    folder.MakeFolder("sub");
    const ReadOnlyFile read_only(folder.Write("locked.txt", ""));
    const std::string all = folder / "*.*";
    EXPECT_EQ((Names{".hid", "a.txt", "locked.txt", "sub"}), Found(all, 0));
    EXPECT_EQ((Names{".hid", "a.txt", "locked.txt"}), Found(all, CQELFindFile::FIND_FILES));
    EXPECT_EQ(Names{"sub"}, Found(all, CQELFindFile::FIND_FOLDERS));
    EXPECT_EQ((Names{"a.txt", "sub"}), Found(all, 0x03));
    EXPECT_EQ(Names{}, Found(folder / "*.none", 0));
    EXPECT_EQ(Names{}, Found(folder / "none\\*.*", 0));
}

TEST(FindFile, TellsOfTheCurrentEntryAndOfTheEnd) {
    const TempFolder folder;
    folder.Write("a.txt", "12345");
    CQELFindFile found((folder / "*.txt").c_str(), 0, false);
    EXPECT_STREQ("a.txt", found.GetLast());
    EXPECT_STREQ("a.txt", found.Get());
    EXPECT_EQ(5u, found.GetSize());
    EXPECT_EQ(0x20u, found.GetAttributes());
    EXPECT_EQ(nullptr, found.Get());
    EXPECT_EQ(0xFFFFFFFFu, found.GetSize());
    EXPECT_EQ(116, found.Status());
    found.Clear();
    EXPECT_EQ(0xFFFFFFFFu, found.GetAttributes());
    EXPECT_EQ(116, found.Status());
}

TEST(FindFile, RecordsOrThrowsWhyItCouldNotStart) {
    const TempFolder folder;
    const std::string pattern = folder.Write("file", "") + "\\*.*";
    const CQELFindFile found(pattern.c_str(), 0, false);
    EXPECT_EQ(52, found.Status());
    EXPECT_NE(0, found.Errno());
    EXPECT_STREQ(pattern.c_str(), found.GetErrMessEx());
    EXPECT_THROW(CQELFindFile(pattern.c_str(), 0, true), XQELFile);
}

TEST(FindFile, TellsTheLowHalfOfALargeSize) {
    const TempFolder folder;
    const std::string path = folder.Write("large", "");
    {
        const kit::FileHandle file(
            CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        LONG high = 1;
        ASSERT_EQ(5u, SetFilePointer(file.get(), 5, &high, FILE_BEGIN));
        ASSERT_TRUE(SetEndOfFile(file.get()));
    }
    CQELFindFile found(path.c_str(), 0, false);
    EXPECT_EQ(5u, found.GetSize());
}

}  // namespace
