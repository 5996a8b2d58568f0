#pragma once

#include "base/export.h"
#include "base/types.h"
#include "platform/windows.h"
#include "text/qel_string.h"

// Loads the library `name` from the folder of the module `anchor` (null: of this library). Only
// that folder and the system's default folders are searched for what it needs.
// Returns the module, which the caller frees. On failure returns null and
//   *error    the system's error code, if not null
//   *message  message 146 with the code and the name, if not null
//   show_box  non-zero also shows that text in a message box
QELKIT_API HINSTANCE LoadLibraryFromInstance(const char* name, HINSTANCE anchor, ulong32* error,
                                             CQELString* message, int show_box);
