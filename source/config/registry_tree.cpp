// Whole trees of the registry: deleting and copying.

#include <cstring>
#include <string>
#include <vector>

#include "config/detail/registry_errors.h"
#include "config/registry.h"
#include "platform/handles.h"

namespace {

// Characters of the longest path whose parts are all as long as names of keys may be, at the depth
// where the system ends.
constexpr std::size_t kLongestPath = 512 * 256;
// DeleteAll takes paths shorter than this.
constexpr int kPathLimit = 257;

// Names of keys have up to 255 characters, of at most two bytes.
using KeyName = char[512];
// Names of values have up to 16383 characters.
constexpr DWORD kValueNameRoom = 0x4000;

LSTATUS EnumerateKey(HKEY key, DWORD index, KeyName& name) {
    DWORD length = sizeof name;
    return ::RegEnumKeyExA(key, index, name, &length, nullptr, nullptr, nullptr, nullptr);
}

std::vector<std::string> SubKeys(HKEY key, const char* path) {
    std::vector<std::string> names;
    KeyName name;
    LSTATUS result;
    while ((result = EnumerateKey(key, static_cast<DWORD>(names.size()), name)) == ERROR_SUCCESS) {
        names.emplace_back(name);
    }
    if (result != ERROR_NO_MORE_ITEMS) kit::ThrowKeyError(kit::kCannotEnumerate, result, path);
    return names;
}

// One value as the system holds it: its name and its texts are UTF-16 and may hold more than the
// ANSI code page does.
struct StoredValue {
    const wchar_t* name;
    DWORD type;
    DWORD length;
    const BYTE* data;
};

// Calls use(StoredValue) for every value of a key; what it is given is valid until it returns.
template <typename Use>
void ForEachValue(HKEY key, const char* path, Use use) {
    std::vector<wchar_t> name(kValueNameRoom);
    std::vector<BYTE> data(1024);
    for (DWORD index = 0;;) {
        // When a text has no end, the system looks for it behind the data, and must not find one.
        constexpr std::size_t kNoEnd = 2;
        DWORD name_length = kValueNameRoom;
        DWORD length = static_cast<DWORD>(data.size() - kNoEnd);
        DWORD type = REG_NONE;
        const LSTATUS result = ::RegEnumValueW(key, index, name.data(), &name_length, nullptr,
                                               &type, data.data(), &length);
        if (result == ERROR_NO_MORE_ITEMS) return;
        if (result == ERROR_MORE_DATA && length > data.size() - kNoEnd) {
            data.resize(length + kNoEnd);
            continue;
        }
        if (result != ERROR_SUCCESS) kit::ThrowKeyError(kit::kCannotEnumerate, result, path);
        std::memset(&data[length], 0xFF, kNoEnd);
        use(StoredValue{name.data(), type, length, data.data()});
        ++index;
    }
}

bool Holds(HKEY key, const StoredValue& value, std::vector<BYTE>& room) {
    room.resize(value.length + std::size_t{1});  // never empty: no room would ask for the length
    DWORD type = REG_NONE;
    DWORD length = value.length;
    return ::RegQueryValueExW(key, value.name, nullptr, &type, room.data(), &length) ==
               ERROR_SUCCESS &&
           type == value.type && length == value.length &&
           std::memcmp(room.data(), value.data, length) == 0;
}

// A value's name for messages.
CQELString ToAnsi(const wchar_t* name) {
    std::vector<char> ansi(std::wcslen(name) * 2 + 1);
    ::WideCharToMultiByte(CP_ACP, 0, name, -1, ansi.data(), static_cast<int>(ansi.size()), nullptr,
                          nullptr);
    ansi.back() = '\0';
    return CQELString(ansi.data());
}

// Whether a lookup found something or nothing; any other outcome throws, so that nobody takes a
// thing that he may not see for one that is not there.
bool IsThere(LSTATUS result, kit::RegistryMessage message, const char* name) {
    if (result != ERROR_SUCCESS && result != ERROR_FILE_NOT_FOUND) {
        kit::ThrowKeyError(message, result, name);
    }
    return result == ERROR_SUCCESS;
}

[[noreturn]] void ThrowDeleteError(std::string path, LSTATUS code) {
    const auto at = path.rfind('\\');
    if (at == std::string::npos) kit::ThrowKeyError(kit::kCannotDeleteKey, code, "", path.c_str());
    path[at] = '\0';
    kit::ThrowKeyError(kit::kCannotDeleteKey, code, path.c_str(), path.c_str() + at + 1);
}

}  // namespace

// --- Deleting ------------------------------------------------------------------------------------

void CQelReg::DeleteAll(const char* subKey) {
    // Without a name this key itself would go.
    if (!subKey || *subKey == '\0' || *subKey == '\\') {
        kit::ThrowKeyError(kit::kCannotDeleteKey, ERROR_INVALID_PARAMETER, keyPath,
                           subKey ? subKey : "");
    }
    const CQELString path = JoinedPath(subKey);
    if (path.Length() >= kPathLimit) {
        kit::ThrowKeyError(kit::kCannotDeleteKey, ERROR_SUCCESS, keyPath, subKey);
    }
    std::vector<char> buffer(kLongestPath);
    std::strcpy(buffer.data(), path);
    DeleteTree(buffer.data(), buffer.size(), true);
}

void CQelReg::DeleteAll(char* path, int bufferSize) {
    if (!path || bufferSize <= 0) ThrowRegError(ERROR_INVALID_PARAMETER);
    const auto room = static_cast<std::size_t>(bufferSize);
    const std::size_t length = ::strnlen(path, room);
    if (length == room) {
        kit::ThrowKeyError(kit::kNoRoomForPath, ERROR_SUCCESS, CQELString(path, length));
    }
    // Without a path the root's whole tree would go.
    if (length == 0) ThrowDeleteError(path, ERROR_INVALID_PARAMETER);
    DeleteTree(path, room, true);
}

void CQelReg::DeleteTree(char* path, std::size_t room, bool is_first) {
    kit::RegistryKey key;
    LSTATUS result = ::RegOpenKeyExA(root, path, REG_OPTION_OPEN_LINK, KEY_READ, key.Receive());
    if (result != ERROR_SUCCESS) kit::ThrowKeyError(kit::kCannotOpenKey, result, path);
    DeleteSubKeys(key.get(), path, room, is_first);
    // By its path a link would stand for the key that it leads to.
    result = ::RegDeleteKeyA(key.get(), "");
    if (result != ERROR_SUCCESS) ThrowDeleteError(path, result);
}

// Each key that is deleted makes another one the first.
void CQelReg::DeleteSubKeys(HKEY key, char* path, std::size_t room, bool is_first) {
    const std::size_t length = std::strlen(path);
    KeyName name;
    LSTATUS result;
    while ((result = EnumerateKey(key, 0, name)) == ERROR_SUCCESS) {
        if (length + 1 + std::strlen(name) + 1 > room) {
            if (is_first) kit::ThrowKeyError(kit::kNoRoomForPath, ERROR_SUCCESS, path);
            kit::ThrowKeyError(kit::kNoRoomForSubPath, ERROR_SUCCESS, name, path);
        }
        path[length] = '\\';
        std::strcpy(path + length + 1, name);
        DeleteTree(path, room, false);
        path[length] = '\0';
    }
    if (result != ERROR_NO_MORE_ITEMS) kit::ThrowKeyError(kit::kCannotEnumerate, result, path);
}

// --- Copying -------------------------------------------------------------------------------------

void CQelReg::Copy(const CQelReg& source) {
    std::vector<BYTE> room;
    ForEachValue(source.hKey, source.keyPath, [&](const StoredValue& value) {
        if (Holds(hKey, value, room)) return;
        const LSTATUS result =
            ::RegSetValueExW(hKey, value.name, 0, value.type, value.data, value.length);
        if (result != ERROR_SUCCESS) {
            kit::ThrowKeyError(kit::kCannotCopyValue, result, ToAnsi(value.name), keyPath);
        }
    });
    for (const auto& name : SubKeys(source.hKey, source.keyPath)) {
        const CQelReg from(&source, name.c_str(), kRead);
        CQelReg(this, name.c_str(), kWrite | kCreate).Copy(from);
    }
}

void CQelReg::CleanNotExisted(const CQelReg& source) {
    std::vector<std::wstring> surplus;
    ForEachValue(hKey, keyPath, [&](const StoredValue& value) {
        DWORD type = REG_NONE;
        const LSTATUS result =
            ::RegQueryValueExW(source.hKey, value.name, nullptr, &type, nullptr, nullptr);
        if (!IsThere(result, kit::kCannotQuery, source.keyPath) || type != value.type) {
            surplus.emplace_back(value.name);
        }
    });
    for (const auto& name : surplus) {
        const LSTATUS result = ::RegDeleteValueW(hKey, name.c_str());
        if (result != ERROR_SUCCESS && result != ERROR_FILE_NOT_FOUND) {
            kit::ThrowKeyError(kit::kCannotWriteValue, result, ToAnsi(name.c_str()), keyPath);
        }
    }
    for (const auto& name : SubKeys(hKey, keyPath)) {
        kit::RegistryKey theirs;
        const LSTATUS result =
            ::RegOpenKeyExA(source.hKey, name.c_str(), 0, KEY_READ, theirs.Receive());
        if (IsThere(result, kit::kCannotOpenKey, source.keyPath)) {
            const CQelReg from(&source, name.c_str(), kRead);
            CQelReg(this, name.c_str(), kWrite).CleanNotExisted(from);
        } else {
            DeleteAll(name.c_str());
        }
    }
}

void CQelReg::CopyClean(const CQelReg& source) {
    CleanNotExisted(source);
    Copy(source);
}

CQelReg& CQelReg::operator=(const CQelReg& source) {
    CopyClean(source);
    return *this;
}

CQelReg& CQelReg::operator<<(const CQelReg& source) {
    Copy(source);
    return *this;
}
