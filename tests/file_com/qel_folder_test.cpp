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
#include "support/working_folder.h"

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
    const WorkingFolder working(folder_.path());
    EXPECT_FALSE(Create("other\\two"));  // the first component of a relative path is its root
    EXPECT_EQ(ENOENT, status_.Errno());
    EXPECT_TRUE(Create("other"));
}

TEST_F(Folder, CreateReportsAnExistingFolder) {
    EXPECT_FALSE(Create(folder_.path()));
    EXPECT_EQ(61, status_.Status());
    EXPECT_STREQ(folder_.path().c_str(), status_.GetErrMessEx());
    EXPECT_EQ(61, CQELFolder::MakeFolder(folder_.Write("file", "").c_str()));
    EXPECT_THROW(CQELFolder(folder_.path().c_str(), true).Create(), XQELFile);
}

TEST_F(Folder, ReportsWhatItCannotRemoveOrEnter) {
    const std::string full_path = folder_.MakeFolder("full");
    folder_.Write("full\\file", "");
    CQELFolder full(full_path.c_str(), false), none((folder_ / "none").c_str(), false);
    EXPECT_FALSE(full.Remove() || none.Chdir());
    EXPECT_TRUE(full.Status() == 62 && full.Errno() != 0 && CQELFolder(full).Status() == 0);
    EXPECT_TRUE(none.Status() == 60 && none.Errno() == ENOENT);
}

FARPROC WINAPI HideTheExtendedQuery(HMODULE module, const char* name) {
    return std::strcmp(name, "GetDiskFreeSpaceExA") == 0 ? nullptr : GetProcAddress(module, name);
}

TEST_F(Folder, TellsTheRoomOnTheVolume) {
    CQELInt64 total, available, counted(std::uint64_t{1});
    const std::string file = folder_.Write("file", "");
    EXPECT_TRUE(CQELFolder::GetDiskTotal(folder_.path().c_str(), total, status_));
    EXPECT_TRUE(CQELFolder::GetDiskFree(file.c_str(), available, status_));
    EXPECT_LE(available, total);
    const ImportPatch old_system(kLibrary, "GetProcAddress", &HideTheExtendedQuery);
    EXPECT_TRUE(CQELFolder::GetDiskTotal(file.c_str(), counted, status_));
    EXPECT_NEAR(static_cast<double>(total), static_cast<double>(counted), 1e6);
    EXPECT_FALSE(CQELFolder::GetDiskFree("Q:\\none", counted, status_));
    EXPECT_EQ(126, status_.Status());
}

TEST_F(Folder, MakesTemporaryFoldersAndCutsNames) {
    CQELString file("C:\\d\\f"), root("C:\\f");
    CQELFolder::GetFolderNameFromFile(file);
    CQELFolder::GetFolderNameFromFile(root);
    EXPECT_STREQ("C:\\d", file);
    EXPECT_STREQ("C:\\", root);
    const CQELString first = CQELFolder::CreateTempDir(folder_.path().c_str(), "prefix");
    EXPECT_EQ(0, first.Find((folder_ / "pre").c_str()));
    EXPECT_TRUE(CQELFile::IsFolder(first));
    EXPECT_THROW(CQELFolder::CreateTempDir((folder_ / "none").c_str(), nullptr), XQELStatus);
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
    held.UniqueDirectoryName(name);
    EXPECT_EQ('\\', name[folder.path().size() + 3]);
}

}  // namespace
