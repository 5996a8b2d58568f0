#pragma once

#include <string>

#include "base/export.h"
#include "base/types.h"

// Other names of paths. Results are 1 or 0 unless something else is said; on 0 the output is
// unchanged. Those with a std::string throw what the allocator throws. Any thread may call.

namespace QELUtils {

// The network name of a path on a mapped drive, in capital letters: "x:\d\f" with x: connected to
// "\\srv\share" gives "\\SRV\SHARE\D\F".
//   out   must have room for the result (the connection's name and the path); no size is checked
//   path  a letter, ":" and "\" begin it
// 0 when the drive is not connected to a network folder, or the system does not tell.
QELKIT_API int GetUniversalName(char* const out, const char* const path);

// Sets `out` to the network name of a path: of one that begins with "\\" itself, without the prefix
// "\\?\UNC\" if it has that; of one on a network drive, or on a drive that is not there (a
// connection that is not made yet), GetUniversalName's. 0 for every other path.
QELKIT_API int GetUNCFileName(const char* path, std::string& out);

// The same for what the path leads to: an existing file or folder is opened, so that links,
// substituted drives, short names and the working folder do not hide where it lies; any other path
// is normalised first.
QELKIT_API int GetResolvedUNCFileName(const char* path, std::string& out);

// The long form of a path that may have short names in it: its length, written with a terminator
// into out[0, size). 0 when there is no such file (GetLastError tells) or `path` is null; when the
// room does not do, the room that it takes, terminator included. `out` may be null when `size` is
// 0.
QELKIT_API ulong32 GetLongPathNameA(const char* path, char* out, ulong32 size);

// One form for the many of a path: absolute, with backslashes, without ".", ".." and doubled or
// final separators, without the prefix "\\?\", with long names for what of it exists. Letter case
// is kept. A path that has no such form comes back as it is.
QELKIT_API std::string NormilizePath(const std::string& path);

// Whether `path1` and `path2` are the same when normalised, letter case aside.
QELKIT_API bool IsPathEqual(const std::string& path1, const std::string& path2);

}  // namespace QELUtils
