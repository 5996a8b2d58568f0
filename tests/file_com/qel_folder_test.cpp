#include "file_com/qel_folder.h"

#include <gtest/gtest.h>

#include <direct.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "file_com/qel_file.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"
#include "working_folder.h"

namespace {

class Folder : public ::testing::Test {
protected:
    bool Create(const std::string& path) { return CQELFolder::Create(path.c_str(), status_); }

    const TempFolder folder_;
    const XQELFile status_{false};
};

TEST_F(Folder, CreateMakesWhatIsMissing) {
    for (const std::string name : {"one\\two\\three", "one\\four\\", "one/five/six"}) {
        EXPECT_TRUE(Create("  " + folder_ / name)) << name;
        EXPECT_TRUE(folder_.Has(name)) << name;
    }
    EXPECT_TRUE(Create("\\\\?\\" + folder_ / "long\\form"));
    EXPECT_TRUE(folder_.Has("long\\form"));
    const WorkingFolder working(folder_.path());
    EXPECT_FALSE(Create("other\\two"));  // the first component of a relative path is its root
    EXPECT_EQ(ENOENT, status_.Errno());
    EXPECT_TRUE(Create("other"));
    EXPECT_TRUE(Create("other\\two"));
}

TEST_F(Folder, CreateReportsAnExistingFolder) {
    EXPECT_FALSE(Create(folder_.path()));
    EXPECT_EQ(61, status_.Status());
    EXPECT_STREQ(folder_.path().c_str(), status_.GetErrMessEx());
    EXPECT_FALSE(Create(folder_.Write("file", "") + "\\sub"));
    EXPECT_EQ(61, status_.Status());
    EXPECT_EQ(61, CQELFolder::MakeFolder((folder_ / "file").c_str()));
    EXPECT_EQ(0, CQELFolder::MakeFolder(folder_.path().c_str()));
    EXPECT_THROW(CQELFolder(folder_.path().c_str(), true).Create(), XQELFile);
}

TEST_F(Folder, ReportsWhatItCannotRemoveOrEnter) {
    folder_.MakeFolder("full");
    folder_.Write("full\\file", "");
    CQELFolder full((folder_ / "full").c_str(), false);
    EXPECT_FALSE(full.Remove());
    EXPECT_EQ(62, full.Status());
    EXPECT_NE(0, full.Errno());
    const CQELFolder copy(full);
    EXPECT_EQ(0, copy.Status());
    EXPECT_EQ(folder_ / "full", static_cast<const char*>(copy));
    EXPECT_EQ(62, CQELFolder::RemoveFolder((folder_ / "full").c_str()));
    EXPECT_EQ(0, CQELFolder::RemoveFolder((folder_ / "none").c_str()));
    CQELFolder none((folder_ / "none").c_str(), false);
    EXPECT_FALSE(none.Chdir());
    EXPECT_EQ(60, none.Status());
    EXPECT_EQ(ENOENT, none.Errno());
    const WorkingFolder working(folder_.path());
    EXPECT_TRUE(full.Chdir());
    EXPECT_FALSE(full.IsError());
}

FARPROC WINAPI HideTheExtendedQuery(HMODULE module, const char* name) {
    return std::strcmp(name, "GetDiskFreeSpaceExA") == 0 ? nullptr : GetProcAddress(module, name);
}

TEST_F(Folder, TellsTheRoomOnTheVolume) {
    ULARGE_INTEGER available, total;
    ASSERT_TRUE(GetDiskFreeSpaceExA(folder_.path().c_str(), &available, &total, nullptr));
    const std::string file = folder_.Write("file", "");
    CQELInt64 bytes;
    const auto ask = [&] {
        for (const std::string& path : {folder_.path(), file}) {
            EXPECT_TRUE(CQELFolder::GetDiskTotal(path.c_str(), bytes, status_));
            EXPECT_NEAR(static_cast<double>(total.QuadPart), static_cast<double>(bytes), 1e6);
            EXPECT_TRUE(CQELFolder::GetDiskFree(path.c_str(), bytes, status_));
            EXPECT_LE(bytes, CQELInt64(std::uint64_t{total.QuadPart}));
            EXPECT_GT(bytes, CQELInt64(std::uint64_t{0}));
        }
    };
    ask();
    {
        const ImportPatch old_system(kLibrary, "GetProcAddress", &HideTheExtendedQuery);
        ask();
    }
    const CQELInt64 before = bytes;
    EXPECT_FALSE(CQELFolder::GetDiskFree("Q:\\none", bytes, status_));
    EXPECT_EQ(126, status_.Status());
    EXPECT_EQ(before, bytes);
}

TEST_F(Folder, MakesTemporaryFolders) {
    const CQELString first = CQELFolder::CreateTempDir(folder_.path().c_str(), "prefix");
    const CQELString second = CQELFolder::CreateTempDir(folder_.path().c_str(), nullptr);
    EXPECT_EQ(0, first.Find((folder_ / "pre").c_str()));
    EXPECT_TRUE(CQELFile::IsFolder(first));
    EXPECT_TRUE(CQELFile::IsFolder(second));
    EXPECT_TRUE(first != second);
    EXPECT_THROW(CQELFolder::CreateTempDir((folder_ / "none").c_str(), nullptr), XQELStatus);
}

TEST(FolderNames, CutTheFileName) {
    const struct {
        const char *path, *folder;
    } cases[] = {
        {"C:\\d\\f", "C:\\d"}, {"C:\\f", "C:\\"}, {"\\f", "\\"}, {"f", ""},
        {"d/f", "d"},          {"d\\", "d"},
    };
    for (const auto& c : cases) {
        CQELString path(c.path);
        CQELFolder::GetFolderNameFromFile(path);
        EXPECT_STREQ(c.folder, path) << c.path;
    }
}

TEST(FolderNames, DrawFromTheAlphabetInOrder) {
    const std::string alphabet = "qwertyuiopasdfghjklzxcvbnm1234567890";
    const TempFolder folder;
    CQELFolder held(folder.path().c_str(), false);
    CQELString name;
    std::srand(3);
    std::rand();  // the one that could have been 41
    std::string expected = folder.path() + "\\";
    for (int i = 0; i < 8; ++i) expected += alphabet[static_cast<unsigned>(std::rand() % 36)];
    std::srand(3);
    EXPECT_STREQ((expected + ".$$$").c_str(), held.UniqueFileName(name));
    EXPECT_STREQ((expected + ".$$$").c_str(), name);
    std::srand(1);  // the runtime's first value is then 41
    ASSERT_EQ(41, std::rand());
    const int second = std::rand();
    std::srand(1);
    held.UniqueFileName(name);
    EXPECT_NE(alphabet[static_cast<unsigned>(second % 36)], name[folder.path().size() + 1]);

    held.UniqueDirectoryName(name);
    ASSERT_EQ(folder.path().size() + 10, static_cast<std::size_t>(name.Length()));
    EXPECT_EQ('\\', name[folder.path().size() + 3]);
}

}  // namespace
