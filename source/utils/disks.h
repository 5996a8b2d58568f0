#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"

// Questions about drives and their volumes. Nothing throws; any thread may call.

namespace QELUtils {

// The bytes available to the caller, or all bytes, of the volume of `path`: by its first three
// characters ("C:\"), or for a network path by the folder that it is or that it lies in. 0 on
// failure (null included). On systems without 64-bit figures the total is cut to 32 bits.
QELKIT_API std::int64_t GetFreeDiskSpace(const char* path);
QELKIT_API std::int64_t GetTotalDiskSpace(const char* path);

// The first drive letter that is not in use: `start` (a capital letter; 0 means 'C') if it is free,
// else the first free one from 'C' on, whatever `start` was. Stored in *letter, and 0 returned.
// Failure: 87 (null `letter`, or `start` is something else), 15 (no letter is free), or the
// system's code; then *letter is 0.
QELKIT_API ulong32 GetFirstFreeDriveLetter(char start, char* letter);

// Whether the paths `path1` and `path2` lie on the same drive: equal first three characters, or for
// network paths equal folder parts, letter case aside. Null lies nowhere: false.
QELKIT_API bool FromSomeDrive(const char* path1, const char* path2);

}  // namespace QELUtils
