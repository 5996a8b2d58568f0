#include "text/c_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/multibyte.h"
#include "platform/windows.h"
#include "text/detail/byte_search.h"

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

// The index of the first `wanted` that begins at a character of `text`; npos when there is none.
std::size_t FindCharacters(std::string_view text, std::string_view wanted) {
    if (!kit::HasDoubleByteCharacters()) return kit::FindBytes(text, wanted);
    for (std::size_t at = 0; text.size() - at >= wanted.size();) {
        if (text.compare(at, wanted.size(), wanted) == 0) return at;
        if (at + 1 >= text.size()) break;  // no second byte to look at
        at += kit::CharacterLength(text.data() + at);
    }
    return std::string_view::npos;
}

std::size_t FindInString(std::string_view text, std::string_view wanted) {
    return kit::FindBytes(text, wanted);
}

using FindIn = std::size_t (*)(std::string_view text, std::string_view wanted);

// The first hit in a string of the block; nothing is read behind the block.
const char* FindInStrings(std::string_view block, std::string_view wanted, FindIn find) {
    while (block.size() >= wanted.size()) {
        const std::string_view string = block.substr(0, block.find('\0'));
        const std::size_t hit = find(string, wanted);
        if (hit != std::string_view::npos) return string.data() + hit;
        if (string.size() == block.size()) break;
        block.remove_prefix(string.size() + 1);
    }
    return nullptr;
}

const char* FindInBlock(const char* block, const char* needle, int size, FindIn find) {
    if (!block || !needle || size < 0) return nullptr;
    const std::size_t length = size == 0 ? std::strlen(block) : static_cast<std::size_t>(size);
    return FindInStrings({block, length}, needle, find);
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

const char* CTFStrStr(const char* block, const char* needle, int blockSize) {
    return FindInBlock(block, needle, blockSize, FindCharacters);
}

const char* CTFStrStrA(const char* block, const char* needle, int blockSize) {
    return FindInBlock(block, needle, blockSize, FindInString);
}

void TrimEndSpaces(char* s) {
    if (!s) return;
    std::size_t length = std::strlen(s);
    while (length > 0 && s[length - 1] == ' ') --length;
    s[length] = '\0';
}

void CheckEndSlash(char* s) {
    if (!s) return;
    // Quirk: a path that begins with a byte above 127, a Cyrillic letter for example, is not
    // completed but replaced by the root, as the empty path is. Callers see the same paths as ever.
    // Pinned by Slashes.ReplaceAPathThatBeginsBeyondAscii.
    const bool is_kept = *s != '\0' && static_cast<unsigned char>(*s) < 0x80;
    const std::size_t length = is_kept ? std::strlen(s) : 0;
    if (length > 0 && s[length - 1] == '\\') return;
    s[length] = '\\';
    s[length + 1] = '\0';
}

void CutEndSlash(char* s) {
    if (!s) return;
    const std::size_t length = std::strlen(s);
    if (length > 0 && s[length - 1] == '\\') s[length - 1] = '\0';
}

int NIKIn(unsigned int value, unsigned int low, unsigned int high) {
    if (value < low) return -1;
    return value > high ? 1 : 0;
}
