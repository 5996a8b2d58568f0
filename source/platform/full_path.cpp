#include "platform/full_path.h"

#include "platform/growing_text.h"
#include "platform/windows.h"

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

}  // namespace kit
