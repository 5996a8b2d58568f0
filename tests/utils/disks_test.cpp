#include "utils/disks.h"

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

DWORD drives;
DWORD WINAPI FakeDrives() { return drives; }

TEST(FreeDriveLetter, IsTheWishedOneOrTheFirst) {
    constexpr DWORD kC = 1 << 2, kE = 1 << 4, kAllFromC = 0x03FFFFFC;
    const std::tuple<char, DWORD, ulong32, char> cases[] = {
        {'E', kC, 0, 'E'},        {'E', kC | kE, 0, 'D'},  // from C again
        {0, kE, 0, 'C'},          {0, kAllFromC >> 1, 0, 'Z'},
        {'A', kAllFromC, 0, 'A'}, {'Z', kAllFromC, 15, 0},
        {'e', kC, 87, 0},
    };
    const ImportPatch patch(kLibrary, "GetLogicalDrives", &FakeDrives);
    for (const auto& [start, present, code, expected] : cases) {
        char letter = '?';
        drives = present;
        EXPECT_EQ(code, QELUtils::GetFirstFreeDriveLetter(start, &letter)) << start;
        EXPECT_EQ(expected, letter) << start;
    }
    EXPECT_EQ(87u, QELUtils::GetFirstFreeDriveLetter(0, nullptr));
}

TEST(SameDrive, ComparesDrivesAndNetworkFolders) {
    EXPECT_TRUE(QELUtils::FromSomeDrive("c:\\a", "C:\\b"));
    EXPECT_FALSE(QELUtils::FromSomeDrive("C:\\a", "D:\\a"));
    EXPECT_TRUE(QELUtils::FromSomeDrive("\\\\srv\\share\\a", "\\\\SRV\\Share\\b"));
    EXPECT_FALSE(QELUtils::FromSomeDrive("\\\\srv\\share\\a\\b", "\\\\srv\\share\\b"));
}

BOOL WINAPI FakeClusters(const char*, DWORD* sectors, DWORD* bytes, DWORD* free, DWORD* total) {
    *sectors = 8, *bytes = 512, *free = 0x00200001, *total = 0x00300001;
    return TRUE;
}
FARPROC WINAPI HideTheExtendedQuery(HMODULE module, const char* name) {
    return std::strcmp(name, "GetDiskFreeSpaceExA") == 0 ? nullptr : GetProcAddress(module, name);
}

TEST(DiskSpace, OfOldSystemsIsCutTo32Bits) {
    ULARGE_INTEGER total;
    ASSERT_TRUE(GetDiskFreeSpaceExA("C:\\", nullptr, &total, nullptr));
    EXPECT_EQ(static_cast<std::int64_t>(total.QuadPart), QELUtils::GetTotalDiskSpace("c:\\no\\f"));
    EXPECT_EQ(0, QELUtils::GetFreeDiskSpace("Q:\\"));
    EXPECT_EQ(0, QELUtils::GetFreeDiskSpace("\\\\no\\server\\x"));
    const ImportPatch old_system(kLibrary, "GetProcAddress", &HideTheExtendedQuery);
    const ImportPatch clusters(kLibrary, "GetDiskFreeSpaceA", &FakeClusters);
    EXPECT_EQ(0x200001000, QELUtils::GetFreeDiskSpace("c:\\some\\file"));
    EXPECT_EQ(0x1000, QELUtils::GetTotalDiskSpace("c:\\some\\file"));
}

}  // namespace
