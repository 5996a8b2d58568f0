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
    return names;
}

TEST(FindFile, ListsWhatTheMaskDoesNotSkip) {
    const TempFolder folder;
    const ReadOnlyFile read_only(folder.Write("locked.txt", ""));
    folder.Write(".hid", "");
    folder.MakeFolder("sub");
    const std::string all = folder / "*.*";
    EXPECT_EQ((Names{".hid", "locked.txt", "sub"}), Found(all, 0));
    EXPECT_EQ((Names{".hid", "locked.txt"}), Found(all, CQELFindFile::FIND_FILES));
    EXPECT_EQ(Names{"sub"}, Found(all, CQELFindFile::FIND_FOLDERS));
    EXPECT_EQ(Names{"sub"}, Found(all, 0x03));
    EXPECT_EQ(Names{}, Found(folder / "*.none", 0));
}

TEST(FindFile, TellsTheLowHalfOfALargeSizeAndOfTheEnd) {
    const TempFolder folder;
    SetLength(folder.Write("large", ""), 0x100000005);
    CQELFindFile found((folder / "*").c_str(), 0, false);
    EXPECT_STREQ("large", found.Get());
    EXPECT_TRUE(found.GetSize() == 5 && found.GetAttributes() == 0x20);
    EXPECT_EQ(nullptr, found.Get());
    EXPECT_EQ(0xFFFFFFFFu, found.GetSize() & found.GetAttributes());
    EXPECT_EQ(116, found.Status());
}

TEST(FindFile, RecordsOrThrowsWhyItCouldNotStart) {
    const TempFolder folder;
    const std::string pattern = folder.Write("file", "") + "\\*.*";
    EXPECT_EQ(52, CQELFindFile(pattern.c_str(), 0, false).Status());
    EXPECT_THROW(CQELFindFile(pattern.c_str(), 0, true), XQELFile);
}

}  // namespace
