#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "base/cp1251.h"
#include "file_com/qel_file.h"
#include "platform/windows.h"
#include "support/guarded_buffer.h"
#include "support/temp_folder.h"

namespace {

TEST(FileNames, TheFileNameIsWhatFollowsTheLastSlashAndTheDrive) {
    const struct {
        const char* path;
        const char* name;
    } cases[] = {
        {"C:\\a\\b.txt", "b.txt"}, {"b.txt", "b.txt"}, {"C:b.txt", "b.txt"}, {"a/b.c.d", "b.c.d"},
        {"a\\.txt", ".txt"},       {"a\\", ""},        {"C:", ""},           {"", ""},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(c.name, CQELFile::FileNameFromFullName(c.path)) << c.path;
    }
}

TEST(FileNames, NormalizesToTheFullPathWithSingleBackslashes) {
    const struct {
        const char* given;
        const char* full;
    } cases[] = {
        {"C:\\a\\..\\b\\.\\c", "C:\\b\\c"},
        {"C:/a//b\\\\c", "C:\\a\\b\\c"},
        {"\\\\server\\share\\f", "\\server\\share\\f"},  // the network path's own pair goes too
        {"C:\\", "C:\\"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.given);
        char path[64];
        std::strcpy(path, c.given);
        EXPECT_TRUE(CQELFile::NormalizeFileName(path, sizeof path));
        EXPECT_STREQ(c.full, path);
        CQELString text(c.given);
        EXPECT_TRUE(CQELFile::NormalizeFileName(text));
        EXPECT_STREQ(c.full, text);
    }
    char current[MAX_PATH];
    GetCurrentDirectoryA(sizeof current, current);
    CQELString relative("no\\such");
    CQELFile::NormalizeFileName(relative);
    EXPECT_EQ(std::string(current) + (std::strlen(current) > 3 ? "\\" : "") + "no\\such",
              static_cast<const char*>(relative));
}

TEST(FileNames, NormalizingKeepsToTheRoomOfTheBuffer) {
    char current[MAX_PATH];
    GetCurrentDirectoryA(sizeof current, current);
    ASSERT_LT(0u, std::strlen(current));

    GuardedBuffer tight("x\\\\y");  // the full path has no room
    EXPECT_TRUE(CQELFile::NormalizeFileName(tight.text(), static_cast<int>(tight.size())));
    EXPECT_STREQ("x\\y", tight.text());

    GuardedBuffer exact("C:/a");
    EXPECT_TRUE(CQELFile::NormalizeFileName(exact.text(), static_cast<int>(exact.size())));
    EXPECT_STREQ("C:\\a", exact.text());

    GuardedBuffer unterminated("abcd", 4);
    EXPECT_TRUE(CQELFile::NormalizeFileName(unterminated.text(), 4));
    EXPECT_EQ(0, std::memcmp("abcd", unterminated.data(), 4));

    GuardedBuffer untouched("..");
    EXPECT_TRUE(CQELFile::NormalizeFileName(untouched.text(), 0));
    EXPECT_TRUE(CQELFile::NormalizeFileName(untouched.text(), -1));
    EXPECT_TRUE(CQELFile::NormalizeFileName(nullptr, 10));
    EXPECT_STREQ("..", untouched.text());
}

TEST(FileNames, ALongStringStaysAsItIs) {
    for (const int length : {259, 260, 1000}) {
        const std::string text(static_cast<std::size_t>(length), 'x');
        CQELString name(text.c_str());
        EXPECT_TRUE(CQELFile::NormalizeFileName(name));
        EXPECT_EQ(text, static_cast<const char*>(name)) << "no room for its folder";
    }
}

TEST(FileNames, CharactersThatNamesMayNotHoldAreReplaced) {
    const struct {
        const char* given;
        const char* clean;
    } cases[] = {
        {"Report 2024.txt", "Report 2024_txt"},  // the dot too
        {"a\\b/c:d*e?f\"g<h>i|j\t", "a_b_c_d_e_f_g_h_i_j_"},
        {"$%'-_@~`!(){}^#&+,;=[] ", "$%'-_@~`!(){}^#&+,;=[] "},
        {"", ""},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(c.clean, CQELFile::RemoveUnacceptableCharactersFromName(c.given)) << c.given;
    }
    const CQELString russian("\xCF\xF0\xE8\xE2\xE5\xF2\xFF.\x98");
    EXPECT_STREQ("\xCF\xF0\xE8\xE2\xE5\xF2\xFF_\x98",
                 CQELFile::RemoveUnacceptableCharactersFromName(russian));

    const std::string long_name(300, 'x');
    EXPECT_EQ(252, CQELFile::RemoveUnacceptableCharactersFromName(long_name.c_str()).Length());
}

}  // namespace
