#include "utils/disks.h"

#include <new>
#include <string>

#include "file_com/file_name.h"
#include "platform/disk_space.h"
#include "platform/windows.h"

namespace QELUtils {
namespace {

constexpr int kFirstDrive = 2;  // C: A and B are for floppy disks
constexpr int kDrives = 26;

bool IsNetworkPath(const char* path) { return path[0] == '\\' && path[1] == '\\'; }

std::string FolderOf(const char* path) {
    return std::string(QEL::FILENAME(path).ExtractFilePath().operator const char*()) + "\\";
}

std::string DriveOf(const char* path) { return std::string(path).substr(0, 3); }

std::string UpperCase(std::string text) {
    ::CharUpperA(text.data());
    return text;
}

// The folder that a volume is asked by; empty when the path leads nowhere.
std::string RootOf(const char* path) {
    if (!IsNetworkPath(path)) return UpperCase(DriveOf(path));
    const DWORD attributes = ::GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES && ::GetLastError() != ERROR_FILE_NOT_FOUND)
        return {};
    const bool is_folder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    return UpperCase(is_folder ? std::string(path) + "\\" : FolderOf(path));
}

bool Ask(const char* path, kit::DiskSpace& space) {
    if (!path) return false;
    try {
        const std::string root = RootOf(path);
        return !root.empty() && kit::QueryDiskSpace(root.c_str(), root.c_str(), space);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

std::string DriveKey(const char* path) {
    return UpperCase(IsNetworkPath(path) ? FolderOf(path) : DriveOf(path));
}

}  // namespace

std::int64_t GetFreeDiskSpace(const char* path) {
    kit::DiskSpace space;
    return Ask(path, space) ? static_cast<std::int64_t>(space.available) : 0;
}

std::int64_t GetTotalDiskSpace(const char* path) {
    kit::DiskSpace space;
    if (!Ask(path, space)) return 0;
    // Quirk: where only clusters can be counted, the total has 32 bits. Callers from the time of
    // such systems compare it with totals that they stored.
    // Pinned by DiskSpace.OfOldSystemsIsCutTo32Bits.
    if (space.counted_in_clusters) return static_cast<ulong32>(space.total);
    return static_cast<std::int64_t>(space.total);
}

ulong32 GetFirstFreeDriveLetter(char start, char* letter) {
    if (!letter) return ERROR_INVALID_PARAMETER;
    *letter = 0;
    if (start != 0 && (start < 'A' || start > 'Z')) return ERROR_INVALID_PARAMETER;
    const DWORD drives = ::GetLogicalDrives();
    if (drives == 0) return ::GetLastError();
    const auto take = [&](int index) {
        if (drives >> index & 1) return false;
        *letter = static_cast<char>('A' + index);
        return true;
    };
    if (take((start ? start : 'C') - 'A')) return NO_ERROR;
    // Quirk: from C again, not from `start`. Callers get the letters that they always got.
    // Pinned by FreeDriveLetter.IsTheWishedOneOrTheFirst.
    for (int index = kFirstDrive; index < kDrives; ++index) {
        if (take(index)) return NO_ERROR;
    }
    return ERROR_INVALID_DRIVE;
}

bool FromSomeDrive(const char* path1, const char* path2) {
    try {
        return path1 && path2 && DriveKey(path1) == DriveKey(path2);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace QELUtils
