#include "utils/wipe.h"

#include <io.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "base/or_empty.h"
#include "base/path_text.h"
#include "platform/find_files.h"
#include "platform/windows.h"

namespace QELUtils {
namespace {

constexpr std::size_t kBlock = 16384;
constexpr ulong32 kFolderAmongThem = 0xFFFFFFFF;

using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

// The code of the call that has just failed; never "no error".
ulong32 ErrorOr(ulong32 fallback) {
    const DWORD code = ::GetLastError();
    return code != NO_ERROR ? code : fallback;
}

// What a pass writes, block by block.
class WipeBlock {
public:
    void Randomize() {
        for (std::uint16_t& word : words_) word = static_cast<std::uint16_t>(std::rand());
    }
    // The words at even positions, which are the low halves of the 32-bit units.
    void InvertEveryOther() {
        for (std::size_t i = 0; i < kWords; i += 2) words_[i] ^= 0xFFFF;
    }
    const void* data() const { return words_; }

private:
    static constexpr std::size_t kWords = kBlock / 2;
    std::uint16_t words_[kWords] = {};
};

// Overwrites the file from its start and commits it to the disk.
bool WritePass(FILE* stream, std::int64_t length, const WipeBlock& block) {
    if (::_fseeki64(stream, 0, SEEK_SET) != 0) return false;
    for (std::int64_t left = length; left > 0;) {
        const auto size = static_cast<std::size_t>((std::min<std::int64_t>)(left, kBlock));
        if (std::fwrite(block.data(), 1, size, stream) != size) return false;
        left -= static_cast<std::int64_t>(size);
    }
    return std::fflush(stream) == 0;
}

ulong32 Overwrite(FILE* stream, WipeBlock& block) {
    const std::int64_t length = ::_filelengthi64(::_fileno(stream));
    if (length < 0) return ErrorOr(ERROR_SEEK);
    ::SetLastError(NO_ERROR);
    block.Randomize();
    if (!WritePass(stream, length, block)) return ErrorOr(ERROR_WRITE_FAULT);
    block.InvertEveryOther();
    if (!WritePass(stream, length, block)) return ErrorOr(ERROR_WRITE_FAULT);
    block.Randomize();
    if (!WritePass(stream, length, block)) return ErrorOr(ERROR_WRITE_FAULT);
    return NO_ERROR;
}

ulong32 Wipe(const char* path, WipeBlock& block) {
    if (std::strlen(path) >= MAX_PATH) return ERROR_FILENAME_EXCED_RANGE;
    if (::_chmod(path, _S_IWRITE) != 0) return ErrorOr(ERROR_FILE_NOT_FOUND);
    Stream stream(std::fopen(path, "rb+c"), std::fclose);  // c: every flush reaches the disk
    if (!stream) return ErrorOr(ERROR_OPEN_FAILED);
    const ulong32 error = Overwrite(stream.get(), block);
    stream.reset();
    if (error != NO_ERROR) return error;
    return std::remove(path) == 0 ? NO_ERROR : ErrorOr(ERROR_ACCESS_DENIED);
}

// Runs work(block) -> code with a block of its own.
template <typename Work>
ulong32 WithBlock(Work work) {
    try {
        const auto block = std::make_unique<WipeBlock>();
        return work(*block);
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

// Quirk: both outlive the call. The first is never set again and the second never cleared, so that
// only the first recursive call of a process takes its arguments apart. Callers wipe once, at
// their end. Pinned by the program WipeFolder_first_call_tests.
bool is_first_call = true;
bool removes_folders = false;

// Where the last part of a path begins: behind its last slash, or its drive.
std::size_t LastPartAt(const std::string& path) {
    const std::size_t at = kit::FolderLength(path);
    return at == 0 && path.size() > 1 && path[1] == ':' ? 2 : at;
}

// `path` with another last part.
std::string Replaced(const std::string& path, const char* name) {
    return path.substr(0, LastPartAt(path)) + name;
}

// What a call searches for.
struct Patterns {
    std::string folders;  // and the template of full names
    std::string files;

    std::string FullName(const char* name) const { return Replaced(folders, name); }
    bool Fit() const { return folders.size() < MAX_PATH && files.size() < MAX_PATH; }
};

// Quirk: a plain folder is found as the only entry of its own pattern. So without recursion nothing
// of it is wiped, and with it the folder itself goes as well. Callers mean it so.
// Pinned by the program WipeFolder_first_call_tests.
Patterns PatternsOfFirstCall(const std::string& folder, char* mask) {
    if (folder.find('*') == std::string::npos) {
        std::strcpy(mask, "*.*");
        removes_folders = true;
        return {folder, folder};
    }
    const std::string last = folder.substr(LastPartAt(folder));
    std::strcpy(mask, last.c_str());
    if (kit::FolderLength(folder) == 0) return {folder, folder};
    if (last == "*.*" || last == "*") removes_folders = true;
    return {Replaced(folder, "*.*"), folder};
}

bool IsFileLink(const kit::FindFiles& found) {
    return found.IsLink() && found.entry().dwReserved0 == IO_REPARSE_TAG_SYMLINK;
}

ulong32 WipeFiles(const Patterns& patterns, int recurse, WipeBlock& block) {
    kit::FindFiles found(patterns.files.c_str());
    if (found.start_error() != NO_ERROR) return is_first_call ? found.start_error() : NO_ERROR;
    ulong32 result = NO_ERROR;
    for (; found; found.Next()) {
        const std::string path = patterns.FullName(found.name());
        if (found.IsFolder()) {
            if (!recurse) result = kFolderAmongThem;
        } else if (IsFileLink(found)) {
            std::remove(path.c_str());
        } else {
            Wipe(path.c_str(), block);
        }
    }
    return result;
}

ulong32 WipeFolders(const Patterns& patterns, char* mask) {
    const bool is_bare = is_first_call && kit::FolderLength(patterns.folders) == 0;
    const bool is_mask = patterns.folders.find('*') != std::string::npos;
    kit::FindFiles found(is_bare && is_mask ? Replaced(patterns.folders, "*.*").c_str()
                                            : patterns.folders.c_str());
    if (found.start_error() != NO_ERROR) return is_bare ? found.start_error() : NO_ERROR;
    is_first_call = false;
    for (; found; found.Next()) {
        if (!found.IsFolder()) continue;
        const std::string path = patterns.FullName(found.name());
        if (!found.IsLink()) WipeDirectory(path.c_str(), mask, 1);
        if (removes_folders) ::RemoveDirectoryA(path.c_str());
    }
    return NO_ERROR;
}

ulong32 WipeMatching(const std::string& folder, char* mask, int recurse, WipeBlock& block) {
    const Patterns patterns = is_first_call ? PatternsOfFirstCall(folder, mask)
                                            : Patterns{folder + "\\*.*", folder + "\\" + mask};
    if (!patterns.Fit()) return ERROR_FILENAME_EXCED_RANGE;
    const ulong32 result = WipeFiles(patterns, recurse, block);
    return recurse ? WipeFolders(patterns, mask) : result;
}

}  // namespace

ulong32 WipeFile(const char* path) {
    return WithBlock([&](WipeBlock& block) { return Wipe(kit::OrEmpty(path), block); });
}

ulong32 WipeDirectory(const char* folder, char* mask, int recurse) {
    if (!folder || !mask) return ERROR_INVALID_PARAMETER;
    if (std::strlen(folder) >= MAX_PATH) return ERROR_FILENAME_EXCED_RANGE;
    return WithBlock([&](WipeBlock& block) { return WipeMatching(folder, mask, recurse, block); });
}

}  // namespace QELUtils
