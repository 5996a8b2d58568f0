#include "net/ip_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// "7.", "42.", "255." behind one another: what an octet adds to a text, four bytes a number.
struct OctetTexts {
    std::array<std::array<char, 4>, 256> plain{};   // ends in its dot; the rest are zeros
    std::array<std::array<char, 4>, 256> padded{};  // "007."
    std::array<std::uint8_t, 256> digits{};         // of the plain form
};

constexpr OctetTexts MakeOctetTexts() {
    OctetTexts texts;
    for (unsigned octet = 0; octet < 256; ++octet) {
        const std::array<char, 4> padded = {static_cast<char>('0' + octet / 100),
                                            static_cast<char>('0' + octet / 10 % 10),
                                            static_cast<char>('0' + octet % 10), '.'};
        const unsigned digits = octet < 10 ? 1 : octet < 100 ? 2 : 3;
        texts.padded[octet] = padded;
        texts.digits[octet] = static_cast<std::uint8_t>(digits);
        for (unsigned i = 0; i <= digits; ++i) texts.plain[octet][i] = padded[3 - digits + i];
    }
    return texts;
}

constexpr OctetTexts kOctets = MakeOctetTexts();

constexpr unsigned Octet(std::uint32_t address, int number) {
    return address >> (24 - 8 * number) & 0xFF;
}

// Both forms write whole entries of four bytes, the last of which ends at byte 16 at the latest, and
// turn the last dot into the terminator.
void WritePadded(char* to, std::uint32_t address) {
    for (int i = 0; i < 4; ++i) {
        std::memcpy(to + std::size_t{4} * i, kOctets.padded[Octet(address, i)].data(), 4);
    }
    to[15] = '\0';
}

void WritePlain(char* to, std::uint32_t address) {
    for (int i = 0; i < 4; ++i) {
        const unsigned octet = Octet(address, i);
        std::memcpy(to, kOctets.plain[octet].data(), 4);
        to += kOctets.digits[octet] + 1;
    }
    to[-1] = '\0';
}

constexpr unsigned DigitOf(char c) { return static_cast<unsigned char>(c) - unsigned{'0'}; }

// Reads one field and steps to the character behind it. A value above 255, and no digit at all,
// gives a number above 255.
unsigned ReadField(const char*& at) {
    constexpr unsigned kNoNumber = 256;
    unsigned value = DigitOf(*at);
    if (value > 9) return kNoNumber;
    for (unsigned digit; (digit = DigitOf(*++at)) <= 9;) {
        value = value * 10 + digit;
        if (value > 255) return kNoNumber;
    }
    return value;
}

int ReadAnyText(const char* text, std::uint32_t& address) {
    std::uint32_t result = 0;
    for (int i = 0; i < 4; ++i) {
        const unsigned value = ReadField(text);
        if (value > 255 || *text != (i < 3 ? '.' : '\0')) return -1;
        result = result << 8 | value;
        ++text;
    }
    address = result;
    return 0;
}

// Reads a field of one to three digits that `separator` ends, without a branch on their number:
// nobody can predict it, and a wrong guess costs more than all the work. No byte behind a
// terminator is looked at. False for anything else, which ReadAnyText then judges.
template <char kSeparator>
inline bool ReadShortField(const char*& at, std::uint32_t& address) {
    const unsigned first = DigitOf(at[0]);
    if (first > 9 || (kSeparator == '.' && at[1] == '\0')) return false;
    const std::size_t third_at = kSeparator == '.' ? 2 : 1 + (at[1] != '\0');
    const unsigned second = DigitOf(at[1]), third = DigitOf(at[third_at]);
    const unsigned two = second <= 9;
    const unsigned digits = 1 + two + (two & (third <= 9));
    // The digits as bytes, those that do not belong to the field shifted out: units lowest.
    const unsigned d = (first << 16 | (second & 0xFF) << 8 | (third & 0xFF)) >> (24 - 8 * digits);
    const unsigned value = (d & 0xFF) + (d >> 8 & 0xFF) * 10 + (d >> 16) * 100;
    if (value > 255 || at[digits] != kSeparator) return false;
    address = address << 8 | value;
    at += digits + 1;
    return true;
}

}  // namespace

ulong32 CQELIpAddress(unsigned char a, unsigned char b, unsigned char c, unsigned char d) {
    return ulong32{a} << 24 | ulong32{b} << 16 | ulong32{c} << 8 | d;
}

int CQELIpToLong(const char* text, ulong32* address) {
    if (!text) return -1;
    std::uint32_t result = 0;
    const char* at = text;
    const bool done = ReadShortField<'.'>(at, result) && ReadShortField<'.'>(at, result) &&
                      ReadShortField<'.'>(at, result) && ReadShortField<'\0'>(at, result);
    if (!done && ReadAnyText(text, result) != 0) return -1;
    if (address) *address = result;
    return 0;
}

char* CQELIpToText(char* buffer, ulong32 address, int zeroPad) {
    if (!buffer) return nullptr;
    if (zeroPad != 0) {
        WritePadded(buffer, address);
    } else {
        WritePlain(buffer, address);
    }
    return buffer;
}

const char* CQELIpToText(ulong32 address, int zeroPad) {
    // Quirk: one buffer for all threads, so that a text lasts until the next call of anybody.
    // Callers compare and keep its address. Pinned by IpToText.SharesOneBuffer.
    static char text[24];
    return CQELIpToText(text, address, zeroPad);
}
