#pragma once

// QELKIT_SSE2 is defined where the instructions are there for certain, as on every x86-64. What
// uses them has a plain form beside it that gives the same results.
#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define QELKIT_SSE2
#endif
