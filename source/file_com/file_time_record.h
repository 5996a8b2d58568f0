#pragma once

#include <cstdio>

#include "base/export.h"

// When a stream's file was last modified, local time: a plain record of seven 32-bit integers, in
// this order.
class QELKIT_API FileTime {
public:
    // Reads the time of `stream`, as GetTime.
    explicit FileTime(FILE* stream);
    FileTime(const FileTime&) = default;
    FileTime(FileTime&&) = default;
    FileTime& operator=(const FileTime&) = default;
    FileTime& operator=(FileTime&&) = default;

    // Reads the time of `stream`. A null stream, or one whose file does not tell, gives error 1 and
    // leaves the other fields as they are.
    void GetTime(FILE* stream);

    // 0: the fields are those of the file; 1: they are not.
    int GetError() const;

    int error = 1;   // what GetError returns
    int day = 0;     // 1 to 31
    int month = 0;   // 1 to 12
    int year = 0;    // four digits
    int hour = 0;    // 0 to 23
    int minute = 0;  // 0 to 59
    int second = 0;  // 0 to 59
};

inline FileTime::FileTime(FILE* stream) { GetTime(stream); }
inline int FileTime::GetError() const { return error; }
