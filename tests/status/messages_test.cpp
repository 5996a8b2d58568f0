// The stored texts, seen from outside and through the library.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

#include "platform/windows.h"
#include "text/qel_string.h"

namespace {

std::string WithLineBreaks(std::string text) {
    for (std::size_t at = 0; (at = text.find('\\', at)) != std::string::npos; ++at) {
        if (text[at + 1] == 'r') text.replace(at, 2, "\r");
        if (text[at + 1] == 'n') text.replace(at, 2, "\n");
    }
    return text;
}

// Every code has its text, and ids that are no codes have none.
template <typename Load>
void ExpectAll(Load load) {
    std::ifstream file(QELKIT_TEST_DATA "/messages_1251.txt", std::ios::binary);
    std::map<int, std::string> expected;  // of lines: number, blanks, "text"
    for (std::string line; std::getline(file, line);) {
        const std::size_t open = line.find('"');
        if (line[0] == '#' || open == std::string::npos) continue;
        const std::string text = line.substr(open + 1, line.rfind('"') - open - 1);
        expected[std::atoi(line.c_str())] = WithLineBreaks(text);
    }
    ASSERT_EQ(283u, expected.size());
    for (int id = 0; id < 2048; ++id) EXPECT_EQ(expected[id], load(id)) << id;
}

TEST(Messages, AreStringResourcesOfTheLibrary) {
    const HMODULE library = GetModuleHandleA("QELKIT2_64.dll");
    ASSERT_NE(nullptr, library);
    ExpectAll([=](int id) {
        char text[1024];
        return std::string(text, LoadStringA(library, id, text, sizeof text));
    });
}

TEST(Messages, AreTheTextsOfStatusCodes) {
    ExpectAll([](int status) { return std::string(CQELString("old").LoadQelkitString(status)); });
    EXPECT_STREQ("", CQELString("old").LoadQelkitString(-1));
}

}  // namespace
