#include "status/status_text.h"

#include <gtest/gtest.h>

#include <conio.h>

#include <climits>
#include <cstdio>
#include <cstring>
#include <string>
#include <tuple>

#include "base/cp1251.h"
#include "support/guarded_buffer.h"
#include "support/import_patch.h"

namespace {

constexpr auto kNotFound = kit::Cp1251(u"Файл не найден");

std::string NotFound() { return kNotFound.data(); }

TEST(GetErrorString, SetsThePrefixApart) {
    const std::pair<const char*, const char*> cases[] = {
        {nullptr, ""},
        {"", ""},
        {"Open", "Open\r\n\r\n"},
        {"Open\n", "Open\n\r\n"},
        {"Open\r\n", "Open\r\n\r\n"},
        {"Open\r", "Open\r\r\n\r\n"},
        {"\n", "\n\r\n"},
    };
    for (const auto& [prefix, expected] : cases) {
        EXPECT_EQ(expected + NotFound(), std::string(GetErrorString(prefix, 4, nullptr)));
    }
}

TEST(GetErrorString, PutsTheDetailInBrackets) {
    EXPECT_EQ(NotFound(), std::string(GetErrorString("", 4, "")));
    EXPECT_EQ(NotFound() + " (%s.)", std::string(GetErrorString("", 4, "%s.")));
    EXPECT_STREQ("Open\r\n\r\n (a)", GetErrorString("Open", 1043, "a"));  // no message
    EXPECT_STREQ("", GetErrorString(nullptr, -1, nullptr));
    const XQELFile file(false);
    file.SetError(4, 13);
    file.SetErrMessEx("a.txt");
    EXPECT_EQ("Open\r\n\r\n" + NotFound() + " (a.txt)", std::string(GetErrorString("Open", file)));
}

TEST(GetErrorString, DropsOneFullStopAtTheVeryEnd) {
    constexpr auto kBlankBehind = kit::Cp1251(u"Ошибка при поиске библиотечной компоненты. ");
    constexpr auto kInnerStops =
        kit::Cp1251(u"Сообщение было использовано (прочитано, распечатано, и т.д.) получателем");
    EXPECT_STREQ(kBlankBehind.data(), GetErrorString("", 147, nullptr));
    EXPECT_STREQ(kInnerStops.data(), GetErrorString("", 14, nullptr));
}

TEST(MakeErrMess, NamesThePlace) {
    GuardedBuffer out(52);
    MakeErrMess(0, out.text());
    EXPECT_STREQ("Error in place N 0, contact the producers", out.text());
    MakeErrMess(INT_MIN, out.text());
    EXPECT_STREQ("Error in place N -2147483648, contact the producers", out.text());
    MakeErrMess(1, nullptr);
}

TEST(MakeErrMess, CopiesUpTo254Characters) {
    for (std::size_t length : {0, 1, 253, 254, 255, 1000}) {
        GuardedBuffer out(254);  // the 255th byte stays the caller's
        std::memset(out.data(), '#', out.size());
        MakeErrMess(std::string(length, 'x').c_str(), out.text());
        std::string expected(length, 'x');
        expected.resize(254);
        EXPECT_EQ(expected, std::string(out.text(), out.size())) << length;
    }
    MakeErrMess("text", nullptr);
    char kept[] = "kept";
    MakeErrMess(static_cast<const char*>(nullptr), kept);
    EXPECT_STREQ("kept", kept);
}

// Runs PrintResults with a key waiting, which it takes after an error only.
std::string Printed(int status, const char* name) {
    _ungetch('k');
    testing::internal::CaptureStdout();
    PrintResults(status, name);
    std::fflush(stdout);
    EXPECT_EQ(status == 0, _kbhit() != 0);
    if (status == 0) {
        EXPECT_EQ('k', _getch());
    }
    return testing::internal::GetCapturedStdout();
}

TEST(PrintResults, WritesNameAndVerdictInColumns) {
    const std::string forty("1234567890123456789012345678901234567890"), blanks(40, ' ');
    EXPECT_EQ("alpha" + std::string(37, ' ') + "OK    \n", Printed(0, "alpha"));
    EXPECT_EQ(blanks + "  OK    \n", Printed(0, nullptr));
    EXPECT_EQ(forty + "  OK    \n", Printed(0, (forty + "abcdefghij").c_str()));
    EXPECT_EQ(forty + "  ERROR ErrCode = 17\n", Printed(17, forty.c_str()));
    EXPECT_EQ(blanks + "  ERROR ErrCode = -1\n", Printed(-1, ""));
}

// Arguments that are not there count as zero.
TEST(PrintResults, TakesTheNameAsAFormat) {
    EXPECT_EQ("50% done" + std::string(33, ' ') + "OK    \n", Printed(0, "50%% done"));
    EXPECT_EQ("(null) 0 0.0" + std::string(32, ' ') + "OK    \n", Printed(0, "%s %d %.1f"));
}

// A resource longer than any buffer: filled up and cut, as the loader does.
int WINAPI EndlessString(HINSTANCE, UINT, char* buffer, int size) {
    std::memset(buffer, 'x', static_cast<std::size_t>(size) - 1);
    buffer[size - 1] = '\0';
    return size - 1;
}

TEST(CQELGetString, CopiesWhatHasRoomWithItsTerminator) {
    const HMODULE library = GetModuleHandleA(kLibrary);
    const std::tuple<int, int, const char*> cases[] = {
        {1021, 4, "RUS"},
        {1021, 3, ""},
        {1021, 1, ""},
        {1022, 8, ""},
    };
    for (const auto& [id, size, expected] : cases) {
        GuardedBuffer out(static_cast<std::size_t>(size));
        std::memset(out.data(), '#', out.size());
        EXPECT_EQ(out.text(), CQELGetString(out.text(), size, id, library));
        EXPECT_STREQ(expected, out.text());
    }
    char out[] = "kept";
    EXPECT_EQ(nullptr, CQELGetString(out, 0, 1021, library));
    EXPECT_EQ(nullptr, CQELGetString(out, -1, 1021, library));
    EXPECT_STREQ("kept", out);
    EXPECT_EQ(nullptr, CQELGetString(nullptr, 8, 1021, library));
    EXPECT_STREQ("", CQELGetString(out, sizeof out, 1021, nullptr));  // this program has no texts
    const ImportPatch patch(kLibrary, "LoadStringA", EndlessString);
    GuardedBuffer longest(1024);
    EXPECT_STREQ(std::string(1023, 'x').c_str(), CQELGetString(longest.text(), 1024, 1, nullptr));
    EXPECT_STREQ("", CQELGetString(longest.text(), 1023, 1, nullptr));
}

}  // namespace
