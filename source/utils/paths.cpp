#include "utils/paths.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <vector>

#include "platform/full_path.h"
#include "platform/handles.h"
#include "platform/windows.h"

#include <winnetwk.h>

#include <mbstring.h>  // last: its macros break the standard headers

namespace QELUtils {
namespace {

struct EnumerationTraits {
    using Type = HANDLE;
    static Type Invalid() { return nullptr; }
    static void Close(Type handle) { ::WNetCloseEnum(handle); }
};
using Enumeration = kit::Owner<EnumerationTraits>;

// Entries of the system, in a block that is aligned for them.
class ResourceBlock {
public:
    explicit ResourceBlock(std::size_t bytes) { Grow(bytes); }
    void Grow(std::size_t bytes) { units_.resize((bytes + sizeof(Unit) - 1) / sizeof(Unit)); }
    DWORD size() const { return static_cast<DWORD>(units_.size() * sizeof(Unit)); }
    NETRESOURCEA* entries() { return reinterpret_cast<NETRESOURCEA*>(units_.data()); }

private:
    using Unit = std::uint64_t;
    std::vector<Unit> units_;
};

constexpr std::size_t kFirstBlock = 2400;
constexpr std::size_t kLargestBlock = 1 << 24;

char Upper(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool IsDrivePath(const char* path) {
    const char letter = Upper(path[0]);
    return letter >= 'A' && letter <= 'Z' && path[1] == ':' && path[2] == '\\';
}

// The next entries of an enumeration; 0 at its end or on failure.
DWORD NextEntries(HANDLE enumeration, ResourceBlock& block) {
    for (;;) {
        DWORD count = 0xFFFFFFFF;  // as many as fit
        DWORD size = block.size();
        const DWORD code = ::WNetEnumResourceA(enumeration, &count, block.entries(), &size);
        if (code == NO_ERROR) return count;
        if (code != ERROR_MORE_DATA || size > kLargestBlock) return 0;
        block.Grow(size > block.size() ? size : block.size() * std::size_t{2});
        if (block.size() > kLargestBlock) return 0;
    }
}

// The network folder that a drive is connected to; empty when it is not.
std::string ConnectionOf(char letter) {
    Enumeration enumeration;
    if (::WNetOpenEnumA(RESOURCE_CONNECTED, RESOURCETYPE_DISK, 0, nullptr, enumeration.Receive()) !=
        NO_ERROR) {
        return {};
    }
    ResourceBlock block(kFirstBlock);
    while (const DWORD count = NextEntries(enumeration.get(), block)) {
        for (DWORD i = 0; i < count; ++i) {
            const NETRESOURCEA& entry = block.entries()[i];
            if (!entry.lpLocalName || !entry.lpRemoteName) continue;
            if (Upper(entry.lpLocalName[0]) == Upper(letter)) return entry.lpRemoteName;
        }
    }
    return {};
}

// Empty when there is none.
std::string UniversalName(const char* path) {
    if (!path || !IsDrivePath(path)) return {};
    std::string name = ConnectionOf(path[0]);
    if (name.empty()) return name;
    name += path + 2;
    ::_mbsupr(reinterpret_cast<unsigned char*>(name.data()));
    return name;
}

bool BeginsWith(const std::string& text, const char* start) {
    return text.compare(0, std::strlen(start), start) == 0;
}

// Without the prefix of long paths.
std::string WithoutPrefix(const std::string& path) {
    if (BeginsWith(path, "\\\\?\\UNC\\")) return "\\" + path.substr(7);
    return BeginsWith(path, "\\\\?\\") ? path.substr(4) : path;
}

bool IsOnNetworkDrive(const std::string& path) {
    const UINT type = ::GetDriveTypeA(path.substr(0, 3).c_str());
    return type == DRIVE_REMOTE || type == DRIVE_NO_ROOT_DIR;
}

// Empty when there is none.
std::string NetworkName(const std::string& given) {
    const std::string path = WithoutPrefix(given);
    if (BeginsWith(path, "\\\\")) return BeginsWith(path, "\\\\.\\") ? std::string() : path;
    return IsDrivePath(path.c_str()) && IsOnNetworkDrive(path) ? UniversalName(path.c_str())
                                                               : std::string();
}

int Deliver(const std::string& name, std::string& out) {
    if (name.empty()) return 0;
    out = name;
    return 1;
}

// The path that the system has for an existing file or folder; empty when it has none.
std::string FinalPath(const char* path) {
    const kit::FileHandle file(
        ::CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file) return {};
    std::string final_path(2 * MAX_PATH, '\0');
    const DWORD length = ::GetFinalPathNameByHandleA(
        file.get(), final_path.data(), static_cast<DWORD>(final_path.size()), VOLUME_NAME_DOS);
    if (length >= final_path.size()) return {};
    final_path.resize(length);
    return final_path;
}

std::string UpperCase(std::string text) {
    ::CharUpperA(text.data());
    return text;
}

}  // namespace

int GetUniversalName(char* const out, const char* const path) {
    if (!out) return 0;
    try {
        const std::string name = UniversalName(path);
        if (name.empty()) return 0;
        std::memcpy(out, name.c_str(), name.size() + 1);
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

int GetUNCFileName(const char* path, std::string& out) {
    return path ? Deliver(NetworkName(path), out) : 0;
}

int GetResolvedUNCFileName(const char* path, std::string& out) {
    if (!path) return 0;
    const std::string final_path = FinalPath(path);
    return Deliver(NetworkName(final_path.empty() ? NormilizePath(path) : final_path), out);
}

ulong32 GetLongPathNameA(const char* path, char* out, ulong32 size) {
    return path ? ::GetLongPathNameA(path, out, size) : 0;
}

std::string NormilizePath(const std::string& path) {
    const std::string full = kit::FullPathOf(WithoutPrefix(path).c_str());
    return full.empty() ? path : full;
}

bool IsPathEqual(const std::string& path1, const std::string& path2) {
    return UpperCase(NormilizePath(path1)) == UpperCase(NormilizePath(path2));
}

}  // namespace QELUtils
