// The file class's operations on the texts of names.

#include <cstring>
#include <string>
#include <string_view>

#include "base/path_text.h"
#include "file_com/qel_file.h"
#include "platform/growing_text.h"
#include "platform/windows.h"

namespace {

constexpr std::size_t kLongestCleanName = 252;

CQELString ToString(std::string_view text) { return CQELString(text.data(), text.size()); }

std::string FullPath(const char* path) {
    return kit::GrowingText(
        [path](char* buffer, std::size_t size) {
            return ::GetFullPathNameA(path, static_cast<DWORD>(size), buffer, nullptr);
        },
        MAX_PATH, MAX_PATH);
}

// Quirk: the two backslashes that begin a network path are a pair as well, so its name becomes one
// of the current drive. Callers compare names in this form and keep such paths away from here.
// Pinned by FileNames.NormalizesToTheFullPathWithSingleBackslashes.
std::string WithSingleBackslashes(std::string path) {
    std::string single;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] != '\\' || i + 1 == path.size() || path[i + 1] != '\\') single += path[i];
    }
    return single;
}

bool MayStandInAName(unsigned char c) {
    if (c >= 0x80) return true;  // national letters, whatever the locale says about them
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) return true;
    return std::string_view("$%'-_@~`!(){}^#&+,;=[] ").find(static_cast<char>(c)) !=
           std::string_view::npos;
}

}  // namespace

CQELString CQELFile::FileNameFromFullName(const CQELString& path) {
    std::string_view text = static_cast<const char*>(path);
    if (text.size() > 1 && text[1] == ':') text.remove_prefix(2);
    return ToString(kit::LastPart(text));
}

bool CQELFile::NormalizeFileName(char* buf, int size) {
    if (!buf || size < 1) return true;
    const auto room = static_cast<std::size_t>(size);
    const std::string given(buf, ::strnlen(buf, room));
    std::string path = WithSingleBackslashes(FullPath(given.c_str()));
    if (path.empty() || path.size() >= room) path = WithSingleBackslashes(given);
    if (path.size() < room) std::memcpy(buf, path.c_str(), path.size() + 1);
    return true;
}

bool CQELFile::NormalizeFileName(CQELString& name) {
    char buffer[MAX_PATH];
    const auto length = static_cast<std::size_t>(name.Length());
    if (length >= sizeof buffer) return true;
    std::memcpy(buffer, static_cast<const char*>(name), length + 1);
    NormalizeFileName(buffer, sizeof buffer);
    name = buffer;
    return true;
}

CQELString CQELFile::RemoveUnacceptableCharactersFromName(const CQELString& name) {
    std::string clean(static_cast<const char*>(name));
    for (char& c : clean) {
        if (!MayStandInAName(static_cast<unsigned char>(c))) c = '_';
    }
    return ToString(std::string_view(clean).substr(0, kLongestCleanName));
}
