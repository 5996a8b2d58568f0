#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "base/cp1251.h"
#include "support/code_page.h"
#include "text/qel_string.h"

namespace {

// Long enough for the path that converts through a table.
std::string Repeated(const char* text) {
    std::string result;
    while (result.size() < 2000) result += text;
    return result;
}

using Member = CQELString& (CQELString::*)();

void ExpectCase(Member convert, const std::string& text, const std::string& expected) {
    for (bool is_long : {false, true}) {
        SCOPED_TRACE(is_long ? "long text" : "short text");
        CQELString s((is_long ? Repeated(text.c_str()) : text).c_str());
        EXPECT_STREQ((is_long ? Repeated(expected.c_str()) : expected).c_str(), (s.*convert)());
    }
}

constexpr auto kUpper = kit::Cp1251(u"АБВГДЕЁЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ [QWERTY@`1] «№»");
constexpr auto kLower = kit::Cp1251(u"абвгдеёжзийклмнопрстуфхцчшщъыьэюя [qwerty@`1] «№»");

TEST(Case, OfRussianLettersConvertsInAnyLocale) {
    for (const char* name : {"C", "Russian_Russia.1251", "English_United States.1252"}) {
        SCOPED_TRACE(name);
        const RuntimeLocale locale(LC_ALL, name);
        ExpectCase(&CQELString::LowerRus, kUpper.data(), kLower.data());
        ExpectCase(&CQELString::LowerRus, kLower.data(), kLower.data());
        ExpectCase(&CQELString::UpperRus, kLower.data(), kUpper.data());
        ExpectCase(&CQELString::UpperRus, kUpper.data(), kUpper.data());
    }
    EXPECT_STREQ(kit::Cp1251(u"ЁЛКА").data(), CQELString(kit::Cp1251(u"ёлка").data()).UpperRus());
}

TEST(Case, OfOtherLettersFollowsTheCurrentLocale) {
    // The Ukrainian letter yi: 0xAF and 0xBF in code page 1251.
    ExpectCase(&CQELString::LowerRus, "\xAF", "\xAF");
    ExpectCase(&CQELString::UpperRus, "\xBF", "\xBF");
    const RuntimeLocale russian(LC_ALL, "Russian_Russia.1251");
    ExpectCase(&CQELString::LowerRus, "\xAF", "\xBF");
    ExpectCase(&CQELString::UpperRus, "\xBF", "\xAF");
}

TEST(Case, FollowsTheMultiByteCodePage) {
    ExpectCase(&CQELString::MakeLower, kUpper.data(), kLower.data());
    ExpectCase(&CQELString::MakeUpper, kLower.data(), kUpper.data());
    ExpectCase(&CQELString::MakeUpper, "\xFF\xB8z{", "\xDF\xA8Z{");
    {
        // Full-width A is 82 60, its lower case 82 81; the second byte of 83 41 is no letter.
        const MultiByteCodePage japanese(932);
        ExpectCase(&CQELString::MakeLower, "A\x82\x60\x83\x41Z", "a\x82\x81\x83\x41z");
        ExpectCase(&CQELString::MakeUpper, "a\x82\x81\x83\x61z", "A\x82\x60\x83\x61Z");
        ExpectCase(&CQELString::MakeUpper, "\xE0", "\xE0");
    }
    ExpectCase(&CQELString::MakeUpper, "\xE0", "\xC0");  // nothing remembered
}

TEST(Case, OfAnEmptyStringIsEmpty) {
    EXPECT_STREQ("", CQELString().MakeLower().MakeUpper().LowerRus().UpperRus());
    EXPECT_STREQ("", CQELString().CharToOemA().OemToCharA());
}

TEST(CodePage, ConvertsBetweenAnsiAndOem) {
    CQELString s(kit::Cp1251(u"Аё№").data());
    EXPECT_STREQ("\x80\xF1\xFC", s.CharToOemA());  // code page 866
    EXPECT_STREQ(kit::Cp1251(u"Аё№").data(), s.OemToCharA());
    EXPECT_EQ(3, CQELString("a\0\x80", 3).OemToCharA().Length());
}

TEST(Digits, AreAllOrNothing) {
    const struct {
        const char* text;
        int digits, hexadecimal;
    } cases[] = {
        {"", 1, 1},   {"0123456789", 1, 1}, {"12a", 0, 1},  {"afAF09", 0, 1},
        {"1g", 0, 0}, {"-1", 0, 0},         {"1 ", 0, 0},   {"/", 0, 0},
        {":", 0, 0},  {"@G`g", 0, 0},       {"\xB2", 0, 0}, {"\xFF", 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.digits, CQELString(c.text).isdigit());
        EXPECT_EQ(c.hexadecimal, CQELString(c.text).isxdigit());
    }
    EXPECT_EQ(0, CQELString("1\0", 2).isdigit());
}

}  // namespace
