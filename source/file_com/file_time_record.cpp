#include "file_com/file_time_record.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <ctime>

static_assert(sizeof(FileTime) == 28, "part of the binary interface");

void FileTime::GetTime(FILE* stream) {
    error = 1;
    struct _stat64 status;
    if (!stream || ::_fstat64(::_fileno(stream), &status) != 0) return;
    const std::tm* const local = ::_localtime64(&status.st_mtime);
    if (!local) return;
    day = local->tm_mday;
    month = local->tm_mon + 1;
    year = local->tm_year + 1900;
    hour = local->tm_hour;
    minute = local->tm_min;
    second = local->tm_sec;
    error = 0;
}
