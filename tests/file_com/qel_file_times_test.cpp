// Runs in the Moscow zone: three hours east of Greenwich, no summer time.

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

constexpr bool kRecord = false;
constexpr std::int64_t kValentine = 1234567890;  // 13 February 2009, 23:31:30 UTC
const CQELDateTime kValentineInMoscow(2009, 2, 14, 2, 31, 30, 0);
const CQELDateTime kNoTime(0, 0, 0, 0, 0, 0, 0);

class FileTimes : public testing::Test {
protected:
    // The zone comes from the system, not from the runtime's own reading of the variable.
    static void SetUpTestSuite() {
        ASSERT_EQ(0, _putenv("TZ="));
        _tzset();
        ASSERT_EQ(-10800, _timezone) << "the program needs TZ=Europe/Moscow";
    }

    std::string MakeFile(std::int64_t modified) const {
        const std::string path = folder_.Write("file", "x");
        struct __utimbuf64 times;
        times.actime = times.modtime = modified;
        EXPECT_EQ(0, _utime64(path.c_str(), &times));
        return path;
    }
    static std::int64_t Modified(const std::string& path) { return Status(path).st_mtime; }
    static std::int64_t Accessed(const std::string& path) { return Status(path).st_atime; }
    static bool IsNow(std::int64_t seconds) { return std::abs(_time64(nullptr) - seconds) < 10; }
    static bool IsNow(const CQELDateTime& time) {
        const CQELDateTime now(true);
        return time <= now && time.Year() >= 2024 && std::int64_t{now} - std::int64_t{time} < 10;
    }

    TempFolder folder_;
    const XQELFile status_{kRecord};

private:
    static struct _stat64 Status(const std::string& path) {
        struct _stat64 status;
        EXPECT_EQ(0, _stat64(path.c_str(), &status));
        return status;
    }
};

TEST_F(FileTimes, ReadsTheTimeOfModificationAsLocalTime) {
    const std::string path = MakeFile(kValentine);
    CQELFile file(path.c_str(), "rb", kRecord);
    EXPECT_TRUE(kValentineInMoscow == file.LastWriteTime());
    EXPECT_FALSE(file.IsError());
    EXPECT_TRUE(kValentineInMoscow == CQELFile::LastWriteTime(path.c_str(), status_));
}

std::tm* RefuseLocalTime(const std::int64_t*) { return nullptr; }

TEST_F(FileTimes, AMissingFileOrATimeWithoutLocalFormGivesTheCurrentTime) {
    status_.SetError(4, ENOENT);
    EXPECT_TRUE(IsNow(CQELFile::LastWriteTime((folder_ / "missing").c_str(), status_)));
    EXPECT_TRUE(IsNow(CQELFile::LastWriteTime(nullptr, status_)));
    EXPECT_FALSE(status_.IsError());

    const std::string path = MakeFile(kValentine);
    CQELFile file(path.c_str(), "rb", kRecord);
    const ImportPatch refused(kLibrary, "_localtime64", &RefuseLocalTime);
    EXPECT_TRUE(IsNow(file.LastWriteTime()));
    EXPECT_FALSE(file.IsError());
}

TEST_F(FileTimes, SetsAnOpenFilesTimesInStepsOfTwoSeconds) {
    const std::string path = folder_.Write("file", "x");
    {
        CQELFile file(path.c_str(), "r+b", kRecord);
        file.Write("buffered", 8);
        EXPECT_TRUE(file.LastWriteTime(CQELDateTime(2009, 2, 14, 2, 31, 31, 999)));
    }
    EXPECT_EQ(kValentine, Modified(path)) << "closing has written nothing more";
    EXPECT_EQ(kValentine, Accessed(path));
    EXPECT_EQ("buffered", folder_.Read("file"));
}

TEST_F(FileTimes, SettingAnOpenFilesTimesKeepsItsPosition) {
    folder_.Write("file", "abcdef");
    const CQELFile file((folder_ / "file").c_str(), "r+b", kRecord);
    char byte = 0;
    file.Read(&byte, 1);
    EXPECT_TRUE(file.LastWriteTime(kValentineInMoscow));
    file.Read(&byte, 1);
    EXPECT_EQ('b', byte);
}

TEST_F(FileTimes, RefusesTimesThatTheDosFormCannotHold) {
    const std::string path = MakeFile(kValentine);
    const CQELFile file(path.c_str(), "r+b", kRecord);
    // clang-format off
    const CQELDateTime times[] = {  // most would spill into a neighbour and make a time there is
        {1979, 12, 31, 23, 59, 59, 0}, {2108, 1, 1, 0, 0, 0, 0},  {2024, 17, 1, 0, 0, 0, 0},
        {2024, 1, 33, 0, 0, 0, 0},     {2024, 2, 30, 0, 0, 0, 0}, {2024, 0, 1, 0, 0, 0, 0},
        {2024, 1, 1, 33, 0, 0, 0},     {2024, 1, 1, 0, 65, 0, 0}, {2024, 1, 1, 0, 1, -1, 0},
        {2024, 1, 1, 0, 0, 64, 0},     kNoTime,
    };
    // clang-format on
    for (const auto& time : times) {
        SCOPED_TRACE(static_cast<const char*>(time.TextDateTime(1, 1, 0)));
        EXPECT_FALSE(file.LastWriteTime(time));
        EXPECT_EQ(122, file.Status());
    }
    EXPECT_EQ(kValentine, Modified(path));
    EXPECT_TRUE(file.LastWriteTime(CQELDateTime(1980, 1, 1, 0, 0, 0, 0)));
    EXPECT_EQ(315532800 - 10800, Modified(path));
}

TEST_F(FileTimes, SetsAPathsTimesOrMakesThemNow) {
    const std::string path = folder_.Write("file", "x");
    EXPECT_TRUE(
        CQELFile::LastWriteTime(path.c_str(), CQELDateTime(2009, 2, 14, 2, 31, 31, 999), status_));
    EXPECT_EQ(kValentine + 1, Modified(path));
    EXPECT_EQ(kValentine + 1, Accessed(path));

    EXPECT_TRUE(
        CQELFile::LastWriteTime(path.c_str(), CQELDateTime(1900, 1, 1, 0, 0, 0, 0), status_));
    EXPECT_FALSE(status_.IsError());
    EXPECT_TRUE(IsNow(Modified(path)));
    EXPECT_TRUE(IsNow(Accessed(path)));

    const std::string missing = folder_ / "missing";
    EXPECT_FALSE(CQELFile::LastWriteTime(missing.c_str(), kValentineInMoscow, status_));
    EXPECT_EQ(122, status_.Status());
    EXPECT_EQ(ENOENT, status_.Errno());
    EXPECT_EQ(missing, static_cast<const char*>(status_.GetErrMessEx()));
}

TEST_F(FileTimes, TheRecordHoldsTheFieldsOfAStreamsTime) {
    const std::string path = MakeFile(kValentine);
    FILE* const stream = std::fopen(path.c_str(), "rb");
    ASSERT_NE(nullptr, stream);
    const FileTime time(stream);
    const int fields[] = {time.error, time.day,    time.month, time.year,
                          time.hour,  time.minute, time.second};
    const int expected[] = {0, 14, 2, 2009, 2, 31, 30};
    EXPECT_TRUE(std::equal(std::begin(fields), std::end(fields), expected));

    FileTime failed(time);
    failed.GetTime(nullptr);
    EXPECT_EQ(1, failed.GetError());
    {
        const ImportPatch refused(kLibrary, "_localtime64", &RefuseLocalTime);
        failed = time;
        failed.GetTime(stream);
        EXPECT_EQ(1, failed.GetError());
    }
    failed.GetTime(stream);
    EXPECT_EQ(0, failed.GetError());
    std::fclose(stream);
    EXPECT_EQ(1, FileTime(nullptr).GetError());
}

}  // namespace
