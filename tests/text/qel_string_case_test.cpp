#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <tuple>

#include "base/cp1251.h"
#include "support/code_page.h"
#include "text/qel_string.h"

namespace {

// Converts the text, and many of it in a row: enough for the path through a table.
void ExpectCase(CQELString& (CQELString::*convert)(), const char* text, const char* expected) {
    std::string texts, wanted;
    for (int count = 0; count < 500; texts += text, wanted += expected, ++count) {
        if (count > 1 && count < 499) continue;
        CQELString s(texts.c_str());
        EXPECT_STREQ(wanted.c_str(), (s.*convert)());
    }
}

constexpr auto kUpper = kit::Cp1251(u"АБВГДЕЁЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ [QWERTY@`1] «№»");
constexpr auto kLower = kit::Cp1251(u"абвгдеёжзийклмнопрстуфхцчшщъыьэюя [qwerty@`1] «№»");

TEST(Case, OfRussianLettersConvertsInAnyLocaleAndOfOthersInTheirs) {
    for (const char* name : {"C", "Russian_Russia.1251", "English_United States.1252"}) {
        SCOPED_TRACE(name);
        const RuntimeLocale locale(LC_ALL, name);
        ExpectCase(&CQELString::LowerRus, kUpper.data(), kLower.data());
        ExpectCase(&CQELString::LowerRus, kLower.data(), kLower.data());
        ExpectCase(&CQELString::UpperRus, kLower.data(), kUpper.data());
        ExpectCase(&CQELString::UpperRus, kUpper.data(), kUpper.data());
    }
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

TEST(CodePage, ConvertsBetweenAnsiAndOem) {
    CQELString s(kit::Cp1251(u"Аё№").data());
    EXPECT_STREQ("\x80\xF1\xFC", s.CharToOemA());  // code page 866
    EXPECT_STREQ(kit::Cp1251(u"Аё№").data(), s.OemToCharA());
    EXPECT_EQ(3, CQELString("a\0\x80", 3).OemToCharA().Length());
    EXPECT_STREQ("", CQELString().CharToOemA().OemToCharA().MakeLower().LowerRus());
}

TEST(Digits, AreAllOrNothing) {
    const std::tuple<const char*, int, int> cases[] = {
        {"", 1, 1},   {"0123456789", 1, 1}, {"12a", 0, 1},  {"afAF09", 0, 1}, {"1g", 0, 0},
        {"-1", 0, 0}, {"1 ", 0, 0},         {"/", 0, 0},    {":", 0, 0},      {"@", 0, 0},
        {"G", 0, 0},  {"`", 0, 0},          {"\xB2", 0, 0}, {"\xFF", 0, 0},
    };
    for (const auto& [text, digits, hexadecimal] : cases) {
        EXPECT_EQ(digits, CQELString(text).isdigit()) << text;
        EXPECT_EQ(hexadecimal, CQELString(text).isxdigit()) << text;
    }
    EXPECT_EQ(0, CQELString("1\0", 2).isdigit());
}

}  // namespace
