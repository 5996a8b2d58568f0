// Operations on paths: questions, removing, copying, attributes, lengths, special new files.

#include "platform/windows.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <winioctl.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "base/or_empty.h"
#include "file_com/detail/busy_file.h"
#include "file_com/detail/report.h"
#include "file_com/detail/stream_tools.h"
#include "file_com/qel_file.h"
#include "platform/handles.h"
#include "platform/last_error.h"
#include "status/status_codes.h"
#include "status/status_convert.h"

namespace {

// Runs a system call, which leaves errno alone, as the busy-file rule wants it.
template <typename Call>
bool WithErrno(Call call) {
    if (call()) return true;
    errno = kit::ErrnoFromWin32(::GetLastError());
    return false;
}

// The root folder of the path's drive; of the current drive when it names none.
std::string RootOf(std::string_view path) {
    const bool has_drive = path.size() > 1 && path[1] == ':';
    return std::string(path.substr(0, has_drive ? 2 : 0)) + "\\";
}

bool FindsAnything(const char* pattern) {
    WIN32_FIND_DATAA entry;
    return static_cast<bool>(kit::FindHandle(::FindFirstFileA(pattern, &entry)));
}

// Without outer blanks and then one final slash.
std::string Trimmed(std::string_view path) {
    const auto first = path.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    path = path.substr(first, path.find_last_not_of(' ') - first + 1);
    if (path.back() == '\\' || path.back() == '/') path.remove_suffix(1);
    return std::string(path);
}

bool ReadStatus(const char* path, struct _stat64& status) {
    return ::_stat64(kit::OrEmpty(path), &status) == 0;
}

bool IsCompressed(const char* path) {
    const DWORD attributes = ::GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_COMPRESSED) != 0;
}

bool ReadLengthOnDisk(const char* path, std::uint64_t& length) {
    DWORD high = 0;
    ::SetLastError(NO_ERROR);  // 0xFFFFFFFF is a low half as good as any other
    const DWORD low = ::GetCompressedFileSizeA(path, &high);
    if (low == INVALID_FILE_SIZE && ::GetLastError() != NO_ERROR) return false;
    length = std::uint64_t{high} << 32 | low;
    return true;
}

bool ReadLength(const char* path, std::uint64_t& length) {
    struct _stat64 status;
    if (!ReadStatus(path, status)) return false;
    length = static_cast<std::uint64_t>(status.st_size);
    return true;
}

// The status of the last system error; never "no error".
int SystemStatus() {
    const int status = WinErr2QelkitErr(::GetLastError());
    return status != kStatusOk ? status : kStatusUnknown;
}

}  // namespace

bool CQELFile::Access(const char* path, int mode) {
    return ::_access(kit::OrEmpty(path), mode & 6) == 0;  // other bits end some runtimes
}

bool CQELFile::CheckVolume(const char* path) {
    if (!path) return false;
    if (Access(path, 0)) return true;
    const std::string root = RootOf(path);
    return Access(root.c_str(), 0) ||
           ::GetVolumeInformationA(root.c_str(), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0);
}

bool CQELFile::IsExists(const char* path) {
    path = kit::OrEmpty(path);
    if (::_access(path, 0) == 0) return true;
    switch (errno) {
        case ENOENT:
            return false;
        case EACCES:
            return true;
        default:
            return FindsAnything(Trimmed(path).c_str());
    }
}

bool CQELFile::IsExists(const CQELString& path) { return IsExists(static_cast<const char*>(path)); }

bool CQELFile::IsExistsEx(const char* path) {
    return IsExists(path) || FindsAnything(kit::OrEmpty(path));
}

bool CQELFile::IsExistsEx(const CQELString& path) {
    return IsExistsEx(static_cast<const char*>(path));
}

bool CQELFile::IsFolder(const char* path) {
    struct _stat64 status;
    return ReadStatus(path, status) && (status.st_mode & _S_IFDIR) != 0;
}

int CQELFile::Remove(const char* path, const XQELFile& status) {
    status.Clear();
    path = kit::OrEmpty(path);
    const auto outcome = kit::RunOnBusyFile(path, [&] { return ::remove(path) == 0; });
    if (!outcome.done) {
        kit::Report(status, path, outcome.StatusOr(kStatusRemoveFailed), outcome.last_errno);
    }
    return status.IsError() ? kStatusRemoveFailed : kStatusOk;
}

int CQELFile::RemoveEx(const char* path, const XQELFile& status) {
    ::SetFileAttributesA(kit::OrEmpty(path),
                         FILE_ATTRIBUTE_ARCHIVE);  // Remove tells if this mattered
    return Remove(path, status);
}

bool CQELFile::CopyFileA(const char* from, const char* to, bool fail_if_exists,
                         const XQELFile& status, bool) {
    status.Clear();
    from = kit::OrEmpty(from);
    to = kit::OrEmpty(to);
    const auto outcome = kit::RunOnBusyFile(
        to, [&] { return WithErrno([&] { return ::CopyFileA(from, to, fail_if_exists); }); });
    if (!outcome.done) {
        kit::Report(status, from, outcome.StatusOr(kStatusCopyFailed), outcome.last_errno);
    }
    return !status.IsError();
}

bool CQELFile::MoveFileA(const char* from, const char* to, const XQELFile& status) {
    status.Clear();
    from = kit::OrEmpty(from);
    to = kit::OrEmpty(to);
    const auto outcome =
        kit::RunOnBusyFile(to, [&] { return WithErrno([&] { return ::MoveFileA(from, to); }); });
    if (!outcome.done) {
        kit::Report(status, from, outcome.StatusOr(kStatusMoveFailed), outcome.last_errno);
    }
    return !status.IsError();
}

ulong32 CQELFile::Attributes(const char* path, const XQELFile& status) {
    status.Clear();
    path = kit::OrEmpty(path);
    const DWORD attributes = ::GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        kit::Report(status, path, kStatusAttributesFailed, 0);
    }
    return attributes;
}

bool CQELFile::Attributes(const char* path, ulong32 attributes, const XQELFile& status) {
    status.Clear();
    path = kit::OrEmpty(path);
    if (!::SetFileAttributesA(path, attributes)) {
        kit::Report(status, path, kStatusAttributesFailed, 0);
    }
    return !status.IsError();
}

ulong32 CQELFile::Length(const char* path, const XQELFile& status) {
    status.Clear();
    path = kit::OrEmpty(path);
    const int file = ::_sopen(path, _O_RDONLY | _O_BINARY, _SH_DENYNO);
    if (file < 0) {
        kit::Report(status, path, kStatusOpenFailed, errno);
        return kit::kNoLength;
    }
    const std::int64_t length = ::_filelengthi64(file);
    const int unfit = kit::FitsLength(length) ? 0 : kit::UnfitErrno(length);
    ::_close(file);
    if (kit::FitsLength(length)) return static_cast<ulong32>(length);
    kit::Report(status, path, kStatusLengthFailed, unfit);
    return kit::kNoLength;
}

int CQELFile::GetFileLength(const char* path, std::uint64_t& length, bool on_disk) {
    length = 0;
    path = kit::OrEmpty(path);
    const auto read = on_disk && IsCompressed(path) ? ReadLengthOnDisk : ReadLength;
    if (read(path, length)) return kStatusOk;
    return IsExists(path) ? kStatusLengthFailed : kStatusFileNotFound;
}

CQELString CQELFile::CreateTempFile(const char* folder, const char* prefix) {
    char temporary[MAX_PATH + 1];
    if (!folder) {
        const DWORD length = ::GetTempPathA(sizeof temporary, temporary);
        if (length == 0 || length >= sizeof temporary) throw XQELStatus(SystemStatus(), true);
        folder = temporary;
    }
    char path[MAX_PATH];
    if (!::GetTempFileNameA(folder, prefix ? prefix : "qlk", 0, path)) {
        throw XQELStatus(SystemStatus(), folder, true);
    }
    ::SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL);
    return path;
}

int CQELFile::CreateCompressedFile(const char* path) {
    path = kit::OrEmpty(path);
    if (IsExists(path)) return kStatusFileExists;
    DWORD abilities = 0;
    if (!::GetVolumeInformationA(RootOf(path).c_str(), nullptr, 0, nullptr, nullptr, &abilities,
                                 nullptr, 0)) {
        return kStatusVolumeInformationFailed;
    }
    if (!(abilities & FILE_FILE_COMPRESSION)) return kStatusCompressFailed;
    const kit::FileHandle file(::CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                             CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return kStatusCreateFailed;
    USHORT format = COMPRESSION_FORMAT_DEFAULT;
    DWORD returned = 0;
    return ::DeviceIoControl(file.get(), FSCTL_SET_COMPRESSION, &format, sizeof format, nullptr, 0,
                             &returned, nullptr)
               ? kStatusOk
               : kStatusAttributesFailed;
}
