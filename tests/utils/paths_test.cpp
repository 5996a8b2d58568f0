#include "utils/paths.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/import_patch.h"
#include "support/temp_folder.h"

#include <winnetwk.h>

namespace {

// A network of two connections, x: the second, which the first question has too little room for.
int questions;
char remote[] = "\\\\srv\\share", drive[] = "x:";

DWORD WINAPI FakeOpen(DWORD, DWORD, DWORD, NETRESOURCEA*, HANDLE* handle) {
    questions = 0;
    *handle = &questions;
    return 0;
}
DWORD WINAPI FakeNext(HANDLE, DWORD* count, void* buffer, DWORD* size) {
    if (++questions > 2) return ERROR_NO_MORE_ITEMS;
    const DWORD had = *size;
    *size = 5000;
    if (had < 5000) return ERROR_MORE_DATA;
    auto* entries = static_cast<NETRESOURCEA*>(std::memset(buffer, 0, 5000));
    entries[0].lpRemoteName = entries[1].lpRemoteName = remote;
    entries[1].lpLocalName = drive;
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
    const char* const cases[][2] = {{"x:\\f", "\\\\SRV\\SHARE\\F"},
                                    {"\\\\?\\UNC\\srv\\f", "\\\\srv\\f"},
                                    {"C:\\f", ""},
                                    {"\\\\.\\C:", ""}};
    for (const auto& [path, network_name] : cases) {
        std::string out, resolved;
        EXPECT_EQ(*network_name != '\0', QELUtils::GetUNCFileName(path, out)) << path;
        QELUtils::GetResolvedUNCFileName(path, resolved);
        EXPECT_EQ(network_name, out);
        EXPECT_EQ(network_name, resolved);
    }
}

TEST(Paths, HaveOneNormalForm) {
    const TempFolder folder;
    const std::string path = folder.Write("LongName.text", "");
    for (const std::string& same : {folder / "x\\..\\longname.TEXT", "\\\\?\\" + path}) {
        EXPECT_TRUE(QELUtils::IsPathEqual(path, same)) << same;
    }
    EXPECT_FALSE(QELUtils::IsPathEqual(path, path + "x"));
    EXPECT_EQ("C:\\none", QELUtils::NormilizePath("C:/.//none\\"));
    char short_form[MAX_PATH], long_form[MAX_PATH];
    ASSERT_NE(0u, GetShortPathNameA(path.c_str(), short_form, MAX_PATH));
    EXPECT_EQ(path.size(), QELUtils::GetLongPathNameA(short_form, long_form, MAX_PATH));
    EXPECT_EQ(path, long_form);
}

}  // namespace
