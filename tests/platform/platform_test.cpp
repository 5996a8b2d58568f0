#include <gtest/gtest.h>

#include <mbctype.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/find_files.h"
#include "platform/last_error.h"
#include "platform/multibyte.h"
#include "platform/own_module.h"
#include "support/temp_folder.h"

namespace {

TEST(Environment, IsCodePage1251) {
    EXPECT_EQ(1251u, GetACP());
    EXPECT_EQ(866u, GetOEMCP());
}

TEST(OwnModule, HoldsTheMessages) {
    char tag[8];
    ASSERT_EQ(3, LoadStringA(kit::OwnModule(), 1021, tag, sizeof tag));
    EXPECT_STREQ("RUS", tag);
}

TEST(FindFiles, SkipsDotsAndTellsAnEndFromAFailure) {
    TempFolder folder;
    folder.Write("one.txt", "1");
    folder.Write("two.txt", "22");
    std::vector<std::string> names;
    kit::FindFiles found((folder.path() + "\\*").c_str());
    for (; found; found.Next()) names.push_back(found.name());
    EXPECT_EQ((std::vector<std::string>{"one.txt", "two.txt"}), names);
    EXPECT_EQ(0u, found.error());

    kit::FindFiles nothing((folder.path() + "\\none").c_str());
    EXPECT_FALSE(nothing);
    EXPECT_EQ(0u, nothing.error());
    kit::FindFiles no_folder((folder.path() + "\\none\\*").c_str());
    EXPECT_FALSE(no_folder);
    EXPECT_EQ(DWORD{ERROR_PATH_NOT_FOUND}, no_folder.error());
}

TEST(SystemError, ErrnoOfWin32CodesIsThatOfTheCRuntime) {
    const struct {
        DWORD code;
        int c_error;
    } cases[] = {
        {ERROR_FILE_NOT_FOUND, ENOENT}, {ERROR_PATH_NOT_FOUND, ENOENT},
        {ERROR_ACCESS_DENIED, EACCES},  {ERROR_SHARING_VIOLATION, EACCES},
        {ERROR_LOCK_VIOLATION, EACCES}, {ERROR_WRITE_PROTECT, EACCES},
        {ERROR_FILE_EXISTS, EEXIST},    {ERROR_ALREADY_EXISTS, EEXIST},
        {ERROR_BAD_NETPATH, ENOENT},    {ERROR_GEN_FAILURE, EACCES},
        {ERROR_INVALID_NAME, EINVAL},   {ERROR_NOT_SAME_DEVICE, EXDEV},
        {0xFFFFFFFF, EINVAL},
    };
    for (const auto& c : cases) EXPECT_EQ(c.c_error, kit::ErrnoFromWin32(c.code)) << c.code;
}

TEST(CharacterLength, TakesALeadByteWithItsTrailByteOnly) {
    const int before = _getmbcp();
    EXPECT_EQ(1u, kit::CharacterLength("\x81\x40"));  // no lead bytes in 1251
    EXPECT_FALSE(kit::HasDoubleByteCharacters());
    ASSERT_EQ(0, _setmbcp(932));
    EXPECT_EQ(2u, kit::CharacterLength("\x81\x40"));
    EXPECT_EQ(1u, kit::CharacterLength("\x81"));  // cut character: the terminator is no trail byte
    EXPECT_EQ(1u, kit::CharacterLength("a"));
    EXPECT_TRUE(kit::HasDoubleByteCharacters());
    _setmbcp(before);
    EXPECT_FALSE(kit::HasDoubleByteCharacters());
}

}  // namespace
