// The folder class's operations on what is in a folder.

#include <cstdint>
#include <string>

#include "base/or_empty.h"
#include "file_com/detail/tree_walk.h"
#include "file_com/qel_file.h"
#include "file_com/qel_folder.h"
#include "platform/full_path.h"
#include "platform/windows.h"
#include "status/status_codes.h"

namespace {

// The folders that are being walked below the first one, and what has been summed up: shared by
// all calls of the process, so that a visitor may start no walk of its own.
int clear_depth = 0;
int process_depth = 0;
std::uint64_t length_sum = 0;

std::uint64_t LengthOf(const WIN32_FIND_DATAA& entry) {
    return std::uint64_t{entry.nFileSizeHigh} << 32 | entry.nFileSizeLow;
}

struct ClearVisitor {
    bool remove_subfolders;
    int status = kStatusOk;  // of the last file at the top

    void File(const std::string& path, const WIN32_FIND_DATAA&) {
        const bool failed = CQELFolder::UnLink(path.c_str()) != 0;
        // Quirk: only the last file directly in the folder decides; what failed before it or deeper
        // is not told. Callers look at the folder instead.
        // Pinned by ClearFolder.TellsOfTheLastFileAtTheTop.
        if (clear_depth == 0) status = failed ? kStatusRemoveFolderFailed : kStatusOk;
    }
    void Folder(const std::string&, const WIN32_FIND_DATAA&) {}
    void Left(const std::string& path) {
        if (remove_subfolders) CQELFolder::UnLink(path.c_str());
    }
    void Link(const std::string& path) { Left(path); }
};

struct ProcessVisitor {
    unsigned char flags;

    bool Has(CQELFolder::DirProcessFlags flag) const { return (flags & flag) != 0; }

    void File(const std::string& path, const WIN32_FIND_DATAA& entry) {
        if (Has(CQELFolder::DIR_SUM_LENGTHS)) length_sum += LengthOf(entry);
        if (entry.dwFileAttributes != FILE_ATTRIBUTE_ARCHIVE) ResetAttributes(path);
        if (Has(CQELFolder::DIR_DELETE_FILES) || Has(CQELFolder::DIR_DELETE_ALL)) {
            CQELFolder::UnLink(path.c_str());
        }
    }
    void Folder(const std::string& path, const WIN32_FIND_DATAA& entry) {
        const DWORD attributes = entry.dwFileAttributes;
        if (attributes != 0 && attributes != FILE_ATTRIBUTE_ARCHIVE) ResetAttributes(path);
    }
    void Left(const std::string& path) {
        if (Has(CQELFolder::DIR_DELETE_ALL)) CQELFolder::UnLink(path.c_str());
    }
    void Link(const std::string& path) { Left(path); }

    void ResetAttributes(const std::string& path) const {
        if (!Has(CQELFolder::DIR_RESET_ATTRIBUTES)) return;
        ::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_ARCHIVE);
    }
};

// Removes what UnLink has made ready to go.
int RemoveEntry(const char* path, DWORD attributes) {
    const XQELFile status(false);
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) return CQELFile::Remove(path, status);
    return CQELFolder::Remove(path, status) ? kStatusOk : kStatusRemoveFolderFailed;
}

// The first failure of several steps.
class FirstFailure {
public:
    explicit FirstFailure(char* error_text = nullptr) : error_text_(error_text) {}
    void Note(int status, const std::string& path) {
        if (status == kStatusOk || status_ != kStatusOk) return;
        status_ = status;
        if (error_text_) error_text_[path.copy(error_text_, 254)] = '\0';
    }
    int status() const { return status_; }

private:
    char* const error_text_;
    int status_ = kStatusOk;
};

int CopyOne(const std::string& from, const std::string& to) {
    const XQELFile status(false);
    CQELFile::CopyFileA(from.c_str(), to.c_str(), false, status);
    return status.Status();
}

// Whether `inner` is `outer` or lies below it.
bool IsInside(const std::string& inner, const std::string& outer) {
    const std::string start = kit::JoinPath(outer, "");
    const std::string whole = kit::JoinPath(inner, "");
    return kit::IsSameFolder(whole.substr(0, start.size()), start);
}

void CopyTree(const std::string& from, const std::string& to, bool recursive,
              FirstFailure& failure) {
    const int made = CQELFolder::MakeFolder(to.c_str());
    failure.Note(made, to);
    if (made != kStatusOk) return;
    for (kit::FindFiles found(kit::JoinPath(from, "*.*").c_str()); found; found.Next()) {
        const std::string source = kit::JoinPath(from, found.name());
        const std::string target = kit::JoinPath(to, found.name());
        if (!found.IsFolder()) {
            failure.Note(CopyOne(source, target), source);
        } else if (recursive && !found.IsLink()) {
            CopyTree(source, target, recursive, failure);
        }
    }
}

// Calls action(name) for the files of a folder that match.
template <typename Action>
void ForEachFile(const std::string& folder, const char* mask, Action action) {
    const std::string pattern = kit::JoinPath(folder, mask ? mask : "*.*");
    for (kit::FindFiles found(pattern.c_str()); found; found.Next()) {
        if (!found.IsFolder()) action(found.name());
    }
}

}  // namespace

int CQELFolder::UnLink(const char* path) {
    path = kit::OrEmpty(path);
    if (!CQELFile::IsExists(path)) return kStatusOk;
    char full[MAX_PATH];
    const DWORD length = ::GetFullPathNameA(path, sizeof full, full, nullptr);
    if (length == 0 || length >= sizeof full) return -1;
    const DWORD attributes = ::GetFileAttributesA(full);
    if (attributes == INVALID_FILE_ATTRIBUTES) return kStatusAttributesFailed;
    const bool read_only = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (read_only && !::SetFileAttributesA(full, FILE_ATTRIBUTE_NORMAL)) {
        return kStatusAttributesFailed;
    }
    const int status = RemoveEntry(full, attributes);
    if (read_only && CQELFile::IsExists(full)) ::SetFileAttributesA(full, attributes);
    return status;
}

int CQELFolder::ClearFolder(const char* path, char remove_subfolders) {
    const kit::WalkStart start(path);
    ClearVisitor visitor{remove_subfolders != 0};
    if (start.kind == kit::WalkStart::kReady) {
        kit::WalkTree(start.folder, start.working_folder, clear_depth, visitor);
    }
    return visitor.status;
}

bool CQELFolder::RecursiveDirProcess(const CQELString& path, unsigned char flags,
                                     CQELInt64& total) {
    if (flags == 0) return true;
    const kit::WalkStart start(path);
    if (start.kind != kit::WalkStart::kReady) return start.kind != kit::WalkStart::kMissing;
    ProcessVisitor visitor{flags};
    length_sum = 0;
    if (kit::WalkTree(start.folder, start.working_folder, process_depth, visitor)) {
        total = CQELInt64(length_sum);
        length_sum = 0;
    }
    return true;
}

int CQELFolder::CopyFolder(const char* from, const char* to, bool recursive) {
    const std::string source = kit::FullPathOf(kit::OrEmpty(from));
    const std::string target = kit::FullPathOf(kit::OrEmpty(to));
    if (recursive && IsInside(target, source)) return kStatusBadParameter;
    FirstFailure failure;
    CopyTree(kit::OrEmpty(from), kit::OrEmpty(to), recursive, failure);
    return failure.status();
}

int CQELFolder::CopyFilesFromDirToDir(const char* from, const char* to, const char* mask,
                                      int* count, char* error_text, int overwrite) {
    if (count) *count = 0;
    FirstFailure failure(error_text);
    failure.Note(MakeFolder(to), kit::OrEmpty(to));
    if (failure.status() != kStatusOk) return failure.status();
    ForEachFile(kit::OrEmpty(from), mask, [&](const char* name) {
        const std::string source = kit::JoinPath(kit::OrEmpty(from), name);
        const std::string target = kit::JoinPath(kit::OrEmpty(to), name);
        if (!overwrite && CQELFile::IsExists(target.c_str())) return;
        const int status = CopyOne(source, target);
        failure.Note(status, source);
        if (count && status == kStatusOk) ++*count;
    });
    return failure.status();
}

int CQELFolder::DelFilesFromDir(const char* folder, const char* mask, char* error_text) {
    FirstFailure failure(error_text);
    ForEachFile(kit::OrEmpty(folder), mask, [&](const char* name) {
        const std::string path = kit::JoinPath(kit::OrEmpty(folder), name);
        failure.Note(UnLink(path.c_str()), path);
    });
    return failure.status();
}
