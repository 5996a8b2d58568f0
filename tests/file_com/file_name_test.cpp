#include "file_com/file_name.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "file_com/name_mask.h"
#include "status/qel_status.h"
#include "support/code_page.h"
#include "support/guarded_buffer.h"
#include "support/temp_folder.h"

namespace {

using QEL::FILENAME;
using QEL::FILENAME_MASK;

TEST(FileName, ConstructorsAndJoinsTrimAndAssignmentDoesNot) {
    EXPECT_STREQ("a b", FILENAME(" \t a b\r\n"));
    EXPECT_STREQ("C:\\d\\n.x", FILENAME(" C:\\d", "\\n", "x "));
    EXPECT_STREQ("n.", FILENAME(nullptr, "n", nullptr));
    FILENAME name;
    EXPECT_STREQ(" a ", name = " a ");
    const char* const joins[][3] = {
        {"C:\\dir", "\\file.txt", "C:\\dir\\file.txt"},
        {"C:\\dir\\", "\\\\file", "C:\\dir\\\\file"},  // of the part only one goes
        {"", "\\a", "a"},
        {" d", "f ", "d\\f"},
        {" d ", nullptr, "d"},
    };
    for (const auto& [start, part, joined] : joins) EXPECT_STREQ(joined, (name = start) += part);
    name = "ab";
    EXPECT_STREQ("ab\\b", name += static_cast<const char*>(name) + 1);  // a part of itself
}

TEST(FileName, SplitsAtTheRightmostSeparators) {
    const char* const cases[][5] = {
        {"C:\\dir\\file.txt", "C:\\dir", "file.txt", "file", "txt"},
        {"C:\\dir\\file", "C:\\dir", "file", "file", "file"},
        {"\\file", "\\file", "file", "file", "file"},
        {"file", "", "file", "file", ""},
        {"a.b\\c", "a.b", "c", "c", "c"},
        {"a\\.b.c", "a", ".b.c", ".b", "c"},
        {"dir\\", "dir", "", "", ""},
    };
    for (const auto& [text, folder, name, title, extension] : cases) {
        SCOPED_TRACE(text);
        const FILENAME path(text);
        EXPECT_STREQ(folder, path.ExtractFilePath());
        EXPECT_STREQ(name, path.ExtractFileName());
        EXPECT_STREQ(title, path.ExtractFileTitle());
        EXPECT_STREQ(extension, path.ExtractFileExt());
        GuardedBuffer out(path.Lenght() + 1);
        EXPECT_STREQ(folder, path.ExtractFilePath(out.text()));
    }
}

TEST(FileName, PutsAPostfixBeforeTheExtension) {
    EXPECT_STREQ("a\\b_1.txt", FILENAME("a\\b.txt").MakePostfixName("_1"));
    EXPECT_STREQ("a.d\\b_1", FILENAME("a.d\\b").MakePostfixName("_1"));
    EXPECT_STREQ("bff.t", FILENAME("b.t").MakePostfixName(255, 16));
    EXPECT_STREQ("b", FILENAME("b").MakePostfixName(7, 1));
}

TEST(FileName, GeneratesNames) {
    const char* const letters = "0123456789abcdefghijklmnopqrstuvwxyz";
    const TempFolder folder;
    std::srand(7);
    const FILENAME taken(FILENAME::RANDOM_NAME);
    ASSERT_EQ(12, taken.size());
    std::srand(7);
    for (int i = 0; i < 12; ++i) EXPECT_EQ(i == 8 ? '.' : letters[std::rand() % 36], taken[i]);
    EXPECT_TRUE(FILENAME(FILENAME::TEMP_FOLDER).IsFileExist());
    folder.Write(taken.operator const char*(), "");
    std::srand(7);
    FILENAME unique;
    unique.UniqueFilename(folder.path().c_str());
    EXPECT_STREQ(folder.path().c_str(), unique.ExtractFilePath());
    EXPECT_FALSE(unique.IsFileExist());
}

TEST(FileName, ComparesBytesAndGivesThem) {
    EXPECT_TRUE(FILENAME("a") != FILENAME("A"));
    EXPECT_TRUE(FILENAME("z") < FILENAME("\xE0"));
    EXPECT_STREQ("C:\\b", FILENAME("C:/a/../b").NormalizeFileName());
    FILENAME name("ab");
    name[1] = 'c';
    EXPECT_STREQ("ac", name);
    EXPECT_THROW(name[3], XQELStatus);
}

TEST(NameMask, ComparesByItsOptions) {
    FILENAME_MASK mask(" *.txt ", false, 0);
    EXPECT_TRUE(mask.Compare("A.TXT"));
    EXPECT_FALSE(mask.Compare("dir\\a.txt"));
    EXPECT_FALSE(mask.Compare(".txt"));
    mask.SetUseSubDirs(true);
    EXPECT_TRUE(mask.Compare("dir\\a.txt"));
    QEL::g_bUsingFilenameCaseSensivity = true;
    EXPECT_FALSE(mask.Compare("A.TXT"));
    QEL::g_bUsingFilenameCaseSensivity = false;
    mask.SetMask(" a");
    EXPECT_STREQ(" a", mask);
}

// In code page 932 0x83 'Z' and 0x83 'z' are two characters, neither the capital of the other.
TEST(NameMask, FoldsCharactersAndNotTheirSecondBytes) {
    EXPECT_EQ(0, QEL::filename_match("\x83Z*", "\x83zx", 0x10));
    const MultiByteCodePage japanese(932);
    EXPECT_EQ(1, QEL::filename_match("\x83Z*", "\x83zx", 0x10));
    EXPECT_EQ(0, QEL::filename_match("\x83ZX", "\x83Zx", 0x10));
}

}  // namespace
