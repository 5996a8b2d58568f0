#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "base/cp1251.h"
#include "platform/multibyte.h"
#include "text/detail/string_body.h"
#include "text/qel_string.h"

#include <mbstring.h>

namespace {

using kit::StringBody;
using kit::TextOf;

using ByteTable = std::array<unsigned char, 256>;

// From this length on, asking the runtime once for each of the 256 bytes costs less than asking it
// for every byte of the text. A table is never kept: the next call may find another locale.
constexpr std::size_t kTablePays = 512;

template <typename Convert>
void ConvertBytes(StringBody* body, Convert convert) {
    if (!body) return;
    unsigned char* const text = reinterpret_cast<unsigned char*>(body->text_);
    unsigned char* const end = text + body->length_;
    if (TextOf(body).size() < kTablePays) {
        std::transform(text, end, text, convert);
        return;
    }
    ByteTable table;
    for (unsigned i = 0; i < table.size(); ++i) table[i] = convert(static_cast<unsigned char>(i));
    std::transform(text, end, text, [&](unsigned char c) { return table[c]; });
}

using ConvertCharacter = unsigned int (*)(unsigned int);

// Characters of two bytes go through the runtime as one number, lead byte first.
void ConvertDoubleBytes(StringBody* body, ConvertCharacter convert) {
    unsigned char* text = reinterpret_cast<unsigned char*>(body->text_);
    unsigned char* const end = text + body->length_;
    while (text < end) {
        if (kit::CharacterLength(reinterpret_cast<char*>(text)) == 1) {
            *text = static_cast<unsigned char>(convert(*text));
            ++text;
            continue;
        }
        const unsigned int converted = convert(text[0] << 8u | text[1]);
        *text++ = static_cast<unsigned char>(converted >> 8);
        *text++ = static_cast<unsigned char>(converted);
    }
}

void ConvertCharacters(StringBody* body, ConvertCharacter convert) {
    if (body && kit::HasDoubleByteCharacters()) {
        ConvertDoubleBytes(body, convert);
        return;
    }
    ConvertBytes(body, [=](unsigned char c) { return static_cast<unsigned char>(convert(c)); });
}

constexpr auto kUpperRus = kit::Cp1251(u"АБВГДЕЁЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ");
constexpr auto kLowerRus = kit::Cp1251(u"абвгдеёжзийклмнопрстуфхцчшщъыьэюя");

// For each letter of `from` the one of the other row; 0 for every other byte.
constexpr ByteTable RussianLetters(const std::array<char, 34>& from, const std::array<char, 34>& to) {
    ByteTable table{};
    for (std::size_t i = 0; i + 1 < from.size(); ++i) {
        table[static_cast<unsigned char>(from[i])] = static_cast<unsigned char>(to[i]);
    }
    return table;
}

constexpr ByteTable kToLowerRus = RussianLetters(kUpperRus, kLowerRus);
constexpr ByteTable kToUpperRus = RussianLetters(kLowerRus, kUpperRus);

void ConvertRussian(StringBody* body, const ByteTable& letters, int (*convert)(int)) {
    ConvertBytes(body, [&](unsigned char c) {
        return letters[c] != 0 ? letters[c] : static_cast<unsigned char>(convert(c));
    });
}

using ConvertBuffer = BOOL(WINAPI*)(const char* from, char* to, DWORD length);

void ConvertCodePage(StringBody*& slot, ConvertBuffer convert) {
    if (!slot) return;
    const std::string_view text = TextOf(slot);
    const bool done = kit::RebuildBody(slot, text.size(), [&](char* out) {
        convert(text.data(), out, static_cast<DWORD>(text.size()));
    });
    if (!done) throw const_cast<char*>("MemoryError");
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

template <typename Is>
int Every(std::string_view text, Is is) {
    return std::all_of(text.begin(), text.end(), is) ? 1 : 0;
}

}  // namespace

CQELString& CQELString::MakeLower() {
    ConvertCharacters(body_, ::_mbctolower);
    return *this;
}

CQELString& CQELString::MakeUpper() {
    ConvertCharacters(body_, ::_mbctoupper);
    return *this;
}

CQELString& CQELString::LowerRus() {
    ConvertRussian(body_, kToLowerRus, ::tolower);
    return *this;
}

CQELString& CQELString::UpperRus() {
    ConvertRussian(body_, kToUpperRus, ::toupper);
    return *this;
}

CQELString& CQELString::CharToOemA() {
    ConvertCodePage(body_, ::CharToOemBuffA);
    return *this;
}

CQELString& CQELString::OemToCharA() {
    ConvertCodePage(body_, ::OemToCharBuffA);
    return *this;
}

int CQELString::isdigit() const { return Every(TextOf(body_), IsDigit); }

int CQELString::isxdigit() const { return Every(TextOf(body_), IsHexDigit); }
