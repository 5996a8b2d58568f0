#include "base/path_text.h"

#include <gtest/gtest.h>

TEST(PathText, CutsAfterTheLastSlashOfEitherKind) {
    const struct {
        const char *path, *folder, *name;
    } cases[] = {
        {"C:\\a\\b.txt", "C:\\a\\", "b.txt"}, {"a/b\\c/d", "a/b\\c/", "d"}, {"b.txt", "", "b.txt"},
        {"C:\\a\\", "C:\\a\\", ""},           {"C:b", "", "C:b"},           {"", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.folder, kit::FolderPart(c.path)) << c.path;
        EXPECT_EQ(c.name, kit::LastPart(c.path)) << c.path;
    }
}
