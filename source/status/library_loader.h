#pragma once

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "text/qel_string.h"

// Loads the library `name` from the folder of the module `anchor` (null: of this library). What the
// loaded library needs is searched for in that folder and in the system's default folders only,
// never along PATH or in the working folder.
// Returns the module, which the caller frees with FreeLibrary; the other results are then untouched.
// On failure, which includes a null name and an anchor whose path is unknown or longer than 260
// characters, returns null and
//   *error    gets the system's error code, if not null
//   *message  gets message 146 with the code and the name, if not null
//   show_box  not 0 also shows that text in a message box and waits until it is closed
// Reentrant. Throws only what the allocator throws.
QELKIT_API HINSTANCE LoadLibraryFromInstance(const char* name, HINSTANCE anchor, ulong32* error,
                                             CQELString* message, int show_box);
