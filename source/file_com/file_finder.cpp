#include "file_com/file_finder.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "file_com/detail/tree_walk.h"
#include "file_com/qel_file.h"
#include "file_com/qel_folder.h"
#include "platform/full_path.h"

namespace QEL {
namespace {

constexpr ulong32 kIsNoFolder = 0x4000;

bool Takes(const FILENAME_MASK& mask, const kit::FindFiles& found) {
    const auto filter = static_cast<ulong32>(mask.GetAttr());
    if (filter == 0) return !found.IsFolder();
    const ulong32 bits = found.entry().dwFileAttributes | (found.IsFolder() ? 0 : kIsNoFolder);
    return (bits & filter) != 0;
}

void Describe(const WIN32_FIND_DATAA& entry, FF_FILE_INFO& info) {
    const FILETIME& time = entry.ftLastWriteTime;
    info.attributes = entry.dwFileAttributes;
    info.size = std::uint64_t{entry.nFileSizeHigh} << 32 | entry.nFileSizeLow;
    info.write_time = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

// Removes what is in a folder and then the folder; a link only itself.
void RemoveTree(const std::string& folder) {
    for (kit::FindFiles found(kit::JoinPath(folder, "*").c_str()); found; found.Next()) {
        const std::string path = kit::JoinPath(folder, found.name());
        if (found.IsFolder() && !found.IsLink()) {
            RemoveTree(path);
        } else {
            CQELFolder::UnLink(path.c_str());
        }
    }
    CQELFolder::UnLink(folder.c_str());
}

bool IsLink(const char* path) {
    const DWORD attributes = ::GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

}  // namespace

// The folder that is being read and those that are still to come, as paths from the start on.
struct FileFinder::Search {
    Search(const char* folder, const std::vector<FILENAME_MASK>& wanted)
        : start(folder), masks(wanted) {
        enters_folders = std::any_of(masks.begin(), masks.end(), [](const FILENAME_MASK& mask) {
            return mask.GetUseSubDirs() || std::strchr(mask, '\\') != nullptr;
        });
        waiting.emplace_back();
    }

    bool OpenNextFolder() {
        std::reverse(waiting.begin() + static_cast<std::ptrdiff_t>(first_of_current),
                     waiting.end());
        if (waiting.empty()) return false;
        current = waiting.back();
        waiting.pop_back();
        first_of_current = waiting.size();
        skips = false;
        folder = current.empty() ? start : kit::JoinPath(start, current.c_str());
        found = std::make_unique<kit::FindFiles>(kit::JoinPath(folder, "*").c_str());
        return true;
    }

    // Whether the entry is wanted. Remembers a folder for later.
    bool Look() {
        name = found->name();
        path = kit::JoinPath(current, found->name()).c_str();  // += would trim it
        if (enters_folders && found->IsFolder() && !found->IsLink()) waiting.emplace_back(path);
        return !skips && std::any_of(masks.begin(), masks.end(), [&](const FILENAME_MASK& mask) {
            return Takes(mask, *found) && Matches(mask);
        });
    }
    bool Matches(const FILENAME_MASK& mask) const {
        return (mask.GetUseSubDirs() && mask.Compare(name)) || mask.Compare(path);
    }

    const std::string start;
    const std::vector<FILENAME_MASK> masks;
    bool enters_folders;
    bool skips = false;
    std::string current;  // the folder that is being read, from the start on
    std::string folder;   // all of its path
    FILENAME name;        // the entry's; kept, as `path` is, for the room that they have
    FILENAME path;        // from the start on
    std::vector<std::string> waiting;  // the next one last; those of `current` are in its order
    std::size_t first_of_current = 0;  // and begin here
    std::unique_ptr<kit::FindFiles> found;
};

FileFinder::FileFinder() = default;
FileFinder::~FileFinder() = default;

bool FileFinder::StartFind(const char* folder, const FILENAME_MASK& mask) {
    return StartFind(folder, std::vector<FILENAME_MASK>{mask});
}

bool FileFinder::StartFind(const char* folder, const std::vector<FILENAME_MASK>& masks) {
    if (!folder || *folder == '\0') folder = ".";
    cur_dir_.Clear();
    filename_.Clear();
    info_ = {};
    search_.reset();
    const DWORD attributes = ::GetFileAttributesA(folder);
    if (attributes == INVALID_FILE_ATTRIBUTES) return false;
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) return false;
    search_ = std::make_unique<Search>(folder, masks);
    return true;
}

bool FileFinder::Next() {
    while (search_) {
        Search& search = *search_;
        if (!search.found || !*search.found) {
            if (!search.OpenNextFolder()) break;
        } else if (search.found->Next(); !*search.found) {
            continue;
        }
        if (!*search.found || !search.Look()) continue;
        cur_dir_ = search.folder.c_str();
        filename_ = search.name;
        info_.name = kit::JoinPath(search.folder, search.found->name()).c_str();
        Describe(search.found->entry(), info_);
        return true;
    }
    search_.reset();
    cur_dir_.Clear();
    filename_.Clear();
    info_ = {};
    return false;
}

bool FileFinder::NextFile() {
    while (Next()) {
        if (!(info_.attributes & FILE_ATTRIBUTE_DIRECTORY)) return true;
    }
    return false;
}

void FileFinder::SkipFiles() {
    if (search_) search_->skips = true;
}

void FilesList::Append(const FilesList& other) {
    const std::size_t count = other.size();  // it may be this list
    files_.reserve(files_.size() + count);
    for (std::size_t i = 0; i < count; ++i) files_.push_back(other.files_[i]);
}

void FilesList::Append(FileFinder& finder) {
    while (finder.Next()) Add(finder.GetFileInfo());
}

int FilesList::DeleteFiles() {
    std::vector<FF_FILE_INFO> left;
    for (auto file = files_.rbegin(); file != files_.rend(); ++file) {
        if (CQELFolder::UnLink(file->name) != 0) left.push_back(*file);
    }
    std::reverse(left.begin(), left.end());
    files_.swap(left);
    return static_cast<int>(files_.size());
}

std::uint64_t FilesList::TotalSize() const {
    std::uint64_t total = 0;
    for (const auto& file : files_) total += file.size;
    return total;
}

FOLDER::FOLDER() = default;
FOLDER::FOLDER(const char* path) : FILENAME(path) {}
FOLDER::FOLDER(const FILENAME& path) : FILENAME(path) {}
FOLDER::FOLDER(const FOLDER& other) = default;
FOLDER& FOLDER::operator=(const FOLDER& other) = default;
FOLDER::~FOLDER() = default;

bool FOLDER::Create() const { return CQELFolder::MakeFolder(*this) == 0; }

bool FOLDER::Delete() const {
    const std::string folder = kit::FullPathOf(*this);
    constexpr std::size_t kRoot = 3;  // "C:\"
    if (isEmpty() || folder.size() <= kRoot) return false;
    if (CQELFile::IsFolder(*this) && !IsLink(*this)) {
        RemoveTree(folder);
    } else {
        CQELFolder::UnLink(*this);
    }
    return !CQELFile::IsExists(static_cast<const char*>(*this));
}

TEMPFOLDER::TEMPFOLDER(const char* folder, const char* prefix)
    : FOLDER(static_cast<const char*>(CQELFolder::CreateTempDir(folder, prefix))) {}

TEMPFOLDER::~TEMPFOLDER() {
    try {
        Delete();
    } catch (const std::bad_alloc&) {
        // the folder stays: there is nobody to tell
    }
}

}  // namespace QEL
