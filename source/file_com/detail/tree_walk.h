#pragma once

#include <string>

#include "platform/find_files.h"

namespace kit {

// Where a walk begins: the full path of the folder, or why there is nothing to walk.
struct WalkStart {
    enum Kind { kReady, kMissing, kNowhere };

    explicit WalkStart(const char* path);

    Kind kind;
    std::string folder;          // a full path
    std::string working_folder;  // of the process, at the start
};

// One more level for as long as this lives: the count is right again however the level is left.
class WalkLevel {
public:
    explicit WalkLevel(int& depth) : depth_(depth) { ++depth_; }
    ~WalkLevel() { --depth_; }
    WalkLevel(const WalkLevel&) = delete;
    WalkLevel& operator=(const WalkLevel&) = delete;

private:
    int& depth_;
};

bool IsSameFolder(const std::string& a, const std::string& b);
// `folder` and `name` with a backslash in between, unless `folder` ends in one.
std::string JoinPath(const std::string& folder, const char* name);

// Walks `folder` and what lies below it. Calls, each with the full path of an entry:
//   visit.File(path, entry)    for everything that is no folder
//   visit.Folder(path, entry)  for a folder, before it is entered
//   visit.Left(path)           for the same folder, after everything in it, once it is closed
//   visit.Link(path)           for a junction or folder link, which is never entered
// Entries whose name begins with a dot, and the working folder wherever it lies, are left alone
// with everything in them. `depth` counts the folders below the first one.
// Returns false when `folder` is the working folder.
template <typename Visitor>
bool WalkTree(const std::string& folder, const std::string& working_folder, int& depth,
              Visitor& visit) {
    if (IsSameFolder(folder, working_folder)) return false;
    for (FindFiles found(JoinPath(folder, "*.*").c_str()); found; found.Next()) {
        if (found.name()[0] == '.') continue;
        const std::string path = JoinPath(folder, found.name());
        if (!found.IsFolder()) {
            visit.File(path, found.entry());
        } else if (found.IsLink()) {
            visit.Link(path);
        } else {
            visit.Folder(path, found.entry());
            const WalkLevel level(depth);
            if (WalkTree(path, working_folder, depth, visit)) visit.Left(path);
        }
    }
    return true;
}

}  // namespace kit
