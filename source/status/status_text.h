#pragma once

#include "base/export.h"
#include "platform/windows.h"
#include "status/qel_status.h"
#include "text/qel_string.h"

// Status codes as text for a person, and small helpers of console tools. All are reentrant.

// "prefix", an empty line, the message of `status` without its full stop, and " (detail)":
//   GetErrorString("Open", 4, "a.txt")  ->  "Open\r\n\r\nФайл не найден (a.txt)"
// Null and "" leave out prefix and detail. A prefix that ends in a line feed gets one "\r\n", any
// other two. A status without a message leaves its place empty. Throws only what the allocator
// throws.
QELKIT_API CQELString GetErrorString(const char* prefix, int status, const char* detail);
// The same for a status object's code and additional text.
QELKIT_API CQELString GetErrorString(const char* prefix, const XQELStatus& status);

// "Error in place N %d, contact the producers" into `out`, which has room for 52 characters with
// the terminator; no size is checked. A null `out`: nothing.
QELKIT_API void MakeErrMess(int place, char* out);
// At most 254 characters of `text` into `out`, which has room for 255 and is filled with zeros: a
// text of 254 characters or more is cut there and gets no terminator of its own. What a shorter
// text leaves of the 254 becomes zero. A null `text` or `out`: nothing.
QELKIT_API void MakeErrMess(const char* text, char* out);

// One result line of a console tool on standard output: the name in 40 columns (cut there, null is
// ""), "OK" or "ERROR" in column 42, blanks up to column 48. After an error also "ErrCode = %d",
// and a key press on the console is awaited.
// The name is part of a format of the C runtime: a per cent sign in it is written "%%", and a name
// of foreign origin must have its per cent signs doubled before it comes here.
QELKIT_API void PrintResults(int status, const char* name);

// String resource `id` of `module` (null: the process's main executable), at most its first 1023
// characters, into out[0, size); returns `out`. It becomes "" when there is no such resource or
// when the text and its terminator have no room. Size 0 (or less) or a null `out`: returns null and
// writes nothing.
QELKIT_API char* CQELGetString(char* out, int size, int id, HINSTANCE module);

// Suspends the calling thread for at least so many milliseconds; 0xFFFFFFFF is for ever.
QELKIT_API void delay(unsigned int milliseconds);
