#include "text/c_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/windows.h"

namespace {

constexpr DWORD kWritable =
    PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

// How far the memory at `p` can be used as `access` allows: the end of its pages that are alike, or
// null when the first is not usable. Touches none of them, so that a guard page stays one.
const char* UsableUpTo(const char* p, DWORD access) {
    MEMORY_BASIC_INFORMATION pages;
    if (::VirtualQuery(p, &pages, sizeof pages) == 0 || pages.State != MEM_COMMIT) return nullptr;
    if ((pages.Protect & PAGE_GUARD) != 0 || (pages.Protect & access) == 0) return nullptr;
    return static_cast<const char*>(pages.BaseAddress) + pages.RegionSize;
}

}  // namespace

int QELIsValidAddress(const void* p, unsigned int size, int for_write) {
    const char* at = static_cast<const char*>(p);
    if (!at || reinterpret_cast<std::uintptr_t>(at) > UINTPTR_MAX - size) return 0;
    const char* const end = at + size;
    while (at < end) {
        at = UsableUpTo(at, for_write ? kWritable : kReadable);
        if (!at) return 0;
    }
    return 1;
}

int QELIsValidString(const char* s, int max_length) {
    if (!s) return 0;
    std::size_t left = max_length < 0 ? SIZE_MAX : static_cast<std::size_t>(max_length);
    while (left > 0) {
        const char* const end = UsableUpTo(s, kReadable);
        if (!end) return 0;
        const std::size_t n = (std::min)(left, static_cast<std::size_t>(end - s));
        if (std::memchr(s, '\0', n)) return 1;
        s += n;
        left -= n;
    }
    return 1;
}
