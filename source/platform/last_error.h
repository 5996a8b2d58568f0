#pragma once

#include "base/types.h"

namespace kit {

// Both error numbers of a failed call, read in the statement after it, before any cleanup.
struct SystemError {
    int c_error = 0;    // errno
    ulong32 win32 = 0;  // GetLastError()

    static SystemError Capture();
};

// The errno value that the C runtime gives for a Win32 error; EINVAL (22) for those it does not
// know. Win32 calls leave errno alone, so rules that decide by errno set it from this.
int ErrnoFromWin32(ulong32 code);

}  // namespace kit
