#include "file_com/file_name.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

#include "file_com/name_mask.h"
#include "status/qel_status.h"
#include "support/code_page.h"
#include "support/guarded_buffer.h"
#include "support/temp_folder.h"

namespace {

using QEL::FILENAME;
using QEL::FILENAME_MASK;

FILENAME Raw(const char* text) {
    FILENAME name;
    name = text;
    return name;
}

TEST(FileName, ConstructorsTrimAndAssignmentDoesNot) {
    EXPECT_STREQ("a b", FILENAME(" \t a b\r\n"));
    EXPECT_STREQ("a", FILENAME(CQELString(" a ")));
    EXPECT_STREQ("", FILENAME(static_cast<const char*>(nullptr)));
    EXPECT_STREQ(" a ", Raw(" a "));
    EXPECT_STREQ("C:\\d\\n.x", FILENAME(" C:\\d", "\\n", "x "));
    EXPECT_STREQ("n.", FILENAME(nullptr, "n", nullptr));
}

TEST(FileName, JoinsWithOneSeparator) {
    const struct {
        const char *name, *part, *joined;
    } cases[] = {
        {"C:\\dir", "\\file.txt", "C:\\dir\\file.txt"},
        {"C:\\dir\\", "\\\\file", "C:\\dir\\\\file"},  // of the part only one goes
        {"", "a", "a"},
        {"", "\\a", "a"},
        {" d", "f ", "d\\f"},
        {"d", "", "d\\"},
        {" d ", nullptr, "d"},
    };
    for (const auto& c : cases) {
        FILENAME name = Raw(c.name);
        name += c.part;
        EXPECT_STREQ(c.joined, name);
    }
    FILENAME doubled("ab");
    doubled += static_cast<const char*>(doubled) + 1;  // a part of itself
    EXPECT_STREQ("ab\\b", doubled);
}

TEST(FileName, SplitsAtTheRightmostSeparators) {
    const struct {
        const char *path, *folder, *name, *title, *extension;
    } cases[] = {
        {"C:\\dir\\file.txt", "C:\\dir", "file.txt", "file", "txt"},
        {"C:\\dir\\file", "C:\\dir", "file", "file", "file"},
        {"\\file", "\\file", "file", "file", "file"},
        {"file", "", "file", "file", ""},
        {"a.b\\c", "a.b", "c", "c", "c"},
        {"a\\.b.c", "a", ".b.c", ".b", "c"},
        {"dir\\", "dir", "", "", ""},
        {"", "", "", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const FILENAME path(c.path);
        EXPECT_STREQ(c.folder, path.ExtractFilePath());
        EXPECT_STREQ(c.name, path.ExtractFileName());
        EXPECT_STREQ(c.title, path.ExtractFileTitle());
        EXPECT_STREQ(c.extension, path.ExtractFileExt());
        GuardedBuffer out(path.Lenght() + 1);
        EXPECT_STREQ(c.folder, path.ExtractFilePath(out.text()));
        EXPECT_STREQ(c.name, path.ExtractFileName(out.text()));
        EXPECT_STREQ(c.title, path.ExtractFileTitle(out.text()));
        EXPECT_STREQ(c.extension, path.ExtractFileExt(out.text()));
    }
}

TEST(FileName, PutsAPostfixBeforeTheExtension) {
    EXPECT_STREQ("a\\b_1.txt", FILENAME("a\\b.txt").MakePostfixName("_1"));
    EXPECT_STREQ("a.d\\b_1", FILENAME("a.d\\b").MakePostfixName("_1"));
    EXPECT_STREQ("bff.t", FILENAME("b.t").MakePostfixName(255, 16));
    EXPECT_STREQ("b37777777777", FILENAME("b").MakePostfixName(0xFFFFFFFF, 8));
    EXPECT_STREQ("b0.", FILENAME("b.").MakePostfixName(0, 36));
    EXPECT_STREQ("b", FILENAME("b").MakePostfixName(7, 1));
}

TEST(FileName, GeneratesNames) {
    std::srand(7);
    std::set<std::string> names;
    for (int i = 0; i < 50; ++i) {
        const std::string name(FILENAME(FILENAME::RANDOM_NAME).operator const char*());
        ASSERT_EQ(12u, name.size());
        EXPECT_EQ(8u, name.find_first_not_of("0123456789abcdefghijklmnopqrstuvwxyz"));
        EXPECT_EQ(std::string::npos,
                  name.find_first_not_of("0123456789abcdefghijklmnopqrstuvwxyz", 9));
        names.insert(name);
    }
    EXPECT_EQ(50u, names.size());
    EXPECT_TRUE(FILENAME(FILENAME::TEMP_FOLDER).IsFileExist());
    EXPECT_TRUE(FILENAME(static_cast<FILENAME::SpecialFilenames>(3)).isEmpty());

    // The first name that this seed gives is taken.
    const TempFolder folder;
    std::srand(7);
    const FILENAME taken(FILENAME::RANDOM_NAME);
    folder.Write(static_cast<const char*>(taken), "");
    std::srand(7);
    FILENAME unique;
    unique.UniqueFilename(folder.path().c_str());
    EXPECT_STREQ(folder.path().c_str(), unique.ExtractFilePath());
    EXPECT_STRNE(taken, unique.ExtractFileName());
    EXPECT_FALSE(unique.IsFileExist());
}

TEST(FileName, ComparesAsUnsignedBytesWhateverTheSwitchSays) {
    EXPECT_TRUE(FILENAME("a") != FILENAME("A"));
    EXPECT_TRUE(FILENAME("ab") > FILENAME("a"));
    EXPECT_TRUE(FILENAME("z") < FILENAME("\xE0"));
    EXPECT_STREQ("C:\\b", FILENAME("C:/a/../b").NormalizeFileName());
}

TEST(FileName, GivesItsCharactersAndRefusesOthers) {
    FILENAME name("ab");
    const FILENAME copy(name);
    name[1] = 'c';
    EXPECT_STREQ("ac", name);
    EXPECT_STREQ("ab", copy);
    EXPECT_EQ('\0', copy[2]);
    EXPECT_THROW(name[3], XQELStatus);
    EXPECT_THROW(copy[-1], XQELStatus);
}

TEST(NameMask, ComparesByItsOptions) {
    FILENAME_MASK mask(" *.txt ", false, 0);
    EXPECT_TRUE(mask.Compare("A.TXT"));
    EXPECT_FALSE(mask.Compare("A.TXT", true));
    EXPECT_FALSE(mask.Compare("dir\\a.txt"));
    EXPECT_FALSE(mask.Compare(".txt"));
    mask.SetUseSubDirs(true);
    EXPECT_TRUE(mask.Compare("dir\\a.txt"));
    QEL::g_bUsingFilenameCaseSensivity = true;
    EXPECT_FALSE(mask.Compare("A.TXT"));
    QEL::g_bUsingFilenameCaseSensivity = false;
    mask.SetMask(" a");
    EXPECT_STREQ(" a", mask);
    EXPECT_EQ(0, QEL::filename_match(nullptr, nullptr, 0));
}

// In code page 932 0x83 0x41 and 0x83 0x61 are two characters, neither the capital of the other.
TEST(NameMask, FoldsCharactersAndNotTheirSecondBytes) {
    EXPECT_EQ(0, QEL::filename_match("\x83"
                                     "A*",
                                     "\x83"
                                     "ab",
                                     0x10));
    const MultiByteCodePage japanese(932);
    EXPECT_EQ(1, QEL::filename_match("\x83"
                                     "A*",
                                     "\x83"
                                     "ab",
                                     0x10));
    EXPECT_EQ(0, QEL::filename_match("\x83"
                                     "AB",
                                     "\x83"
                                     "Ab",
                                     0x10));
}

}  // namespace
