#include "file_com/folder_functions.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"
#include "support/working_folder.h"

namespace {

TEST(FolderFunctions, MakeDirectoryMakesEveryPrefix) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    folder.Write("file", "");
    for (const std::string& path :
         {folder / "one\\two\\three", std::string("long\\er"), std::string("C:drive\\relative")}) {
        EXPECT_EQ(0, MakeDirectory(path.c_str())) << path;
        EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesA(path.c_str())) << path;
        EXPECT_EQ(folder.path(), CurrentFolder());
    }
    EXPECT_EQ(1, MakeDirectory((folder / "file\\sub\\deep").c_str()));
    EXPECT_EQ(1, MakeDirectory("ab\\cd"));  // "ab" is not made
}

TEST(FolderFunctions, DosSetCatChangesDriveAndFolder) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    folder.MakeFolder("sub");
    EXPECT_EQ(0, DosSetCat("sub"));
    EXPECT_EQ(0, DosSetCat(""));
    EXPECT_EQ(-1, DosSetCat("Q:\\"));
    EXPECT_EQ(-1, DosSetCat(std::string(260, 'a').c_str()));
    EXPECT_EQ(folder / "sub", CurrentFolder());
    EXPECT_EQ(0, DosSetCat((folder.path() + "\\").c_str()));
    EXPECT_EQ(folder.path(), CurrentFolder());
}

TEST(FolderFunctions, FileSizeTellsThePathOfAFailure) {
    const TempFolder folder;
    char text[260];
    EXPECT_EQ(5u, FileSize(folder.Write("file", "12345").c_str(), text));
    EXPECT_EQ(0xFFFFFFFFu, FileSize(std::string(300, 'a').c_str(), text));
    EXPECT_EQ(std::string(259, 'a'), text);
}

TEST(LineFunctions, ReadAndWriteLines) {
    const TempFolder folder;
    const std::string path = folder.Write("lines", "one  \ntwo \r\n  \nfo\x93r");
    FILE* stream = std::fopen(path.c_str(), "rb");
    char line[10];
    for (const char* expected : {"one", "two \r", ""})
        EXPECT_STREQ(expected, FgetStr(line, sizeof line, stream));
    EXPECT_STREQ("fo\xD3r", FgetStrOem(line, sizeof line, stream));  // capital U of code page 866
    EXPECT_EQ(nullptr, FgetStrOem(line, sizeof line, stream));
    std::fclose(stream);
    stream = std::fopen(path.c_str(), "wb");
    for (const char* text : {"a", "b\n", "\n", "", "c\n\n"}) EXPECT_GE(FputStr(text, stream), 0);
    std::fclose(stream);
    EXPECT_EQ("a\nb\n\n\nc\n\n", folder.Read("lines"));
}

}  // namespace
