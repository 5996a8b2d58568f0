#pragma once

#include <cstdio>

#include "base/export.h"
#include "base/types.h"

// Plain functions on folders, and on lines of text streams. They throw nothing. Streams are those
// of the C runtime that the library uses.

// CQELFolder::DosSetCat(path).
QELKIT_API int DosSetCat(const char* path);

// Makes every missing folder along `path`, at each backslash; a prefix of one or two characters is
// taken to exist. Returns 0, at once when the path exists; 1 when a folder could not be made (those
// before it stay); -1 when memory runs out. While it works the process's current drive may be the
// path's; the working folder is the old one again at the end.
QELKIT_API int MakeDirectory(const char* path);

// The length of a file, or 0xFFFFFFFF. `error_text` (null, or room for 260 characters) then
// receives the path: by MakeErrMess, cut to 254 characters, when the length cannot be had or does
// not fit 32 bits; as it is, cut to 259, when the file cannot be opened.
QELKIT_API ulong32 FileSize(const char* path, char* error_text);

// fgets(buf, size, stream), and then a final line feed goes, and then trailing blanks (a carriage
// return is none). Returns what fgets returned; null also for a null argument or a size below 1.
QELKIT_API char* FgetStr(char* buf, int size, FILE* stream);
// The same, and the line is converted from the OEM to the ANSI code page.
QELKIT_API char* FgetStrOem(char* buf, int size, FILE* stream);

// Writes `text` so that exactly one line feed ends it, whether it has one or not. Returns what
// fputs returns: a negative value is a failure (null arguments included).
QELKIT_API int FputStr(const char* text, FILE* stream);
