#pragma once

#include <cstdio>

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"

// Handing a desktop to the user of another logon session, and looking at who has access to a window
// object (a desktop or a window station). What is done is told in a text log: the caller's stream,
// or the file "qelkit2.log" in the current folder, to which it is appended. A log that cannot be
// opened or written is no failure.
//
// Concurrent calls write to the same file, and their lines may mix.

namespace QELUtils {

// Gives a token's user all rights on a desktop, or takes rights away (`grant` false), and makes the
// desktop handle inheritable. The handle needs the rights to read and to write the access list.
// Returns 0 or the system's error code; a desktop without an access list stays without one. Throws
// `long`: 16385 on systems that are not of the NT family, before anything is done, and
// (long)0x8007000E when there is no memory for the new list.
QELKIT_API ulong32 AdjustDesktopDACL(void* token, HDESK desktop, bool grant);

// Writes the access list of a window object to `log`; null is the log file.
// Returns 0 or the system's error code; an object without an access list is no failure. Throws
// (long)0x8007000E when there is no memory for a copy of the list.
QELKIT_API ulong32 DumpUserObjectDACL(void* object, FILE* log);

}  // namespace QELUtils
