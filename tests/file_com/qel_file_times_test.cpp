// Suites that each run in a time zone of their own, in a program of that zone.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/types.h>
#include <sys/utime.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string>

#include "file_com/file_time_record.h"
#include "file_com/qel_file.h"
#include "support/import_patch.h"
#include "support/temp_folder.h"

namespace {

class FileTimes : public testing::Test {
protected:
    // The zone comes from the system, not from the runtime's own reading of the variable.
    static void ExpectZone(long seconds_west) {
        ASSERT_EQ(0, _putenv("TZ="));
        _tzset();
        ASSERT_EQ(seconds_west, _timezone) << "the program needs another TZ";
    }
    // When the file was modified; it must have been accessed then, too.
    std::int64_t Modified() const {
        struct _stat64 status;
        EXPECT_EQ(0, _stat64(path_.c_str(), &status));
        EXPECT_EQ(status.st_mtime, status.st_atime);
        return status.st_mtime;
    }

    TempFolder folder_;
    const std::string path_ = folder_.Write("file", "abcdef");
    CQELFile file_{path_.c_str(), "r+b", false};
    const XQELFile status_{false};
};

// Three hours east of Greenwich, no summer time.
class FileTimesInMoscow : public FileTimes {
protected:
    FileTimesInMoscow() {
        ExpectZone(-10800);
        EXPECT_TRUE(CQELFile::LastWriteTime(path_.c_str(), valentine_, status_));
        EXPECT_EQ(kValentine, Modified());
    }
    static bool IsNow(std::int64_t seconds) { return std::abs(_time64(nullptr) - seconds) < 10; }
    static bool IsNow(const CQELDateTime& time) {
        const CQELDateTime now(true);
        return time <= now && time.Year() >= 2024 && std::int64_t{now} - std::int64_t{time} < 10;
    }

    static constexpr std::int64_t kValentine = 1234567890;  // 13 February 2009, 23:31:30 UTC
    const CQELDateTime valentine_{2009, 2, 14, 2, 31, 30, 0};
};

std::tm* RefuseLocalTime(const std::int64_t*) { return nullptr; }

TEST_F(FileTimesInMoscow, AreReadAsLocalTimeOrAsTheCurrentOne) {
    EXPECT_TRUE(valentine_ == file_.LastWriteTime());
    EXPECT_TRUE(valentine_ == CQELFile::LastWriteTime(path_.c_str(), status_));
    status_.SetError(4, ENOENT);
    EXPECT_TRUE(IsNow(CQELFile::LastWriteTime((folder_ / "missing").c_str(), status_)));
    EXPECT_TRUE(IsNow(CQELFile::LastWriteTime(nullptr, status_)));
    EXPECT_FALSE(status_.IsError());
    const ImportPatch refused(kLibrary, "_localtime64", &RefuseLocalTime);
    EXPECT_TRUE(IsNow(file_.LastWriteTime()));
    EXPECT_FALSE(file_.IsError());
}

TEST_F(FileTimesInMoscow, OfAnOpenFileAreSetInStepsOfTwoSeconds) {
    const CQELDateTime time(2009, 2, 14, 2, 31, 29, 999);
    char byte = 0;
    file_.Write("buf", 3);
    EXPECT_TRUE(file_.LastWriteTime(time));
    EXPECT_EQ(1u, file_.Read(&byte, 1));
    EXPECT_TRUE(file_.LastWriteTime(time));
    EXPECT_EQ(4u, file_.CurPos()) << "the position is kept";
    file_.Close();
    EXPECT_EQ(kValentine - 2, Modified()) << "closing has written nothing more";
    EXPECT_EQ("bufdef", folder_.Read("file"));
}

TEST_F(FileTimesInMoscow, AreRefusedWhenTheDosFormCannotHoldThem) {
    // clang-format off
    const CQELDateTime times[] = {  // most would spill into a neighbour and make a time there is
        {1979, 12, 31, 23, 59, 59, 0}, {2108, 1, 1, 0, 0, 0, 0},  {2024, 17, 1, 0, 0, 0, 0},
        {2024, 1, 33, 0, 0, 0, 0},     {2024, 2, 30, 0, 0, 0, 0}, {2024, 0, 1, 0, 0, 0, 0},
        {2024, 1, 1, 33, 0, 0, 0},     {2024, 1, 1, 0, 65, 0, 0}, {2024, 1, 1, 0, 1, -1, 0},
        {2024, 1, 1, 0, 0, 64, 0},     {0, 0, 0, 0, 0, 0, 0},
    };
    // clang-format on
    for (const auto& time : times) {
        SCOPED_TRACE(static_cast<const char*>(time.TextDateTime(1, 1, 0)));
        EXPECT_FALSE(file_.LastWriteTime(time));
        EXPECT_EQ(122, file_.Status());
    }
    EXPECT_EQ(kValentine, Modified());
    EXPECT_TRUE(file_.LastWriteTime(CQELDateTime(1980, 1, 1, 0, 0, 0, 0)));
    EXPECT_EQ(315532800 - 10800, Modified());
}

TEST_F(FileTimesInMoscow, OfAPathAreSetOrMadeNow) {
    const CQELDateTime odd(2009, 2, 14, 2, 31, 31, 999), before_all(1900, 1, 1, 0, 0, 0, 0);
    EXPECT_TRUE(CQELFile::LastWriteTime(path_.c_str(), odd, status_));
    EXPECT_EQ(kValentine + 1, Modified());
    EXPECT_TRUE(CQELFile::LastWriteTime(path_.c_str(), before_all, status_));
    EXPECT_FALSE(status_.IsError());
    EXPECT_TRUE(IsNow(Modified()));
    const std::string missing = folder_ / "missing";
    EXPECT_FALSE(CQELFile::LastWriteTime(missing.c_str(), valentine_, status_));
    EXPECT_TRUE(status_.Status() == 122 && status_.Errno() == ENOENT);
    EXPECT_EQ(missing, static_cast<const char*>(status_.GetErrMessEx()));
}

TEST_F(FileTimesInMoscow, TheRecordHoldsTheFieldsOfAStreamsTime) {
    FILE* const stream = std::fopen(path_.c_str(), "rb");
    ASSERT_NE(nullptr, stream);
    FileTime time(stream);
    const int fields[] = {time.error, time.day,    time.month, time.year,
                          time.hour,  time.minute, time.second};
    const int expected[] = {0, 14, 2, 2009, 2, 31, 30};
    EXPECT_TRUE(std::equal(std::begin(fields), std::end(fields), expected));
    time.GetTime(nullptr);
    EXPECT_EQ(1, time.GetError());
    time.GetTime(stream);
    EXPECT_EQ(0, time.GetError());
    const ImportPatch refused(kLibrary, "_localtime64", &RefuseLocalTime);
    time.GetTime(stream);
    EXPECT_EQ(1, time.GetError());
    std::fclose(stream);
}

std::int64_t now;
std::int64_t SayNow(std::int64_t*) { return now; }

// Five hours west of Greenwich, four in summer.
using FileTimesInNewYork = FileTimes;
TEST_F(FileTimesInNewYork, AreSetByTheDaylightSavingOfTheMoment) {
    constexpr std::int64_t kNoonInWinter = 1705338000;  // 15 January 2024, 12:00 EST, 17:00 UTC
    constexpr std::int64_t kNoonInSummer = 1721059200;  // 15 July 2024, 12:00 EDT, 16:00 UTC
    ExpectZone(18000);
    const ImportPatch clock(kLibrary, "_time64", &SayNow);
    const CQELDateTime winter(2024, 1, 15, 12, 0, 0, 0), summer(2024, 7, 15, 12, 0, 0, 0);
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
        EXPECT_TRUE(CQELFile::LastWriteTime(path_.c_str(), c.set, status_));
        EXPECT_EQ(c.modified, Modified());
        EXPECT_TRUE(c.read == CQELFile::LastWriteTime(path_.c_str(), status_));
    }
}

}  // namespace
