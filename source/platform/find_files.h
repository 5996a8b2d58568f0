#pragma once

#include "platform/handles.h"

namespace kit {

// The entries that a pattern finds, "." and ".." skipped:
//   for (FindFiles found("C:\\data\\*"); found; found.Next()) Use(found.entry());
// A search that could not start, for whatever reason, finds nothing; error() then says why
// (a Win32 code; 0 when the search ran to its end).
class FindFiles {
public:
    explicit FindFiles(const char* pattern);

    explicit operator bool() const { return static_cast<bool>(find_); }
    void Next();

    const WIN32_FIND_DATAA& entry() const { return entry_; }
    const char* name() const { return entry_.cFileName; }
    bool IsFolder() const { return (entry_.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
    // A junction or folder link: an entry of its own, never to be entered.
    bool IsLink() const { return (entry_.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }
    DWORD error() const { return error_; }
    // Why the search could not start, also when that is because nothing matched; 0 when it did.
    DWORD start_error() const { return start_error_; }

private:
    void SkipDots();

    WIN32_FIND_DATAA entry_{};
    FindHandle find_;
    DWORD error_ = 0;
    DWORD start_error_ = 0;
};

}  // namespace kit
