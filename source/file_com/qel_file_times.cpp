// The file class's modification times.

#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/utime.h>

#include <cerrno>
#include <ctime>

#include "base/or_empty.h"
#include "datetime/qel_datetime.h"
#include "file_com/detail/report.h"
#include "file_com/detail/stream_tools.h"
#include "file_com/qel_file.h"
#include "platform/windows.h"
#include "status/status_codes.h"

namespace {

// The local reading of a file's time stamp; the current one for a stamp that has no local form.
CQELDateTime LocalReading(std::int64_t seconds) {
    const std::tm* const local = ::_localtime64(&seconds);
    if (!local) return CQELDateTime(true);
    return CQELDateTime(local->tm_year + 1900, local->tm_mon + 1, local->tm_mday, local->tm_hour,
                        local->tm_min, local->tm_sec, 0);
}

bool IsDaylightSavingNow() {
    std::int64_t now = ::_time64(nullptr);
    const std::tm* const local = ::_localtime64(&now);
    return local && local->tm_isdst > 0;
}

// Seconds since 1970 UTC of a local reading; -1 when there is none.
std::int64_t SecondsOf(const CQELDateTime& time) {
    std::tm local{};
    local.tm_year = time.Year() - 1900;
    local.tm_mon = time.Month() - 1;
    local.tm_mday = time.Day();
    local.tm_hour = time.Hour();
    local.tm_min = time.Minute();
    local.tm_sec = time.Second();
    local.tm_isdst = IsDaylightSavingNow();
    return ::_mktime64(&local);
}

constexpr bool IsWithin(int value, int low, int high) { return value >= low && value <= high; }

// DOS date and time to UTC. A field outside its range must not spill into its neighbour; the system
// checks the rest (30 February).
bool LocalToUtc(const CQELDateTime& time, FILETIME& utc) {
    if (!IsWithin(time.Year(), 1980, 2107) || !IsWithin(time.Month(), 1, 12) ||
        !IsWithin(time.Day(), 1, 31) || !IsWithin(time.Hour(), 0, 23) ||
        !IsWithin(time.Minute(), 0, 59) || !IsWithin(time.Second(), 0, 59)) {
        return false;
    }
    const int date = (time.Year() - 1980) << 9 | time.Month() << 5 | time.Day();
    const int clock = time.Hour() << 11 | time.Minute() << 5 | time.Second() / 2;
    FILETIME local;
    return ::DosDateTimeToFileTime(static_cast<WORD>(date), static_cast<WORD>(clock), &local) &&
           ::LocalFileTimeToFileTime(&local, &utc);
}

bool SetTimes(FILE* stream, const CQELDateTime& time) {
    if (!kit::SettleStream(stream)) return false;  // a later write would set the time again
    const auto file = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
    FILETIME utc;
    return LocalToUtc(time, utc) && ::SetFileTime(file, nullptr, &utc, &utc);
}

bool SetTimes(const char* path, const CQELDateTime& time) {
    struct __utimbuf64 times;
    times.actime = times.modtime = SecondsOf(time);
    return times.modtime != -1 && ::_utime64(path, &times) == 0;
}

}  // namespace

CQELDateTime CQELFile::LastWriteTime() {
    const CQELDateTime none(0, 0, 0, 0, 0, 0, 0);
    FILE* const stream = Begin(__LINE__);
    if (!stream) return none;
    struct _stat64 status;
    if (::_fstat64(::_fileno(stream), &status) == 0) return LocalReading(status.st_mtime);
    Fail(kStatusGetTimeFailed, errno);
    return none;
}

bool CQELFile::LastWriteTime(const CQELDateTime& time) const {
    FILE* const stream = Begin(__LINE__, kStatusSetTimeFailed);
    if (stream && !SetTimes(stream, time)) Fail(kStatusSetTimeFailed, 0);
    return !IsError();
}

CQELDateTime CQELFile::LastWriteTime(const char* path, const XQELFile& status) {
    status.Clear();
    struct _stat64 found;
    if (::_stat64(kit::OrEmpty(path), &found) != 0) return CQELDateTime(true);
    return LocalReading(found.st_mtime);
}

bool CQELFile::LastWriteTime(const char* path, const CQELDateTime& time, const XQELFile& status) {
    status.Clear();
    path = kit::OrEmpty(path);
    if (!SetTimes(path, time) && ::_utime64(path, nullptr) != 0) {
        kit::Report(status, path, kStatusSetTimeFailed, errno);
    }
    return !status.IsError();
}
