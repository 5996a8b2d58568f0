#include "file_com/qel_folder.h"

#include <direct.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/or_empty.h"
#include "base/path_text.h"
#include "datetime/qel_datetime.h"
#include "file_com/detail/folder_path.h"
#include "file_com/detail/random_name.h"
#include "file_com/detail/report.h"
#include "file_com/detail/tree_walk.h"
#include "file_com/qel_file.h"
#include "platform/disk_space.h"
#include "platform/full_path.h"
#include "platform/last_error.h"
#include "platform/windows.h"
#include "status/status_codes.h"

#ifdef _MSC_VER
static_assert(sizeof(CQELFolder) == 64, "the layout is part of the interface");
#elif defined(__GNUC__)
static_assert(sizeof(CQELFolder) == 56, "the layout is part of the interface");
#endif

namespace {

// Runs a call of the C runtime that returns 0 for success.
template <typename Call>
bool Report(const XQELFile& status, const char* path, int code, Call call) {
    status.Clear();
    path = kit::OrEmpty(path);
    if (call(path) != 0) kit::Report(status, path, code, errno);
    return !status.IsError();
}

// The folder that the volume's room is asked by: the path's own, if it is a file.
std::string FolderOnVolume(const char* path) {
    const DWORD attributes = ::GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        return path;
    }
    return std::string(kit::FolderPart(kit::FullPathOf(path)));
}

bool AskDisk(const char* path, kit::DiskSpace& space, const XQELFile& status) {
    status.Clear();
    path = kit::OrEmpty(path);
    const std::string folder = FolderOnVolume(path);
    const std::string full = kit::FullPathOf(folder.c_str());
    const std::string root = full.substr(0, kit::RootLength(full)) + "\\";
    if (!kit::QueryDiskSpace(folder.c_str(), root.c_str(), space)) {
        kit::Report(status, path, kStatusDiskSpaceFailed, kit::ErrnoFromWin32(::GetLastError()));
    }
    return !status.IsError();
}

std::string TempFolder() {
    char folder[MAX_PATH + 1];
    const DWORD length = ::GetTempPathA(sizeof folder, folder);
    return length == 0 || length >= sizeof folder ? "" : folder;
}

// The time, as rand() is seeded with it.
unsigned SeedFromTime() {
    return static_cast<unsigned>(static_cast<std::int64_t>(CQELDateTime(true)));
}

// A path of this form below `folder` that does not exist.
const char* UnusedName(const char* folder, const char* pattern, CQELString& out) {
    do {
        const std::string name = kit::RandomName(kit::kFolderNameAlphabet, pattern);
        out = kit::JoinPath(folder, name.c_str()).c_str();
    } while (CQELFile::IsExists(out));
    return out;
}

}  // namespace

CQELFolder::CQELFolder(bool raise) : XQELFile(raise) {}
CQELFolder::CQELFolder(const char* path, bool raise) : XQELFile(raise), path_(path) {}
CQELFolder::CQELFolder(const CQELString& path, bool raise) : XQELFile(raise), path_(path) {}
CQELFolder::CQELFolder(const CQELFolder& other) : XQELFile(false), path_(other.path_) {
    TakeRaiseFlag(other);
}
CQELFolder::~CQELFolder() = default;

CQELFolder& CQELFolder::operator=(const CQELFolder& other) {
    TakeRaiseFlag(other);
    path_ = other.path_;
    return *this;
}

bool CQELFolder::Create() { return Create(path_, *this); }

bool CQELFolder::Create(const char* path, const XQELFile& status) {
    status.Clear();
    path = kit::OrEmpty(path);
    const std::string full = path + std::strspn(path, " ");
    int made = 0;
    const bool done = kit::ForEachPrefix(full, kit::RootLength(full), [&](std::size_t length) {
        const std::string prefix = full.substr(0, length);
        if (CQELFile::IsExists(prefix.c_str())) return true;
        if (::_mkdir(prefix.c_str()) != 0) return false;
        ++made;
        return true;
    });
    if (!done) {
        kit::Report(status, path, kStatusMakeFolderFailed, errno);
    } else if (made == 0) {
        // Quirk: a folder that is there already is a failure. Callers tell by it that they are the
        // ones who made the folder. Pinned by Folder.CreateReportsAnExistingFolder.
        kit::Report(status, path, kStatusMakeFolderFailed, EEXIST);
    }
    return !status.IsError();
}

bool CQELFolder::Remove() { return Remove(path_, *this); }

bool CQELFolder::Remove(const char* path, const XQELFile& status) {
    return Report(status, path, kStatusRemoveFolderFailed, ::_rmdir);
}

bool CQELFolder::Chdir() { return Chdir(path_, *this); }

bool CQELFolder::Chdir(const char* path, const XQELFile& status) {
    return Report(status, path, kStatusSetFolderFailed, ::_chdir);
}

int CQELFolder::MakeFolder(const char* path) {
    const XQELFile status(false);
    if (CQELFile::IsFolder(path) || Create(path, status)) return kStatusOk;
    return kStatusMakeFolderFailed;
}

int CQELFolder::RemoveFolder(const char* path) {
    const XQELFile status(false);
    if (!CQELFile::IsExists(path) || Remove(path, status)) return kStatusOk;
    return kStatusRemoveFolderFailed;
}

CQELString CQELFolder::CreateTempDir(const char* folder, const char* prefix) {
    constexpr int kAttempts = 1000;
    const std::string place = folder ? std::string(folder) : TempFolder();
    const std::string start = std::string(prefix ? prefix : "qlk").substr(0, 3);
    for (int i = 0; !place.empty() && i < kAttempts; ++i) {
        const std::string name = kit::RandomName(kit::kFolderNameAlphabet, "????????");
        const std::string path = kit::JoinPath(place, (start + name).c_str());
        if (::_mkdir(path.c_str()) == 0) return path.c_str();
        if (errno != EEXIST) break;
    }
    throw XQELStatus(kStatusMakeFolderFailed, place.c_str(), true);
}

void CQELFolder::GetFolderNameFromFile(CQELString& path) {
    const std::string text = static_cast<const char*>(path);
    std::size_t length = kit::FolderLength(text);
    const bool is_root = length == 1 || (length == 3 && text[1] == ':');
    if (length > 0 && !is_root) --length;
    path = CQELString(text.c_str(), length);
}

bool CQELFolder::GetDiskFree(const char* path, CQELInt64& bytes, const XQELFile& status) {
    kit::DiskSpace space;
    if (!AskDisk(path, space, status)) return false;
    bytes = CQELInt64(space.available);
    return true;
}

bool CQELFolder::GetDiskTotal(const char* path, CQELInt64& bytes, const XQELFile& status) {
    kit::DiskSpace space;
    if (!AskDisk(path, space, status)) return false;
    bytes = CQELInt64(space.total);
    return true;
}

const char* CQELFolder::UniqueDirectoryName(CQELString& out) {
    std::srand(SeedFromTime());
    return UnusedName(path_, "??\\??????", out);
}

const char* CQELFolder::UniqueFileName(CQELString& out) {
    // Quirk: seeds again only in this one case. Callers that seed for themselves get the names of
    // their seed. Pinned by FolderNames.DrawFromTheAlphabetInOrder.
    if (std::rand() == 41) std::srand(SeedFromTime());
    return UnusedName(path_, "????????.$$$", out);
}
