#pragma once

// The one door through which <windows.h> comes in. It may already be there, included by a caller
// in a way of its own; what this header defines for itself it takes back.

#ifdef _WIN32

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#define QELKIT_OWN_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#define QELKIT_OWN_NOMINMAX
#endif

#include <windows.h>

#include <objidl.h>
#include <wincrypt.h>

#ifdef QELKIT_OWN_LEAN_AND_MEAN
#undef WIN32_LEAN_AND_MEAN
#undef QELKIT_OWN_LEAN_AND_MEAN
#endif
#ifdef QELKIT_OWN_NOMINMAX
#undef NOMINMAX
#undef QELKIT_OWN_NOMINMAX
#endif

#endif  // _WIN32
