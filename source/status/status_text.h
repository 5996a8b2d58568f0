#pragma once

#include <cstdint>

#include "base/export.h"
#include "base/types.h"
#include "status/qel_status.h"
#include "text/qel_string.h"

// Status codes as text for a person, and small console helpers. All are reentrant.

// "prefix", an empty line, the message of `status` without its full stop, and " (detail)":
//   GetErrorString("Open", 4, "a.txt")  ->  "Open\r\n\r\nФайл не найден (a.txt)"
// Null and "" leave out prefix and detail. A prefix that ends in a line feed gets one "\r\n", any
// other two.
QELKIT_API CQELString GetErrorString(const char* prefix, int status, const char* detail);
// The same for a status object's code and additional text.
QELKIT_API CQELString GetErrorString(const char* prefix, const XQELStatus& status);

// "Error in place N %d, contact the producers" into `out`, which needs 52 characters of room; no
// size is checked. A null `out`: nothing.
QELKIT_API void MakeErrMess(int place, char* out);
// At most 254 characters of `text` into `out`, 255 zero-filled characters of room: the rest is
// filled with zeros, and a text of 254 characters or more gets no terminator. Null: nothing.
QELKIT_API void MakeErrMess(const char* text, char* out);

// One result line of a console tool on standard output: the name (at most 40 characters), "OK" or
// "ERROR" in column 42; after an error also "ErrCode = %d", and a key press is awaited.
// The line is handed to the formatter as its format, so a "%" in the name is interpreted by it.
QELKIT_API void PrintResults(int status, const char* name);

// String resource `id` of `module` into out[0, size); returns `out`. It becomes "" when there is no
// such resource, when the text has no room, or when it is longer than 1023 characters. Size 0 (or
// less) or a null `out`: returns null and writes nothing.
QELKIT_API char* CQELGetString(char* out, int size, int id, HINSTANCE module);

// Suspends the calling thread.
QELKIT_API void delay(unsigned int milliseconds);
