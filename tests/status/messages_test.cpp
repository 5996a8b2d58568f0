// The stored texts, seen from outside and through the library.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "platform/windows.h"
#include "text/qel_string.h"

namespace {

using Messages = std::map<int, std::string>;

std::string ReadAll(const char* path) {
    std::string bytes;
    FILE* file = std::fopen(path, "rb");
    EXPECT_NE(nullptr, file) << path;
    if (!file) return bytes;
    char block[4096];
    for (std::size_t n; (n = std::fread(block, 1, sizeof block, file)) > 0;) bytes.append(block, n);
    std::fclose(file);
    return bytes;
}

std::string WithLineBreaks(const std::string& stored) {
    std::string text;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        const char next = i + 1 < stored.size() ? stored[i + 1] : '\0';
        const bool breaks = stored[i] == '\\' && (next == 'r' || next == 'n');
        text += breaks ? (next == 'r' ? '\r' : '\n') : stored[i];
        if (breaks) ++i;
    }
    return text;
}

Messages ReadExpected() {
    const std::string bytes = ReadAll(QELKIT_TEST_DATA "/messages_1251.txt");
    Messages messages;
    for (std::size_t start = 0, end; (end = bytes.find('\n', start)) != std::string::npos;
         start = end + 1) {
        const std::string line = bytes.substr(start, end - start);
        const std::size_t open = line.find('"');
        if (line[0] == '#' || open == std::string::npos) continue;
        messages[std::atoi(line.c_str())] =
            WithLineBreaks(line.substr(open + 1, line.size() - open - 2));
    }
    return messages;
}

// Every code has its text, and ids that are no codes have none.
template <typename Load>
void ExpectAll(Load load) {
    const Messages expected = ReadExpected();
    ASSERT_EQ(283u, expected.size());
    for (int id = 0; id < 2048; ++id) {
        const auto message = expected.find(id);
        EXPECT_EQ(message == expected.end() ? "" : message->second, load(id)) << id;
    }
}

TEST(Messages, AreStringResourcesOfTheLibrary) {
    const HMODULE library = GetModuleHandleA("QELKIT2_64.dll");
    ASSERT_NE(nullptr, library);
    ExpectAll([=](int id) {
        char text[1024];
        const int length = LoadStringA(library, static_cast<UINT>(id), text, sizeof text);
        return std::string(text, static_cast<std::size_t>(length));
    });
}

TEST(Messages, AreTheTextsOfStatusCodes) {
    const auto load = [](int status) {
        CQELString text("left from before");
        return std::string(text.LoadQelkitString(status));
    };
    ExpectAll(load);
    EXPECT_EQ("", load(-1));
}

}  // namespace
