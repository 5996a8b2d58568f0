#include "config/config_file.h"

#include <cstring>

#include "file_com/qel_file.h"
#include "platform/os_version.h"
#include "status/status_codes.h"

static_assert(sizeof(CQELConfigInfoFile) == 72 && sizeof(CConfigFileKeyListItem) == 32,
              "the layout is part of the binary interface");

namespace {

constexpr char kDefault[] = "(Default)";
constexpr std::size_t kLongestName = 254;

// Legacy systems keep written entries in memory and have to be asked to write the file.
constexpr DWORD kLegacyFamily = 1;

// The system looks for a name without folder in its own folder; a full path says what the caller
// means. Made for each call, since the current folder may change; "" when there is none.
class FullPath {
public:
    explicit FullPath(const char* name) {
        const DWORD length = ::GetFullPathNameA(name, sizeof path_, path_, nullptr);
        if (length >= sizeof path_) path_[0] = '\0';
    }
    explicit operator bool() const { return path_[0] != '\0'; }
    operator const char*() const { return path_; }

private:
    char path_[1024] = {};
};

// What every read gives to the system.
struct ReadBuffer {
    char text[4094];

    // The characters read; null names ask for the names of keys or sections.
    DWORD Read(const char* file, const char* section, const char* key) {
        const FullPath path(file);
        return path ? ::GetPrivateProfileStringA(section, key, kDefault, text, sizeof text, path)
                    : 0;
    }
};

bool ReadNames(const char* file, const char* section, std::list<CQELString>* names) {
    names->clear();
    ReadBuffer buffer{};  // the system ends a list that is the default text with one zero only
    buffer.Read(file, section, nullptr);
    const char* const end = buffer.text + sizeof buffer.text;
    for (const char* name = buffer.text; name < end && *name != '\0';) {
        const std::size_t length = ::strnlen(name, static_cast<std::size_t>(end - name));
        names->emplace_back(name, length < kLongestName ? length : kLongestName);
        name += length + 1;
    }
    return true;
}

bool HasLineEnd(const char* text) { return text && text[std::strcspn(text, "\r\n")] != '\0'; }

}  // namespace

CQELString CConfigFileSectionListItem::GetKeyValue(const char* key) const {
    for (const auto& item : keys) {
        if (key && std::strcmp(item.key, key) == 0) return item.value;
    }
    return {};
}

// Quirk: the bool, which callers set to have failures thrown, has no effect; they rely on being
// told by the status only. Pinned by ConfigFile.ThrowsOnlyWhenASubclassSaysSo.
CQELConfigInfoFile::CQELConfigInfoFile(const char* name, bool, ulong32 caller_flags)
    : status(kStatusOk, false),
      fileName(name),
      throwOnError(false),
      fileExists(CQELFile::IsExists(fileName)),
      flags(caller_flags) {}

CQELConfigInfoFile::~CQELConfigInfoFile() = default;

void CQELConfigInfoFile::ReturnStatus(XQELStatus* out) const {
    if (out) *out = status;
}

int CQELConfigInfoFile::ReturnStatus() const { return status.Status(); }

void CQELConfigInfoFile::ReturnErrMess(CQELString* message) {
    if (message) *message = status.GetErrMessEx();
}

const char* CQELConfigInfoFile::ReturnErrMess() { return status.GetErrMessEx(); }

bool CQELConfigInfoFile::IsFileExist() { return fileExists; }

bool CQELConfigInfoFile::GetProfileStringA(const char* section, const char* key,
                                           CQELString* value) {
    if (!fileExists || !section || !key || !value) return false;
    ReadBuffer buffer;
    // Quirk: an empty value is a failure, though a missing key is none. Callers tell by it whether
    // to write their default. Pinned by ConfigFile.TellsMissingFromEmpty.
    if (buffer.Read(fileName, section, key) == 0) return false;
    *value = std::strcmp(buffer.text, kDefault) == 0 ? "" : buffer.text;
    return true;
}

bool CQELConfigInfoFile::PutProfileString(const char* section, const char* key, const char* value) {
    if (!section || HasLineEnd(section) || HasLineEnd(key) || HasLineEnd(value)) return false;
    const FullPath path(fileName);
    if (!path || !::WritePrivateProfileStringA(section, key, value, path)) return false;
    const bool is_written = kit::OsVersion().dwPlatformId != kLegacyFamily ||
                            ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, path) ||
                            CQELFile::IsExists(fileName);
    fileExists = fileExists || is_written;
    return is_written;
}

bool CQELConfigInfoFile::GetSectionNameList(std::list<CQELString>* names) {
    return names && ReadNames(fileName, nullptr, names);
}

// Quirk: a section that is missing has the one key "(Default)", which is what the system answers.
// Callers of lists know it. Pinned by ConfigFile.ListsNamesInTheOrderOfTheFile.
bool CQELConfigInfoFile::GetKeyNameList(const char* section, std::list<CQELString>* names) {
    return section && names && ReadNames(fileName, section, names);
}

// What operations on lists end with: true, whatever failed; failures are recorded.
bool CQELConfigInfoFile::Finish(int failures, int code) {
    if (failures == 0) return true;
    status.SetErrMessEx(fileName);
    status.SetError(code);
    if (throwOnError) throw XQELStatus(status);
    return true;
}

bool CQELConfigInfoFile::GetSection(const char* section, std::list<CConfigFileKeyListItem>* items) {
    std::list<CQELString> names;
    if (!section || !items) return false;
    items->clear();
    int failures = GetKeyNameList(section, &names) ? 0 : 1;
    for (const auto& name : names) {
        auto& item = items->emplace_back(CConfigFileKeyListItem{name, {}});
        if (!GetProfileStringA(section, name, &item.value)) ++failures;
    }
    return Finish(failures, kStatusReadFailed);
}

bool CQELConfigInfoFile::PutSection(const char* section,
                                    const std::list<CConfigFileKeyListItem>& items) {
    if (items.empty() || !section) return false;
    int failures = 0;
    for (const auto& item : items) failures += !PutProfileString(section, item.key, item.value);
    return Finish(failures, kStatusWriteFailed);
}

bool CQELConfigInfoFile::GetAllSections(std::list<CConfigFileSectionListItem>* sections) {
    std::list<CQELString> names;
    if (!sections) return false;
    sections->clear();
    int failures = GetSectionNameList(&names) ? 0 : 1;
    for (const auto& name : names) {
        auto& section = sections->emplace_back();
        section.name = name;
        failures += !GetSection(name, &section.keys);
    }
    return Finish(failures, kStatusReadFailed);
}

bool CQELConfigInfoFile::PutAllSections(const std::list<CConfigFileSectionListItem>& sections) {
    if (sections.empty()) return false;
    int failures = 0;
    for (const auto& section : sections) failures += !PutSection(section.name, section.keys);
    return Finish(failures, kStatusWriteFailed);
}
