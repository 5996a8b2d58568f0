#include "file_com/detail/tree_walk.h"

#include "file_com/qel_file.h"
#include "platform/full_path.h"

namespace kit {

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
