#pragma once

#include "base/export.h"

// Probes and patches for C strings.

// Whether the `size` bytes at `p` can be read and, when for_write is not 0, also written: 1 or 0.
// Null: 0; a size of 0 asks for nothing more.
// Both probes ask the system about the pages and touch none that it does not call readable: they
// crash on nothing, and a stack's guard page stays one. They cost a system call, and their answer
// holds only as long as nobody unmaps the memory.
QELKIT_API int QELIsValidAddress(const void* p, unsigned int size, int for_write);

// Whether `s` can be read up to its terminator or, if that comes first, max_length characters (below
// 0: no limit): 1 or 0. Null: 0.
QELKIT_API int QELIsValidString(const char* s, int max_length);
