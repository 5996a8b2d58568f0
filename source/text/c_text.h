#pragma once

#include "base/export.h"

// Probes and patches for C strings.

// Whether the `size` bytes at `p` can be read and, when for_write is not 0, also written: 1 or 0.
// Null: 0; a size of 0 asks for nothing more.
// Both probes ask the system about the pages and touch none that it does not call readable: they
// crash on nothing, and a stack's guard page stays one. They cost a system call, and their answer
// holds only as long as nobody unmaps the memory.
QELKIT_API int QELIsValidAddress(const void* p, unsigned int size, int for_write);

// Whether `s` can be read up to its terminator or, if that comes first, max_length characters
// (below 0: no limit): 1 or 0. Null: 0.
QELKIT_API int QELIsValidString(const char* s, int max_length);

// Searches a block of terminated strings, one behind the other, for `needle`, string by string: a
// hit does not reach over a terminator. Returns where the first hit begins, or null.
//   blockSize  bytes of the block, none behind them is looked at; the last string need not be
//              terminated. 0: the block is one terminated string. Below 0: nothing is found.
// "" is found at the beginning. Null `block` or `needle`: null.
// CTFStrStr steps by the multi-byte characters of the process's code page, CTFStrStrA by bytes.
QELKIT_API const char* CTFStrStr(const char* block, const char* needle, int blockSize);
QELKIT_API const char* CTFStrStrA(const char* block, const char* needle, int blockSize);

// Patches of a terminated text s in the caller's buffer. Null: nothing.

// Cuts trailing blanks of s, and nothing else that is white.
QELKIT_API void TrimEndSpaces(char* s);
// Appends a backslash to s unless one is the last byte: the buffer has room for one more character.
// A text that is empty or begins with a byte above 127 is replaced by a single backslash.
QELKIT_API void CheckEndSlash(char* s);
// Removes one trailing backslash of s.
QELKIT_API void CutEndSlash(char* s);

// Where `value` lies: -1 below `low`, 1 above `high`, else 0. `low` is looked at first.
QELKIT_API int NIKIn(unsigned int value, unsigned int low, unsigned int high);
