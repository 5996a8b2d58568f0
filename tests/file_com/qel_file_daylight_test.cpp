// Runs in the New York zone: five hours west of Greenwich, four in summer.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdlib>
#include <ctime>

#include "file_com/qel_file.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

constexpr std::int64_t kNoonInWinter = 1705338000;  // 15 January 2024, 12:00 EST, 17:00 UTC
constexpr std::int64_t kNoonInSummer = 1721059200;  // 15 July 2024, 12:00 EDT, 16:00 UTC

std::int64_t now;
std::int64_t SayNow(std::int64_t*) { return now; }

TEST(FileDaylight, ALocalTimeIsSetByTheDaylightSavingOfTheMoment) {
    ASSERT_EQ(0, _putenv("TZ="));
    _tzset();
    ASSERT_EQ(18000, _timezone) << "the program needs TZ=America/New_York";
    const TempFolder folder;
    const std::string path = folder.Write("file", "x");
    const XQELFile status(false);
    const ImportPatch clock(kLibrary, "_time64", &SayNow);
    const CQELDateTime winter(2024, 1, 15, 12, 0, 0, 0);
    const CQELDateTime summer(2024, 7, 15, 12, 0, 0, 0);
    const struct {
        std::int64_t now;
        CQELDateTime set, read;
        std::int64_t modified;
    } cases[] = {
        {kNoonInWinter, winter, winter, kNoonInWinter},
        {kNoonInSummer, summer, summer, kNoonInSummer},
        {kNoonInSummer, winter, CQELDateTime(2024, 1, 15, 11, 0, 0, 0), kNoonInWinter - 3600},
        {kNoonInWinter, summer, CQELDateTime(2024, 7, 15, 13, 0, 0, 0), kNoonInSummer + 3600},
    };
    for (const auto& c : cases) {
        now = c.now;
        EXPECT_TRUE(CQELFile::LastWriteTime(path.c_str(), c.set, status));
        struct _stat64 found;
        ASSERT_EQ(0, _stat64(path.c_str(), &found));
        EXPECT_EQ(c.modified, found.st_mtime);
        EXPECT_TRUE(c.read == CQELFile::LastWriteTime(path.c_str(), status));
    }
}

}  // namespace
