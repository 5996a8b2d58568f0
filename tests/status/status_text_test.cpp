#include "status/status_text.h"

#include <gtest/gtest.h>

#include <conio.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/cp1251.h"
#include "support/guarded_buffer.h"
#include "support/import_patch.h"

namespace {

constexpr auto kNotFound = kit::Cp1251(u"Файл не найден");

std::string NotFound() { return kNotFound.data(); }

TEST(GetErrorString, SetsThePrefixApart) {
    const struct {
        const char *prefix, *expected;
    } cases[] = {
        {nullptr, ""},
        {"", ""},
        {"Open", "Open\r\n\r\n"},
        {"Open\n", "Open\n\r\n"},
        {"Open\r\n", "Open\r\n\r\n"},
        {"Open\r", "Open\r\r\n\r\n"},
        {"\n", "\n\r\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.expected + NotFound(), std::string(GetErrorString(c.prefix, 4, nullptr)));
    }
}

TEST(GetErrorString, PutsTheDetailInBrackets) {
    EXPECT_EQ(NotFound() + " (a.txt)", std::string(GetErrorString("", 4, "a.txt")));
    EXPECT_EQ(NotFound(), std::string(GetErrorString("", 4, "")));
    EXPECT_EQ("Open\r\n\r\n" + NotFound() + " (%s.)",
              std::string(GetErrorString("Open", 4, "%s.")));
}

TEST(GetErrorString, DropsOneFullStopAtTheVeryEnd) {
    constexpr auto kBlankBehindStop = kit::Cp1251(u"Ошибка при поиске библиотечной компоненты. ");
    constexpr auto kNoStop = kit::Cp1251(u"Доступ запрещен");
    constexpr auto kInnerStops =
        kit::Cp1251(u"Сообщение было использовано (прочитано, распечатано, и т.д.) получателем");
    EXPECT_STREQ(kBlankBehindStop.data(), GetErrorString("", 147, nullptr));
    EXPECT_STREQ(kNoStop.data(), GetErrorString("", 501, nullptr));
    EXPECT_STREQ(kInnerStops.data(), GetErrorString("", 14, nullptr));
}

TEST(GetErrorString, StatusWithoutAMessageLeavesItsPlaceEmpty) {
    EXPECT_STREQ("Open\r\n\r\n (a.txt)", GetErrorString("Open", 1043, "a.txt"));
    EXPECT_STREQ("", GetErrorString(nullptr, -1, nullptr));
}

TEST(GetErrorString, TakesCodeAndTextOfAStatusObject) {
    EXPECT_EQ("Open\r\n\r\n" + NotFound() + " (a.txt)",
              std::string(GetErrorString("Open", XQELStatus(4, "a.txt", false))));
    const XQELFile file(false);
    file.SetError(4, 13);
    EXPECT_EQ(NotFound(), std::string(GetErrorString("", file)));
}

TEST(MakeErrMess, NamesThePlace) {
    const struct {
        int place;
        const char* expected;
    } cases[] = {
        {0, "Error in place N 0, contact the producers"},
        {-2147483647 - 1, "Error in place N -2147483648, contact the producers"},
    };
    for (const auto& c : cases) {
        GuardedBuffer out(52);
        MakeErrMess(c.place, out.text());
        EXPECT_STREQ(c.expected, out.text());
    }
    MakeErrMess(1, nullptr);
}

TEST(MakeErrMess, CopiesUpTo254Characters) {
    const struct {
        std::size_t length, copied;
    } cases[] = {{0, 0}, {1, 1}, {253, 253}, {254, 254}, {255, 254}, {1000, 254}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.length);
        GuardedBuffer out(254);  // the 255th byte stays the caller's
        std::memset(out.data(), '#', out.size());
        MakeErrMess(std::string(c.length, 'x').c_str(), out.text());
        EXPECT_EQ(std::string(c.copied, 'x') + std::string(254 - c.copied, '\0'),
                  std::string(out.text(), out.size()));
    }
    MakeErrMess("text", nullptr);
    char kept[] = "kept";
    MakeErrMess(static_cast<const char*>(nullptr), kept);
    EXPECT_STREQ("kept", kept);
}

// Runs PrintResults with a key waiting. Returns what it printed; `key_left` says whether the key
// still waits.
std::string Printed(int status, const char* name, bool& key_left) {
    _ungetch('k');
    testing::internal::CaptureStdout();
    PrintResults(status, name);
    std::fflush(stdout);
    const std::string printed = testing::internal::GetCapturedStdout();
    key_left = _kbhit() != 0;
    if (key_left) {
        EXPECT_EQ('k', _getch());
    }
    return printed;
}

TEST(PrintResults, WritesNameAndVerdictInColumns) {
    const struct {
        int status;
        const char *name, *expected;
    } cases[] = {
        {0, "alpha", "alpha                                     OK    \n"},
        {0, "", "                                          OK    \n"},
        {0, nullptr, "                                          OK    \n"},
        {0, "1234567890123456789012345678901234567890abcdefghij",
         "1234567890123456789012345678901234567890  OK    \n"},
        {17, "alpha", "alpha                                     ERROR ErrCode = 17\n"},
        {-1, "alpha", "alpha                                     ERROR ErrCode = -1\n"},
    };
    for (const auto& c : cases) {
        bool key_left = false;
        EXPECT_EQ(c.expected, Printed(c.status, c.name, key_left));
        EXPECT_EQ(c.status == 0, key_left) << "a key is awaited after an error only";
    }
}

TEST(PrintResults, TakesTheNameAsAFormat) {
    bool key_left = false;
    EXPECT_EQ("50% done                                 OK    \n",
              Printed(0, "50%% done", key_left));
    // Arguments that are not there count as zero.
    EXPECT_EQ("(null) 0 0.0                                OK    \n",
              Printed(0, "%s %d %.1f", key_left));
}

TEST(CQELGetString, CopiesWhatHasRoomWithItsTerminator) {
    const HMODULE library = GetModuleHandleA("QELKIT2_64.dll");
    const struct {
        int id, size;
        const char* expected;
    } cases[] = {
        {1021, 4, "RUS"},
        {1021, 3, ""},
        {1021, 1, ""},
        {1022, 8, ""},
        {1006, 2000, "Cannot change file time"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        GuardedBuffer out(static_cast<std::size_t>(c.size));
        std::memset(out.data(), '#', out.size());
        EXPECT_EQ(out.text(), CQELGetString(out.text(), c.size, c.id, library));
        EXPECT_STREQ(c.expected, out.text());
    }
    char out[] = "kept";
    EXPECT_EQ(nullptr, CQELGetString(out, 0, 1021, library));
    EXPECT_EQ(nullptr, CQELGetString(out, -1, 1021, library));
    EXPECT_STREQ("kept", out);
    EXPECT_EQ(nullptr, CQELGetString(nullptr, 8, 1021, library));
    EXPECT_STREQ("", CQELGetString(out, sizeof out, 1021, nullptr));  // this program has no texts
}

// A resource longer than any buffer: filled up and cut, as the loader does.
int WINAPI EndlessString(HINSTANCE, UINT, char* buffer, int size) {
    std::memset(buffer, 'x', static_cast<std::size_t>(size) - 1);
    buffer[size - 1] = '\0';
    return size - 1;
}

TEST(CQELGetString, CutsALongTextAfter1023Characters) {
    const ImportPatch patch("QELKIT2_64.dll", "LoadStringA",
                            reinterpret_cast<void*>(EndlessString));
    std::string out(2000, '#');
    EXPECT_STREQ(std::string(1023, 'x').c_str(), CQELGetString(out.data(), 1024, 1, nullptr));
    EXPECT_EQ('#', out[1024]);
    EXPECT_STREQ("", CQELGetString(out.data(), 1023, 1, nullptr));
}

TEST(Delay, WaitsThatManyMilliseconds) {
    const auto start = std::chrono::steady_clock::now();
    delay(50);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(49));
    EXPECT_LT(waited, std::chrono::seconds(20));
}

}  // namespace
