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

// What each byte becomes, as far as no locale has a say in it; kAskRuntime for the others.
using KnownBytes = std::array<short, 256>;
constexpr short kAskRuntime = -1;

// The 26 letters of ASCII convert alike in every code page.
constexpr KnownBytes AsciiCase(char first_letter, int distance) {
    KnownBytes known{};
    for (int c = 0; c < 256; ++c) {
        const bool letter = c >= first_letter && c < first_letter + 26;
        known[c] = c >= 0x80 ? kAskRuntime : static_cast<short>(letter ? c + distance : c);
    }
    return known;
}

template <std::size_t N>
constexpr KnownBytes RussianCase(KnownBytes known, const std::array<char, N>& from,
                                 const std::array<char, N>& to) {
    for (std::size_t i = 0; i + 1 < N; ++i) {
        known[static_cast<unsigned char>(from[i])] = static_cast<unsigned char>(to[i]);
    }
    return known;
}

constexpr auto kUpperAlphabet = kit::Cp1251(u"АБВГДЕЁЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ");
constexpr auto kLowerAlphabet = kit::Cp1251(u"абвгдеёжзийклмнопрстуфхцчшщъыьэюя");

constexpr KnownBytes kToLower = AsciiCase('A', 'a' - 'A');
constexpr KnownBytes kToUpper = AsciiCase('a', 'A' - 'a');
constexpr KnownBytes kToLowerRus = RussianCase(kToLower, kUpperAlphabet, kLowerAlphabet);
constexpr KnownBytes kToUpperRus = RussianCase(kToUpper, kLowerAlphabet, kUpperAlphabet);

template <typename Runtime>
unsigned char Converted(unsigned char c, const KnownBytes& known, Runtime runtime) {
    return static_cast<unsigned char>(known[c] != kAskRuntime ? known[c] : runtime(c));
}

// From this length on, a table of all 256 bytes costs less than asking the runtime as the text
// goes. It is made anew each time: the next call may find another locale.
constexpr int kTablePays = 256;

// Quirk: the text changes under every string that shares it; there is no copy-on-write.
// Pinned by Editing.InPlaceOperationsChangeEveryCopyAndTheOthersNone.
template <typename Runtime>
void ConvertBytes(StringBody* body, const KnownBytes& known, Runtime runtime) {
    if (!body) return;
    unsigned char* const text = reinterpret_cast<unsigned char*>(body->text_);
    unsigned char* const end = text + body->length_;
    const auto convert = [&](unsigned char c) { return Converted(c, known, runtime); };
    if (body->length_ < kTablePays) {
        std::transform(text, end, text, convert);
        return;
    }
    unsigned char table[256];
    for (int c = 0; c < 256; ++c) table[c] = convert(static_cast<unsigned char>(c));
    std::transform(text, end, text, [&](unsigned char c) { return table[c]; });
}

using RuntimeCase = unsigned int (*)(unsigned int);

// The runtime takes a character of two bytes as one number, lead byte first.
void ConvertDoubleBytes(StringBody* body, const KnownBytes& known, RuntimeCase runtime) {
    unsigned char* text = reinterpret_cast<unsigned char*>(body->text_);
    for (unsigned char* const end = text + body->length_; text < end;) {
        if (kit::CharacterLength(reinterpret_cast<char*>(text)) == 1) {
            *text = Converted(*text, known, runtime);
            ++text;
            continue;
        }
        const unsigned int character = runtime(text[0] << 8u | text[1]);
        *text++ = static_cast<unsigned char>(character >> 8);
        *text++ = static_cast<unsigned char>(character);
    }
}

void ConvertCharacters(StringBody* body, const KnownBytes& known, RuntimeCase runtime) {
    if (body && kit::HasDoubleByteCharacters()) {
        ConvertDoubleBytes(body, known, runtime);
    } else {
        ConvertBytes(body, known, runtime);
    }
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

bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }

// Quirk: an empty text has no byte that is wrong, and counts as digits: optional numeric fields are
// checked with it. Pinned by Digits.AreAllOrNothing.
template <typename Is>
int Every(std::string_view text, Is is) {
    return std::all_of(text.begin(), text.end(), is) ? 1 : 0;
}

}  // namespace

CQELString& CQELString::MakeLower() {
    ConvertCharacters(body_, kToLower, ::_mbctolower);
    return *this;
}

CQELString& CQELString::MakeUpper() {
    ConvertCharacters(body_, kToUpper, ::_mbctoupper);
    return *this;
}

CQELString& CQELString::LowerRus() {
    ConvertBytes(body_, kToLowerRus, ::tolower);
    return *this;
}

CQELString& CQELString::UpperRus() {
    ConvertBytes(body_, kToUpperRus, ::toupper);
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
