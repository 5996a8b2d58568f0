#include "file_com/detail/tree_walk.h"

#include "file_com/qel_file.h"
#include "platform/growing_text.h"

namespace kit {
namespace {

std::string LongForm(const std::string& path) {
    char buffer[MAX_PATH];
    const DWORD length = ::GetLongPathNameA(path.c_str(), buffer, sizeof buffer);
    return length == 0 || length >= sizeof buffer ? path : std::string(buffer, length);
}

bool IsRoot(const std::string& path) { return path.size() == 3 && path[1] == ':'; }

}  // namespace

std::string FullPathOf(const char* path) {
    std::string full = GrowingText(
        [path](char* buffer, std::size_t size) {
            return ::GetFullPathNameA(path, static_cast<DWORD>(size), buffer, nullptr);
        },
        MAX_PATH, MAX_PATH);
    if (full.empty()) return full;
    full = LongForm(full);
    if (full.back() == '\\' && !IsRoot(full)) full.pop_back();
    return full;
}

WalkStart::WalkStart(const char* path) : kind(kNowhere) {
    if (!path || *path == '\0') return;
    if (!CQELFile::IsExists(path)) {
        kind = kMissing;
        return;
    }
    folder = FullPathOf(path);
    working_folder = FullPathOf(".");
    if (!folder.empty() && !working_folder.empty()) kind = kReady;
}

bool IsSameFolder(const std::string& a, const std::string& b) {
    return ::lstrcmpiA(a.c_str(), b.c_str()) == 0;
}

std::string JoinPath(const std::string& folder, const char* name) {
    std::string path = folder;
    if (!path.empty() && path.back() != '\\') path += '\\';
    return path += name;
}

}  // namespace kit
