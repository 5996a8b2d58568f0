#include "file_com/detail/commit_mode.h"

#include <gtest/gtest.h>

namespace {

TEST(CommitMode, AddsTheLetterToModesThatWriteAndLackIt) {
    const struct {
        const char* mode;
        const char* committed;
    } cases[] = {
        {"wb", "wbc"},
        {"r+b", "r+bc"},
        {"a", "ac"},
        {"w b", "wc b"},
        {"w+b,ccs=UNICODE", "w+bc,ccs=UNICODE"},  // the c of "ccs" is not the letter
        {"r+ ,x", "r+c ,x"},
        {"w,x y", "wc,x y"},  // whichever comes first
        {"wbc", "wbc"},
        {"wbn", "wbn"},
        {"w b c", "w b c"},  // said, though after the blank
        {"rb", "rb"},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(c.committed, kit::CommitMode(c.mode, true)) << c.mode;
    EXPECT_EQ("r+bc", kit::CommitMode(nullptr, true));
    EXPECT_EQ("w+bc", kit::CommitMode(nullptr, false));
}

}  // namespace
