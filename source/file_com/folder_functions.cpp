#include "file_com/folder_functions.h"

#include <direct.h>
#include <io.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "file_com/detail/folder_path.h"
#include "file_com/detail/stream_tools.h"
#include "file_com/detail/tree_walk.h"
#include "file_com/qel_file.h"
#include "file_com/qel_folder.h"
#include "platform/full_path.h"
#include "platform/windows.h"
#include "status/status_text.h"

namespace {

using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

// Goes back to the working folder of its beginning.
class WorkingFolderKeeper {
public:
    WorkingFolderKeeper() : folder_(kit::FullPathOf(".")) {}
    ~WorkingFolderKeeper() { ::_chdir(folder_.c_str()); }
    WorkingFolderKeeper(const WorkingFolderKeeper&) = delete;
    WorkingFolderKeeper& operator=(const WorkingFolderKeeper&) = delete;

private:
    const std::string folder_;
};

bool MakePrefixes(const std::string& path) {
    const bool on_network = path.compare(0, 2, "\\\\") == 0;
    return kit::ForEachPrefix(
        path, on_network ? kit::RootLength(path) : 0, [&](std::size_t length) {
            // Quirk: whatever is as short as a drive is taken for one, so a folder "ab" is not made.
            // Callers pass full paths. Pinned by FolderFunctions.MakeDirectoryMakesEveryPrefix.
            if (length <= 2) return true;
            const std::string prefix = path.substr(0, length);
            return CQELFile::IsExists(prefix.c_str()) || ::_mkdir(prefix.c_str()) == 0;
        });
}

int MakeOnItsDrive(const char* given) {
    std::string path = given;
    const WorkingFolderKeeper keeper;
    if (path.size() > 1 && path[1] == ':') {
        path = kit::FullPathOf(given);  // "C:x" lies below the working folder of C
        DosSetCat(path.substr(0, 2).c_str());
    }
    return MakePrefixes(path) ? 0 : 1;
}

// Fits `buf`, which has room for 260 characters.
void CopyPath(const char* path, char* buf) {
    if (!buf) return;
    std::strncpy(buf, path, MAX_PATH - 1);
    buf[MAX_PATH - 1] = '\0';
}

}  // namespace

int DosSetCat(const char* path) {
    if (!path || std::strlen(path) >= MAX_PATH) return -1;
    char drive[_MAX_DRIVE];
    char folder[2 * MAX_PATH];
    char pattern[2 * MAX_PATH];
    ::strcat(::strcpy(pattern, path), "\\*.*");
    ::_splitpath(pattern, drive, folder, nullptr, nullptr);
    if (drive[0] && ::_chdrive(std::toupper(static_cast<unsigned char>(drive[0])) - 'A' + 1) != 0) {
        return -1;
    }
    std::string place = std::string(drive) + folder;
    if (place.size() > 3 && place.back() == '\\') place.pop_back();
    return place.size() == 1 ? 0 : ::_chdir(place.c_str());
}

int CQELFolder::DosSetCat(const char* path) { return ::DosSetCat(path); }

int MakeDirectory(const char* path) {
    if (!path || CQELFile::IsExists(path)) return 0;
    try {
        return MakeOnItsDrive(path);
    } catch (const std::bad_alloc&) {
        return -1;
    }
}

ulong32 FileSize(const char* path, char* error_text) {
    if (!path) path = "";
    const Stream stream(std::fopen(path, "rb"), std::fclose);
    if (!stream) {
        CopyPath(path, error_text);
        return kit::kNoLength;
    }
    const std::int64_t length = ::_filelengthi64(::_fileno(stream.get()));
    if (kit::FitsLength(length)) return static_cast<ulong32>(length);
    if (error_text) {
        MakeErrMess(path, error_text);
        error_text[254] = '\0';
    }
    return kit::kNoLength;
}

char* FgetStr(char* buf, int size, FILE* stream) {
    if (!buf || size < 1 || !stream || !std::fgets(buf, size, stream)) return nullptr;
    std::size_t length = std::strlen(buf);
    if (length > 0 && buf[length - 1] == '\n') --length;
    while (length > 0 && buf[length - 1] == ' ') --length;
    buf[length] = '\0';
    return buf;
}

char* FgetStrOem(char* buf, int size, FILE* stream) {
    if (!FgetStr(buf, size, stream)) return nullptr;
    ::OemToCharA(buf, buf);
    return buf;
}

int FputStr(const char* text, FILE* stream) {
    if (!text || !stream) return EOF;
    std::size_t length = std::strlen(text);
    if (length > 0 && text[length - 1] == '\n') --length;
    if (std::fwrite(text, 1, length, stream) != length) return EOF;
    return std::fputs("\n", stream);
}
