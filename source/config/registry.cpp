#include "config/registry.h"

#include <cstring>
#include <vector>

#include "base/or_empty.h"
#include "config/detail/registry_errors.h"

static_assert(sizeof(CQelReg) == 280, "the layout is part of the binary interface");

namespace kit {

void ThrowKeyError(RegistryMessage message, LSTATUS code, const char* name) {
    CQELString text;
    text.Format(int{message}, name, code);
    throw XQELRegError(text, static_cast<ulong32>(code));
}

void ThrowKeyError(RegistryMessage message, LSTATUS code, const char* first, const char* second) {
    CQELString text;
    text.Format(int{message}, first, second, code);
    throw XQELRegError(text, static_cast<ulong32>(code));
}

}  // namespace kit

namespace {

CQELString SystemText(ulong32 code) {
    char text[1024];
    const DWORD length =
        ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                         0, text, sizeof text, nullptr);
    return CQELString(text, length);
}

[[noreturn]] void ThrowQueryError(const char* key, const char* value, LSTATUS code) {
    const CQELString name = CQELString(key) + " : " + kit::OrEmpty(value);
    kit::ThrowKeyError(kit::kCannotQuery, code, name);
}

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ; }

// Ends a text, or a list of texts, that was stored without its end, as far as there is room.
void Terminate(DWORD type, char* data, DWORD length, DWORD room) {
    const DWORD wanted = IsText(type) ? 1 : type == REG_MULTI_SZ ? 2 : 0;
    DWORD zeros = 0;
    while (zeros < wanted && zeros < length && data[length - zeros - 1] == '\0') ++zeros;
    for (; zeros < wanted && length < room; ++zeros) data[length++] = '\0';
}

// A value into a caller's buffer; `type` becomes its type.
LSTATUS Query(HKEY key, const char* name, void* buffer, int size, DWORD& type) {
    if (size < 0) return ERROR_INVALID_PARAMETER;
    const auto room = static_cast<DWORD>(size);
    DWORD length = room;
    const LSTATUS result =
        ::RegQueryValueExA(key, name, nullptr, &type, static_cast<BYTE*>(buffer), &length);
    if (result == ERROR_SUCCESS && buffer)
        Terminate(type, static_cast<char*>(buffer), length, room);
    return result;
}

struct Value {
    DWORD type = REG_NONE;
    DWORD length = 0;
    std::vector<char> data;  // and two zero bytes, so that texts and lists have an end
};

// A value of any length; somebody may make it longer meanwhile.
LSTATUS ReadWhole(HKEY key, const char* name, Value& value) {
    constexpr DWORD kEnd = 2;
    LSTATUS result = ERROR_MORE_DATA;
    for (DWORD room = 0; result == ERROR_MORE_DATA; room = value.length) {
        value.data.assign(std::size_t{room} + kEnd, '\0');
        value.length = room;
        auto* const data = reinterpret_cast<BYTE*>(value.data.data());
        result = ::RegQueryValueExA(key, name, nullptr, &value.type, data, &value.length);
    }
    return result;
}

CQELString Expanded(const char* text) {
    std::vector<char> expanded;
    DWORD needed = ::ExpandEnvironmentStringsA(text, nullptr, 0);
    while (needed > expanded.size()) {
        expanded.resize(std::size_t{needed} + 1);
        needed =
            ::ExpandEnvironmentStringsA(text, expanded.data(), static_cast<DWORD>(expanded.size()));
    }
    return needed > 0 ? CQELString(expanded.data()) : CQELString(text);
}

// Stores data as they are. Of texts the system looks one byte further for their end; it must not
// look into what a caller has there.
LSTATUS Store(HKEY key, const char* name, DWORD type, const unsigned char* data, DWORD length) {
    if (!data && length > 0) return ERROR_INVALID_PARAMETER;
    const bool has_end = length == 0 || data[length - 1] == '\0';
    if (has_end || !(IsText(type) || type == REG_MULTI_SZ)) {
        return ::RegSetValueExA(key, name, 0, type, data, length);
    }
    std::vector<unsigned char> copy(data, data + length);
    copy.push_back(0xFF);
    return ::RegSetValueExA(key, name, 0, type, copy.data(), length);
}

}  // namespace

// --- Opening and closing -------------------------------------------------------------------------

CQelReg::CQelReg(HKEY from, const char* path, AccessMode mode) : hKey(nullptr), root(from) {
    Init(path, mode);
}

CQelReg::CQelReg(const CQelReg* parent, const char* subKey, AccessMode mode)
    : hKey(nullptr), root(nullptr) {
    if (!parent) ThrowRegError(ERROR_INVALID_PARAMETER);
    root = parent->root;
    Init(parent->JoinedPath(subKey), mode);
}

CQelReg::~CQelReg() {
    if (!hKey) return;
    ::RegFlushKey(hKey);
    ::RegCloseKey(hKey);  // a failure has nobody to hear of it
}

// The system knows no path that begins with a backslash, so below a root's own key there is none.
CQELString CQelReg::JoinedPath(const char* subKey) const {
    CQELString path;
    path.Format(*keyPath ? "%s\\%s" : "%s%s", keyPath, kit::OrEmpty(subKey));
    return path;
}

void CQelReg::Init(const char* path, AccessMode mode) {
    path = kit::OrEmpty(path);
    if (std::strlen(path) >= sizeof keyPath) ThrowRegError(ERROR_BUFFER_OVERFLOW);
    std::strcpy(keyPath, path);

    const REGSAM view = mode & k64BitView ? KEY_WOW64_64KEY : 0;
    if (mode & kEveryone) return OpenForEveryone(view);
    const REGSAM rights = (mode & kWrite ? KEY_ALL_ACCESS : KEY_READ) | view;
    HKEY key = nullptr;
    LSTATUS create_error = ERROR_SUCCESS;
    if (mode & kCreate) {
        create_error =
            ::RegCreateKeyExA(root, keyPath, 0, nullptr, 0, rights, nullptr, &key, nullptr);
    }
    if (!(mode & kCreate) || create_error != ERROR_SUCCESS) {
        const LSTATUS open_error = ::RegOpenKeyExA(root, keyPath, 0, rights, &key);
        if (open_error != ERROR_SUCCESS) {
            const bool was_created = (mode & kCreate) != 0;
            kit::ThrowKeyError(was_created ? kit::kCannotCreateKey : kit::kCannotOpenKey,
                               was_created ? create_error : open_error, keyPath);
        }
    }
    hKey = key;
}

void CQelReg::OpenForEveryone(REGSAM view) {
    SECURITY_DESCRIPTOR descriptor;
    if (!::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) ||
        !::SetSecurityDescriptorDacl(&descriptor, TRUE, nullptr, FALSE)) {
        throw XQELRegError(SystemText(::GetLastError()), 0);
    }
    SECURITY_ATTRIBUTES security = {sizeof security, &descriptor, FALSE};
    HKEY key = nullptr;
    const LSTATUS error = ::RegCreateKeyExA(root, keyPath, 0, nullptr, 0, KEY_ALL_ACCESS | view,
                                            &security, &key, nullptr);
    if (error != ERROR_SUCCESS) ThrowRegError(static_cast<ulong32>(error));
    hKey = key;
}

void CQelReg::ThrowRegError(ulong32 code) { throw XQELRegError(SystemText(code), code); }

// --- Reading values ------------------------------------------------------------------------------

int CQelReg::GetValue(const char* name, char* buffer, int size) const {
    DWORD type;
    return Query(hKey, name, buffer, size, type) == ERROR_SUCCESS;
}

int CQelReg::GetMemoryNoThrow(const char* name, void* buffer, int size) const {
    return GetValue(name, static_cast<char*>(buffer), size);
}

int CQelReg::GetValueEx(const char* name, void* buffer, int size, ulong32 type) const {
    DWORD stored_type = type;
    LSTATUS result = Query(hKey, name, buffer, size, stored_type);
    if (result == ERROR_SUCCESS && stored_type != type) result = ERROR_DATATYPE_MISMATCH;
    if (result != ERROR_SUCCESS) ThrowQueryError(keyPath, name, result);
    return 1;
}

int CQelReg::GetMemory(const char* name, void* buffer, int size) const {
    return GetValueEx(name, buffer, size, REG_BINARY);
}

int CQelReg::GetExpandedValue(const char* name, CQELString& text, ulong32 size) const {
    Value value;
    LSTATUS result = ReadWhole(hKey, name, value);
    if (result == ERROR_SUCCESS && !IsText(value.type)) result = ERROR_DATATYPE_MISMATCH;
    if (result == ERROR_SUCCESS && value.length > size) result = ERROR_MORE_DATA;
    if (result != ERROR_SUCCESS) ThrowQueryError(keyPath, name, result);
    text = Expanded(value.data.data());
    return 1;
}

ulong32 CQelReg::GetBufferLength(const char* name) const {
    DWORD length = 0;
    const LSTATUS result = ::RegQueryValueExA(hKey, name, nullptr, nullptr, nullptr, &length);
    if (result != ERROR_SUCCESS) ThrowQueryError(keyPath, name, result);
    return length;
}

int CQelReg::GetValueTypeAndLength(const char* name, ulong32& length, ulong32& type) const {
    DWORD its_length = 0;
    DWORD its_type = 0;
    if (::RegQueryValueExA(hKey, name, nullptr, &its_type, nullptr, &its_length) != ERROR_SUCCESS) {
        return 0;
    }
    length = its_length;
    type = its_type;
    return 1;
}

bool CQelReg::GetStringList(const char* name, std::list<std::string>* list) {
    if (!list) return false;
    Value value;
    LSTATUS result = ReadWhole(hKey, name, value);
    if (result == ERROR_SUCCESS && value.type != REG_MULTI_SZ) result = ERROR_DATATYPE_MISMATCH;
    if (result != ERROR_SUCCESS) ThrowQueryError(keyPath, name, result);
    list->clear();
    for (const char* text = value.data.data(); *text != '\0'; text += list->back().size() + 1) {
        list->emplace_back(text);
    }
    return true;
}

// --- Writing values ------------------------------------------------------------------------------

int CQelReg::SetValueEx(const char* name, ulong32 type, const unsigned char* data, ulong32 length) {
    const LSTATUS result = Store(hKey, name, type, data, length);
    if (result != ERROR_SUCCESS) {
        kit::ThrowKeyError(kit::kCannotWriteValue, result, kit::OrEmpty(name), keyPath);
    }
    return 1;
}

int CQelReg::SetValue(const char* name, const char* text) {
    const auto length = text ? std::strlen(text) + 1 : 1;
    return SetValueEx(name, REG_SZ, reinterpret_cast<const unsigned char*>(text),
                      static_cast<ulong32>(length));
}

int CQelReg::SetValue(const char* name, ulong32 number) {
    return SetValueEx(name, REG_DWORD, reinterpret_cast<const unsigned char*>(&number),
                      sizeof number);
}

int CQelReg::SetValueNoThrow(const char* name, ulong32 number) {
    return Store(hKey, name, REG_DWORD, reinterpret_cast<const unsigned char*>(&number),
                 sizeof number) == ERROR_SUCCESS;
}

int CQelReg::PutMemory(const char* name, void* data, int length) {
    if (length < 0) {
        kit::ThrowKeyError(kit::kCannotWriteValue, ERROR_INVALID_PARAMETER, kit::OrEmpty(name),
                           keyPath);
    }
    return SetValueEx(name, REG_BINARY, static_cast<const unsigned char*>(data),
                      static_cast<ulong32>(length));
}

int CQelReg::DelValue(const char* name) { return ::RegDeleteValueA(hKey, name) == ERROR_SUCCESS; }

bool CQelReg::SetStringList(const char* name, const std::list<std::string>& list) {
    std::string data;
    for (const auto& text : list) data.append(text.c_str(), std::strlen(text.c_str()) + 1);
    data.push_back('\0');
    if (data.size() > 0xFFFFFFFF) {
        kit::ThrowKeyError(kit::kCannotWriteValue, ERROR_INVALID_PARAMETER, kit::OrEmpty(name),
                           keyPath);
    }
    return SetValueEx(name, REG_MULTI_SZ, reinterpret_cast<const unsigned char*>(data.data()),
                      static_cast<ulong32>(data.size())) != 0;
}

// --- Enumeration -----------------------------------------------------------------------------------

int CQelReg::GetSubKeysCount() const {
    DWORD count = 0;
    const LSTATUS result = ::RegQueryInfoKeyA(hKey, nullptr, nullptr, nullptr, &count, nullptr,
                                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (result != ERROR_SUCCESS) kit::ThrowKeyError(kit::kCannotQuery, result, keyPath);
    return static_cast<int>(count);
}

int CQelReg::GetValuesCount() const {
    DWORD count = 0;
    const LSTATUS result = ::RegQueryInfoKeyA(hKey, nullptr, nullptr, nullptr, nullptr, nullptr,
                                              nullptr, &count, nullptr, nullptr, nullptr, nullptr);
    if (result != ERROR_SUCCESS) kit::ThrowKeyError(kit::kCannotQuery, result, keyPath);
    return static_cast<int>(count);
}

void CQelReg::GetSubKeyName(int index, char* buffer, int size) const {
    DWORD length = size > 0 ? static_cast<DWORD>(size) : 0;
    const LSTATUS result = buffer && length > 0
                               ? ::RegEnumKeyExA(hKey, static_cast<DWORD>(index), buffer, &length,
                                                 nullptr, nullptr, nullptr, nullptr)
                               : ERROR_INVALID_PARAMETER;
    if (result != ERROR_SUCCESS) kit::ThrowKeyError(kit::kCannotEnumerate, result, keyPath);
}

void CQelReg::GetValueName(int index, char* buffer, ulong32* size) const {
    const LSTATUS result = buffer && size
                               ? ::RegEnumValueA(hKey, static_cast<DWORD>(index), buffer, size,
                                                 nullptr, nullptr, nullptr, nullptr)
                               : ERROR_INVALID_PARAMETER;
    if (result != ERROR_SUCCESS) kit::ThrowKeyError(kit::kCannotEnumerate, result, keyPath);
}
