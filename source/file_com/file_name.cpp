#include "file_com/file_name.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/or_empty.h"
#include "file_com/detail/random_name.h"
#include "file_com/qel_file.h"
#include "platform/multibyte.h"
#include "platform/windows.h"
#include "status/qel_status.h"
#include "status/status_codes.h"

#include <mbstring.h>  // last: its macros break the standard headers

namespace QEL {
namespace {

bool IsSpace(const char* character, std::size_t length) {
    const auto* byte = reinterpret_cast<const unsigned char*>(character);
    return ::_ismbcspace(length == 2 ? byte[0] << 8 | byte[1] : byte[0]) != 0;
}

std::string_view Trimmed(const std::string& text) {
    std::size_t begin = text.size();
    std::size_t end = text.size();
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = kit::CharacterLength(text.c_str() + at);
        if (!IsSpace(text.c_str() + at, length)) {
            begin = (std::min)(begin, at);
            end = at + length;
        }
        at += length;
    }
    return std::string_view(text).substr(begin, end - begin);
}

// Where the parts of a path lie. The extension begins behind the last "\" or "." of the text; the
// dot counts for the title only inside the name part.
struct Parts {
    explicit Parts(const std::string& path)
        : text(path), slash(text.rfind('\\')), name(slash + 1), dot(text.rfind('.')) {
        if (dot != text.npos && dot < name) dot = text.npos;
    }
    std::string_view Folder() const {
        if (slash == text.npos) return {};
        // Quirk: a file in the root folder has its whole path as its folder part. Callers that
        // split and join know it. Pinned by FileName.SplitsAtTheRightmostSeparators.
        return slash == 0 ? text : text.substr(0, slash);
    }
    std::string_view Name() const { return text.substr(name); }
    std::string_view Title() const { return text.substr(name, TitleEnd() - name); }
    std::string_view Extension() const {
        if (dot != text.npos) return text.substr(dot + 1);
        // Quirk: behind a "\", a name without a dot is its own extension. Callers compare
        // extensions of paths and have always got this one.
        // Pinned by FileName.SplitsAtTheRightmostSeparators.
        return slash != text.npos ? Name() : std::string_view{};
    }
    // Where the title ends and a postfix goes.
    std::size_t TitleEnd() const { return dot != text.npos ? dot : text.size(); }

    std::string_view text;
    std::size_t slash;  // npos: none
    std::size_t name;   // npos + 1 is 0
    std::size_t dot;    // of the name part; npos: none
};

char* CopyOut(std::string_view part, char* out) {
    if (out) out[part.copy(out, part.size())] = '\0';
    return out;
}

FILENAME Untrimmed(std::string_view text) {
    FILENAME name;
    name = std::string(text).c_str();
    return name;
}

std::string Digits(ulong32 number, unsigned radix) {
    std::string digits;
    do {
        digits += kit::kFileNameAlphabet[number % radix];
        number /= radix;
    } while (number != 0);
    std::reverse(digits.begin(), digits.end());
    return digits;
}

std::string TempFolder() {
    char folder[MAX_PATH];
    const DWORD length = ::GetTempPathA(sizeof folder, folder);
    return length == 0 || length >= sizeof folder ? "." : folder;
}

std::string GeneratedName(FILENAME::SpecialFilenames kind) {
    switch (kind) {
        case FILENAME::TEMP_FOLDER:
            return TempFolder();
        case FILENAME::RANDOM_NAME:
            return kit::RandomName(kit::kFileNameAlphabet, "????????.???");
        default:
            return {};
    }
}

}  // namespace

FILENAME::FILENAME() = default;
FILENAME::FILENAME(const FILENAME& other) = default;
FILENAME::~FILENAME() = default;
FILENAME& FILENAME::operator=(const FILENAME& other) = default;

FILENAME::FILENAME(const CQELString& text) : FILENAME(static_cast<const char*>(text)) {}
FILENAME::FILENAME(const char* text) : text_(kit::OrEmpty(text)) { Trim(); }
FILENAME::FILENAME(const char* folder, const char* name) : text_(kit::OrEmpty(folder)) {
    *this += name;
    Trim();
}
FILENAME::FILENAME(const char* folder, const char* name, const char* ext) : FILENAME(folder, name) {
    text_.append(".").append(kit::OrEmpty(ext));
    Trim();
}
FILENAME::FILENAME(SpecialFilenames kind) : text_(GeneratedName(kind)) {}

FILENAME& FILENAME::operator=(const char* text) {
    text_ = kit::OrEmpty(text);
    return *this;
}

FILENAME& FILENAME::operator=(SpecialFilenames kind) { return MakeSpecialFilename(kind); }

FILENAME& FILENAME::MakeSpecialFilename(SpecialFilenames kind) {
    text_ = GeneratedName(kind);
    return *this;
}

FILENAME& FILENAME::operator+=(const char* part) {
    if (part) {
        const std::string rest(part + (*part == '\\'));  // a copy: it may be of our own text
        if (!text_.empty() && text_.back() != '\\') text_ += '\\';
        text_ += rest;
    }
    return Trim();
}

FILENAME& FILENAME::operator+=(const FILENAME& part) { return *this += part.text_.c_str(); }

FILENAME& FILENAME::Trim() {
    text_ = std::string(Trimmed(text_));
    return *this;
}

char* FILENAME::ExtractFilePath(char* out) const { return CopyOut(Parts(text_).Folder(), out); }
FILENAME FILENAME::ExtractFilePath() const { return Untrimmed(Parts(text_).Folder()); }
char* FILENAME::ExtractFileName(char* out) const { return CopyOut(Parts(text_).Name(), out); }
FILENAME FILENAME::ExtractFileName() const { return Untrimmed(Parts(text_).Name()); }
char* FILENAME::ExtractFileExt(char* out) const { return CopyOut(Parts(text_).Extension(), out); }
FILENAME FILENAME::ExtractFileExt() const { return Untrimmed(Parts(text_).Extension()); }
char* FILENAME::ExtractFileTitle(char* out) const { return CopyOut(Parts(text_).Title(), out); }
FILENAME FILENAME::ExtractFileTitle() const { return Untrimmed(Parts(text_).Title()); }

FILENAME FILENAME::MakePostfixName(const char* postfix) const {
    FILENAME decorated(*this);
    decorated.text_.insert(Parts(text_).TitleEnd(), kit::OrEmpty(postfix));
    return decorated;
}

FILENAME FILENAME::MakePostfixName(ulong32 number, int radix) const {
    if (radix < 2 || radix > 36) return *this;
    return MakePostfixName(Digits(number, static_cast<unsigned>(radix)).c_str());
}

FILENAME& FILENAME::UniqueFilename(const char* folder) {
    if (folder) *this = folder;
    FILENAME candidate;
    do {
        candidate = *this;
        candidate += FILENAME(RANDOM_NAME);
    } while (candidate.IsFileExist());
    return *this = candidate;
}

FILENAME& FILENAME::NormalizeFileName() {
    CQELString normal(text_.c_str());
    CQELFile::NormalizeFileName(normal);
    return *this = normal;
}

bool FILENAME::IsFileExist() const { return CQELFile::IsExists(text_.c_str()); }

char& FILENAME::operator[](int index) {
    return const_cast<char&>(static_cast<const FILENAME&>(*this)[index]);
}

const char& FILENAME::operator[](int index) const {
    if (index < 0 || index > Lenght()) throw XQELStatus(kStatusIndexOutOfBounds);
    return text_[static_cast<std::size_t>(index)];
}

FILENAME::operator CQELString() const { return CQELString(text_.c_str()); }

}  // namespace QEL
