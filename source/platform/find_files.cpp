#include "platform/find_files.h"

#include <cstring>

namespace kit {
namespace {

bool IsDotName(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// The end of a search is no error.
DWORD RealError(DWORD code) {
    return code == ERROR_NO_MORE_FILES || code == ERROR_FILE_NOT_FOUND ? 0 : code;
}

}  // namespace

FindFiles::FindFiles(const char* pattern) : find_(::FindFirstFileA(pattern, &entry_)) {
    if (!find_) {
        start_error_ = ::GetLastError();
        error_ = RealError(start_error_);
        return;
    }
    SkipDots();
}

void FindFiles::Next() {
    if (!::FindNextFileA(find_.get(), &entry_)) {
        error_ = RealError(::GetLastError());
        find_.Reset();
        return;
    }
    SkipDots();
}

void FindFiles::SkipDots() {
    if (IsDotName(entry_.cFileName)) Next();
}

}  // namespace kit
