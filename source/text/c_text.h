#pragma once

#include "base/export.h"

// Probes and patches for C strings.

// Whether the `size` bytes at `p` can be read and, when for_write is not 0, also written: 1 or 0.
// Null: 0. Neither crashes on inaccessible memory nor consumes a stack's guard page.
QELKIT_API int QELIsValidAddress(const void* p, unsigned int size, int for_write);

// Whether `s` can be read up to its terminator or, if that comes first, max_length characters (-1:
// no limit): 1 or 0. Null: 0.
QELKIT_API int QELIsValidString(const char* s, int max_length);
