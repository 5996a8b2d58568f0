#include "utils/paths.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/import_patch.h"
#include "support/temp_folder.h"

#include <winnetwk.h>

namespace {

// A network of two connections, x: the second; the first question must bring more room.
int questions;
char kNoDrive[] = "\\\\srv\\unused", kDrive[] = "x:", kRemote[] = "\\\\srv\\share";

DWORD WINAPI FakeOpen(DWORD scope, DWORD type, DWORD, NETRESOURCEA*, HANDLE* handle) {
    EXPECT_EQ(RESOURCE_CONNECTED, static_cast<int>(scope));
    EXPECT_EQ(RESOURCETYPE_DISK, static_cast<int>(type));
    *handle = &questions;
    questions = 0;
    return 0;
}
DWORD WINAPI FakeNext(HANDLE, DWORD* count, void* buffer, DWORD* size) {
    if (++questions > 2) return ERROR_NO_MORE_ITEMS;
    if (*size < 5000) {
        *size = 5000;
        return ERROR_MORE_DATA;
    }
    std::memset(buffer, 0, 5000);
    auto* entries = static_cast<NETRESOURCEA*>(buffer);
    entries[0].lpRemoteName = kNoDrive;
    entries[1].lpLocalName = kDrive;
    entries[1].lpRemoteName = kRemote;
    *count = 2;
    return 0;
}
DWORD WINAPI FakeClose(HANDLE) { return 0; }
UINT WINAPI FakeType(const char* root) { return root[0] == 'C' ? DRIVE_FIXED : DRIVE_REMOTE; }

TEST(UniversalName, IsTheConnectionsAndThePath) {
    const ImportPatch open(kLibrary, "WNetOpenEnumA", &FakeOpen);
    const ImportPatch next(kLibrary, "WNetEnumResourceA", &FakeNext);
    const ImportPatch close(kLibrary, "WNetCloseEnum", &FakeClose);
    const ImportPatch type(kLibrary, "GetDriveTypeA", &FakeType);
    char name[64] = "";
    EXPECT_EQ(1, QELUtils::GetUniversalName(name, "X:\\d\\f"));
    EXPECT_STREQ("\\\\SRV\\SHARE\\D\\F", name);
    for (const char* path : {"y:\\d", "x:d", "xd", ""}) {
        EXPECT_EQ(0, QELUtils::GetUniversalName(name, path)) << path;
    }
    EXPECT_EQ(0, QELUtils::GetUniversalName(name, nullptr));

    const struct {
        const char *path, *name;
    } cases[] = {
        {"x:\\f", "\\\\SRV\\SHARE\\F"},
        {"\\\\srv\\share\\f", "\\\\srv\\share\\f"},
        {"\\\\?\\UNC\\srv\\f", "\\\\srv\\f"},
        {"C:\\f", nullptr},
        {"f", nullptr},
        {"\\\\.\\C:", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        std::string out = "untouched";
        EXPECT_EQ(c.name ? 1 : 0, QELUtils::GetUNCFileName(c.path, out));
        EXPECT_EQ(c.name ? c.name : "untouched", out);
        EXPECT_EQ(c.name ? 1 : 0, QELUtils::GetResolvedUNCFileName(c.path, out));
        EXPECT_EQ(c.name ? c.name : "untouched", out);
    }
}

TEST(Paths, HaveOneNormalForm) {
    const TempFolder folder;
    folder.Write("LongName.text", "");
    const std::string path = folder / "LongName.text";
    for (const std::string& same : {folder / "LONGNA~9\\..\\longname.TEXT", "\\\\?\\" + path,
                                    folder.path() + "/.//longname.text"}) {
        EXPECT_TRUE(QELUtils::IsPathEqual(path, same)) << same;
    }
    EXPECT_EQ(path, QELUtils::NormilizePath(folder / "x\\..\\LongName.text"));
    EXPECT_FALSE(QELUtils::IsPathEqual(path, path + "x"));
    EXPECT_EQ("C:\\none", QELUtils::NormilizePath("C:\\none\\"));
    EXPECT_EQ("", QELUtils::NormilizePath(""));

    char short_form[MAX_PATH], long_form[MAX_PATH];
    ASSERT_NE(0u, GetShortPathNameA(path.c_str(), short_form, MAX_PATH));
    EXPECT_EQ(path.size(), QELUtils::GetLongPathNameA(short_form, long_form, MAX_PATH));
    EXPECT_EQ(path, long_form);
    EXPECT_EQ(path.size() + 1, QELUtils::GetLongPathNameA(short_form, nullptr, 0));
    EXPECT_EQ(0u, QELUtils::GetLongPathNameA(nullptr, long_form, MAX_PATH));
}

}  // namespace
