#include "file_com/detail/busy_file.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace {

TEST(RunOnBusyFile, WaitsForAFileThatExistsOrIsDeniedAndKeepsTheLastErrno) {
    TempFolder folder;
    const std::string there = folder.Write("there", "x");
    const std::string missing = folder / "missing";
    const struct {
        const char* name;
        const std::string& path;
        int error_number;
        int attempts, pauses, status;
    } cases[] = {
        {"held", there, EACCES, 20, 19, kStatusAccessDenied},
        {"in the way", there, EEXIST, 20, 19, kStatusCopyFailed},
        {"denied, nothing to be seen", missing, EACCES, 20, 19, kStatusAccessDenied},
        {"gone", missing, ENOENT, 2, 0, kStatusCopyFailed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        int attempts = 0;
        int pauses = 0;
        const auto outcome = kit::RunOnBusyFile(
            c.path.c_str(),
            [&] {
                ++attempts;
                errno = c.error_number;  // the existence test in between must not count
                return false;
            },
            [&](unsigned) { ++pauses; });
        EXPECT_FALSE(outcome.done);
        EXPECT_EQ(c.attempts, attempts);
        EXPECT_EQ(c.pauses, pauses);
        EXPECT_EQ(c.error_number, outcome.last_errno);
        EXPECT_EQ(c.status, outcome.StatusOr(kStatusCopyFailed));
    }
}

}  // namespace
